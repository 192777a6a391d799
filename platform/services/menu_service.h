// The desktop's applications menu, by the desktop menu specification. Read by libgnome-menu.
#pragma once

namespace platform
{

/// UTF-8, valid until the receiver returns.
struct MenuItemFacts
{
    const char* id;    ///< a category's name in the menu file, a program's desktop file identifier
    const char* name;  ///< in the user's language
    const char* icons; ///< as in FileFacts
    const char* path;  ///< of the program's entry, or of the entry that describes the category; null when there is none
};

/// Takes in one reading of the menu. The functions are called on the menu's thread, in the order of the tree.
struct MenuReceiver
{
    void* context;
    /// What follows is in this category, until `endCategory`.
    void (*beginCategory)(void* context, const MenuItemFacts& category);
    void (*endCategory)(void* context);
    void (*program)(void* context, const MenuItemFacts& program);
    /// The reading is over; nothing more will come.
    void (*done)(void* context);
};

struct MenuService
{
    /// Reads the menu of a menu file (its path), or, when it makes none, every program that menus show, without
    /// categories. Returns at once. Readings are done one after the other on a thread of their own; a menu file can be
    /// written so that its reading never ends.
    /// From then on `changed` is called on that thread when the menu may have another content than it was read with.
    void (*read)(const char* menuFile, MenuReceiver receiver, void (*changed)());
};

} // namespace platform

extern "C" const platform::MenuService orb_menu_service;
