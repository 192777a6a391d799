// Typing with the user's input method: which keys go to it, and what comes back.
#pragma once

#include <cstdint>
#include <optional>
#include <xcb/xcb.h>

namespace platform::x11
{

/// Gives a key event to the input method, if text is being typed and there is one; false leaves it to the caller.
bool OfferKey(const xcb_key_press_event_t& event);
/// Handles what the input method has said, or has left unsaid for too long; true when there was anything.
bool HandleTextInput();
/// What to wait for besides the display's events; −1 for nothing.
int TextInputFd();
/// When the input method has to have answered, on the clock.
std::optional<std::uint64_t> TextInputDeadline();

} // namespace platform::x11
