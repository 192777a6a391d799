// The cursor service: the only part that links libxcb-cursor.
#include "platform/services/cursor_service.h"

#include <xcb/xcb_cursor.h>

namespace platform
{
namespace
{

xcb_cursor_t Load(xcb_connection_t* connection, xcb_screen_t* screen, const char* const* names)
{
    static xcb_cursor_context_t* context = nullptr;
    if (context == nullptr && xcb_cursor_context_new(connection, screen, &context) < 0)
        return XCB_NONE;
    for (; *names != nullptr; ++names)
        if (const xcb_cursor_t cursor = xcb_cursor_load_cursor(context, *names))
            return cursor;
    return XCB_NONE;
}

} // namespace
} // namespace platform

extern "C" __attribute__((visibility("default"))) const platform::CursorService orb_cursor_service;
const platform::CursorService orb_cursor_service = {platform::Load};
