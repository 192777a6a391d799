// The button control ("Button"): a push button or a check box.
//
// Styles: BS_PUSHBUTTON, BS_DEFPUSHBUTTON, BS_CHECKBOX, BS_AUTOCHECKBOX. Messages: BM_GETCHECK, BM_SETCHECK,
// BM_SETSTYLE, BM_CLICK. Notification: BN_CLICKED. Return, Escape and Tab are its parent's affair; space presses it.
// Not implemented: radio buttons, three states, group boxes, owner draw, BS_NOTIFY.
#pragma once

#include "platform/controls/control_object.h"

namespace platform
{

class Button final : public ControlObject
{
public:
    using ControlObject::ControlObject;

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return Route<Button>(window, message, wParam, lParam);
    }

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    LRESULT HandleButtonMessage(UINT message, WPARAM wParam, LPARAM lParam);
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
    void Redraw() { InvalidateRect(Window(), nullptr, TRUE); }
    void OnPaint();
    void PaintPush(HDC dc, RECT rect);
    void PaintCheckBox(HDC dc, RECT rect);
    void PaintLabel(HDC dc, RECT rect, UINT format);

    HFONT m_font = nullptr;
    WPARAM m_check = BST_UNCHECKED;
    bool m_hot = false;
    bool m_down = false;
    bool m_pressing = false; ///< mouse or space went down here
};

} // namespace platform
