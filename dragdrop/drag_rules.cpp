// Decisions of drag and drop.
#include "dragdrop/drag_rules.h"

#include <algorithm>
#include <cstdlib>

namespace CustomMenu
{

DWORD NarrowEffect(DWORD offered, DWORD keyState, bool launcherDrags)
{
    switch (keyState & (MK_CONTROL | MK_SHIFT))
    {
    case MK_CONTROL:
        return offered & DROPEFFECT_COPY;
    case MK_SHIFT:
        return offered & DROPEFFECT_MOVE;
    case MK_CONTROL | MK_SHIFT:
        return offered & DROPEFFECT_LINK;
    default:
        break;
    }
    if (!launcherDrags)
        for (const DWORD preferred : {DROPEFFECT_LINK, DROPEFFECT_COPY})
            if (offered & preferred)
                return preferred;
    return offered;
}

DWORD KeyStateForFolder(bool rightButton, bool launcherDrags)
{
    if (!rightButton)
        return 0;
    return launcherDrags ? MK_RBUTTON | MK_CONTROL : MK_RBUTTON | MK_SHIFT | MK_CONTROL;
}

DWORD MarkSide(const RECT& button, LONG y)
{
    return y > (button.top + button.bottom) / 2 ? TBIMHT_AFTER : 0;
}

int InsertPosition(const TBINSERTMARK& mark, const MenuItems& items)
{
    if (mark.iButton < 0)
        return -1;
    const bool isEmpty = items.empty() || items.front().Is(MIF_PLACEHOLDER);
    if (mark.dwFlags != TBIMHT_AFTER || (mark.iButton == 0 && isEmpty))
        return mark.iButton;
    return mark.iButton + 1;
}

int MoveItem(MenuItems& items, int from, int position)
{
    const int to = position <= from ? position : position - 1;
    MenuItem item = std::move(items[from]);
    items.erase(items.begin() + from);
    items.insert(items.begin() + to, std::move(item));
    return to;
}

bool HasRested(DWORD since, DWORD now, DWORD delay)
{
    return now - since > delay;
}

bool IsDrag(POINT press, POINT now, SIZE threshold)
{
    return std::abs(now.x - press.x) > threshold.cx || std::abs(now.y - press.y) > threshold.cy;
}

bool CanDrag(const MenuItem& item)
{
    return item.pidl && !item.Is(MIF_SEPARATOR | MIF_PLACEHOLDER);
}

POINT DragImageOffset(int size)
{
    return {size / 2, 15 * size / 16 - 1};
}

} // namespace CustomMenu
