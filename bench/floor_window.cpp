// The least a program can do to show something: one bare window, filled when the server asks for it.
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>

int main()
{
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection))
        return 1;
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t window = xcb_generate_id(connection);
    const std::uint32_t values[] = {screen->white_pixel, 1, XCB_EVENT_MASK_EXPOSURE};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 100, 100, 300, 700, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    const xcb_gcontext_t gc = xcb_generate_id(connection);
    xcb_create_gc(connection, gc, window, XCB_GC_FOREGROUND, &screen->black_pixel);
    xcb_map_window(connection, window);
    xcb_flush(connection);
    while (xcb_generic_event_t* const event = xcb_wait_for_event(connection))
    {
        if ((event->response_type & 0x7F) == XCB_EXPOSE)
        {
            const xcb_rectangle_t rect{10, 10, 280, 680};
            xcb_poly_fill_rectangle(connection, window, gc, 1, &rect);
            xcb_flush(connection);
        }
        std::free(event);
    }
    return 0;
}
