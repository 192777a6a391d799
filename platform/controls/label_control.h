// What controls that show a text have in common: their font, and painting in the colours that their parent says.
#pragma once

#include "platform/controls/control_object.h"

namespace platform
{

class LabelControl : public ControlObject
{
public:
    using ControlObject::ControlObject;

protected:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    /// WM_CTLCOLOR…: what the parent is asked for the colours with.
    virtual UINT ColorMessage() const = 0;
    /// On the parent's background, with the control's font.
    virtual void Paint(HDC dc, const RECT& client) = 0;

    bool HasStyle(DWORD style) const { return (Style() & style) != 0; }
    DWORD Style() const { return static_cast<DWORD>(GetWindowLongPtrW(Window(), GWL_STYLE)); }
    void Redraw() { InvalidateRect(Window(), nullptr, TRUE); }
    /// The window's text; grey when the window is disabled.
    void PaintLabel(HDC dc, RECT rect, UINT format);

private:
    void OnPaint();

    HFONT m_font = nullptr;
};

} // namespace platform
