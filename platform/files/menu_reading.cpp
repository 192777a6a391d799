// The applications menu's current state, and who wants to know of the next.
//
// Every reading is asked of the module's own thread, which is where its answer is taken in. At most one reading waits
// behind the one under way: it will see all that changes before it begins.
#include "platform/files/menu_reading.h"

#include "platform/base/text.h"
#include "platform/files/applications_menu.h"
#include "platform/files/menu_tree.h"
#include "platform/files/names.h"
#include "platform/services/desktop_module.h"
#include "platform/services/menu_service.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <ctime>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <utility>

namespace platform
{

namespace
{

using Tree = std::shared_ptr<const MenuTree>;

constexpr std::chrono::milliseconds kPatience{1000};

struct State
{
    std::mutex mutex;
    std::condition_variable answer;
    Tree tree;
    bool looked = false; ///< into the cache
    int asked = 0;       ///< readings
    int answered = 0;
    bool overdue = false;                           ///< a reading that was waited for has not come yet
    std::map<std::string, FolderCallback> listed{}; ///< the folders that somebody has seen
};

State& Menu()
{
    static auto& state = *new State;
    return state;
}

/// A reading in the making; lives on the menu's thread.
struct Builder
{
    std::int64_t begun;
    std::vector<MenuCategory> open{1}; ///< the root, and the categories on the way to where the reading is
    std::set<std::string> places{};
    std::string ownFolder{}; ///< of the user's own entries, links resolved; "" when it is not there or not yet known
};

std::int64_t Now()
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

std::string FolderOf(const std::string& path)
{
    return path.substr(0, path.rfind('/'));
}

std::u16string ShownName(const char* text, const char* otherwise)
{
    std::u16string name = Utf16FromUtf8(text != nullptr && *text != '\0' ? text : otherwise);
    name.resize(std::min(name.size(), kMaxDisplayUnits));
    return name;
}

std::string IconIdentity(const char* icons, std::string_view otherwise)
{
    std::string identity = icons;
    return identity.append(identity.empty() ? "" : "\n").append(otherwise);
}

/// The menu library resolves the links on the way to a folder of entries: where the home folder is one, the user's own
/// would not be known by their path.
std::string EntryPath(Builder& builder, const std::string& path)
{
    const std::string own = UserEntryPath({});
    if (builder.ownFolder.empty())
        if (const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(own.c_str(), nullptr), std::free);
            resolved != nullptr)
            builder.ownFolder = std::string(resolved.get()) + "/";
    const bool isOwn = !builder.ownFolder.empty() && path.starts_with(builder.ownFolder);
    return isOwn ? own + path.substr(builder.ownFolder.size()) : path;
}

void BeginCategory(void* context, const MenuItemFacts& facts)
{
    auto& builder = *static_cast<Builder*>(context);
    if (facts.path != nullptr)
        builder.places.insert(FolderOf(facts.path));
    MenuCategory& category = builder.open.emplace_back();
    category.id = facts.id;
    category.icon = IconIdentity(facts.icons, kFolderIcon);
    category.name = ShownName(facts.name, facts.id);
}

void EndCategory(void* context)
{
    auto& open = static_cast<Builder*>(context)->open;
    MenuCategory category = std::move(open.back());
    open.pop_back();
    if (!IsFileName(category.id))
        return; // no path leads there
    open.back().categories.push_back(std::move(category));
}

void TakeProgram(void* context, const MenuItemFacts& facts)
{
    auto& builder = *static_cast<Builder*>(context);
    const std::string path = EntryPath(builder, facts.path);
    builder.places.insert(FolderOf(path));
    if (IsFileName(facts.id))
        builder.open.back().programs.push_back(
            {facts.id, path, IconIdentity(facts.icons, kProgramIcon), ShownName(facts.name, facts.id)});
}

/// Two categories of one name would show as one, which holds no more than two folders: they are told apart, the same
/// way in every reading.
void NameApart(std::vector<MenuCategory>& categories)
{
    std::sort(categories.begin(), categories.end(),
              [](const MenuCategory& a, const MenuCategory& b) { return a.id < b.id; });
    std::set<std::u16string> taken;
    for (MenuCategory& category : categories)
    {
        if (!taken.insert(category.name).second)
            category.name += u" (" + Utf16FromUtf8(category.id) + u")";
        NameApart(category.categories);
    }
}

Tree Finish(Builder& builder)
{
    constexpr std::int64_t kCoarsestTick = 20'000'000; // file times move on with the kernel's tick
    auto tree = std::make_shared<MenuTree>();
    tree->root = std::move(builder.open.front());
    NameApart(tree->root.categories);
    tree->places = UsualMenuPlaces();
    builder.places.insert(MenuFile());
    tree->places.insert(tree->places.end(), builder.places.begin(), builder.places.end());
    tree->stamp = StampOfPlaces(tree->places);
    if (AnyChangedSince(tree->places, builder.begun - kCoarsestTick))
        tree->stamp = 0;
    return tree;
}

bool ListsTheSame(const Tree& before, const Tree& now, const std::string& path)
{
    if (before == nullptr)
        return false;
    const auto old = ListMenuFolder(*before, path);
    const auto current = ListMenuFolder(*now, path);
    return old->error == current->error && SameFiles(*old, *current);
}

void Done(void* context)
{
    const std::unique_ptr<Builder> builder(static_cast<Builder*>(context));
    const Tree tree = Finish(*builder);
    SaveMenuTree(*tree);
    State& menu = Menu();
    std::unique_lock lock(menu.mutex);
    const Tree before = std::exchange(menu.tree, tree);
    const auto listed = menu.listed;
    ++menu.answered;
    menu.overdue = false;
    lock.unlock();
    menu.answer.notify_all();
    for (const auto& [path, changed] : listed)
        if (!ListsTheSame(before, tree, path))
            changed(path);
}

/// Asks for a reading; the number of the one that will do, 0 when there is none to be had. With the lock.
int Ask(State& menu)
{
    const auto* service = static_cast<const MenuService*>(DesktopModuleSymbol("orb_menu_service"));
    if (service == nullptr)
        return 0;
    if (menu.asked - menu.answered >= 2)
        return menu.asked;
    const auto changed = []
    {
        State& now = Menu();
        const std::lock_guard lock(now.mutex);
        Ask(now);
    };
    service->read(MenuFile().c_str(), {new Builder{Now()}, BeginCategory, EndCategory, TakeProgram, Done}, changed);
    return ++menu.asked;
}

bool Holds(const Tree& tree)
{
    return tree != nullptr && tree->stamp != 0 && tree->stamp == StampOfPlaces(tree->places);
}

/// The menu as it is now or, when that takes too long, as it was last seen; null when it never was. With the lock.
Tree CurrentTree(State& menu, std::unique_lock<std::mutex>& lock)
{
    if (!menu.looked)
        menu.tree = LoadMenuTree();
    menu.looked = true;
    if (menu.overdue || Holds(menu.tree))
        return menu.tree;
    const int wanted = Ask(menu);
    if (wanted != 0)
        menu.overdue = !menu.answer.wait_for(lock, kPatience, [&] { return menu.answered >= wanted; });
    return menu.tree;
}

} // namespace

std::shared_ptr<FolderListing> ReadMenuFolder(const std::string& path, FolderCallback changed)
{
    State& menu = Menu();
    std::unique_lock lock(menu.mutex);
    const Tree tree = CurrentTree(menu, lock);
    if (changed != nullptr)
        menu.listed[path] = changed;
    lock.unlock();
    if (tree != nullptr)
        return ListMenuFolder(*tree, path);
    auto listing = std::make_shared<FolderListing>();
    listing->path = path;
    listing->error = ETIMEDOUT;
    return listing;
}

void FollowMenu()
{
    State& menu = Menu();
    const std::lock_guard lock(menu.mutex);
    if (menu.asked == 0)
        Ask(menu);
}

} // namespace platform
