// One state of the applications menu: its categories and programs, and how it is kept for the next run.
#pragma once

#include "platform/files/folder_listing.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

struct MenuProgram
{
    std::string id;
    std::string path;
    std::string icon; ///< icon identity
    std::u16string name;
};

struct MenuCategory
{
    std::string id; ///< the same in every language, unlike any other's beside it
    std::string icon;
    std::u16string name; ///< unlike any other's beside it
    std::vector<MenuCategory> categories;
    std::vector<MenuProgram> programs;
};

/// Immutable once made.
struct MenuTree
{
    MenuCategory root; ///< without a name
    /// Files and folders whose states tell whether the tree still holds. There may be more that matter.
    std::vector<std::string> places;
    /// Of the places when it was read; 0 when one changed so shortly before that a change after it might not show.
    std::uint64_t stamp = 0;
};

/// The state that the places are in now, and of all else that the menu depends on; never 0. Places on other file
/// systems are asked with patience.
std::uint64_t StampOfPlaces(const std::vector<std::string>& places);
/// Whether one of them has changed since that time, in nanoseconds since 1970.
bool AnyChangedSince(const std::vector<std::string>& places, std::int64_t time);
/// Where menu files, categories and programs are looked for, whatever is there.
std::vector<std::string> UsualMenuPlaces();

/// What one of the menu's folders holds. Both halves have every category, so that a level that shows both sees a
/// program become the user's own. Error ENOENT for a path that leads nowhere.
std::shared_ptr<FolderListing> ListMenuFolder(const MenuTree& tree, const std::string& path);

/// The tree as the last reading that was saved has it, of whatever age; null when there is none.
std::shared_ptr<const MenuTree> LoadMenuTree();
/// Keeps the tree for the next run, unless nothing could tell then whether it still holds.
void SaveMenuTree(const MenuTree& tree);

} // namespace platform
