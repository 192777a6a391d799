// The choice of a drop's effect.
#include "platform/shell/drop_rules.h"

#include "windows.h"

#include <initializer_list>

namespace platform
{

namespace
{

/// DROPEFFECT_NONE when the keys ask for nothing.
DWORD EffectOfKeys(DWORD keyState)
{
    switch (keyState & (MK_CONTROL | MK_SHIFT))
    {
    case MK_CONTROL:
        return DROPEFFECT_COPY;
    case MK_SHIFT:
        return DROPEFFECT_MOVE;
    case MK_CONTROL | MK_SHIFT:
        return DROPEFFECT_LINK;
    }
    return DROPEFFECT_NONE;
}

} // namespace

DWORD WithoutUnwantedMove(DWORD allowed, DWORD preferred)
{
    const bool keepsPlace = preferred != DROPEFFECT_NONE && (preferred & DROPEFFECT_MOVE) == 0;
    return keepsPlace ? allowed & ~DWORD{DROPEFFECT_MOVE} : allowed;
}

DWORD PossibleEffects(const DropFacts& facts, DWORD allowed)
{
    constexpr DWORD kAll = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;
    if (!facts.writable || facts.intoItself)
        return DROPEFFECT_NONE;
    if (facts.hasFiles)
        return WithoutUnwantedMove(allowed & kAll, facts.preferred);
    if (!facts.hasAddresses)
        return DROPEFFECT_NONE;
    return (allowed & DROPEFFECT_LINK) != 0 ? DROPEFFECT_LINK : allowed & DROPEFFECT_COPY;
}

DWORD ChosenEffect(const DropFacts& facts, DWORD possible, DWORD keyState)
{
    if (const DWORD wanted = EffectOfKeys(keyState); wanted != DROPEFFECT_NONE)
        return possible & wanted;
    const DWORD byPlace = facts.sameFileSystem ? DROPEFFECT_MOVE : DROPEFFECT_COPY;
    constexpr DWORD kOrder[] = {DROPEFFECT_COPY, DROPEFFECT_LINK, DROPEFFECT_MOVE};
    for (const DWORD among : {facts.preferred, byPlace, ~DWORD{0}})
        for (const DWORD effect : kOrder)
            if ((possible & among & effect) != 0)
                return effect;
    return DROPEFFECT_NONE;
}

} // namespace platform
