// Pictures drawn by the program itself, for when the icon theme has none: always something sensible at any size.
#pragma once

#include "platform/drawing/icon.h"

#include <string_view>

namespace platform
{

/// "!folder", "!document" or "!program" (a document for any other name), `size` pixels square.
IconImage DrawBuiltinPicture(std::string_view name, int size);
/// Draws the mark of a link, an arrow on a small sheet, over the lower left corner of a picture.
void DrawLinkMark(IconImage& image);
/// Draws `over` onto `image` with its top-left corner at (x, y), which must lie inside.
void Compose(IconImage& image, const IconImage& over, int x, int y);

} // namespace platform
