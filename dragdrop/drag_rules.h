// What a drag over a level, a drop on it and a drag out of it lead to.
//
// Rules only; drop_target.cpp, drag_source.cpp and menu/toolbar_subclass.cpp carry out what is decided here. Effects
// are DROPEFFECT_…, key states MK_….
#pragma once

#include "content/menu_item.h"

#include <commctrl.h>
#include <shlobj.h>

namespace CustomMenu
{

/// What of `offered` the modifier keys leave. With none held, what comes from outside the launcher is linked rather
/// than copied rather than moved.
DWORD NarrowEffect(DWORD offered, DWORD keyState, bool launcherDrags);

/// All that can be done with an item that is dragged, and asked about after a drag with the right button.
constexpr DWORD kAllEffects = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;
/// The key state that the folder's own drop target is told: by it the folder asks the user, or takes the effect as it
/// is.
DWORD KeyStateForFolder(bool rightButton, bool launcherDrags);

/// On which side of the button the insertion mark shows for a point at height `y`: TBIMHT_AFTER or 0. Toolbar
/// coordinates.
DWORD MarkSide(const RECT& button, LONG y);
/// The position in the items that a mark means, −1 for no mark. The placeholder of an empty level counts for nothing.
int InsertPosition(const TBINSERTMARK& mark, const MenuItems& items);

/// Moves the item at `from` to where the mark at `position` is, counted with the item still in its place, and returns
/// its new index.
int MoveItem(MenuItems& items, int from, int position);

/// True when a drag has rested on an item for longer than the system's delay. Message times in milliseconds, which wrap
/// around.
bool HasRested(DWORD since, DWORD now, DWORD delay);
/// True when the mouse has moved farther than a press may tremble, the system's threshold for each direction.
bool IsDrag(POINT press, POINT now, SIZE threshold);
/// Separators and the placeholder cannot be dragged.
bool CanDrag(const MenuItem& item);

/// Where the pointer is on a drag picture with sides of `size` pixels: below its middle.
POINT DragImageOffset(int size);

} // namespace CustomMenu
