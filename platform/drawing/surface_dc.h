// Device contexts on the pixels of a window.
#pragma once

#include "platform/drawing/region.h"
#include "platform/screen/surface.h"

#include "windows.h"

namespace platform
{

/// A context that draws on `surface`, with its client origin at `origin` and nothing drawn outside `clip` (both in
/// surface coordinates). The surface must outlive it. Null when out of handles.
HDC CreateSurfaceDC(const Surface& surface, POINT origin, const Region& clip);
/// Closes a context made by CreateSurfaceDC.
void DeleteSurfaceDC(HDC dc);

} // namespace platform
