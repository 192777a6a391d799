// The loader that every image of the launcher's own goes through.
#pragma once

#include "support/unique_handle.h"
#include "support/wstring.h"

#include <cstddef>
#include <cstdint>

/// The bitmap resource "#n" of the program, or the bitmap file of any other name, as a DIB section. With 32 bits per
/// pixel its colours come premultiplied by alpha. Empty when it cannot be loaded.
UniqueBitmap LoadBitmapImage(const WString& name);

/// "#" and the number.
WString ResourceName(unsigned number);

/// Width and height in pixels, 0 × 0 for a handle that is no bitmap.
SIZE BitmapSize(HBITMAP bitmap);

/// Multiplies every colour byte of B G R A pixels by the pixel's alpha and divides by 255, truncating.
void PremultiplyPixels(std::uint8_t* pixels, std::size_t count);
