// Decisions of hovering.
#include "menu/hover_rules.h"

#include <commctrl.h>

namespace CustomMenu
{

HotCause HotCauseOf(DWORD flags)
{
    if (flags & HICF_LEAVING)
        return HotCause::Leaving;
    return flags & HICF_MOUSE ? HotCause::Mouse : HotCause::Other;
}

HoverDecision DecideHover(const HoverSituation& situation, int newIndex, HotCause cause)
{
    HoverDecision decision;
    if (situation.contextIndex != -1 && newIndex != situation.contextIndex)
    {
        decision.refuse = true;
        return decision;
    }
    const bool subLevelOpen = situation.openIndex >= 0;
    if (cause == HotCause::Mouse)
    {
        // A level that has just appeared under a resting cursor, or was just refreshed, does not start a hover.
        if (situation.messagePos == situation.lastMessagePos)
        {
            decision.refuse = true;
            return decision;
        }
        decision.focusDeepest = !subLevelOpen;
        decision.startTimer = subLevelOpen ? newIndex != situation.openIndex : situation.newItemIsFolder;
    }
    else if (cause == HotCause::Leaving && subLevelOpen && situation.openIndex < situation.itemCount)
    {
        decision.restoreOpener = true;
        decision.refuse = true;
    }
    return decision;
}

bool HoverOpens(int pending, int openIndex, int itemCount, bool stillHot)
{
    return pending != openIndex && pending >= 0 && pending < itemCount && stillHot;
}

} // namespace CustomMenu
