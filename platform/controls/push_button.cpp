// The push button control.
#include "platform/controls/push_button.h"

#include "platform/windowing/window_class.h"

#include <string>
#include <utility>

namespace platform
{

namespace
{

constinit SystemClass g_class{TEXT("Button"), &PushButton::Procedure, CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW};

[[gnu::constructor]] void OfferClass()
{
    OfferSystemClass(g_class);
}

std::u16string LabelOf(HWND window)
{
    std::u16string label(static_cast<std::size_t>(GetWindowTextLengthW(window)), u'\0');
    GetWindowTextW(window, label.data(), static_cast<int>(label.size()) + 1);
    // "&&" shows one ampersand, a single one marks the mnemonic.
    std::u16string shown;
    for (std::size_t i = 0; i < label.size(); ++i)
    {
        i += label[i] == u'&';
        shown.append(label, i, 1);
    }
    return shown;
}

bool Contains(HWND window, POINT point)
{
    RECT client;
    GetClientRect(window, &client);
    return PtInRect(&client, point);
}

} // namespace

LRESULT PushButton::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_CREATE:
        m_default = (reinterpret_cast<const CREATESTRUCTW*>(lParam)->style & kDefaultStyle) != 0;
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_SETFONT:
        m_font = reinterpret_cast<HFONT>(wParam);
        InvalidateRect(Window(), nullptr, TRUE);
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(m_font);
    case WM_ENABLE:
    case WM_SETTEXT:
        InvalidateRect(Window(), nullptr, TRUE);
        return Default(message, wParam, lParam);
    case kSetStyle:
        SetDefault((wParam & kDefaultStyle) != 0);
        return 0;
    case kClick:
        Click();
        return 0;
    default:
        return HandleInput(message, wParam, lParam);
    }
}

LRESULT PushButton::HandleInput(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        SetFocus(Window());
        SetCapture(Window());
        m_pressing = true;
        SetDown(true);
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
        return Default(message, wParam, lParam);
    }
}

void PushButton::SetDown(bool down)
{
    if (std::exchange(m_down, down) != down)
        InvalidateRect(Window(), nullptr, TRUE);
}

void PushButton::SetHot(bool hot)
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

void PushButton::Release(bool inside)
{
    const bool pressed = std::exchange(m_pressing, false);
    SetDown(false);
    if (GetCapture() == Window())
        ReleaseCapture();
    if (pressed && inside)
        Click();
}

void PushButton::Click()
{
    SendMessageW(GetParent(Window()), WM_COMMAND, static_cast<WPARAM>(GetDlgCtrlID(Window())),
                 reinterpret_cast<LPARAM>(Window()));
}

void PushButton::SetDefault(bool isDefault)
{
    if (std::exchange(m_default, isDefault) != isDefault)
        InvalidateRect(Window(), nullptr, TRUE);
}

void PushButton::OnPaint()
{
    PAINTSTRUCT paint;
    if (HDC dc = BeginPaint(Window(), &paint))
    {
        RECT client;
        GetClientRect(Window(), &client);
        Paint(dc, client);
    }
    EndPaint(Window(), &paint);
}

void PushButton::Paint(HDC dc, RECT rect)
{
    FillRect(dc, &rect, GetSysColorBrush(m_hot && !m_down ? COLOR_BTNHIGHLIGHT : COLOR_BTNFACE));
    FrameColors(dc, rect, COLOR_BTNSHADOW, COLOR_BTNSHADOW);
    if (m_default)
    {
        InflateRect(&rect, -1, -1);
        FrameColors(dc, rect, COLOR_HIGHLIGHT, COLOR_HIGHLIGHT);
    }
    const std::u16string label = LabelOf(Window());
    RECT text = rect;
    if (m_down)
        OffsetRect(&text, 1, 1);
    HGDIOBJ font = m_font != nullptr ? SelectObject(dc, m_font) : nullptr;
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(IsWindowEnabled(Window()) ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    DrawTextW(dc, label.data(), static_cast<int>(label.size()), &text,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    if (font != nullptr)
        SelectObject(dc, font);
    if (GetFocus() == Window())
    {
        InflateRect(&rect, -3, -3);
        DrawFocusRect(dc, &rect);
    }
}

} // namespace platform
