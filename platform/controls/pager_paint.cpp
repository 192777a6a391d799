// The pager's arrow buttons.
#include "platform/controls/pager.h"

namespace platform
{

void Pager::PaintButtons()
{
    if (!IsWindowVisible(Window()))
        return;
    if (HDC dc = GetWindowDC(Window()))
    {
        PaintButton(dc, PGB_TOPORLEFT);
        PaintButton(dc, PGB_BOTTOMORRIGHT);
        ReleaseDC(Window(), dc);
    }
}

void Pager::PaintButton(HDC dc, int button)
{
    const RECT rect = ButtonRect(button);
    if (IsRectEmpty(&rect))
        return;
    const int state = m_states[static_cast<std::size_t>(button)];
    FillRect(dc, &rect, GetSysColorBrush(COLOR_MENU));
    if (state == PGF_HOT || state == PGF_DEPRESSED)
    {
        const bool down = state == PGF_DEPRESSED;
        FrameColors(dc, rect, down ? COLOR_BTNSHADOW : COLOR_BTNHIGHLIGHT, down ? COLOR_BTNHIGHLIGHT : COLOR_BTNSHADOW);
    }
    const LONG size = m_extent.button / 3 > 0 ? m_extent.button / 3 : 1;
    const LONG shift = state == PGF_DEPRESSED ? 1 : 0;
    const LONG x = (rect.left + rect.right) / 2 + shift;
    const LONG y = (rect.top + rect.bottom) / 2 + shift;
    const LONG tip = button == PGB_TOPORLEFT ? y - size / 2 : y + (size + 1) / 2;
    const LONG base = button == PGB_TOPORLEFT ? y + (size + 1) / 2 : y - size / 2;
    const POINT arrow[] = {{x - size, base}, {x + size, base}, {x, tip}};
    FillPolygon(dc, arrow, state == PGF_GRAYED ? COLOR_GRAYTEXT : COLOR_MENUTEXT);
}

} // namespace platform
