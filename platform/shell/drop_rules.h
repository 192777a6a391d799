// What a folder's drop target does with what is dropped: rules without a system call.
#pragma once

#include "ole2.h"

namespace platform
{

/// What the folder and what is dragged make possible.
struct DropFacts
{
    bool hasFiles = false;
    bool hasAddresses = false;
    bool writable = true;        ///< the folder
    bool sameFileSystem = false; ///< all the files are on the folder's
    bool intoItself = false;     ///< one of the files is the folder, or holds it
    DWORD preferred = 0;         ///< by the owner of what is dragged; DROPEFFECT_NONE when it does not say
};

/// The allowed effects less a move that the owner of what is dragged would not have.
DWORD WithoutUnwantedMove(DWORD allowed, DWORD preferred);

/// The effects that are possible at all among those allowed. An address can only be made an entry that leads to it:
/// that is a link, or a copy for a source that allows nothing else.
DWORD PossibleEffects(const DropFacts& facts, DWORD allowed);

/// The one of the possible effects that the keys ask for: Ctrl copies, Shift moves, both link; without them, what the
/// owner prefers; else on one file system the file is moved, from another one copied. DROPEFFECT_NONE when the keys ask
/// for what is not possible.
DWORD ChosenEffect(const DropFacts& facts, DWORD possible, DWORD keyState);

} // namespace platform
