// Other programs' windows whose end this program wants to hear of.
#include "platform/screen/x11/watches.h"

#include "platform/screen/x11/connection.h"

#include <map>

namespace platform::x11
{
namespace
{

/// A bit for each watcher, by window.
std::map<xcb_window_t, unsigned>& Watched()
{
    static auto& watched = *new std::map<xcb_window_t, unsigned>;
    return watched;
}

} // namespace

void WatchForeign(xcb_window_t window, Watcher watcher, bool on)
{
    const xcb_setup_t* setup = xcb_get_setup(Xcb());
    const bool own = (window & ~setup->resource_id_mask) == setup->resource_id_base;
    if (own || window == XCB_NONE || window == TheConnection().Root())
        return;
    unsigned& watchers = Watched()[window];
    const unsigned before = watchers;
    const unsigned bit = 1U << static_cast<unsigned>(watcher);
    watchers = on ? watchers | bit : watchers & ~bit;
    if (watchers != before)
    {
        const bool properties = (watchers & 1U << static_cast<unsigned>(Watcher::Transfer)) != 0;
        const std::uint32_t mask =
            (watchers != 0 ? XCB_EVENT_MASK_STRUCTURE_NOTIFY : 0) | (properties ? XCB_EVENT_MASK_PROPERTY_CHANGE : 0);
        IgnoreErrors(xcb_change_window_attributes_checked(Xcb(), window, XCB_CW_EVENT_MASK, &mask));
    }
    if (watchers == 0)
        Watched().erase(window);
}

void ForgetForeign(xcb_window_t window)
{
    Watched().erase(window);
}

} // namespace platform::x11
