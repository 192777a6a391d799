// The button control: what it does, and how it looks.
#include "platform/controls/button.h"

#include "platform/windowing/window_class.h"

#include <algorithm>
#include <string>
#include <utility>

namespace platform
{

namespace
{

constinit SystemClass g_class{TEXT("Button"), &Button::Procedure, CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW};

[[gnu::constructor]] void OfferClass()
{
    OfferSystemClass(g_class);
}

constexpr DWORD kKindMask = 0x000F; // BS_TYPEMASK

/// A tick on a grid of thirteen by thirteen, which the box measures at 100 %.
void PaintTick(HDC dc, const RECT& box, int color)
{
    POINT tick[] = {{3, 5}, {5, 7}, {10, 2}, {10, 5}, {5, 10}, {3, 8}};
    for (POINT& point : tick)
        point = {box.left + MulDiv(point.x, box.right - box.left, 13),
                 box.top + MulDiv(point.y, box.bottom - box.top, 13)};
    FillPolygon(dc, tick, color);
}

bool Contains(HWND window, POINT point)
{
    RECT client;
    GetClientRect(window, &client);
    return PtInRect(&client, point);
}

} // namespace

DWORD Button::Kind() const
{
    return Style() & kKindMask;
}

bool Button::IsCheckBox() const
{
    return Kind() == BS_CHECKBOX || Kind() == BS_AUTOCHECKBOX;
}

LRESULT Button::DialogCode() const
{
    if (IsCheckBox())
        return DLGC_BUTTON;
    return DLGC_BUTTON | (Kind() == BS_DEFPUSHBUTTON ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
}

LRESULT Button::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_GETDLGCODE:
        return DialogCode();
    case BM_GETCHECK:
        return static_cast<LRESULT>(m_check);
    case BM_SETCHECK:
        SetCheck(wParam);
        return 0;
    case BM_SETSTYLE:
        SetKind(static_cast<DWORD>(wParam));
        return 0;
    case BM_CLICK:
        Press();
        Release(true);
        return 0;
    default:
        return HandleInput(message, wParam, lParam);
    }
}

LRESULT Button::HandleInput(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        Press();
        return 0;
    case WM_MOUSEMOVE:
        SetHot(true);
        SetDown(m_pressing && Contains(Window(), PointFrom(lParam)));
        return 0;
    case WM_MOUSELEAVE:
        SetHot(false);
        return 0;
    case WM_LBUTTONUP:
        Release(Contains(Window(), PointFrom(lParam)));
        return 0;
    case WM_CAPTURECHANGED:
        m_pressing = false;
        SetDown(false);
        return 0;
    case WM_KEYDOWN:
        m_pressing = m_pressing || wParam == VK_SPACE;
        SetDown(m_pressing);
        return wParam == VK_SPACE ? 0 : Default(message, wParam, lParam);
    case WM_KEYUP:
        Release(wParam == VK_SPACE);
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(Window(), nullptr, TRUE);
        return 0;
    default:
        return LabelControl::Handle(message, wParam, lParam);
    }
}

void Button::SetKind(DWORD kind)
{
    SetWindowLongPtrW(Window(), GWL_STYLE, static_cast<LONG_PTR>((Style() & ~kKindMask) | (kind & kKindMask)));
    if (Alive())
        Redraw();
}

void Button::SetCheck(WPARAM check)
{
    if (IsCheckBox() && std::exchange(m_check, check != 0 ? BST_CHECKED : BST_UNCHECKED) != m_check)
        Redraw();
}

void Button::SetDown(bool down)
{
    if (std::exchange(m_down, down) != down)
        InvalidateRect(Window(), nullptr, TRUE);
}

void Button::SetHot(bool hot)
{
    if (std::exchange(m_hot, hot) == hot)
        return;
    if (hot)
    {
        TRACKMOUSEEVENT event = {sizeof(event), TME_LEAVE, Window(), 0};
        TrackMouseEvent(&event);
    }
    InvalidateRect(Window(), nullptr, TRUE);
}

void Button::Press()
{
    SetFocus(Window());
    if (!Alive())
        return;
    SetCapture(Window());
    m_pressing = Alive();
    SetDown(m_pressing);
}

void Button::Release(bool inside)
{
    const bool pressed = std::exchange(m_pressing, false);
    SetDown(false);
    if (GetCapture() == Window())
        ReleaseCapture();
    if (pressed && inside)
        Click();
}

void Button::Click()
{
    if (Kind() == BS_AUTOCHECKBOX)
        SetCheck(m_check == BST_UNCHECKED);
    SendMessageW(GetParent(Window()), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(Window()), BN_CLICKED),
                 reinterpret_cast<LPARAM>(Window()));
}

void Button::Paint(HDC dc, const RECT& client)
{
    if (IsCheckBox())
        PaintCheckBox(dc, client);
    else
        PaintPush(dc, client);
}

void Button::PaintPush(HDC dc, RECT rect)
{
    FillRect(dc, &rect, GetSysColorBrush(m_hot && !m_down ? COLOR_BTNHIGHLIGHT : COLOR_BTNFACE));
    FrameColors(dc, rect, COLOR_BTNSHADOW, COLOR_BTNSHADOW);
    if (Kind() == BS_DEFPUSHBUTTON)
    {
        InflateRect(&rect, -1, -1);
        FrameColors(dc, rect, COLOR_HIGHLIGHT, COLOR_HIGHLIGHT);
    }
    RECT label = rect;
    if (m_down)
        OffsetRect(&label, 1, 1);
    PaintLine(dc, label, DT_CENTER);
    if (GetFocus() == Window())
    {
        InflateRect(&rect, -3, -3);
        DrawFocusRect(dc, &rect);
    }
}

void Button::PaintCheckBox(HDC dc, RECT rect)
{
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    const LONG side = metrics.tmHeight * 4 / 5;
    const LONG top = (rect.top + rect.bottom - side) / 2;
    const RECT box = {rect.left, top, rect.left + side, top + side};
    FillRect(dc, &box, GetSysColorBrush(m_down ? COLOR_BTNFACE : COLOR_WINDOW));
    FrameColors(dc, box, m_hot ? COLOR_HIGHLIGHT : COLOR_BTNSHADOW, m_hot ? COLOR_HIGHLIGHT : COLOR_BTNSHADOW);
    if (m_check != BST_UNCHECKED)
        PaintTick(dc, box, IsWindowEnabled(Window()) ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
    RECT label = rect;
    label.left = box.right + side / 2;
    PaintLine(dc, label, DT_LEFT);
    if (GetFocus() == Window())
    {
        const std::u16string text = TextOf(Window());
        RECT focus = label;
        DrawTextW(dc, text.data(), static_cast<int>(text.size()), &focus, DT_CALCRECT | DT_SINGLELINE);
        const LONG width = std::min(focus.right + 2, rect.right) - label.left;
        const LONG middle = (rect.top + rect.bottom - metrics.tmHeight) / 2;
        focus = {label.left - 2, middle, label.left + width, middle + metrics.tmHeight};
        DrawFocusRect(dc, &focus);
    }
}

void Button::PaintLine(HDC dc, const RECT& rect, UINT alignment)
{
    PaintLabel(dc, rect, alignment | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS);
}

} // namespace platform
