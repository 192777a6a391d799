// An item's context menu.
#pragma once

#include "menu/custom_bar.h"

namespace CustomMenu
{

/// Shows the context menu of the item at `index`, which exists, and carries out what is chosen. `point` is on the
/// screen; (−1, −1) opens it at the item, as the keyboard asks for it.
void ShowContextMenu(CustomBar& level, int index, POINT point);

} // namespace CustomMenu
