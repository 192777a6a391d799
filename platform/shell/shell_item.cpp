// IShellItem and its picture, SHCreateItemFromParsingName, SHCreateItemFromIDList.
#include "platform/shell/shell_item.h"

#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/base/xdg_folders.h"
#include "platform/files/applications_menu.h"
#include "platform/files/known_folders.h"
#include "platform/files/place_call.h"
#include "platform/icons/shell_icon.h"
#include "platform/ole/com_object.h"
#include "platform/shell/namespace.h"
#include "platform/shell/system_images.h"

#include "windows.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>

namespace platform
{

namespace
{

/// What an item's picture is found by, when only its path is known.
std::string IconOfPath(const std::string& path)
{
    LPITEMIDLIST list = nullptr;
    const HRESULT parsed = ParsePath({}, ShellPathFromPosix(path), &list);
    const ItemListPtr owner(list);
    const std::optional<ItemId> item = SUCCEEDED(parsed) ? LastItem(list) : std::nullopt;
    return item ? SystemImageIdentity(item->icon) : std::string(kFolderIcon);
}

/// A bitmap with the picture's pixels; null when out of memory.
HBITMAP BitmapOf(const IconImage& image)
{
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, image.width, -image.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (bitmap != nullptr)
        std::ranges::copy(image.pixels, static_cast<std::uint32_t*>(bits));
    return bitmap;
}

class ShellItem final : public ComObjectOf<ComInterface<IShellItem, IID_IShellItem>,
                                           ComInterface<IShellItemImageFactory, IID_IShellItemImageFactory>>
{
public:
    /// Without an icon identity, the picture is looked for by the path.
    explicit ShellItem(std::string path, std::string icon = {}) : m_path(std::move(path)), m_icon(std::move(icon)) {}

    HRESULT STDMETHODCALLTYPE GetDisplayName(SIGDN form, LPWSTR* name) override
    {
        if (name == nullptr)
            return E_POINTER;
        *name = nullptr;
        if (form != SIGDN_FILESYSPATH || IsMenuPath(m_path))
            return E_INVALIDARG;
        if (FaultPoint("IShellItem::GetDisplayName"))
            return E_OUTOFMEMORY;
        *name = TaskString(ShellPathFromPosix(m_path));
        return *name != nullptr ? S_OK : E_OUTOFMEMORY;
    }

    /// Icons are square and made at any size: the largest that fits, whatever the flags.
    HRESULT STDMETHODCALLTYPE GetImage(SIZE size, SIIGBF, HBITMAP* bitmap) override
    {
        if (bitmap == nullptr)
            return E_POINTER;
        *bitmap = nullptr;
        if (size.cx < 1 || size.cy < 1)
            return E_INVALIDARG;
        if (FaultPoint("IShellItemImageFactory::GetImage"))
            return E_OUTOFMEMORY;
        const auto picture = ShellIcon(m_icon.empty() ? IconOfPath(m_path) : m_icon, std::min(size.cx, size.cy), false);
        *bitmap = BitmapOf(picture->Image());
        return *bitmap != nullptr ? S_OK : E_OUTOFMEMORY;
    }

private:
    std::string m_path;
    std::string m_icon;
};

HRESULT HandOut(IShellItem* item, REFIID iid, void** result)
{
    const HRESULT queried = item->QueryInterface(iid, result);
    item->Release();
    return queried;
}

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
    return platform::HandOut(platform::MakeShellItem(std::move(path)), iid, result);
}

HRESULT SHCreateItemFromIDList(LPCITEMIDLIST list, REFIID iid, void** result)
{
    if (result == nullptr)
        return E_POINTER;
    *result = nullptr;
    if (list == nullptr)
        return E_INVALIDARG;
    if (platform::FaultPoint("SHCreateItemFromIDList"))
        return E_OUTOFMEMORY;
    std::string path;
    if (!platform::AppendListPath(path, list))
        return E_INVALIDARG;
    const auto last = platform::LastItem(list);
    std::string icon = last ? platform::SystemImageIdentity(last->icon) : std::string(platform::kFolderIcon);
    return platform::HandOut(new platform::ShellItem(path.empty() ? "/" : path, std::move(icon)), iid, result);
}
