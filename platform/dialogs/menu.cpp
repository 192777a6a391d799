// Menu objects and the calls that read and change them.
//
// Not implemented: menu bars, owner-drawn items, accelerators, help ids.
#include "platform/dialogs/menu.h"

#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"

#include <algorithm>

namespace platform
{

namespace
{

constexpr int kDeepestMenu = 25; ///< levels searched; a menu that contains itself must not hang the search
constexpr UINT kStateFlags = MFS_GRAYED | MFS_CHECKED;
constexpr UINT kNoItem = static_cast<UINT>(-1);

MenuPlace FindByCommand(HMENU handle, UINT command, int depth)
{
    auto* menu = FindObject<Menu>(handle);
    if (menu == nullptr || depth > kDeepestMenu)
        return {};
    for (int i = 0; i < menu->Count(); ++i)
    {
        const MenuItem& item = menu->At(i);
        if (item.subMenu == nullptr && item.id == command)
            return {menu, i};
        if (const MenuPlace nested = FindByCommand(item.subMenu, command, depth + 1))
            return nested;
    }
    return {};
}

void CopyString(const std::u16string& text, MENUITEMINFOW& info)
{
    if (info.dwTypeData == nullptr || info.cch == 0)
    {
        info.cch = static_cast<UINT>(text.size());
        return;
    }
    const std::size_t length = std::min<std::size_t>(text.size(), info.cch - 1);
    *std::copy_n(text.begin(), length, info.dwTypeData) = u'\0';
    info.cch = static_cast<UINT>(length);
}

void ReadItem(const MenuItem& item, MENUITEMINFOW& info)
{
    const auto read = [&](UINT mask, auto& field, const auto& value)
    {
        if ((info.fMask & mask) != 0)
            field = value;
    };
    read(MIIM_FTYPE, info.fType, item.type);
    read(MIIM_STATE, info.fState, item.state);
    read(MIIM_ID, info.wID, item.id);
    read(MIIM_SUBMENU, info.hSubMenu, item.subMenu);
    read(MIIM_DATA, info.dwItemData, item.data);
    read(MIIM_BITMAP, info.hbmpItem, item.bitmap);
    if ((info.fMask & MIIM_STRING) != 0)
        CopyString(item.text, info);
}

void WriteItem(Menu& menu, int position, const MENUITEMINFOW& info)
{
    MenuItem& item = menu.At(position);
    const auto write = [&](UINT mask, auto& field, const auto& value)
    {
        if ((info.fMask & mask) != 0)
            field = value;
    };
    write(MIIM_FTYPE, item.type, info.fType);
    write(MIIM_ID, item.id, info.wID);
    write(MIIM_SUBMENU, item.subMenu, info.hSubMenu);
    write(MIIM_DATA, item.data, info.dwItemData);
    write(MIIM_BITMAP, item.bitmap, info.hbmpItem);
    if ((info.fMask & MIIM_STRING) != 0)
        item.text = info.dwTypeData != nullptr ? info.dwTypeData : u"";
    if ((info.fMask & MIIM_STATE) != 0)
    {
        item.state = info.fState & kStateFlags;
        if ((info.fState & MFS_DEFAULT) != 0)
            menu.SetDefault(position);
    }
}

bool IsInfo(const MENUITEMINFOW* info)
{
    // The structure has grown once: without hbmpItem it is the older one.
    return info != nullptr && info->cbSize >= offsetof(MENUITEMINFOW, hbmpItem) && info->cbSize <= sizeof(*info);
}

} // namespace

Menu::~Menu()
{
    for (const MenuItem& item : items)
        DestroyMenu(item.subMenu);
}

void Menu::SetDefault(int position)
{
    for (int i = 0; i < Count(); ++i)
    {
        MenuItem& item = At(i);
        item.state = i == position ? item.state | MFS_DEFAULT : item.state & ~static_cast<UINT>(MFS_DEFAULT);
    }
}

MenuPlace FindMenuItem(HMENU handle, UINT item, bool byPosition)
{
    if (!byPosition)
        return FindByCommand(handle, item, 0);
    auto* menu = FindObject<Menu>(handle);
    const int position = static_cast<int>(item);
    return menu != nullptr && menu->Has(position) ? MenuPlace{menu, position} : MenuPlace{};
}

} // namespace platform

using namespace platform;

HMENU CreatePopupMenu()
{
    if (FaultPoint("CreatePopupMenu"))
        return Fail<HMENU>(ERROR_NOT_ENOUGH_MEMORY, nullptr);
    return reinterpret_cast<HMENU>(InsertHandle(std::make_unique<Menu>()));
}

BOOL DestroyMenu(HMENU menu)
{
    if (FindObject<Menu>(menu) == nullptr)
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    // Taken out of the table before its sub-menus go, so that a menu in itself is destroyed once.
    return TakeHandle(reinterpret_cast<std::uintptr_t>(menu)) != nullptr;
}

BOOL AppendMenuW(HMENU handle, UINT flags, UINT_PTR idOrSubMenu, LPCWSTR text)
{
    auto* menu = FindObject<Menu>(handle);
    if (menu == nullptr || FaultPoint("AppendMenuW"))
        return Fail(menu == nullptr ? ERROR_INVALID_HANDLE : ERROR_NOT_ENOUGH_MEMORY, FALSE);
    MenuItem item;
    item.type = flags & MF_SEPARATOR;
    item.state = flags & kStateFlags;
    if ((flags & MF_POPUP) != 0)
        item.subMenu = reinterpret_cast<HMENU>(idOrSubMenu);
    item.id = static_cast<UINT>(idOrSubMenu);
    item.text = text != nullptr && !item.IsSeparator() ? text : u"";
    menu->items.push_back(std::move(item));
    return TRUE;
}

BOOL InsertMenuItemW(HMENU handle, UINT item, BOOL byPosition, const MENUITEMINFOW* info)
{
    auto* menu = FindObject<Menu>(handle);
    if (menu == nullptr || !IsInfo(info))
        return Fail(menu == nullptr ? ERROR_INVALID_HANDLE : ERROR_INVALID_PARAMETER, FALSE);
    if (FaultPoint("InsertMenuItemW"))
        return Fail(ERROR_NOT_ENOUGH_MEMORY, FALSE);
    const MenuPlace before = FindMenuItem(handle, item, byPosition != FALSE);
    Menu& target = before ? *before.menu : *menu;
    const int position = before ? before.position : target.Count();
    target.items.emplace(target.items.begin() + position);
    WriteItem(target, position, *info);
    return TRUE;
}

BOOL SetMenuItemInfoW(HMENU handle, UINT item, BOOL byPosition, const MENUITEMINFOW* info)
{
    const MenuPlace place = FindMenuItem(handle, item, byPosition != FALSE);
    if (!place || !IsInfo(info) || FaultPoint("SetMenuItemInfoW"))
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    WriteItem(*place.menu, place.position, *info);
    return TRUE;
}

BOOL GetMenuItemInfoW(HMENU handle, UINT item, BOOL byPosition, MENUITEMINFOW* info)
{
    const MenuPlace place = FindMenuItem(handle, item, byPosition != FALSE);
    if (!place || !IsInfo(info) || FaultPoint("GetMenuItemInfoW"))
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    ReadItem(place.Item(), *info);
    return TRUE;
}

BOOL DeleteMenu(HMENU handle, UINT item, UINT flags)
{
    const MenuPlace place = FindMenuItem(handle, item, (flags & MF_BYPOSITION) != 0);
    if (!place || FaultPoint("DeleteMenu"))
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    const HMENU subMenu = place.Item().subMenu;
    place.menu->items.erase(place.menu->items.begin() + place.position);
    if (subMenu != nullptr)
        DestroyMenu(subMenu);
    return TRUE;
}

int GetMenuItemCount(HMENU handle)
{
    const auto* menu = FindObject<Menu>(handle);
    return menu != nullptr ? menu->Count() : Fail(ERROR_INVALID_HANDLE, -1);
}

UINT GetMenuItemID(HMENU handle, int position)
{
    const MenuPlace place = FindMenuItem(handle, static_cast<UINT>(position), true);
    return place && place.Item().subMenu == nullptr ? place.Item().id : kNoItem;
}

BOOL SetMenuDefaultItem(HMENU handle, UINT item, UINT byPosition)
{
    auto* menu = FindObject<Menu>(handle);
    if (menu == nullptr)
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    if (item == kNoItem)
    {
        menu->SetDefault(-1);
        return TRUE;
    }
    const MenuPlace place = FindMenuItem(handle, item, byPosition != 0);
    if (place.menu != menu)
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    menu->SetDefault(place.position);
    return TRUE;
}

UINT GetMenuDefaultItem(HMENU handle, UINT byPosition, UINT flags)
{
    auto* menu = FindObject<Menu>(handle);
    for (int i = 0; menu != nullptr && i < menu->Count(); ++i)
    {
        const MenuItem& item = menu->At(i);
        if ((item.state & MFS_DEFAULT) == 0)
            continue;
        if (item.subMenu != nullptr && (flags & GMDI_GOINTOPOPUPS) != 0)
        {
            const UINT nested = GetMenuDefaultItem(item.subMenu, byPosition, flags);
            if (nested != kNoItem)
                return nested;
        }
        const bool counts = item.IsEnabled() || (flags & GMDI_USEDISABLED) != 0;
        return !counts ? kNoItem : byPosition != 0 ? static_cast<UINT>(i) : item.id;
    }
    return kNoItem;
}

BOOL EnableMenuItem(HMENU menu, UINT item, UINT flags)
{
    const MenuPlace place = FindMenuItem(menu, item, (flags & MF_BYPOSITION) != 0);
    if (!place)
        return -1;
    const UINT before = place.Item().state & MFS_GRAYED;
    place.Item().state = (place.Item().state & ~static_cast<UINT>(MFS_GRAYED)) | (flags & MFS_GRAYED);
    return static_cast<BOOL>(before);
}
