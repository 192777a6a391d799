// Mnemonics under a keyboard layout of another script.
#pragma once

#include "windows.h"

namespace platform
{

/// The Latin letter (upper case) on the key that has just typed the character message, where the character is not Latin
/// itself: somebody who types Cyrillic cannot type "&Yes" any other way. 0 for none.
WCHAR LatinLetterOf(const MSG& character);

} // namespace platform
