// The picture of a drag to come, as a drag source helper was given it.
#pragma once

#include "platform/screen/drags.h"
#include "shlobj.h"

namespace platform
{

/// An object with IDropTargetHelper and IDragSourceHelper2, with one reference. The picture is kept with the data
/// object, in a format of the layer's own. InitializeFromBitmap takes the bitmap (32 bits, premultiplied) over when it
/// succeeds. While a drag is on, its picture is the screen's to move: the target's half of the helper has nothing to
/// do.
IUnknown* MakeDragDropHelper();

/// The picture kept with a data object; without pixels when there is none.
screen::DragImage DragPictureOf(IDataObject& data);

} // namespace platform
