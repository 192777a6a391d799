// The switches that link the user's own Start Menu and Desktop into the root level.
#include "menu/custom_bar.h"

namespace CustomMenu
{

// A notice that the linked items are the real ones comes before either link is added. It is not there yet, so neither
// switch does anything.

void CustomBar::ToggleStartMenuLink() {}

void CustomBar::ToggleDesktopLink() {}

} // namespace CustomMenu
