// The push button control ("Button"): a label in a raised frame.
//
// Styles: BS_PUSHBUTTON and BS_DEFPUSHBUTTON. Return, Escape and Tab are its parent's affair; space presses it. An
// ampersand in the label marks a mnemonic and is not shown. Not implemented: check boxes, radio buttons, owner draw.
#pragma once

#include "platform/controls/control_object.h"

namespace platform
{

class PushButton final : public ControlObject
{
public:
    using ControlObject::ControlObject;

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return Route<PushButton>(window, message, wParam, lParam);
    }

    static constexpr DWORD kDefaultStyle = 0x0001; ///< BS_DEFPUSHBUTTON
    static constexpr UINT kSetStyle = 0x00F4;      ///< BM_SETSTYLE
    static constexpr UINT kClick = 0x00F5;         ///< BM_CLICK

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    LRESULT HandleInput(UINT message, WPARAM wParam, LPARAM lParam);
    void SetDown(bool down);
    void SetHot(bool hot);
    void Release(bool inside);
    void Click();
    void SetDefault(bool isDefault);
    void OnPaint();
    void Paint(HDC dc, RECT rect);

    HFONT m_font = nullptr;
    bool m_default = false;
    bool m_hot = false;
    bool m_down = false;
    bool m_pressing = false; ///< mouse or space went down here
};

} // namespace platform
