// The static control ("Static"): a text or an icon that takes no input.
//
// Styles: SS_LEFT, SS_CENTER, SS_RIGHT, SS_LEFTNOWORDWRAP, SS_ICON, SS_NOPREFIX, SS_CENTERIMAGE (one line or the icon
// in the middle of the height), SS_ENDELLIPSIS. Messages: STM_SETICON, STM_GETICON. An icon is the caller's and is
// drawn at its own size. Not implemented: frames and rectangles, bitmaps, SS_NOTIFY, an icon named by the window's
// text.
#pragma once

#include "platform/controls/control_object.h"

namespace platform
{

class StaticText final : public ControlObject
{
public:
    using ControlObject::ControlObject;

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return Route<StaticText>(window, message, wParam, lParam);
    }

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool Has(DWORD style) const;
    DWORD Kind() const;
    void Redraw() { InvalidateRect(Window(), nullptr, TRUE); }
    void OnPaint();
    void PaintIcon(HDC dc, const RECT& rect);
    void PaintText(HDC dc, RECT rect);

    HFONT m_font = nullptr;
    HICON m_icon = nullptr;
};

} // namespace platform
