// The keyboard focus on X11: taking it, keeping it, noticing that it is gone, giving it back.
//
// While pop-ups have the keyboard, the X focus is on one invisible window of this program (the key window), so that
// levels can come and go without the focus moving.
#pragma once

#include "platform/screen/screen.h"

#include <deque>
#include <xcb/xcb.h>

namespace platform::x11
{

/// Does what TakeKeyboard has asked for, if a window is on the screen to take it for.
void TakeWantedKeyboard();
/// Gives the focus back to who had it, if this program still holds it.
void ReleaseKeyboard();
/// This program's window that has the focus, as far as events have told; 0 when none has.
xcb_window_t FocusedWindow();
/// Has the server report presses and releases anywhere, and movements too while the pointer is outside.
void SelectRawEvents(bool movements);
/// Ends that: a process that stays without windows is not woken by every press.
void DeselectRawEvents();

void OnFocusIn(const xcb_focus_in_event_t& event, std::deque<screen::Event>& out);
void OnFocusOut(const xcb_focus_out_event_t& event);
/// A press somewhere on the screen; `time` tells whether it is also reported as a press in one of our windows.
void OnRawPress(xcb_timestamp_t time);
void OnOwnPress(xcb_timestamp_t time);
void OnRawRelease();
/// Something has been dropped here from another program: a menu that has stayed for it gets the keyboard back.
void OnDropTaken();
void OnRawMove();
void OnPointerInside(bool inside);
/// Gives the focus, if it is on the key window, to a window of another program.
void HandKeyboardTo(xcb_window_t window);
/// A property of the root window has changed (foreign_dialog.cpp).
void OnRootProperty(const xcb_property_notify_event_t& event);
/// Whether something has happened that CheckFocus has to look into, once all events that have arrived are known.
bool FocusCheckPending();
void CheckFocus(std::deque<screen::Event>& out);

} // namespace platform::x11
