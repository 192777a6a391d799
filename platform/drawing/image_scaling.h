// Scaling of premultiplied pictures.
#pragma once

#include "platform/drawing/icon.h"

namespace platform
{

/// The picture stretched to the given size, every source pixel taken into account; fully transparent when the source
/// is empty.
IconImage ScaleImage(const IconImage& source, int width, int height);

} // namespace platform
