// The shell name space: paths and what an item list needs of them.
//
// The root of the name space, the desktop folder, is the file system's root. A folder's path is written without a
// trailing '/', so that the root's is "".
#pragma once

#include "platform/shell/item_id.h"

namespace platform
{

/// The text in memory that CoTaskMemFree frees; null when out of memory.
LPWSTR TaskString(std::u16string_view text);
/// The same of a file's name as it stands in a shell path.
LPWSTR TaskStringOfFileName(std::string_view name);
/// The same of the name that the item is shown under.
LPWSTR TaskStringOfDisplayName(const ItemId& item);
HRESULT ResultFromErrno(int error);

/// Appends the identifier of a plain folder.
void AppendFolderId(std::vector<BYTE>& bytes, std::string_view name);
/// Appends the identifier of an existing file in a folder; an errno value on failure, else 0.
int AppendFileId(std::vector<BYTE>& bytes, const std::string& folder, const std::string& name);

/// A list relative to `folder`, whose last name must exist. An empty path yields the empty list.
HRESULT ParsePath(const std::string& folder, std::u16string_view shellPath, LPITEMIDLIST* list);

/// The SFGAO_ attributes of an item.
SFGAOF AttributesOf(const ItemId& item);
/// The last identifier of a list relative to some folder; nothing when it is empty or not ours.
std::optional<ItemId> LastItem(LPCITEMIDLIST list);

/// A folder object for a path, with one reference; null when out of memory.
IShellFolder* MakeShellFolder(std::string path);

} // namespace platform
