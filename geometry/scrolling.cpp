// Arithmetic of scrolling.
#include "geometry/scrolling.h"

int WheelPosition(int position, int delta, int buttonHeight, int height)
{
    if (delta >= 0)
        return position > buttonHeight ? position - buttonHeight : 0;
    return position + 2 * buttonHeight < height ? position + buttonHeight : height - buttonHeight;
}

int PositionShowing(int position, int top, int bottom, int pagerHeight, int buttonSize)
{
    if (top < position)
        return top;
    const int lowest = bottom + buttonSize - pagerHeight;
    return lowest > position ? lowest : position;
}
