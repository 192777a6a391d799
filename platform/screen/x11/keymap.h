// What keys mean in the keyboard layout that is in use.
#pragma once

#include "windows.h"

#include <cstdint>

namespace platform::x11
{

struct KeyMeaning
{
    BYTE virtualKey = 0; ///< 0 for keys that Windows has no name for
    bool extended = false;
    char16_t text[4] = {}; ///< UTF-16, ended by 0; empty for keys that type nothing
};

/// `keycode` and `state` as in a key event. Asks the server for the layout at the first call.
KeyMeaning TranslateKey(std::uint8_t keycode, std::uint16_t state);
/// The layout has changed.
void ForgetKeymap();

} // namespace platform::x11
