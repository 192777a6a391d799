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

DWORD PossibleEffects(const DropFacts& facts, DWORD allowed)
{
    constexpr DWORD kAll = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;
    if (!facts.writable || facts.intoItself)
        return DROPEFFECT_NONE;
    if (facts.hasFiles)
        return allowed & kAll;
    if (!facts.hasAddresses)
        return DROPEFFECT_NONE;
    return (allowed & DROPEFFECT_LINK) != 0 ? DROPEFFECT_LINK : allowed & DROPEFFECT_COPY;
}

DWORD ChosenEffect(const DropFacts& facts, DWORD possible, DWORD keyState)
{
    if (const DWORD wanted = EffectOfKeys(keyState); wanted != DROPEFFECT_NONE)
        return possible & wanted;
    const DWORD first = facts.sameFileSystem ? DROPEFFECT_MOVE : DROPEFFECT_COPY;
    for (const DWORD effect : {first, DWORD{DROPEFFECT_COPY}, DWORD{DROPEFFECT_LINK}, DWORD{DROPEFFECT_MOVE}})
        if ((possible & effect) != 0)
            return effect;
    return DROPEFFECT_NONE;
}

} // namespace platform
