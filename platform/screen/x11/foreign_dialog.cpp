// Making way for a dialog that another program shows on this one's behalf.
//
// The pop-ups have taken the keyboard with the present time, and a window manager that asks in the name of an older key
// press is refused by the server: the dialog then looks active but has no keyboard. The manager's own word, the root
// window's _NET_ACTIVE_WINDOW, tells which window that is.
#include "platform/screen/x11/focus.h"
#include "platform/screen/x11/windows.h"

namespace platform::x11
{
namespace
{

struct YieldState
{
    bool yields = false;
    bool lowered = false; ///< pop-ups are below another program's window
};

YieldState& State()
{
    static YieldState& state = *new YieldState;
    return state;
}

xcb_window_t ActiveWindow()
{
    const auto cookie = xcb_get_property(Xcb(), 0, TheConnection().Root(), TheConnection()[Atom::NetActiveWindow],
                                         XCB_ATOM_WINDOW, 0, 1);
    return CollectWord(cookie).value_or(XCB_NONE);
}

/// The root's child that a window is in: the window manager's frame, or the window itself. 0 when it is gone.
xcb_window_t FrameOf(xcb_window_t window)
{
    while (true)
    {
        const auto reply = Collect(xcb_query_tree_reply, xcb_query_tree(Xcb(), window));
        if (reply == nullptr || reply->parent == 0)
            return 0;
        if (reply->parent == reply->root)
            return window;
        window = reply->parent;
    }
}

void SelectRootProperties(bool select)
{
    const std::uint32_t mask = select ? XCB_EVENT_MASK_PROPERTY_CHANGE : 0;
    xcb_change_window_attributes(Xcb(), TheConnection().Root(), XCB_CW_EVENT_MASK, &mask);
    xcb_flush(Xcb());
}

} // namespace

void OnRootProperty(const xcb_property_notify_event_t& event)
{
    if (!State().yields || event.window != TheConnection().Root() ||
        event.atom != TheConnection()[Atom::NetActiveWindow])
        return;
    const xcb_window_t active = ActiveWindow();
    if (active == 0 || FindNative(active) != nullptr)
        return;
    HandKeyboardTo(active);
    if (const xcb_window_t frame = FrameOf(active))
    {
        PutPopupsBelow(frame);
        State().lowered = true;
    }
}

} // namespace platform::x11

void platform::screen::YieldToForeignDialog(bool yields)
{
    using namespace x11;
    if (!TheConnection().IsOpen())
        return;
    State().yields = yields;
    SelectRootProperties(yields);
    if (!yields && std::exchange(State().lowered, false))
        RaisePopups();
}
