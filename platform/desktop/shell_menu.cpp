// The applications menu, by libgnome-menu.
//
// The library remembers folders and hears of their changes by the default main context. So one thread runs the context
// and does all that concerns menus; nobody else here uses it. A reading that overtakes the news of a change yields what
// was before, and another one follows.
#include "platform/services/menu_service.h"

#include "platform/desktop/desktop_entry.h"
#include "platform/desktop/glib_owner.h"

#define GMENU_I_KNOW_THIS_IS_UNSTABLE
#include <gio/gdesktopappinfo.h>
#include <gmenu-tree.h>

#include <string>

namespace platform
{

namespace
{

constexpr int kDeepest = 32; ///< categories within categories; nobody finds anything further down

struct Reading
{
    std::string menuFile;
    MenuReceiver receiver;
    void (*changed)();
};

using TreeItemOwner = std::unique_ptr<void, GFree<gmenu_tree_item_unref>>;
using TreeIterOwner = std::unique_ptr<GMenuTreeIter, GFree<gmenu_tree_iter_unref>>;

std::string TakeText(char* text)
{
    const GTextOwner owner(text);
    return text != nullptr ? text : "";
}

std::string IconNames(GIcon* icon)
{
    std::string names;
    if (G_IS_FILE_ICON(icon))
        return CleanIconName(TakeText(g_file_get_path(g_file_icon_get_file(G_FILE_ICON(icon)))));
    if (!G_IS_THEMED_ICON(icon))
        return names;
    for (const char* const* name = g_themed_icon_get_names(G_THEMED_ICON(icon)); *name != nullptr; ++name)
    {
        const std::string clean = CleanIconName(*name);
        names += names.empty() || clean.empty() ? "" : "\n";
        names += clean;
    }
    return names;
}

void TellProgram(GDesktopAppInfo* program, const char* id, const MenuReceiver& receiver)
{
    const char* path = program != nullptr ? g_desktop_app_info_get_filename(program) : nullptr;
    if (path == nullptr || id == nullptr)
        return;
    const std::string icons =
        CleanIconName(TakeText(g_desktop_app_info_get_locale_string(program, G_KEY_FILE_DESKTOP_KEY_ICON)));
    receiver.program(receiver.context, {id, g_app_info_get_name(G_APP_INFO(program)), icons.c_str(), path});
}

void TellEntry(GMenuTreeEntry* entry, const MenuReceiver& receiver)
{
    if (entry != nullptr)
        TellProgram(gmenu_tree_entry_get_app_info(entry), gmenu_tree_entry_get_desktop_file_id(entry), receiver);
}

void TellContent(GMenuTreeDirectory* directory, const MenuReceiver& receiver, int depth);

void TellCategory(GMenuTreeDirectory* category, const MenuReceiver& receiver, int depth)
{
    const char* id = category != nullptr ? gmenu_tree_directory_get_menu_id(category) : nullptr;
    if (id == nullptr || depth > kDeepest)
        return;
    const std::string icons = IconNames(gmenu_tree_directory_get_icon(category));
    receiver.beginCategory(receiver.context, {id, gmenu_tree_directory_get_name(category), icons.c_str(),
                                              gmenu_tree_directory_get_desktop_file_path(category)});
    TellContent(category, receiver, depth);
    receiver.endCategory(receiver.context);
}

/// An alias stands for something that would otherwise be alone in a category of its own.
void TellAlias(GMenuTreeAlias* alias, const MenuReceiver& receiver, int depth)
{
    if (gmenu_tree_alias_get_aliased_item_type(alias) == GMENU_TREE_ITEM_ENTRY)
    {
        const TreeItemOwner entry(gmenu_tree_alias_get_aliased_entry(alias));
        TellEntry(static_cast<GMenuTreeEntry*>(entry.get()), receiver);
        return;
    }
    const TreeItemOwner category(gmenu_tree_alias_get_aliased_directory(alias));
    TellCategory(static_cast<GMenuTreeDirectory*>(category.get()), receiver, depth);
}

void TellItem(GMenuTreeIter* iter, GMenuTreeItemType type, const MenuReceiver& receiver, int depth)
{
    if (type == GMENU_TREE_ITEM_DIRECTORY)
    {
        const TreeItemOwner category(gmenu_tree_iter_get_directory(iter));
        TellCategory(static_cast<GMenuTreeDirectory*>(category.get()), receiver, depth);
    }
    else if (type == GMENU_TREE_ITEM_ENTRY)
    {
        const TreeItemOwner entry(gmenu_tree_iter_get_entry(iter));
        TellEntry(static_cast<GMenuTreeEntry*>(entry.get()), receiver);
    }
    else if (type == GMENU_TREE_ITEM_ALIAS)
    {
        const TreeItemOwner alias(gmenu_tree_iter_get_alias(iter));
        TellAlias(static_cast<GMenuTreeAlias*>(alias.get()), receiver, depth);
    }
    // Separators and headers are left out: the order is the user's.
}

void TellContent(GMenuTreeDirectory* directory, const MenuReceiver& receiver, int depth)
{
    const TreeIterOwner iter(gmenu_tree_directory_iter(directory));
    for (;;)
    {
        const GMenuTreeItemType type = gmenu_tree_iter_next(iter.get());
        if (type == GMENU_TREE_ITEM_INVALID)
            return;
        TellItem(iter.get(), type, receiver, depth + 1);
    }
}

void TellAllPrograms(const MenuReceiver& receiver)
{
    GList* programs = g_app_info_get_all();
    for (GList* program = programs; program != nullptr; program = program->next)
        if (g_app_info_should_show(G_APP_INFO(program->data)))
            TellProgram(G_DESKTOP_APP_INFO(program->data), g_app_info_get_id(G_APP_INFO(program->data)), receiver);
    g_list_free_full(programs, g_object_unref);
}

void OnChange(GMenuTree*, gpointer changed)
{
    reinterpret_cast<void (*)()>(changed)();
}

void Read(const Reading& reading)
{
    static GMenuTree* tree = nullptr; // kept, for only then does the library look for changes
    g_clear_object(&tree);
    while (g_main_context_iteration(nullptr, FALSE)) // which brings the library up to date
    {
    }
    // As gmenu_tree_new_for_path does, which leaves the property out and so has the library lose its default.
    const char* const noName = nullptr;
    tree = static_cast<GMenuTree*>(g_object_new(GMENU_TYPE_TREE, "menu-path", reading.menuFile.c_str(), "menu-basename",
                                                noName, "flags", GMENU_TREE_FLAGS_NONE, nullptr));
    const bool loaded = gmenu_tree_load_sync(tree, nullptr) != FALSE;
    const TreeItemOwner root(loaded ? gmenu_tree_get_root_directory(tree) : nullptr);
    if (root != nullptr)
        TellContent(static_cast<GMenuTreeDirectory*>(root.get()), reading.receiver, 0);
    else
        TellAllPrograms(reading.receiver);
    g_signal_connect(tree, "changed", G_CALLBACK(OnChange), reinterpret_cast<gpointer>(reading.changed));
    reading.receiver.done(reading.receiver.context);
}

GAsyncQueue* Waiting()
{
    static GAsyncQueue* const readings = g_async_queue_new();
    return readings;
}

/// Readings are no sources of the context, since one that runs the context would be nested in another.
gpointer RunDefaultContext(gpointer)
{
    for (;;)
    {
        g_main_context_iteration(nullptr, TRUE);
        while (void* next = g_async_queue_try_pop(Waiting()))
            Read(*std::unique_ptr<Reading>(static_cast<Reading*>(next)));
    }
}

void BeginReading(const char* menuFile, MenuReceiver receiver, void (*changed)())
{
    g_async_queue_push(Waiting(), new Reading{menuFile, receiver, changed});
    static GThread* const thread = g_thread_new("orb-menu", RunDefaultContext, nullptr);
    static_cast<void>(thread);
    g_main_context_wakeup(nullptr);
}

} // namespace

} // namespace platform

extern "C" __attribute__((visibility("default")))
const platform::MenuService orb_menu_service = {platform::BeginReading};
