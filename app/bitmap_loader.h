// The loader that every image of the launcher's own goes through.
#pragma once

#include "support/unique_handle.h"
#include "support/wstring.h"

/// The bitmap resource "#n" of the program, or the bitmap file of any other name, as a DIB section. With 32 bits per
/// pixel its colours come premultiplied by alpha. Empty when it cannot be loaded.
UniqueBitmap LoadBitmapImage(const WString& name);

/// "#" and the number.
WString ResourceName(unsigned number);

/// Width and height in pixels, 0 × 0 for a handle that is no bitmap.
SIZE BitmapSize(HBITMAP bitmap);
