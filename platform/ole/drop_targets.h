// The registered drop targets, and the drags that other programs bring.
#pragma once

#include "platform/ole/drop_site.h"

namespace platform
{

/// As DropPlaces asks for them. Nothing can be dropped on a window that is disabled or about to go, itself or one of
/// its parents; a child without a target leaves a drag to its parents.
HWND DropWindowAt(screen::NativeWindow native, POINT point);
ComReference<IDropTarget> DropTargetOf(HWND window);

/// Takes the screen's drag events, from the first call on.
void TakeDragEvents();

} // namespace platform
