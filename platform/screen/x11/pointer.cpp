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
    if (const auto first = TheConnection().TakeFirstPointer())
        return first;
    const auto reply = Collect(xcb_query_pointer_reply, xcb_query_pointer(x11::Xcb(), TheConnection().Root()));
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
    if (x11::TheConnection().IsOpen())
    {
        xcb_warp_pointer(x11::Xcb(), XCB_NONE, x11::TheConnection().Root(), 0, 0, 0, 0,
                         static_cast<std::int16_t>(position.x), static_cast<std::int16_t>(position.y));
        xcb_flush(x11::Xcb());
    }
}

void SetPointerShape(NativeWindow window, PointerShape shape)
{
    x11::NativeWindowState* state = x11::FindNative(window);
    if (state == nullptr || std::exchange(state->pointer, shape) == shape)
        return;
    const xcb_cursor_t cursor = shape == PointerShape::Text ? x11::TextCursor() : XCB_NONE;
    xcb_change_window_attributes(x11::Xcb(), window, XCB_CW_CURSOR, &cursor);
}

std::optional<RECT> ForeignWindowBounds(std::uint32_t id)
{
    if (!x11::TheConnection().IsOpen())
        return std::nullopt;
    const auto geometryCookie = xcb_get_geometry(x11::Xcb(), id);
    const auto originCookie = xcb_translate_coordinates(x11::Xcb(), id, x11::TheConnection().Root(), 0, 0);
    const auto geometry = x11::Collect(xcb_get_geometry_reply, geometryCookie);
    const auto origin = x11::Collect(xcb_translate_coordinates_reply, originCookie);
    if (geometry == nullptr || origin == nullptr)
        return std::nullopt;
    return RECT{origin->dst_x, origin->dst_y, origin->dst_x + geometry->width, origin->dst_y + geometry->height};
}

} // namespace platform::screen
