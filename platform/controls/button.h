// The button control ("Button"): a push button or a check box.
//
// Styles: BS_PUSHBUTTON, BS_DEFPUSHBUTTON, BS_CHECKBOX, BS_AUTOCHECKBOX. Messages: BM_GETCHECK, BM_SETCHECK,
// BM_SETSTYLE, BM_CLICK. Notification: BN_CLICKED. Return, Escape and Tab are its parent's affair; space presses it.
// Not implemented: radio buttons, three states, group boxes, owner draw, BS_NOTIFY.
#pragma once

#include "platform/controls/label_control.h"

namespace platform
{

class Button final : public LabelControl
{
public:
    using LabelControl::LabelControl;

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return Route<Button>(window, message, wParam, lParam);
    }

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    UINT ColorMessage() const override { return IsCheckBox() ? WM_CTLCOLORSTATIC : WM_CTLCOLORBTN; }
    void Paint(HDC dc, const RECT& client) override;
    LRESULT HandleInput(UINT message, WPARAM wParam, LPARAM lParam);
    DWORD Kind() const; ///< BS_…
    bool IsCheckBox() const;
    LRESULT DialogCode() const;
    void SetKind(DWORD kind);
    void SetCheck(WPARAM check);
    void SetDown(bool down);
    void SetHot(bool hot);
    void Press();
    void Release(bool inside);
    void Click();
    void PaintPush(HDC dc, RECT rect);
    void PaintCheckBox(HDC dc, RECT rect);
    void PaintLine(HDC dc, const RECT& rect, UINT alignment);

    WPARAM m_check = BST_UNCHECKED;
    bool m_hot = false;
    bool m_down = false;
    bool m_pressing = false; ///< mouse or space went down here
};

} // namespace platform
