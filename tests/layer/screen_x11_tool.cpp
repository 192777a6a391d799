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
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>
#include <xcb/xcb.h>

namespace
{

struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};

template <typename T>
std::unique_ptr<T, FreeDeleter> Own(T* memory)
{
    return std::unique_ptr<T, FreeDeleter>(memory);
}

void Say(const char* what, unsigned value)
{
    std::printf("%s %u\n", what, value);
    std::fflush(stdout);
}

xcb_screen_t* ScreenOf(xcb_connection_t* xcb)
{
    return xcb_setup_roots_iterator(xcb_get_setup(xcb)).data;
}

int PrintPixel(xcb_connection_t* xcb, int x, int y)
{
    const auto cookie = xcb_get_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, ScreenOf(xcb)->root, static_cast<short>(x),
                                      static_cast<short>(y), 1, 1, ~0U);
    const auto reply = Own(xcb_get_image_reply(xcb, cookie, nullptr));
    if (reply == nullptr)
        return 1;
    const auto* bytes = xcb_get_image_data(reply.get());
    std::printf("0x%02x%02x%02x\n", bytes[2], bytes[1], bytes[0]);
    return 0;
}

int ReportGrabs(xcb_connection_t* xcb)
{
    const xcb_window_t root = ScreenOf(xcb)->root;
    const auto keyboard = Own(xcb_grab_keyboard_reply(
        xcb, xcb_grab_keyboard(xcb, 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC), nullptr));
    const auto pointer =
        Own(xcb_grab_pointer_reply(xcb,
                                   xcb_grab_pointer(xcb, 0, root, XCB_EVENT_MASK_BUTTON_PRESS, XCB_GRAB_MODE_ASYNC,
                                                    XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
                                   nullptr));
    Say("keyboard", keyboard->status);
    Say("pointer", pointer->status);
    return keyboard->status != 0 || pointer->status != 0;
}

int PrintFocus(xcb_connection_t* xcb)
{
    const auto reply = Own(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    std::printf("%u\n", reply->focus);
    return 0;
}

xcb_window_t MakeWindow(xcb_connection_t* xcb, int x, int y, bool unmanaged)
{
    const xcb_window_t window = xcb_generate_id(xcb);
    const std::uint32_t values[] = {0x0000FF00, unmanaged,
                                    XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS |
                                        XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE |
                                        XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, ScreenOf(xcb)->root, static_cast<short>(x),
                      static_cast<short>(y), 200, 150, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    // WM_NORMAL_HINTS: the user has placed it.
    const std::uint32_t hints[18] = {1};
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32, 18,
                        hints);
    xcb_map_window(xcb, window);
    xcb_flush(xcb);
    return window;
}

/// Tells a window ten places, as a manager does whose user drags its frame.
void Shift(xcb_connection_t* xcb, xcb_window_t window)
{
    const auto geometry = Own(xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, window), nullptr));
    for (short step = 1; step <= 10; ++step)
    {
        xcb_configure_notify_event_t placed{};
        placed.response_type = XCB_CONFIGURE_NOTIFY;
        placed.event = placed.window = window;
        placed.x = static_cast<short>(geometry->x + step);
        placed.y = static_cast<short>(geometry->y + 2 * step);
        placed.width = geometry->width;
        placed.height = geometry->height;
        xcb_send_event(xcb, 0, window, XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<const char*>(&placed));
    }
}

int RunShiftingManager(xcb_connection_t* xcb)
{
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(xcb, ScreenOf(xcb)->root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(xcb);
    Say("managing", 0);
    while (const auto event = Own(xcb_wait_for_event(xcb)))
    {
        const int type = event->response_type & 0x7F;
        if (type == XCB_MAP_REQUEST)
        {
            const xcb_window_t window = reinterpret_cast<const xcb_map_request_event_t*>(event.get())->window;
            xcb_map_window(xcb, window);
            Shift(xcb, window);
            xcb_flush(xcb);
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

bool HasManager(xcb_connection_t* xcb)
{
    constexpr char kName[] = "_NET_SUPPORTING_WM_CHECK";
    const auto atom = Own(xcb_intern_atom_reply(xcb, xcb_intern_atom(xcb, 0, sizeof(kName) - 1, kName), nullptr));
    const auto cookie = xcb_get_property(xcb, 0, ScreenOf(xcb)->root, atom->atom, XCB_ATOM_WINDOW, 0, 1);
    const auto reply = Own(xcb_get_property_reply(xcb, cookie, nullptr));
    return reply != nullptr && xcb_get_property_value_length(reply.get()) == 4;
}

int RunClient(xcb_connection_t* xcb, int x, int y, bool tooltip, bool takeFocus)
{
    const xcb_window_t window = MakeWindow(xcb, x, y, tooltip);
    while (const auto event = Own(xcb_wait_for_event(xcb)))
    {
        const auto* key = reinterpret_cast<const xcb_key_press_event_t*>(event.get());
        const auto* focus = reinterpret_cast<const xcb_focus_in_event_t*>(event.get());
        switch (event->response_type & 0x7F)
        {
        case XCB_MAP_NOTIFY:
            Say("mapped", window);
            if (takeFocus)
            {
                xcb_set_input_focus(xcb, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
                xcb_flush(xcb);
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
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection(xcb_connect(nullptr, nullptr),
                                                                                    &xcb_disconnect);
    xcb_connection_t* xcb = connection.get();
    if (xcb_connection_has_error(xcb) != 0 || argc < 2)
        return 2;
    const std::string mode = argv[1];
    const int x = argc > 2 ? std::atoi(argv[2]) : 0;
    const int y = argc > 3 ? std::atoi(argv[3]) : 0;
    if (mode == "pixel")
        return PrintPixel(xcb, x, y);
    if (mode == "grabs")
        return ReportGrabs(xcb);
    if (mode == "shifting")
        return RunShiftingManager(xcb);
    if (mode == "focus")
        return PrintFocus(xcb);
    if (mode == "manager")
        return HasManager(xcb) ? 0 : 1;
    return RunClient(xcb, x, y, mode == "tooltip", argc > 4);
}
