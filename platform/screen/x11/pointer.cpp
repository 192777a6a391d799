// The pointer's place, and other programs' windows.
#include "platform/screen/x11/connection.h"

#include "platform/base/clock.h"
#include "platform/screen/x11/cursors.h"
#include "platform/screen/x11/windows.h"

namespace platform::x11
{
namespace
{

// An answer this young is not asked for again: a start asks twice within a millisecond.
constexpr std::uint64_t kFreshMs = 8;

std::optional<POINT> AskPointer()
{
    Connection& connection = TheConnection();
    if (const auto first = connection.TakeFirstPointer())
        return first;
    const auto reply = Collect(xcb_query_pointer_reply, xcb_query_pointer(connection.Xcb(), connection.Root()));
    return reply != nullptr ? std::optional(POINT{reply->root_x, reply->root_y}) : std::nullopt;
}

} // namespace
} // namespace platform::x11

namespace platform::screen
{

std::optional<POINT> PointerPosition()
{
    static std::optional<POINT> last;
    static std::uint64_t asked = 0;
    if (!x11::TheConnection().IsOpen())
        return std::nullopt;
    const std::uint64_t now = NowMs();
    if (!last || now - asked > x11::kFreshMs)
    {
        last = x11::AskPointer();
        asked = now;
    }
    return last;
}

void WarpPointer(POINT position)
{
    x11::Connection& connection = x11::TheConnection();
    if (connection.IsOpen())
    {
        xcb_warp_pointer(connection.Xcb(), XCB_NONE, connection.Root(), 0, 0, 0, 0,
                         static_cast<std::int16_t>(position.x), static_cast<std::int16_t>(position.y));
        xcb_flush(connection.Xcb());
    }
}

void SetPointerShape(NativeWindow window, PointerShape shape)
{
    x11::NativeWindowState* state = x11::FindNative(window);
    if (state == nullptr || std::exchange(state->pointer, shape) == shape)
        return;
    const xcb_cursor_t cursor = shape == PointerShape::Text ? x11::TextCursor() : XCB_NONE;
    xcb_change_window_attributes(x11::TheConnection().Xcb(), window, XCB_CW_CURSOR, &cursor);
}

std::optional<RECT> ForeignWindowBounds(std::uint32_t id)
{
    x11::Connection& connection = x11::TheConnection();
    if (!connection.IsOpen())
        return std::nullopt;
    const auto geometryCookie = xcb_get_geometry(connection.Xcb(), id);
    const auto originCookie = xcb_translate_coordinates(connection.Xcb(), id, connection.Root(), 0, 0);
    const auto geometry = x11::Collect(xcb_get_geometry_reply, geometryCookie);
    const auto origin = x11::Collect(xcb_translate_coordinates_reply, originCookie);
    if (geometry == nullptr || origin == nullptr)
        return std::nullopt;
    return RECT{origin->dst_x, origin->dst_y, origin->dst_x + geometry->width, origin->dst_y + geometry->height};
}

} // namespace platform::screen
