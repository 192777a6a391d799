// Mouse and keyboard on X11, and the queue of the screen's events that all files of this back end add to.
#pragma once

#include "platform/screen/screen.h"

#include <deque>
#include <functional>
#include <xcb/xcb.h>

namespace platform::x11
{

/// What NextEvent has still to give.
std::deque<screen::Event>& ReadyEvents();
/// Adds one; a movement takes the place of the one right before it.
void AddEvent(const screen::Event& event);
/// The server's modifiers as the screen's.
unsigned ModifiersOf(std::uint16_t state);
/// Deals with an event of mouse, keyboard or focus; false for any other.
bool HandleInputEvent(const xcb_generic_event_t& event, std::uint8_t type);
/// Takes events until `done`, or the deadline (milliseconds of the clock). Those that are the screen's wait in order in
/// ReadyEvents. Ends the process when the display is lost.
void HandleEventsUntil(std::uint64_t deadline, const std::function<bool()>& done);

/// Reports the release of what is still pressed: the display will report it to another program.
void ReleaseButtons(POINT position, unsigned modifiers);

/// A key event that the input method leaves alone, on its usual way.
void HandleKey(const xcb_key_press_event_t& event);

} // namespace platform::x11
