// The shell name space: paths and what an item list needs of them.
//
// The root of the name space, the desktop folder, is the file system's root. A folder's path is written without a
// trailing '/', so that the root's is "". Beside the files stands the applications menu (applications_menu.h), whose
// folders have no place in the file system.
#pragma once

#include "platform/shell/item_id.h"

namespace platform
{

constexpr std::u16string_view kMenuTitle = u"Start Menu";

/// The text in memory that CoTaskMemFree frees; null when out of memory.
LPWSTR TaskString(std::u16string_view text);
/// The same of a file's name as it stands in a shell path.
LPWSTR TaskStringOfFileName(std::string_view name);
/// The same of the name that the item is shown under.
LPWSTR TaskStringOfDisplayName(const ItemId& item);
HRESULT ResultFromErrno(int error);

/// Appends the identifier of a plain folder.
void AppendFolderId(std::vector<BYTE>& bytes, std::string_view name);
/// Appends the identifier of the whole menu of the user's (kUserMenu) or everybody's programs. Both are called the
/// same, which is what makes a menu show them as one entry.
void AppendMenuRootId(std::vector<BYTE>& bytes, std::string_view root);
/// What a folder of the applications menu is shown as.
std::u16string MenuFolderName(const std::string& path);
/// Appends the identifier of an existing file in a folder; an errno value on failure, else 0.
int AppendFileId(std::vector<BYTE>& bytes, const std::string& folder, const std::string& name);

/// A list relative to `folder`, whose last name must exist. An empty path yields the empty list.
HRESULT ParsePath(const std::string& folder, std::u16string_view shellPath, LPITEMIDLIST* list);

/// The SFGAO_ attributes of an item.
SFGAOF AttributesOf(const ItemId& item);
/// Whether files can be put into a folder at all, and what is in it be given other names: not into what is made from
/// menu files. Whoever may not write there learns so from the file system.
bool CanBeWrittenInto(std::string_view folder);
/// The last identifier of a list relative to some folder; nothing when it is empty or not ours.
std::optional<ItemId> LastItem(LPCITEMIDLIST list);

/// A folder object for a path, with one reference; null when out of memory.
IShellFolder* MakeShellFolder(std::string path);

} // namespace platform
