// What keys mean in the layout that is in use, on Windows' terms: a virtual key, and the text typed. Answered by
// xkbcommon.
#pragma once

#include <cstdint>

struct xcb_connection_t;

namespace platform
{

/// A key event of the display (X protocol: detail, state).
struct KeyEvent
{
    xcb_connection_t* connection;
    unsigned layoutSerial; ///< a new number makes the service ask the server for the layout again
    std::uint8_t keycode;
    std::uint16_t state;
    bool pressed;
};

struct KeyMeaning
{
    std::uint8_t virtualKey = 0; ///< 0 for keys that Windows has no name for
    bool extended = false;
    char16_t text[16] = {}; ///< of a press: UTF-16, ended by 0; empty for keys that type nothing
};

struct KeyboardService
{
    /// Each press is to be told once: presses make up compositions, in which dead keys and the Compose key begin. The
    /// text comes with the press that ends one.
    KeyMeaning (*translate)(const KeyEvent& event);
};

} // namespace platform

extern "C" const platform::KeyboardService orb_keyboard_service;
