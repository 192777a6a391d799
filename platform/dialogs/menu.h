// Menu objects: what a menu holds, without showing it.
#pragma once

#include "platform/base/handle_table.h"
#include "platform/drawing/icon.h"
#include "windows.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform
{

struct MenuItem
{
    UINT id = 0;
    UINT type = MFT_STRING;
    UINT state = 0;                   ///< MFS_…
    HMENU subMenu = nullptr;          ///< destroyed with the item
    HBITMAP bitmap = nullptr;         ///< the picture beside the text; the owner's, as the check marks are
    std::shared_ptr<IconSource> icon; ///< a picture made when the item is drawn, in place of `bitmap`
    HBITMAP checked = nullptr;
    HBITMAP unchecked = nullptr;
    ULONG_PTR data = 0;
    std::u16string text;

    bool IsSeparator() const { return (type & MFT_SEPARATOR) != 0; }
    bool IsEnabled() const { return (state & MFS_GRAYED) == 0; }
};

class Menu final : public HandleObject
{
public:
    static constexpr HandleKind kHandleKind = HandleKind::Menu;

    Menu() : HandleObject(kHandleKind) {}
    /// Destroys the sub-menus of its items.
    ~Menu() override;

    int Count() const { return static_cast<int>(items.size()); }
    bool Has(int position) const { return position >= 0 && position < Count(); }
    MenuItem& At(int position) { return items[static_cast<std::size_t>(position)]; }
    /// Makes one item, or none for −1, the default.
    void SetDefault(int position);

    std::vector<MenuItem> items;
    /// Called once, when the menu is about to show, with its handle; a sub-menu whose making takes time is filled so.
    std::function<void(HMENU)> fill;
};

/// An item of a menu, or of one of its sub-menus when it was asked for by command.
struct MenuPlace
{
    Menu* menu = nullptr;
    int position = -1;

    explicit operator bool() const { return menu != nullptr; }
    MenuItem& Item() const { return menu->At(position); }
};
MenuPlace FindMenuItem(HMENU menu, UINT item, bool byPosition);

} // namespace platform
