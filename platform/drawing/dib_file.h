// Reading bitmaps out of memory: BMP files, bitmap resources, and the pictures of icons.
#pragma once

#include "platform/drawing/gdi_objects.h"
#include "platform/drawing/icon.h"

#include <optional>
#include <span>

namespace platform
{

using Bytes = std::span<const unsigned char>;

/// A packed DIB (BITMAPINFOHEADER, colour table, rows), as a bitmap resource holds it. Uncompressed, 1 to 32 bits; null
/// when it is anything else or cut short. The bitmap keeps the depth and the row order.
std::unique_ptr<BitmapObject> ReadPackedDib(Bytes bytes);

/// A BMP file: a 14-byte BITMAPFILEHEADER, then the same with the rows where the header says.
std::unique_ptr<BitmapObject> ReadBitmapFile(Bytes bytes);

/// One picture of an icon (RT_ICON data): a DIB of twice the height, colours above mask, or a PNG file.
std::optional<IconImage> ReadIconImage(Bytes bytes);

} // namespace platform
