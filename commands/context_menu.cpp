// Filling an item's context menu with the launcher's own entries and showing it. The entries are listed in
// command_table.cpp; what is chosen goes to dispatch.cpp.
#include "commands/context_menu.h"

#include "app/launcher_state.h"
#include "commands/command_table.h"
#include "commands/dispatch.h"
#include "commands/menu_pictures.h"
#include "content/ordering.h"
#include "geometry/dpi_scale.h"
#include "menu/level_ref.h"

namespace CustomMenu
{

namespace
{

constexpr int kPictureSize = 16; ///< pixels at 96 DPI

static_assert(sizeof(void*) != 4 || sizeof(TPMPARAMS) == 20);

/// The menu shows the pictures but does not own them.
using MenuPictures = std::vector<UniqueBitmap>;

void SetPicture(HMENU menu, const MenuEntry& entry, MenuPictures& pictures)
{
    UniqueBitmap picture = MakeMenuPicture(entry.picture, g_dpi.Scaled(kPictureSize));
    if (!picture)
        return;
    MENUITEMINFOW info{};
    info.cbSize = sizeof(info);
    info.fMask = MIIM_BITMAP;
    info.hbmpItem = picture.Get();
    SetMenuItemInfoW(menu, static_cast<UINT>(entry.identifier), FALSE, &info);
    pictures.push_back(std::move(picture));
}

void SetCheckMark(HMENU menu, const MenuEntry& entry)
{
    MENUITEMINFOW info{};
    info.cbSize = sizeof(info);
    info.fMask = MIIM_STATE;
    info.fState = MFS_CHECKED;
    SetMenuItemInfoW(menu, static_cast<UINT>(entry.identifier), FALSE, &info);
}

MenuPictures AppendOwnEntries(HMENU menu, const std::vector<MenuEntry>& entries)
{
    MenuPictures pictures;
    for (const MenuEntry& entry : entries)
    {
        if (entry.identifier == 0)
        {
            AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
            continue;
        }
        AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(entry.identifier), entry.text);
        if (entry.picture != 0)
            SetPicture(menu, entry, pictures);
        if (entry.checked)
            SetCheckMark(menu, entry);
    }
    return pictures;
}

bool IsByKeyboard(POINT point)
{
    return point.x == -1 && point.y == -1;
}

RECT ButtonOnScreen(const CustomBar& level, int button)
{
    const RECT rect = level.ButtonRect(button);
    POINT topLeft{rect.left, rect.top};
    POINT bottomRight{rect.right, rect.bottom};
    if (ClientToScreen(level.m_toolbar, &topLeft))
        ClientToScreen(level.m_toolbar, &bottomRight);
    return {topLeft.x, topLeft.y, bottomRight.x, bottomRight.y};
}

/// Identifier of the chosen entry, 0 for none. While the menu shows, the highlight stays on the item.
int TrackMenu(CustomBar& level, HMENU menu, int index, POINT point)
{
    TPMPARAMS params{};
    params.cbSize = sizeof(params);
    const bool byKeyboard = IsByKeyboard(point);
    if (byKeyboard)
    {
        params.rcExclude = ButtonOnScreen(level, level.m_items[index].order);
        point = {params.rcExclude.left, params.rcExclude.top};
    }
    level.m_contextIndex = index;
    KillTimer(level.m_hWnd, kHoverTimer);
    const int chosen =
        TrackPopupMenuEx(menu, TPM_RETURNCMD, point.x, point.y, level.m_hWnd, byKeyboard ? &params : nullptr);
    level.m_contextIndex = -1;
    return chosen;
}

} // namespace

void ShowContextMenu(CustomBar& level, int index, POINT point)
{
    const LevelRef held(level);
    const MenuItem& item = level.m_items[index];
    const std::uint32_t key = item.key;
    const int button = item.order;
    ItemMenu menu(level, item);
    if (GetActiveWindow() != level.m_hWnd)
        SetActiveWindow(level.m_hWnd);
    DestroyLevelsAfter(level);
    level.SetHotItem(button);
    // The shell may dispatch messages, and the menu does: afterwards the level may be closing, its items others.
    if (!menu.Query((menu.ItemFlags() & MIF_PROTECTED) != 0 ? CMF_NORMAL : CMF_CANRENAME) || level.m_closing)
        return;
    index = FindAgain(level.m_items, index, key);
    if (index < 0)
        return;
    menu.RemoveUnwantedEntries();
    int chosen = 0;
    {
        const MenuPictures pictures =
            AppendOwnEntries(menu.Menu(), OwnEntries(level.m_items, index, level.IsRoot(), g_launcher.m_options));
        chosen = TrackMenu(level, menu.Menu(), index, point);
    }
    if (!level.m_closing)
        DispatchCommand(level, menu,
                        {ItemCommandMode::ContextMenu, FindAgain(level.m_items, index, key), point, chosen});
}

} // namespace CustomMenu
