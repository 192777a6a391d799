// The picture of a drag to come, as a drag source helper was given it.
#pragma once

#include "shlobj.h"

namespace platform
{

/// An object with IDropTargetHelper and IDragSourceHelper2, with one reference.
IUnknown* MakeDragDropHelper();

} // namespace platform
