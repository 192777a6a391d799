// The desktop's cursor theme, by libxcb-cursor.
#pragma once

#include <cstdint>
#include <xcb/xproto.h>

struct xcb_connection_t;

namespace platform
{

struct CursorService
{
    /// The first of these names (ended by null) that the theme has, as a cursor of the connection; 0 when it has none.
    xcb_cursor_t (*load)(xcb_connection_t* connection, xcb_screen_t* screen, const char* const* names);
};

} // namespace platform

extern "C" const platform::CursorService orb_cursor_service;
