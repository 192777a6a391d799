// Keeping rectangles on the monitor that they are nearest to.
#pragma once

#include <windows.h>

/// Moves the screen rectangle, keeping its size, onto the work area of the nearest monitor.
void ClipToWorkArea(RECT& rect);
