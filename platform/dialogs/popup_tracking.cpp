// TrackPopupMenuEx: the loop in which a popup menu and its sub-menus are used.
//
// The keyboard stays with the owner's window; the loop takes the keys out of the queue. The owner has the mouse
// captured for as long, and that is what holds the menu: whoever takes the capture away (WM_CANCELMODE, another program
// that gets the keyboard, the owner being hidden or destroyed) ends it. The display is not asked to grab anything, so a
// press outside stays what it was: in a window of this program it is left in the queue, elsewhere it goes where it
// went.
//
// Not implemented: WM_MENUCHAR, WM_MENUDRAG, WM_ENTERIDLE, TPM_RECURSE, animation, reading from right to left.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/dialogs/popup_keys.h"
#include "platform/dialogs/popup_tracking.h"
#include "platform/windowing/message_queue.h"

#include <algorithm>
#include <utility>

namespace platform
{

namespace
{

constexpr UINT_PTR kRestTimer = 1;
constexpr UINT_PTR kScrollTimer = 2;
constexpr UINT kScrollPeriod = 60; // milliseconds
constexpr UINT kNothingSelected = 0xFFFF;

constinit PopupTracking* g_tracking = nullptr;

void CALLBACK TimerProcedure(HWND, UINT, UINT_PTR id, DWORD)
{
    if (g_tracking != nullptr)
        g_tracking->OnTimer(id);
}

RECT WorkAreaAt(POINT point)
{
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    GetMonitorInfoW(MonitorFromPoint(point, MONITOR_DEFAULTTONEAREST), &info);
    return info.rcWork;
}

SIZE SizeOf(const RECT& rect)
{
    return {rect.right - rect.left, rect.bottom - rect.top};
}

/// The high word of WM_MENUSELECT's wParam.
UINT SelectionFlags(const MenuItem& item, bool byMouse)
{
    return MF_HILITE | item.type | (item.state & (MFS_GRAYED | MFS_CHECKED | MFS_DEFAULT)) |
           (item.subMenu != nullptr ? MF_POPUP : 0U) | (byMouse ? MF_MOUSESELECT : 0U);
}

} // namespace

bool PopupTracking::Going() const
{
    return !m_ended && !m_popups.empty() && Popup(0).Window() != nullptr && GetCapture() == m_owner &&
           FindObject<Menu>(m_menu) != nullptr;
}

LRESULT PopupTracking::Tell(UINT message, WPARAM wParam, LPARAM lParam) const
{
    const bool wanted = (m_flags & TPM_NONOTIFY) == 0 && IsWindow(m_owner);
    return wanted ? SendMessageW(m_owner, message, wParam, lParam) : 0;
}

bool PopupTracking::Run(POINT point, const std::optional<RECT>& exclude)
{
    g_tracking = this;
    const bool shown = Begin() && OpenRoot(point, exclude);
    while (Going())
        TakeMessage();
    Finish();
    g_tracking = nullptr;
    return shown;
}

/// What comes before the first menu is there; false when the owner did not survive it.
bool PopupTracking::Begin()
{
    Tell(WM_ENTERMENULOOP, TRUE, 0);
    if (IsWindow(m_owner))
        SendMessageW(m_owner, WM_SETCURSOR, reinterpret_cast<WPARAM>(m_owner), MAKELPARAM(HTCAPTION, 0));
    Tell(WM_INITMENU, reinterpret_cast<WPARAM>(m_menu), 0);
    if (!IsWindow(m_owner))
        return false;
    SetCapture(m_owner);
    SetCursor(LoadCursorW(nullptr, IDC_ARROW));
    return GetCapture() == m_owner && !m_ended;
}

void PopupTracking::Finish()
{
    CloseBeyond(-1);
    if (GetCapture() == m_owner)
        ReleaseCapture();
    Tell(WM_MENUSELECT, MAKEWPARAM(0, kNothingSelected), 0);
    Tell(WM_EXITMENULOOP, TRUE, 0);
}

// --- menus

int PopupTracking::PopupAt(POINT point) const
{
    for (int depth = Deepest(); depth >= 0; --depth)
        if (Popup(depth).Contains(point))
            return depth;
    return -1;
}

int PopupTracking::ActiveDepth() const
{
    int depth = Deepest();
    while (depth > 0 && Popup(depth).Hot() < 0)
        --depth;
    return depth;
}

int PopupTracking::OpenedFrom(int depth) const
{
    return depth < Deepest() ? m_popups[static_cast<std::size_t>(depth) + 1].opener : -1;
}

/// Has a menu filled that is about to show; false when there is nothing to show then.
bool PopupTracking::Prepare(HMENU handle, int position)
{
    auto* menu = FindObject<Menu>(handle);
    if (menu == nullptr)
        return false;
    if (const auto fill = std::exchange(menu->fill, nullptr))
        fill(handle);
    Tell(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(handle), MAKELPARAM(position, FALSE));
    menu = FindObject<Menu>(handle);
    return menu != nullptr && !menu->items.empty() && IsWindow(m_owner) && !m_ended;
}

bool PopupTracking::OpenRoot(POINT point, const std::optional<RECT>& exclude)
{
    if (!Prepare(m_menu, 0))
        return false;
    const RECT work = WorkAreaAt(point);
    auto popup = std::make_unique<PopupMenu>(*FindObject<Menu>(m_menu), m_menu, m_fonts, SizeOf(work));
    // Not the message's point: opened by keys, the menu may show under a pointer that has rested over another program.
    GetCursorPos(&m_lastPoint);
    m_openingPoint = m_lastPoint;
    if (!popup->Show(PlacePopup(popup->WindowSize(), point, m_flags, exclude, work), m_owner))
        return false;
    m_popups.push_back({std::move(popup), -1});
    return true;
}

bool PopupTracking::OpenSubMenu(int depth, int item)
{
    if (!Popup(depth).Opens(item))
        return false;
    const HMENU menu = Popup(depth).At(item).subMenu;
    const bool again =
        std::ranges::any_of(m_popups, [&](const OpenPopup& open) { return open.menu->Handle() == menu; });
    if (again || !Prepare(menu, item) || !Going() || depth != Deepest())
        return false;
    const RECT row = Popup(depth).RowOnScreen(item);
    const RECT work = WorkAreaAt({row.left, row.top});
    auto popup = std::make_unique<PopupMenu>(*FindObject<Menu>(menu), menu, m_fonts, SizeOf(work));
    if (!popup->Show(PlaceSubPopup(popup->WindowSize(), row, PopupMenu::kFrame, work), m_owner))
        return false;
    m_popups.push_back({std::move(popup), item});
    return Going();
}

void PopupTracking::CloseBeyond(int depth)
{
    while (Deepest() > depth)
    {
        const HMENU menu = m_popups.back().menu->Handle();
        m_popups.pop_back();
        Tell(WM_UNINITMENUPOPUP, reinterpret_cast<WPARAM>(menu), 0);
    }
}

void PopupTracking::Select(int depth, int item, bool byMouse)
{
    PopupMenu& popup = Popup(depth);
    if (popup.Hot() == item)
        return;
    popup.SetHot(item);
    if (!popup.Has(item))
    {
        Tell(WM_MENUSELECT, MAKEWPARAM(0, MF_HILITE | (byMouse ? MF_MOUSESELECT : 0)),
             reinterpret_cast<LPARAM>(popup.Handle()));
        return;
    }
    const MenuItem& selected = popup.At(item);
    const UINT name = selected.subMenu != nullptr ? static_cast<UINT>(item) : selected.id;
    Tell(WM_MENUSELECT, MAKEWPARAM(name, SelectionFlags(selected, byMouse)), reinterpret_cast<LPARAM>(popup.Handle()));
}

/// Selects by key.
void PopupTracking::MoveTo(int depth, int item)
{
    StopRest();
    CloseBeyond(depth);
    if (item < 0 || !Shows(depth))
        return;
    Popup(depth).ScrollTo(item);
    Select(depth, item, false);
}

/// Chooses an item, or enters its sub-menu.
void PopupTracking::Activate(int depth, int item)
{
    StopRest();
    if (!Popup(depth).Has(item) || !Popup(depth).At(item).IsEnabled() || Popup(depth).At(item).IsSeparator())
        return;
    if (Popup(depth).At(item).subMenu == nullptr)
    {
        m_chosen = Popup(depth).At(item).id;
        End();
        return;
    }
    if (OpenedFrom(depth) != item)
    {
        CloseBeyond(depth);
        if (!Shows(depth) || !OpenSubMenu(depth, item))
            return;
    }
    MoveTo(depth + 1, NextItem(Popup(depth + 1).Items(), -1, 1));
}

// --- timers

void PopupTracking::StartRest(int depth, int item)
{
    DWORD delay = 0;
    SystemParametersInfoW(SPI_GETMENUSHOWDELAY, 0, &delay, 0);
    m_restDepth = depth;
    m_restItem = item;
    SetTimer(Popup(0).Window(), kRestTimer, delay, TimerProcedure);
}

void PopupTracking::StopRest()
{
    if (std::exchange(m_restDepth, -1) >= 0)
        KillTimer(Popup(0).Window(), kRestTimer);
}

void PopupTracking::StartScrolling(int depth, int rows)
{
    m_scrollDepth = depth;
    m_scrollRows = rows;
    SetTimer(Popup(0).Window(), kScrollTimer, kScrollPeriod, TimerProcedure);
}

void PopupTracking::StopScrolling()
{
    if (std::exchange(m_scrollDepth, -1) >= 0)
        KillTimer(Popup(0).Window(), kScrollTimer);
}

void PopupTracking::OnTimer(UINT_PTR id)
{
    if (!Going())
        return;
    if (id == kScrollTimer)
    {
        const int depth = m_scrollDepth;
        if (depth < 0 || depth > Deepest() || !Popup(depth).ScrollBy(m_scrollRows))
            StopScrolling();
        else
            CloseBeyond(depth);
        return;
    }
    const int depth = m_restDepth;
    StopRest();
    if (depth < 0 || depth > Deepest() || Popup(depth).Hot() != m_restItem)
        return;
    CloseBeyond(depth);
    if (Shows(depth))
        OpenSubMenu(depth, m_restItem);
}

} // namespace platform

using namespace platform;

BOOL TrackPopupMenuEx(HMENU menu, UINT flags, int x, int y, HWND owner, TPMPARAMS* params)
{
    if (FaultPoint("TrackPopupMenuEx"))
        return Fail(ERROR_NOT_ENOUGH_MEMORY, FALSE);
    if (FindObject<Menu>(menu) == nullptr)
        return Fail(ERROR_INVALID_MENU_HANDLE, FALSE);
    if (!IsWindow(owner))
        return Fail(ERROR_INVALID_WINDOW_HANDLE, FALSE);
    if (params != nullptr && params->cbSize != sizeof(TPMPARAMS))
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    if (g_tracking != nullptr)
        return Fail(ERROR_POPUP_ALREADY_ACTIVE, FALSE);
    PopupTracking tracking(menu, flags, owner);
    const bool shown = tracking.Run({x, y}, params != nullptr ? std::optional(params->rcExclude) : std::nullopt);
    const UINT chosen = tracking.Chosen();
    if ((flags & TPM_RETURNCMD) != 0)
        return static_cast<BOOL>(chosen);
    if (chosen != 0 && IsWindow(owner))
        PostMessageW(owner, WM_COMMAND, chosen, 0);
    return shown;
}

BOOL EndMenu()
{
    if (g_tracking == nullptr)
        return Fail(ERROR_ACCESS_DENIED, FALSE);
    g_tracking->End();
    return TRUE;
}
