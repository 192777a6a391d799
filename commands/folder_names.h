// The names in a level's folders, by which a newcomer is told after a file operation.
//
// Rules only; folder_snapshot.cpp asks the shell.
#pragma once

#include "support/wstring.h"

#include <vector>

namespace CustomMenu
{

struct ListedName
{
    WString name;          ///< in-folder parsing name
    bool isFolder = false; ///< a plain folder; looked at only where two folders are merged
};

using FolderListing = std::vector<ListedName>;

/// The names of a level's one or two folders, in their order. A sub-folder that both hold is named once, for it is one
/// item of the level; files are named as often as they occur. Empty names are left out.
std::vector<WString> MergeFolderNames(const std::vector<FolderListing>& folders);

} // namespace CustomMenu
