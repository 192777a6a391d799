// Asking the shell for a folder's children.
#include "content/folder_children.h"

#include "app/launcher_state.h"

#include <shlwapi.h>

namespace
{

constexpr SFGAOF kKindMask = SFGAO_FOLDER | SFGAO_STREAM | SFGAO_LINK;

} // namespace

ComPtr<IShellFolder> BindToFolder(LPCITEMIDLIST list)
{
    ComPtr<IShellFolder> folder;
    IShellFolder* const desktop = g_launcher.m_desktopFolder.Get();
    if (list != nullptr && desktop != nullptr &&
        FAILED(desktop->BindToObject(list, nullptr, IID_IShellFolder, folder.ReceiveVoid())))
        folder.Reset();
    return folder;
}

ComPtr<IEnumIDList> EnumerateChildren(IShellFolder& folder)
{
    ComPtr<IEnumIDList> children;
    if (folder.EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS, children.Receive()) != S_OK)
        children.Reset();
    return children;
}

bool QueryName(IShellFolder& folder, LPCITEMIDLIST child, SHGDNF flags, ShellString& name)
{
    STRRET text;
    if (FAILED(folder.GetDisplayNameOf(child, flags, &text)))
        return false;
    StrRetToStrW(&text, child, name.Receive());
    return true;
}

bool IsPlainFolder(IShellFolder& folder, LPCITEMIDLIST child)
{
    SFGAOF attributes = kKindMask;
    return SUCCEEDED(folder.GetAttributesOf(1, &child, &attributes)) && (attributes & kKindMask) == SFGAO_FOLDER;
}
