// Listing what lies in a level's folders. How two folders are merged is decided in folder_names.cpp.
#include "menu/custom_bar.h"

#include "commands/folder_names.h"
#include "content/folder_children.h"

namespace CustomMenu
{

namespace
{

FolderListing ListFolder(LPCITEMIDLIST list, bool merged)
{
    FolderListing names;
    const ComPtr<IShellFolder> folder = BindToFolder(list);
    if (!folder)
        return names;
    const ComPtr<IEnumIDList> children = EnumerateChildren(*folder.Get());
    ItemList child;
    while (children && children->Next(1, child.Receive(), nullptr) == S_OK)
    {
        ShellString name;
        if (QueryName(*folder.Get(), child.Get(), SHGDN_INFOLDER | SHGDN_FORPARSING, name) && name)
            names.push_back({name.Get(), merged && IsPlainFolder(*folder.Get(), child.Get())});
    }
    return names;
}

} // namespace

std::vector<WString> CustomBar::SnapshotFolderNames() const
{
    const auto& [first, second] = m_sourceFolders;
    const bool merged = static_cast<bool>(second);
    std::vector<FolderListing> folders{ListFolder(first.Get(), merged)};
    if (merged)
        folders.push_back(ListFolder(second.Get(), true));
    return MergeFolderNames(folders);
}

} // namespace CustomMenu
