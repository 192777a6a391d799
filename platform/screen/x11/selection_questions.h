// What the two halves of the selections ask of each other: owning one (selections.cpp) and reading another program's.
#pragma once

#include "platform/screen/selections.h"

#include <xcb/xcb.h>

namespace platform::x11
{

// --- selection_questions.cpp

/// Another program has asked something of this one: it goes on.
void NoteAsked();
/// The owner's answer to a question, or somebody else's.
void NoteAnswer(const xcb_selection_notify_event_t& event);
/// Whether the window is the one in which what is read arrives.
bool NoteReadProperty(const xcb_property_notify_event_t& event);

// --- selections.cpp

xcb_atom_t SelectionAtom(screen::Selection selection);
/// The time of the last input; before there was any, the server's present one, by a change of a property that changes
/// nothing (ICCCM 2.1).
xcb_timestamp_t SelectionTime();
/// That is never shown, and hears of its properties.
xcb_window_t MakeSelectionWindow();

} // namespace platform::x11
