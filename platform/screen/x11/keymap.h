// What keys mean in the keyboard layout that is in use.
#pragma once

#include "platform/services/keyboard_service.h"

namespace platform::x11
{

/// `keycode` and `state` as in a key event. The first call loads the keyboard module and asks the server for the
/// layout; without the module no key means anything.
KeyMeaning TranslateKey(std::uint8_t keycode, std::uint16_t state, bool pressed);
/// The layout has changed.
void ForgetKeymap();

} // namespace platform::x11
