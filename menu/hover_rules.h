// What a change of the hot item and the hover timer lead to.
//
// Rules only; hover.cpp carries out what is decided here.
#pragma once

#include <windows.h>

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

} // namespace CustomMenu
