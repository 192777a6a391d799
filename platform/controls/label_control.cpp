// Font, redrawing and painting of the controls that show a text.
#include "platform/controls/label_control.h"

namespace platform
{

LRESULT LabelControl::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_SETFONT:
        m_font = reinterpret_cast<HFONT>(wParam);
        Redraw();
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(m_font);
    case WM_ENABLE:
    case WM_SETTEXT:
        Redraw();
        return Default(message, wParam, lParam);
    default:
        return Default(message, wParam, lParam);
    }
}

void LabelControl::OnPaint()
{
    PAINTSTRUCT paint;
    if (HDC dc = BeginPaint(Window(), &paint))
    {
        RECT client;
        GetClientRect(Window(), &client);
        const HGDIOBJ font = m_font != nullptr ? SelectObject(dc, m_font) : nullptr;
        SetBkMode(dc, TRANSPARENT);
        FillRect(dc, &client, AskForColors(ColorMessage(), dc));
        Paint(dc, client);
        if (font != nullptr)
            SelectObject(dc, font);
    }
    EndPaint(Window(), &paint);
}

void LabelControl::PaintLabel(HDC dc, RECT rect, UINT format)
{
    const std::u16string text = TextOf(Window());
    if (!IsWindowEnabled(Window()))
        SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
    DrawTextW(dc, text.data(), static_cast<int>(text.size()), &rect, format);
}

} // namespace platform
