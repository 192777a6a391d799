// Selections on X11: what the loop that takes events asks of them.
#pragma once

#include <cstdint>
#include <optional>
#include <xcb/xcb.h>

namespace platform::x11
{

/// Remembers the time of mouse and key events: with it selections are taken and asked for.
void NoteInputTime(const xcb_generic_event_t& event, std::uint8_t type);
/// Deals with an event about selections; false for any other. What also concerns others is noted and left to them.
bool HandleSelectionEvent(const xcb_generic_event_t& event, std::uint8_t type);
/// The window by which others know this program as an owner.
xcb_window_t SelectionWindow();
/// Of the last mouse or key event; 0 before there was one.
xcb_timestamp_t LastInputTime();
/// When something is to be given up that is being sent to others.
std::optional<std::uint64_t> SelectionDeadline();
void DropStalledSelections();

} // namespace platform::x11
