// The static control ("Static"): a text or an icon that takes no input.
//
// Styles: SS_LEFT, SS_CENTER, SS_RIGHT, SS_LEFTNOWORDWRAP, SS_ICON, SS_NOPREFIX, SS_CENTERIMAGE (one line or the icon
// in the middle of the height), SS_ENDELLIPSIS. Messages: STM_SETICON, STM_GETICON. An icon is the caller's and is
// drawn at its own size. Not implemented: frames and rectangles, bitmaps, SS_NOTIFY, an icon named by the window's
// text.
#pragma once

#include "platform/controls/label_control.h"

namespace platform
{

class StaticText final : public LabelControl
{
public:
    using LabelControl::LabelControl;

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return Route<StaticText>(window, message, wParam, lParam);
    }

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    UINT ColorMessage() const override { return WM_CTLCOLORSTATIC; }
    void Paint(HDC dc, const RECT& client) override;
    DWORD Kind() const; ///< SS_…
    void PaintIcon(HDC dc, const RECT& rect);
    void PaintText(HDC dc, const RECT& rect);

    HICON m_icon = nullptr;
};

} // namespace platform
