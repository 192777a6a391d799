// ShellExecuteExW: a verb of an item's context menu.
#include "shlobj.h"

#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/base/text.h"

namespace platform
{

namespace
{

/// The item's context menu, null when it has none. `list` is absolute.
IContextMenu* MenuOf(HWND owner, LPCITEMIDLIST list)
{
    void* parent = nullptr;
    LPCITEMIDLIST last = nullptr;
    if (FAILED(SHBindToParent(list, IID_IShellFolder, &parent, &last)))
        return nullptr;
    auto* folder = static_cast<IShellFolder*>(parent);
    void* menu = nullptr;
    folder->GetUIObjectOf(owner, 1, &last, IID_IContextMenu, nullptr, &menu);
    folder->Release();
    return static_cast<IContextMenu*>(menu);
}

HRESULT InvokeVerb(const SHELLEXECUTEINFOW& info, LPCITEMIDLIST list)
{
    IContextMenu* menu = MenuOf(info.hwnd, list);
    if (menu == nullptr)
        return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
    const std::string verb = info.lpVerb != nullptr ? Utf8FromUtf16(info.lpVerb) : "open";
    CMINVOKECOMMANDINFO command = {};
    command.cbSize = sizeof command;
    command.hwnd = info.hwnd;
    command.lpVerb = verb.c_str();
    command.nShow = info.nShow;
    const HRESULT result = menu->InvokeCommand(&command);
    menu->Release();
    return result;
}

} // namespace

} // namespace platform

BOOL ShellExecuteExW(SHELLEXECUTEINFOW* info)
{
    constexpr std::uintptr_t kStarted = 33; // what hInstApp says of success is any number above 32
    if (info == nullptr || info->cbSize != sizeof *info)
        return platform::Fail(ERROR_INVALID_PARAMETER, FALSE);
    if (platform::FaultPoint("ShellExecuteExW"))
        return platform::Fail(ERROR_NOT_ENOUGH_MEMORY, FALSE);
    const bool byList = (info->fMask & SEE_MASK_INVOKEIDLIST) == SEE_MASK_INVOKEIDLIST && info->lpIDList != nullptr;
    LPITEMIDLIST list = nullptr;
    if (byList)
        list = ILClone(static_cast<LPCITEMIDLIST>(info->lpIDList));
    else if (info->lpFile != nullptr)
        SHParseDisplayName(info->lpFile, nullptr, &list, 0, nullptr);
    if (list == nullptr)
        return platform::Fail(ERROR_FILE_NOT_FOUND, FALSE);
    const HRESULT result = platform::InvokeVerb(*info, list);
    ILFree(list);
    if (FAILED(result))
        return platform::Fail(ERROR_GEN_FAILURE, FALSE);
    info->hInstApp = reinterpret_cast<HINSTANCE>(kStarted);
    return TRUE;
}
