// The shell link object: a shortcut is a symbolic link.
//
// Not implemented: everything that a symbolic link cannot hold (arguments, working folder, icon), and loading.
#include "platform/shell/create_instance.h"

#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/files/make_link.h"
#include "platform/files/names.h"
#include "platform/ole/com_object.h"
#include "platform/shell/failure_report.h"
#include "platform/shell/namespace.h"
#include "platform/shell/pumped_call.h"

#include <cerrno>
#include <cstring>

namespace platform
{

namespace
{

class ShellLink final
    : public ComObjectOf<ComInterface<IShellLinkW, IID_IShellLinkW>, ComInterface<IPersistFile, IID_IPersistFile>>
{
public:
    HRESULT STDMETHODCALLTYPE SetPath(LPCWSTR path) override;
    HRESULT STDMETHODCALLTYPE Save(LPCWSTR path, BOOL remember) override;

private:
    std::string m_target; ///< POSIX, absolute
};

HRESULT ShellLink::SetPath(LPCWSTR path)
{
    if (FaultPoint("IShellLinkW::SetPath"))
        return E_OUTOFMEMORY;
    if (path == nullptr || path[0] != u'\\')
        return E_INVALIDARG;
    m_target = PosixFromShellPath(path);
    return S_OK;
}

/// An errno value on failure, else 0.
int MakeLinkWithin(const std::string& folder, const std::string& name, const std::string& target)
{
    constexpr std::chrono::milliseconds kPatience{5000};
    const auto made =
        CallPumpedWithin<int>(kPatience, [=] { return std::make_shared<int>(MakeLink(folder, name, target)); });
    return made != nullptr ? *made : ETIMEDOUT;
}

HRESULT ShellLink::Save(LPCWSTR path, BOOL)
{
    if (FaultPoint("IPersistFile::Save"))
        return E_OUTOFMEMORY;
    const std::string whole = path != nullptr ? PosixFromShellPath(path) : std::string();
    if (!CanBeWrittenInto(whole))
        return RefuseInMenu(nullptr, MenuFolderName(whole.substr(0, whole.rfind('/'))), kWhyNothingIsAdded);
    if (!whole.starts_with('/') || m_target.empty())
        return E_INVALIDARG;
    const std::size_t slash = whole.rfind('/');
    const std::string name = whole.substr(slash + 1);
    const bool hasName = IsFileName(name) && name != kShortcutEnding; // a link to the root has none
    const int error = hasName ? MakeLinkWithin(whole.substr(0, slash), name, m_target) : EINVAL;
    if (error == 0)
        return S_OK;
    const std::string reason = hasName ? std::string(std::strerror(error)) + "." : "It would have no name.";
    ReportFailure(nullptr, FailureText(DisplayNameOfFile(name, ItemKind::Link), u"could not be made", reason));
    return ResultFromErrno(error);
}

} // namespace

IUnknown* MakeShellLink()
{
    return static_cast<IShellLinkW*>(new ShellLink);
}

} // namespace platform
