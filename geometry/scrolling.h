// Scroll positions of a level that is taller than the work area: arithmetic on pixels.
//
// Rules only. A position is the row of the toolbar that shows at the top.
#pragma once

/// Position after a turn of the wheel: one button height per message whatever the size of `delta`, positive turning up.
/// `height` is the whole toolbar's.
int WheelPosition(int position, int delta, int buttonHeight, int height);

/// Position that shows a button, or the present one when it shows already. `top` and `bottom` are the button's in the
/// toolbar, `buttonSize` is the scroll buttons' height.
int PositionShowing(int position, int top, int bottom, int pagerHeight, int buttonSize);
