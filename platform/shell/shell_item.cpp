// IShellItem, and SHCreateItemFromParsingName.
#include "platform/shell/shell_item.h"

#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/base/xdg_folders.h"
#include "platform/files/known_folders.h"
#include "platform/files/place_call.h"
#include "platform/ole/com_object.h"
#include "platform/shell/namespace.h"

#include <cerrno>
#include <sys/stat.h>

namespace platform
{

namespace
{

class ShellItem final : public ComObject<IShellItem, IID_IShellItem>
{
public:
    explicit ShellItem(std::string path) : m_path(std::move(path)) {}

    HRESULT STDMETHODCALLTYPE GetDisplayName(SIGDN form, LPWSTR* name) override
    {
        if (name == nullptr)
            return E_POINTER;
        *name = nullptr;
        if (form != SIGDN_FILESYSPATH)
            return E_INVALIDARG;
        if (FaultPoint("IShellItem::GetDisplayName"))
            return E_OUTOFMEMORY;
        *name = TaskString(ShellPathFromPosix(m_path));
        return *name != nullptr ? S_OK : E_OUTOFMEMORY;
    }

private:
    std::string m_path;
};

/// What becomes of a path that does not answer is for whoever uses it to see.
bool Exists(const std::string& path)
{
    const auto error = AskPlace<int>(path,
                                     [path]
                                     {
                                         struct stat status;
                                         return std::make_shared<int>(lstat(path.c_str(), &status) == 0 ? 0 : errno);
                                     });
    return error == nullptr || (*error != ENOENT && *error != ENOTDIR);
}

/// Where the user's desktop is, the home folder when there is none: a picker that begins there must show in any case.
std::string DesktopPlace()
{
    const std::string desktop = DesktopFolder();
    if (!desktop.empty() && Exists(desktop))
        return desktop;
    const std::string home = HomeFolder();
    return home.empty() ? "/" : home;
}

} // namespace

IShellItem* MakeShellItem(std::string path)
{
    return new ShellItem(std::move(path));
}

} // namespace platform

HRESULT SHCreateItemFromParsingName(LPCWSTR name, IBindCtx*, REFIID iid, void** result)
{
    if (result == nullptr)
        return E_POINTER;
    *result = nullptr;
    if (name == nullptr)
        return E_INVALIDARG;
    if (platform::FaultPoint("SHCreateItemFromParsingName"))
        return E_OUTOFMEMORY;
    std::string path;
    if (lstrcmpiW(name, u"shell:Desktop") == 0)
        path = platform::DesktopPlace();
    else if (name[0] == u'\\')
        path = platform::PosixFromShellPath(name);
    if (path.empty() || !platform::Exists(path))
        return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
    IShellItem* item = platform::MakeShellItem(std::move(path));
    const HRESULT queried = item->QueryInterface(iid, result);
    item->Release();
    return queried;
}
