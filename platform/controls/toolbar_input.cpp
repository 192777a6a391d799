// The toolbar's hot item, mouse and keys.
//
// Every notification may do anything to the toolbar, its destruction included: after each, Alive() is asked before the
// window is used again, and indices are checked again.
#include "platform/controls/toolbar.h"

#include <utility>

namespace platform
{

namespace
{

constexpr DWORD kHicfLeftButton = 0x0080; ///< HICF_LMOUSE: the change comes with a press or release of the left button

} // namespace

/// Of the heights that the 16 bits of a mouse message can mean, the one near what the parent shows: the toolbar of a
/// long list is taller than they reach.
POINT Toolbar::PointOf(LPARAM lParam) const
{
    POINT shown = {0, 0};
    MapWindowPoints(GetParent(Window()), Window(), &shown, 1);
    return {GET_X_LPARAM(lParam), shown.y + static_cast<SHORT>(GET_Y_LPARAM(lParam) - shown.y)};
}

LRESULT Toolbar::HandleInput(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_MOUSEMOVE:
        OnMouseMove(PointOf(lParam));
        return 0;
    case WM_MOUSELEAVE:
        m_trackingLeave = false;
        SetPressed(false);
        ChangeHot(-1, HICF_MOUSE);
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        OnPress(PointOf(lParam));
        return 0;
    case WM_LBUTTONUP:
        OnRelease(PointOf(lParam));
        return 0;
    case WM_RBUTTONUP:
        return OnRightRelease(wParam, lParam);
    case WM_CAPTURECHANGED:
        CancelPress();
        return 0;
    case WM_SETFOCUS:
        OnFocus();
        return 0;
    case WM_KEYDOWN:
        return OnKey(wParam, lParam) ? 0 : Default(message, wParam, lParam);
    default:
        return Default(message, wParam, lParam);
    }
}

bool Toolbar::ChangeHot(int index, DWORD flags)
{
    index = m_column.Has(index) ? index : -1;
    if (index == m_hot)
        return true;
    NMTBHOTITEM change = {};
    change.idOld = m_hot >= 0 ? m_column.At(m_hot).command : 0;
    change.idNew = index >= 0 ? m_column.At(index).command : 0;
    change.dwFlags = flags | (m_hot < 0 ? HICF_ENTERING : 0) | (index < 0 ? HICF_LEAVING : 0);
    if (Notify(m_owner, TBN_HOTITEMCHANGE, change) != 0 || !Alive())
        return false;
    InvalidateButton(m_hot);
    m_hot = m_column.Has(index) && m_column.At(index).IsEnabled() ? index : -1;
    InvalidateButton(m_hot);
    return true;
}

int Toolbar::SetHotItem(int index)
{
    const int previous = m_hot;
    if (index < m_column.Count())
        ChangeHot(index, HICF_OTHER);
    return previous;
}

int Toolbar::ItemAt(POINT point) const
{
    const int index = m_column.HitTest(point);
    return index >= 0 ? index : -1;
}

void Toolbar::TrackLeaving()
{
    if (!m_trackingLeave)
    {
        TRACKMOUSEEVENT event = {sizeof(event), TME_LEAVE, Window(), 0};
        m_trackingLeave = TrackMouseEvent(&event);
    }
}

void Toolbar::OnMouseMove(POINT point)
{
    UpdateSize();
    TrackLeaving();
    const int item = ItemAt(point);
    SetPressed(item >= 0 && item == m_pressed);
    ChangeHot(item, HICF_MOUSE);
}

void Toolbar::OnPress(POINT point)
{
    UpdateSize();
    const int item = ItemAt(point);
    m_pressStarted = true;
    if (item >= 0)
    {
        ChangeHot(item, HICF_MOUSE | kHicfLeftButton);
        if (!Alive() || !m_column.Has(item))
            return;
        SetCapture(Window());
        m_pressed = item;
        SetPressed(true);
        UpdateWindow(Window());
    }
    if (Alive())
        NotifyMouse(NM_LDOWN, m_column.Has(item) ? item : -1, point);
}

void Toolbar::OnRelease(POINT point)
{
    UpdateSize();
    const bool startedHere = std::exchange(m_pressStarted, false);
    SetPressed(false);
    const int pressed = std::exchange(m_pressed, -1);
    const int item = ItemAt(point);
    if (GetCapture() == Window())
        ReleaseCapture();
    ChangeHot(item, HICF_MOUSE | kHicfLeftButton);
    // The release of a click that began elsewhere, such as the one that opened the menu, is no click here.
    if (!startedHere || !Alive())
        return;
    if (item >= 0 && item == pressed && m_column.Has(item) && m_column.At(item).IsEnabled())
        SendCommand(m_column.At(item).command);
    if (Alive())
        NotifyMouse(NM_CLICK, m_column.Has(item) ? item : -1, point);
}

LRESULT Toolbar::OnRightRelease(WPARAM keys, LPARAM lParam)
{
    UpdateSize();
    const POINT point = PointOf(lParam);
    const LRESULT handled = NotifyMouse(NM_RCLICK, ItemAt(point), point);
    return handled != 0 ? 0 : Default(WM_RBUTTONUP, keys, lParam);
}

bool Toolbar::OnKey(WPARAM key, LPARAM lParam)
{
    NMKEY press = {};
    press.nVKey = static_cast<UINT>(key);
    press.uFlags = HIWORD(lParam);
    if (Notify(m_owner, NM_KEYDOWN, press) != 0 || !Alive())
        return true;
    switch (key)
    {
    case VK_UP:
    case VK_LEFT:
        ChangeHot(NextItem(m_hot, -1), HICF_ARROWKEYS);
        return true;
    case VK_DOWN:
    case VK_RIGHT:
        ChangeHot(NextItem(m_hot, 1), HICF_ARROWKEYS);
        return true;
    case VK_RETURN:
    case VK_SPACE:
        if (m_hot >= 0)
            SendCommand(m_column.At(m_hot).command);
        return true;
    default:
        return false;
    }
}

void Toolbar::OnFocus()
{
    if (m_hot < 0)
        ChangeHot(NextItem(-1, 1), HICF_OTHER);
}

void Toolbar::CancelPress()
{
    SetPressed(false);
    m_pressed = -1;
    m_pressStarted = false;
}

void Toolbar::SetPressed(bool pressed)
{
    if (!m_column.Has(m_pressed))
        return;
    ToolbarButton& button = m_column.At(m_pressed);
    const auto state = static_cast<BYTE>(pressed ? button.state | TBSTATE_PRESSED : button.state & ~TBSTATE_PRESSED);
    if (state != button.state)
    {
        button.state = state;
        InvalidateButton(m_pressed);
    }
}

void Toolbar::SendCommand(int command)
{
    SendMessageW(m_owner, WM_COMMAND, static_cast<WPARAM>(static_cast<WORD>(command)),
                 reinterpret_cast<LPARAM>(Window()));
}

LRESULT Toolbar::NotifyMouse(UINT code, int index, POINT point)
{
    NMMOUSE mouse = {};
    mouse.dwItemSpec = static_cast<DWORD_PTR>(-1);
    if (index >= 0)
    {
        mouse.dwItemSpec = static_cast<DWORD_PTR>(m_column.At(index).command);
        mouse.dwItemData = m_column.At(index).data;
    }
    mouse.pt = point;
    return Notify(m_owner, code, mouse);
}

int Toolbar::NextItem(int from, int step) const
{
    const int count = m_column.Count();
    int index = from < 0 && step < 0 ? 0 : from;
    for (int tried = 0; tried < count; ++tried)
    {
        index = (index + step + count) % count;
        const ToolbarButton& button = m_column.At(index);
        if (!button.IsSeparator() && !button.IsHidden() && button.IsEnabled())
            return index;
    }
    return -1;
}

} // namespace platform
