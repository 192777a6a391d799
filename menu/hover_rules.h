// What a change of the hot item, the hover timer and the wheel lead to, and how far an item is from being in view.
//
// Rules only; hover.cpp, and for the view item_command.cpp, carry out what is decided here.
#pragma once

#include <windef.h>

namespace CustomMenu
{

/// How a hot item came to change, out of the notification's flags.
enum class HotCause
{
    Mouse,   ///< the mouse moved onto a button
    Leaving, ///< the mouse left the buttons
    Other,
};
HotCause HotCauseOf(DWORD flags);

/// What a level knows when its hot item is about to change.
struct HoverSituation
{
    int contextIndex; ///< item whose context menu shows, −1 for none
    int openIndex;    ///< item whose sub-level is open, −1 for none
    int itemCount;
    bool newItemIsFolder; ///< of the item that would become hot
    DWORD messagePos;     ///< packed screen position of the message
    DWORD lastMessagePos; ///< position at the last load, creation, opening or mouse move
};

struct HoverDecision
{
    bool refuse = false;
    bool focusDeepest = false;
    bool startTimer = false;    ///< for the item that becomes hot
    bool restoreOpener = false; ///< make the open item hot again
};

/// `newIndex` is the item that would become hot, −1 for none.
HoverDecision DecideHover(const HoverSituation& situation, int newIndex, HotCause cause);

/// True when the expired hover timer opens the pending item.
bool HoverOpens(int pending, int openIndex, int itemCount, bool stillHot);

/// Scroll position after a turn of the wheel: one button height per message whatever the size of `delta`, positive
/// turning up. `height` is the whole toolbar's.
int WheelPosition(int position, int delta, int buttonHeight, int height);

/// Scroll position that shows a button, or the present one when it shows already. `buttonSize` is the scroll buttons'.
int PositionShowing(int position, int top, int bottom, int pagerHeight, int buttonSize);

} // namespace CustomMenu
