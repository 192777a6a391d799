// What a state of the applications menu lists.
#include "platform/files/menu_tree.h"

#include "platform/base/file_stamp.h"
#include "platform/base/xdg_folders.h"
#include "platform/files/applications_menu.h"
#include "platform/files/names.h"
#include "platform/files/place_call.h"
#include "platform/files/snapshot_format.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <sys/stat.h>

namespace platform
{

namespace
{

/// A place's state; all zero when there is nothing, or it does not answer.
struct stat StateOf(const std::string& path)
{
    const auto state = AskPlace<struct stat>(path,
                                             [path]
                                             {
                                                 auto status = std::make_shared<struct stat>();
                                                 if (stat(path.c_str(), status.get()) != 0)
                                                     *status = {};
                                                 return status;
                                             });
    return state != nullptr ? *state : (struct stat){};
}

std::uint64_t Environment()
{
    std::uint64_t hash = SnapshotEnvironment();
    for (const char* name :
         {"XDG_MENU_PREFIX", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_HOME", "XDG_DATA_DIRS", "HOME", "PATH"})
    {
        const char* value = std::getenv(name);
        hash = HashBytes(value != nullptr ? value : "", hash + 1);
    }
    return hash;
}

const MenuCategory* Find(const MenuTree& tree, const std::string& path)
{
    const MenuCategory* category = &tree.root;
    std::string_view rest = path;
    for (std::size_t slash = rest.find('/'); slash != rest.npos; slash = rest.find('/'))
    {
        rest.remove_prefix(slash + 1);
        const std::string_view id = rest.substr(0, rest.find('/'));
        const auto found = std::find_if(category->categories.begin(), category->categories.end(),
                                        [&](const MenuCategory& child) { return child.id == id; });
        if (found == category->categories.end())
            return nullptr;
        category = &*found;
    }
    return category;
}

} // namespace

std::uint64_t StampOfPlaces(const std::vector<std::string>& places)
{
    std::uint64_t hash = Environment();
    for (const std::string& place : places)
    {
        const std::uint64_t stamp = StampOf(StateOf(place));
        hash = HashBytes({reinterpret_cast<const char*>(&stamp), sizeof stamp}, hash);
    }
    return hash != 0 ? hash : 1;
}

bool AnyChangedSince(const std::vector<std::string>& places, std::int64_t time)
{
    return std::any_of(
        places.begin(), places.end(), [time](const std::string& place) { return ModifiedAt(StateOf(place)) >= time; });
}

std::vector<std::string> UsualMenuPlaces()
{
    std::vector<std::string> places;
    std::vector<std::string> folders = SystemConfigFolders();
    folders.insert(folders.begin(), ConfigHome());
    for (const std::string& folder : folders)
    {
        places.push_back(folder + "/menus");
        places.push_back(folder + "/menus/applications-merged");
    }
    for (const std::string& folder : DataFolders())
    {
        places.push_back(folder + "/applications");
        places.push_back(folder + "/desktop-directories");
    }
    return places;
}

std::shared_ptr<FolderListing> ListMenuFolder(const MenuTree& tree, const std::string& path)
{
    auto listing = std::make_shared<FolderListing>();
    listing->path = path;
    const bool ofUser = path.starts_with(kUserMenu);
    const std::string userEntries = UserEntryPath({});
    const MenuCategory* folder = Find(tree, path);
    if (folder == nullptr)
    {
        listing->error = ENOENT;
        return listing;
    }
    const auto add = [&](ItemKind kind, std::string name, const std::string& icon, const std::u16string& display)
    {
        ListedFile& file = listing->files.emplace_back();
        file.kind = kind;
        file.described = true;
        file.name = listing->narrow.emplace_back(std::move(name));
        file.icon = listing->narrow.emplace_back(icon);
        file.display = listing->wide.emplace_back(display);
        file.typeName = kind == ItemKind::Category ? kFolderTypeName : kProgramTypeName;
    };
    for (const MenuCategory& category : folder->categories)
        add(ItemKind::Category, category.id, category.icon, category.name);
    for (const MenuProgram& program : folder->programs)
        if (program.path.starts_with(userEntries) == ofUser)
            add(ItemKind::DesktopEntry, MenuProgramName(program.id, program.path), program.icon, program.name);
    return listing;
}

} // namespace platform
