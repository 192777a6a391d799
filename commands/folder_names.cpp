// Merging the names of a level's folders.
#include "commands/folder_names.h"

#include <algorithm>

namespace CustomMenu
{

namespace
{

constexpr WCHAR kFolderMark = TEXT(':'); ///< no file's name holds it, so a file never passes for a folder

void DropMarks(std::vector<WString>& names)
{
    for (WString& name : names)
        if (name.ends_with(kFolderMark))
            name.pop_back();
}

} // namespace

std::vector<WString> MergeFolderNames(const std::vector<FolderListing>& folders)
{
    const bool merged = folders.size() > 1;
    std::vector<WString> names;
    bool marked = false;
    for (const FolderListing& folder : folders)
        for (const auto& [listed, isFolder] : folder)
        {
            const bool mark = merged && isFolder && !listed.empty();
            const WString name = mark ? listed + kFolderMark : listed;
            marked |= mark;
            const bool known =
                mark && &folder != &folders.front() && std::find(names.begin(), names.end(), name) != names.end();
            if (!name.empty() && !known)
                names.push_back(name);
        }
    if (marked)
        DropMarks(names);
    return names;
}

} // namespace CustomMenu
