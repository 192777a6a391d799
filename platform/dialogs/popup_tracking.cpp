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
#include "platform/dialogs/popup_menu.h"
#include "platform/windowing/message_queue.h"
#include "platform/windowing/mnemonic_key.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace platform
{

namespace
{

constexpr UINT_PTR kRestTimer = 1;
constexpr UINT_PTR kScrollTimer = 2;
constexpr UINT kScrollPeriod = 60; // milliseconds
constexpr UINT kNothingSelected = 0xFFFF;

class PopupTracking
{
public:
    PopupTracking(HMENU menu, UINT flags, HWND owner) : m_menu(menu), m_flags(flags), m_owner(owner) {}

    /// False when the menu could not be shown.
    bool Run(POINT point, const std::optional<RECT>& exclude);
    void End() { m_ended = true; }
    void OnTimer(UINT_PTR id);
    UINT Chosen() const { return m_chosen; }

private:
    bool Begin();
    void Finish();
    bool Going() const;
    /// Going on, with a menu of this depth: to be asked after anything that sends messages.
    bool Shows(int depth) const { return Going() && depth <= Deepest(); }
    LRESULT Tell(UINT message, WPARAM wParam, LPARAM lParam) const;

    void TakeMessage();
    bool IsPressOutside(const MSG& message) const;
    void OnKey(const MSG& message);
    void OnLetter(const MSG& message);
    void OnMouse(const MSG& message);
    void OnPress(POINT point);
    void OnRelease(POINT point);
    void OnMove(POINT point);
    void OnWheel(const MSG& message);

    /// The menu at a point of the screen, −1 for none.
    int PopupAt(POINT point) const;
    /// The menu that the keys are for: the deepest one with a selected item.
    int ActiveDepth() const;
    int Deepest() const { return static_cast<int>(m_popups.size()) - 1; }
    PopupMenu& Popup(int depth) { return *m_popups[static_cast<std::size_t>(depth)].menu; }
    const PopupMenu& Popup(int depth) const { return *m_popups[static_cast<std::size_t>(depth)].menu; }
    /// The item whose sub-menu is open beside this menu, −1 for none.
    int OpenedFrom(int depth) const;

    bool Prepare(HMENU menu, int position);
    bool OpenRoot(POINT point, const std::optional<RECT>& exclude);
    bool OpenSubMenu(int depth, int item);
    void CloseBeyond(int depth);
    void Select(int depth, int item, bool byMouse);
    void MoveTo(int depth, int item);
    void Activate(int depth, int item);

    void StartRest(int depth, int item);
    void StopRest();
    void StartScrolling(int depth, int rows);
    void StopScrolling();

    struct OpenPopup
    {
        std::unique_ptr<PopupMenu> menu;
        int opener; ///< item of the menu before
    };

    HMENU m_menu;
    UINT m_flags;
    HWND m_owner;
    PopupFonts m_fonts;
    std::vector<OpenPopup> m_popups; ///< the first one is never closed by itself
    bool m_ended = false;
    UINT m_chosen = 0;
    POINT m_lastPoint{};      ///< of the pointer; a movement that ends there is none
    POINT m_openingPoint{};   ///< where the pointer was when the menu opened
    bool m_mayChoose = false; ///< a release is not that of the press which opened the menu
    int m_restDepth = -1;
    int m_restItem = -1;
    int m_scrollDepth = -1;
    int m_scrollRows = 0;
};

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

bool IsButton(UINT message, UINT left)
{
    // Left, right and middle are three messages apart.
    return message == left || message == left + 3 || message == left + 6;
}

bool IsPress(UINT message)
{
    return IsButton(message, WM_LBUTTONDOWN) || IsButton(message, WM_LBUTTONDBLCLK);
}

bool IsIn(UINT message, UINT first, UINT last)
{
    return message >= first && message <= last;
}

/// The high word of WM_MENUSELECT's wParam.
UINT SelectionFlags(const MenuItem& item, bool byMouse)
{
    return MF_HILITE | item.type | (item.state & (MFS_GRAYED | MFS_CHECKED | MFS_DEFAULT)) |
           (item.subMenu != nullptr ? MF_POPUP : 0U) | (byMouse ? MF_MOUSESELECT : 0U);
}

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

// --- messages

void PopupTracking::TakeMessage()
{
    MSG message{};
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE))
    {
        if (Going())
            WaitForMessage();
        return;
    }
    if (!Going())
        return;
    if (message.message == WM_QUIT || IsPressOutside(message))
    {
        End();
        return;
    }
    if (!PeekMessageW(&message, nullptr, message.message, message.message, PM_REMOVE) || !Going())
        return;
    if (message.message == WM_CHAR || message.message == WM_SYSCHAR)
        OnLetter(message);
    else if (IsIn(message.message, WM_KEYFIRST, WM_KEYLAST))
        OnKey(message);
    else if (IsIn(message.message, WM_MOUSEFIRST, WM_MOUSELAST))
        OnMouse(message);
    else
        DispatchMessageW(&message);
}

bool PopupTracking::IsPressOutside(const MSG& message) const
{
    return IsPress(message.message) && PopupAt(message.pt) < 0;
}

void PopupTracking::OnKey(const MSG& message)
{
    const int depth = ActiveDepth();
    const int hot = Popup(depth).Hot();
    const std::vector<MenuItem>& items = Popup(depth).Items();
    switch (MeaningOfKey(message.message, message.wParam, message.lParam))
    {
    case PopupKey::Nothing:
        TranslateMessage(&message);
        break;
    case PopupKey::Next:
        MoveTo(depth, NextItem(items, hot, 1));
        break;
    case PopupKey::Previous:
        MoveTo(depth, NextItem(items, hot, -1));
        break;
    case PopupKey::First:
        MoveTo(depth, NextItem(items, -1, 1));
        break;
    case PopupKey::Last:
        MoveTo(depth, NextItem(items, -1, -1));
        break;
    case PopupKey::OpenSubMenu:
        if (Popup(depth).Opens(hot))
            Activate(depth, hot);
        break;
    case PopupKey::CloseSubMenu:
        CloseBeyond(std::max(Deepest() - 1, 0));
        break;
    case PopupKey::Choose:
        Activate(depth, hot);
        break;
    case PopupKey::LeaveLevel:
        if (Deepest() == 0)
            End();
        else
            CloseBeyond(Deepest() - 1);
        break;
    case PopupKey::End:
        End();
        break;
    }
}

void PopupTracking::OnLetter(const MSG& message)
{
    const int depth = ActiveDepth();
    const std::vector<MenuItem>& items = Popup(depth).Items();
    const int hot = Popup(depth).Hot();
    LetterMatch match = FindLetter(items, hot, static_cast<WCHAR>(message.wParam));
    if (const WCHAR latin = LatinLetterOf(message); match.item < 0 && latin != 0)
        match = FindLetter(items, hot, latin);
    if (match.item < 0)
        return;
    MoveTo(depth, match.item);
    if (match.only && Shows(depth))
        Activate(depth, match.item);
}

void PopupTracking::OnMouse(const MSG& message)
{
    const bool rightButton =
        message.message == WM_RBUTTONDOWN || message.message == WM_RBUTTONDOWN + 2 || message.message == WM_RBUTTONUP;
    if (rightButton && (m_flags & TPM_RIGHTBUTTON) == 0)
        return;
    switch (message.message)
    {
    case WM_MOUSEMOVE:
        OnMove(message.pt);
        break;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDOWN + 2:
        OnPress(message.pt);
        break;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
        OnRelease(message.pt);
        break;
    case WM_MOUSEWHEEL:
        OnWheel(message);
        break;
    default:
        break;
    }
}

void PopupTracking::OnMove(POINT point)
{
    if (point.x == m_lastPoint.x && point.y == m_lastPoint.y)
        return; // a window has come or gone under the pointer
    m_lastPoint = point;
    m_mayChoose |= std::abs(point.x - m_openingPoint.x) > GetSystemMetrics(SM_CXDRAG) ||
                   std::abs(point.y - m_openingPoint.y) > GetSystemMetrics(SM_CYDRAG);
    StopScrolling();
    const int depth = PopupAt(point);
    if (depth < 0)
    {
        StopRest();
        Select(Deepest(), -1, true);
        return;
    }
    // Whoever has come here on the way across other items of the menus before: those that lead here count.
    for (int i = 0; i < depth; ++i)
        Popup(i).SetHot(OpenedFrom(i));
    const PopupHit hit = Popup(depth).HitTest(point);
    if (hit.part == PopupPart::ScrollUp || hit.part == PopupPart::ScrollDown)
        StartScrolling(depth, hit.part == PopupPart::ScrollUp ? -1 : 1);
    const bool open = depth < Deepest();
    if (hit.row < 0 && open)
        return;
    if (hit.row == OpenedFrom(depth) && open)
        StopRest();
    else if (hit.row != Popup(depth).Hot() && (open || Popup(depth).Opens(hit.row)))
        StartRest(depth, hit.row);
    else if (hit.row != Popup(depth).Hot())
        StopRest();
    Select(depth, hit.row, true);
}

void PopupTracking::OnPress(POINT point)
{
    m_mayChoose = true;
    const int depth = PopupAt(point);
    const PopupHit hit = depth >= 0 ? Popup(depth).HitTest(point) : PopupHit{};
    if (hit.row < 0)
        return;
    StopRest();
    if (hit.row == OpenedFrom(depth))
        return;
    Select(depth, hit.row, true);
    CloseBeyond(depth);
    if (Shows(depth))
        OpenSubMenu(depth, hit.row);
}

void PopupTracking::OnRelease(POINT point)
{
    const int depth = PopupAt(point);
    const PopupHit hit = depth >= 0 ? Popup(depth).HitTest(point) : PopupHit{};
    if (hit.row >= 0 && m_mayChoose && Popup(depth).At(hit.row).subMenu == nullptr)
        Activate(depth, hit.row);
}

void PopupTracking::OnWheel(const MSG& message)
{
    const int depth = PopupAt(message.pt);
    const int delta = static_cast<SHORT>(HIWORD(message.wParam));
    if (depth < 0 || !Popup(depth).ScrollBy(delta > 0 ? -1 : 1))
        return;
    StopRest();
    CloseBeyond(depth);
    if (Shows(depth))
        Select(depth, Popup(depth).HitTest(message.pt).row, true);
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

} // namespace

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
