// The picture under the pointer. Where there is a compositor its edges are soft; else the window has the picture's
// shape. Either way the picture is the window's background, so that the display shows it again by itself.
#include "platform/screen/x11/drag_image.h"

#include "platform/screen/x11/atoms.h"
#include "platform/screen/x11/connection.h"

#include <algorithm>
#include <vector>
#include <xcb/shape.h>

namespace platform::x11
{
namespace
{

constexpr std::uint32_t kSeen = 0x60; // alpha from which a pixel belongs to a shape

/// Of this depth with the pixels that surfaces have; 0 when there is none.
xcb_visualid_t FindVisual(std::uint8_t bits)
{
    for (auto depth = xcb_screen_allowed_depths_iterator(&TheConnection().Screen()); depth.rem > 0;
         xcb_depth_next(&depth))
    {
        auto visual = xcb_depth_visuals_iterator(depth.data);
        for (; depth.data->depth == bits && visual.rem > 0; xcb_visualtype_next(&visual))
            if (visual.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.data->red_mask == 0xFF0000)
                return visual.data->visual_id;
    }
    return XCB_NONE;
}

/// Whoever composes the screen owns a selection that says so (freedesktop: Extended Window Manager Hints).
bool HasCompositor()
{
    const xcb_atom_t atom = AtomNamed("_NET_WM_CM_S0");
    const auto reply = Collect(xcb_get_selection_owner_reply, xcb_get_selection_owner(Xcb(), atom));
    return reply != nullptr && reply->owner != XCB_NONE;
}

/// The colour that shines through: what is not seen through any more is to look as it would without its alpha.
std::uint32_t Unmultiplied(std::uint32_t pixel)
{
    const std::uint32_t alpha = pixel >> 24;
    std::uint32_t result = 0xFF;
    for (const int shift : {16, 8, 0})
        result = result << 8 | std::min(0xFFU, alpha != 0 ? (pixel >> shift & 0xFF) * 0xFF / alpha : 0);
    return result;
}

/// The rows' stretches of pixels that are seen.
std::vector<xcb_rectangle_t> ShapeOf(const screen::DragImage& image)
{
    std::vector<xcb_rectangle_t> stretches;
    for (int y = 0; y < image.size.cy; ++y)
    {
        const auto row = image.pixels.begin() + static_cast<std::ptrdiff_t>(y) * image.size.cx;
        const auto seen = [](std::uint32_t pixel) { return pixel >> 24 >= kSeen; };
        for (auto from = std::find_if(row, row + image.size.cx, seen); from != row + image.size.cx;)
        {
            const auto to = std::find_if_not(from, row + image.size.cx, seen);
            stretches.push_back({static_cast<std::int16_t>(from - row), static_cast<std::int16_t>(y),
                                 static_cast<std::uint16_t>(to - from), 1});
            from = std::find_if(to, row + image.size.cx, seen);
        }
    }
    return stretches;
}

xcb_pixmap_t MakePixmap(const screen::DragImage& image, std::uint8_t depth)
{
    const xcb_pixmap_t pixmap = xcb_generate_id(Xcb());
    xcb_create_pixmap(Xcb(), depth, pixmap, TheConnection().Root(), static_cast<std::uint16_t>(image.size.cx),
                      static_cast<std::uint16_t>(image.size.cy));
    const xcb_gcontext_t gc = xcb_generate_id(Xcb());
    xcb_create_gc(Xcb(), gc, pixmap, 0, nullptr);
    // No request is longer than what every server takes, a quarter of a megabyte.
    const int rows = std::max(1, 200 * 1024 / (image.size.cx * 4));
    for (int y = 0; y < image.size.cy; y += rows)
    {
        const int count = std::min(rows, image.size.cy - y);
        const auto* from = image.pixels.data() + static_cast<std::ptrdiff_t>(y) * image.size.cx;
        xcb_put_image(Xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, gc, static_cast<std::uint16_t>(image.size.cx),
                      static_cast<std::uint16_t>(count), 0, static_cast<std::int16_t>(y), 0, depth,
                      static_cast<std::uint32_t>(image.size.cx * count * 4),
                      reinterpret_cast<const std::uint8_t*>(from));
    }
    xcb_free_gc(Xcb(), gc);
    return pixmap;
}

} // namespace

DragPicture::DragPicture(screen::DragImage image, POINT pointer) : m_hotSpot(image.hotSpot)
{
    if (image.pixels.empty() || TheConnection().Extension(xcb_shape_id) == nullptr)
        return;
    const xcb_visualid_t soft = HasCompositor() ? FindVisual(32) : static_cast<xcb_visualid_t>(XCB_NONE);
    const std::uint8_t depth = soft != XCB_NONE ? 32 : 24;
    const xcb_visualid_t visual = soft != XCB_NONE ? soft : FindVisual(24);
    if (visual == XCB_NONE)
        return;
    const auto shape = ShapeOf(image);
    if (soft == XCB_NONE)
        std::ranges::transform(image.pixels, image.pixels.begin(), Unmultiplied);
    m_colormap = xcb_generate_id(Xcb());
    xcb_create_colormap(Xcb(), XCB_COLORMAP_ALLOC_NONE, m_colormap, TheConnection().Root(), visual);
    m_window = xcb_generate_id(Xcb());
    const xcb_pixmap_t pixmap = MakePixmap(image, depth);
    const std::uint32_t values[] = {pixmap, 0, 1, 1, m_colormap};
    xcb_create_window(
        Xcb(), depth, m_window, TheConnection().Root(), static_cast<std::int16_t>(pointer.x - m_hotSpot.x),
        static_cast<std::int16_t>(pointer.y - m_hotSpot.y), static_cast<std::uint16_t>(image.size.cx),
        static_cast<std::uint16_t>(image.size.cy), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
        XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_SAVE_UNDER | XCB_CW_COLORMAP,
        values);
    xcb_free_pixmap(Xcb(), pixmap); // the window keeps it
    const xcb_atom_t type = AtomNamed("_NET_WM_WINDOW_TYPE_DND");
    xcb_change_property(Xcb(), XCB_PROP_MODE_REPLACE, m_window, TheConnection()[Atom::NetWmWindowType], XCB_ATOM_ATOM,
                        32, 1, &type);
    // The pointer sees through it: what is below stays the window under the pointer, for everybody.
    xcb_shape_rectangles(Xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, m_window, 0, 0, 0,
                         nullptr);
    if (soft == XCB_NONE)
        xcb_shape_rectangles(Xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_YX_BANDED, m_window, 0,
                             0, static_cast<std::uint32_t>(shape.size()), shape.data());
    xcb_map_window(Xcb(), m_window);
}

DragPicture::~DragPicture()
{
    if (m_window == 0)
        return;
    xcb_destroy_window(Xcb(), m_window);
    xcb_free_colormap(Xcb(), m_colormap);
}

/// On top each time: a level may have opened over it.
void DragPicture::Follow(POINT pointer)
{
    if (m_window == 0)
        return;
    const std::uint32_t values[] = {static_cast<std::uint32_t>(pointer.x - m_hotSpot.x),
                                    static_cast<std::uint32_t>(pointer.y - m_hotSpot.y), XCB_STACK_MODE_ABOVE};
    xcb_configure_window(Xcb(), m_window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_STACK_MODE,
                         values);
}

} // namespace platform::x11
