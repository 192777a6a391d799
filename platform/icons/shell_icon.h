// Icons of shell items: found in the icon theme, or on disk, when they are first drawn.
#pragma once

#include "platform/drawing/icon.h"

namespace platform
{

/// The source of a system image at `size` pixels square; with `linkOverlay`, marked as a link.
std::shared_ptr<IconSource> ShellIcon(std::uint32_t systemImage, int size, bool linkOverlay);

} // namespace platform
