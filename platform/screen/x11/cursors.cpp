// Pictures of the pointer: the desktop's theme where its module is there and has them, else the font of the display.
#include "platform/screen/x11/cursors.h"

#include "platform/screen/x11/connection.h"
#include "platform/services/cursor_service.h"
#include "platform/services/desktop_module.h"

namespace platform::x11
{
namespace
{

struct Shape
{
    const char* names[5]; ///< in themes, the best first; ended by null
    std::uint16_t glyph;  ///< in the cursor font (X11/cursorfont.h), its mask behind it
};

constexpr std::uint16_t kXterm = 152, kPlus = 90, kFleur = 52, kSbRightArrow = 96, kQuestionArrow = 92, kCircle = 24;
constexpr Shape kText{{"text", "xterm", nullptr}, kXterm};
constexpr Shape kCopy{{"dnd-copy", "copy", nullptr}, kPlus};
constexpr Shape kMove{{"dnd-move", "move", "fleur", nullptr}, kFleur};
constexpr Shape kLink{{"dnd-link", "alias", "link", nullptr}, kSbRightArrow};
constexpr Shape kAsk{{"dnd-ask", "ask", "context-menu", nullptr}, kQuestionArrow};
constexpr Shape kNone{{"dnd-none", "no-drop", "dnd-no-drop", "not-allowed", nullptr}, kCircle};

xcb_cursor_t GlyphCursor(std::uint16_t glyph)
{
    constexpr std::string_view kFont = "cursor";
    const xcb_font_t font = xcb_generate_id(Xcb());
    xcb_open_font(Xcb(), font, kFont.size(), kFont.data());
    const xcb_cursor_t cursor = xcb_generate_id(Xcb());
    xcb_create_glyph_cursor(Xcb(), cursor, font, font, glyph, glyph + 1, 0, 0, 0, 0xFFFF, 0xFFFF, 0xFFFF);
    xcb_close_font(Xcb(), font);
    return cursor;
}

xcb_cursor_t MakeCursor(const Shape& shape)
{
    static const auto* const service = static_cast<const CursorService*>(CursorModuleSymbol("orb_cursor_service"));
    xcb_screen_t screen = TheConnection().Screen();
    const xcb_cursor_t themed = service != nullptr ? service->load(Xcb(), &screen, shape.names) : XCB_NONE;
    return themed != XCB_NONE ? themed : GlyphCursor(shape.glyph);
}

} // namespace

xcb_cursor_t TextCursor()
{
    static const xcb_cursor_t cursor = MakeCursor(kText);
    return cursor;
}

xcb_cursor_t DragCursor(screen::DragActions action)
{
    static xcb_cursor_t cursors[5] = {};
    constexpr const Shape* kShapes[5] = {&kNone, &kCopy, &kMove, &kLink, &kAsk};
    const std::size_t index = (action & screen::kDragAsk) != 0    ? 4
                              : (action & screen::kDragMove) != 0 ? 2
                              : (action & screen::kDragCopy) != 0 ? 1
                              : (action & screen::kDragLink) != 0 ? 3
                                                                  : 0;
    if (cursors[index] == XCB_NONE)
        cursors[index] = MakeCursor(*kShapes[index]);
    return cursors[index];
}

} // namespace platform::x11
