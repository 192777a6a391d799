// Icons of shell items: found in the icon theme, or on disk, when they are first drawn.
#pragma once

#include "platform/drawing/icon.h"

namespace platform
{

/// The picture of an icon identity (platform/files/listed_file.h) at `size` pixels square; with `linkOverlay`, marked
/// as a link.
std::shared_ptr<IconSource> ShellIcon(std::string identity, int size, bool linkOverlay);

} // namespace platform
