// Pictures as PNG files.
#pragma once

#include "platform/screen/surface.h"

#include <string>

namespace platform::headless
{

/// Writes the surface as 8-bit RGB. False when the file cannot be written.
bool WritePng(const std::string& path, const Surface& picture);

} // namespace platform::headless
