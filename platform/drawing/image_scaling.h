// Scaling and laying over one another of premultiplied pictures.
#pragma once

#include "platform/drawing/icon.h"

namespace platform
{

/// The picture stretched to the given size, every source pixel taken into account; fully transparent when the source
/// is empty.
IconImage ScaleImage(const IconImage& source, int width, int height);

/// Draws `over` onto `image` with its top-left corner at (x, y).
void ComposeImage(IconImage& image, const IconImage& over, int x, int y);

} // namespace platform
