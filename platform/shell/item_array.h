// "Shell IDList Array" (CIDA): a folder's list and the lists of items relative to it, in one block of memory.
#pragma once

#include "shlobj.h"

#include <string>
#include <string_view>
#include <vector>

namespace platform
{

/// The block for items of the folder at `folder`, "" being the root; the items' lists are relative to it.
std::string ItemArray(const std::string& folder, const std::vector<LPCITEMIDLIST>& items);
/// The same for any files, by their absolute paths, as lists relative to the root. Files that are not there are left
/// out; "" when none is.
std::string ItemArrayOfPaths(const std::vector<std::string>& paths);

/// The absolute paths of a block's items. None when the block is not one that this process has made: offsets and lists
/// are followed only within it.
std::vector<std::string> PathsInItemArray(std::string_view block);

} // namespace platform
