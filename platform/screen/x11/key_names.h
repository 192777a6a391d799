// Keysyms, virtual keys and characters: tables that know no display.
#pragma once

#include "windows.h"

#include <cstdint>

namespace platform::x11
{

using Keysym = std::uint32_t;

struct VirtualKey
{
    BYTE code = 0;
    bool extended = false;
};

/// The virtual key of a keysym; code 0 when it has none, as with letters of other scripts.
VirtualKey VirtualKeyOf(Keysym keysym);
/// The virtual key at a place of the keyboard, as on the US layout: for layouts without Latin letters.
BYTE VirtualKeyOfPlace(std::uint8_t keycode);
/// The character that a keysym types, 0 for none.
char32_t CharacterOf(Keysym keysym);

inline bool IsKeypad(Keysym keysym)
{
    return keysym >= 0xFF80 && keysym <= 0xFFBD;
}

} // namespace platform::x11
