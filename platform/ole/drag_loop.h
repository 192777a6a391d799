// The loop in which this program drags.
#pragma once

#include "platform/screen/screen.h"

namespace platform
{

/// DragAnswered and DragEnded; nothing while this program drags nothing.
void OnOwnDragEvent(const screen::Event& event);

} // namespace platform
