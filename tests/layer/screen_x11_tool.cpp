// What on-screen tests need of the X server besides xdotool, in plain xcb.
//
//   pixel X Y       prints the colour of a point of the screen, 0xRRGGBB
//   client X Y [focus]  a plain window of another program, which says what happens to it; with "focus" it takes the
//                   keyboard itself when it is mapped
//   tooltip X Y     an override-redirect window that never takes the focus; says "mapped"
//   grabs           says whether keyboard and pointer can be grabbed, that is, nobody else has them
//   manager         succeeds when a window manager runs
//   shifting        a window manager that puts each window ten times elsewhere and says when it is asked for a place
//   focus           prints the window that has the focus
#include "xcb_program.h"

namespace
{

void Say(const char* what, unsigned value)
{
    std::printf("%s %u\n", what, value);
    std::fflush(stdout);
}

int PrintPixel(XcbProgram& program, int x, int y)
{
    const auto cookie = xcb_get_image(program.xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, program.root, static_cast<short>(x),
                                      static_cast<short>(y), 1, 1, ~0U);
    const auto reply = Own(xcb_get_image_reply(program.xcb, cookie, nullptr));
    if (reply == nullptr)
        return 1;
    const auto* bytes = xcb_get_image_data(reply.get());
    std::printf("0x%02x%02x%02x\n", bytes[2], bytes[1], bytes[0]);
    return 0;
}

int ReportGrabs(XcbProgram& program)
{
    const xcb_window_t root = program.root;
    const auto keyboard = Own(xcb_grab_keyboard_reply(
        program.xcb,
        xcb_grab_keyboard(program.xcb, 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC), nullptr));
    const auto pointer = Own(
        xcb_grab_pointer_reply(program.xcb,
                               xcb_grab_pointer(program.xcb, 0, root, XCB_EVENT_MASK_BUTTON_PRESS, XCB_GRAB_MODE_ASYNC,
                                                XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
                               nullptr));
    Say("keyboard", keyboard->status);
    Say("pointer", pointer->status);
    return keyboard->status != 0 || pointer->status != 0;
}

int PrintFocus(XcbProgram& program)
{
    const auto reply = Own(xcb_get_input_focus_reply(program.xcb, xcb_get_input_focus(program.xcb), nullptr));
    std::printf("%u\n", reply->focus);
    return 0;
}

/// Tells a window ten places, as a manager does whose user drags its frame.
void Shift(XcbProgram& program, xcb_window_t window)
{
    const auto geometry = Own(xcb_get_geometry_reply(program.xcb, xcb_get_geometry(program.xcb, window), nullptr));
    for (short step = 1; step <= 10; ++step)
    {
        xcb_configure_notify_event_t placed{};
        placed.response_type = XCB_CONFIGURE_NOTIFY;
        placed.event = placed.window = window;
        placed.x = static_cast<short>(geometry->x + step);
        placed.y = static_cast<short>(geometry->y + 2 * step);
        placed.width = geometry->width;
        placed.height = geometry->height;
        xcb_send_event(program.xcb, 0, window, XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<const char*>(&placed));
    }
}

int RunShiftingManager(XcbProgram& program)
{
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(program.xcb, program.root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(program.xcb);
    Say("managing", 0);
    while (const auto event = Own(xcb_wait_for_event(program.xcb)))
    {
        const int type = event->response_type & 0x7F;
        if (type == XCB_MAP_REQUEST)
        {
            const xcb_window_t window = reinterpret_cast<const xcb_map_request_event_t*>(event.get())->window;
            xcb_map_window(program.xcb, window);
            Shift(program, window);
            xcb_flush(program.xcb);
        }
        else if (type == XCB_CONFIGURE_REQUEST)
        {
            const auto& request = *reinterpret_cast<const xcb_configure_request_event_t*>(event.get());
            if ((request.value_mask & (XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y)) != 0)
                Say("request", request.window);
        }
        else if (type == XCB_UNMAP_NOTIFY)
        {
            Say("unmapped", reinterpret_cast<const xcb_unmap_notify_event_t*>(event.get())->window);
        }
    }
    return 0;
}

bool HasManager(XcbProgram& program)
{
    const auto reply = program.Read(program.root, program["_NET_SUPPORTING_WM_CHECK"]);
    return reply != nullptr && xcb_get_property_value_length(reply.get()) == 4;
}

int RunClient(XcbProgram& program, int x, int y, bool tooltip, bool takeFocus)
{
    const xcb_window_t window =
        program.MakeWindow(x, y,
                           XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                               XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                           tooltip);
    xcb_map_window(program.xcb, window);
    xcb_flush(program.xcb);
    while (const auto event = Own(xcb_wait_for_event(program.xcb)))
    {
        const auto* key = reinterpret_cast<const xcb_key_press_event_t*>(event.get());
        const auto* focus = reinterpret_cast<const xcb_focus_in_event_t*>(event.get());
        switch (event->response_type & 0x7F)
        {
        case XCB_MAP_NOTIFY:
            Say("mapped", window);
            if (takeFocus)
            {
                xcb_set_input_focus(program.xcb, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
                xcb_flush(program.xcb);
            }
            break;
        case XCB_KEY_PRESS:
            Say("key", key->detail);
            break;
        case XCB_BUTTON_PRESS:
            Say("press", key->detail);
            break;
        case XCB_BUTTON_RELEASE:
            Say("release", key->detail);
            break;
        case XCB_FOCUS_IN:
            Say("focus-in", focus->mode);
            break;
        case XCB_FOCUS_OUT:
            Say("focus-out", focus->mode);
            break;
        default:
            break;
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    XcbProgram program;
    if (!program.IsOpen() || argc < 2)
        return 2;
    const std::string mode = argv[1];
    const int x = argc > 2 ? std::atoi(argv[2]) : 0;
    const int y = argc > 3 ? std::atoi(argv[3]) : 0;
    if (mode == "pixel")
        return PrintPixel(program, x, y);
    if (mode == "grabs")
        return ReportGrabs(program);
    if (mode == "shifting")
        return RunShiftingManager(program);
    if (mode == "focus")
        return PrintFocus(program);
    if (mode == "manager")
        return HasManager(program) ? 0 : 1;
    return RunClient(program, x, y, mode == "tooltip", argc > 4);
}
