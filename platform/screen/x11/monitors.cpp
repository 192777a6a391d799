// Monitors, their work areas, and the resolution.
#include "platform/screen/x11/monitors.h"

#include "platform/screen/x11/connection.h"
#include "platform/screen/desktop_settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace platform::x11
{
namespace
{

using screen::Monitor;

constexpr UINT kDefaultDpi = 96;

struct State
{
    std::vector<Monitor> monitors;
    bool stale = true;
};

State& TheState()
{
    static State& state = *new State;
    return state;
}

UINT ResourceDpi(std::string_view resources)
{
    constexpr std::string_view kName = "Xft.dpi:";
    const auto line = resources.starts_with(kName) ? 0 : resources.find("\nXft.dpi:");
    if (line == resources.npos)
        return 0;
    resources.remove_prefix(resources.find(':', line) + 1);
    resources.remove_prefix(std::min(resources.find_first_not_of(" \t"), resources.size()));
    double dpi = 0;
    std::from_chars(resources.data(), resources.data() + resources.size(), dpi);
    return dpi >= 1 && dpi <= 10000 ? static_cast<UINT>(std::lround(dpi)) : 0;
}

UINT ReadDpi()
{
    if (const UINT dpi = ResourceDpi(TheConnection().Resources()))
        return dpi;
    const auto& published = screen::PublishedSettings();
    const auto found = published.find("Xft/DPI");
    const long scaled = found != published.end() ? std::strtol(found->second.c_str(), nullptr, 10) : 0;
    return scaled > 1024 ? static_cast<UINT>(scaled / 1024) : kDefaultDpi;
}

RECT RootBounds()
{
    const xcb_screen_t& root = TheConnection().Screen();
    return {0, 0, root.width_in_pixels, root.height_in_pixels};
}

std::vector<Monitor> ReadMonitors()
{
    std::vector<Monitor> monitors;
    const auto reply =
        TheConnection().monitorsAsked ? Collect(xcb_randr_get_monitors_reply, TheConnection().monitors) : nullptr;
    auto info =
        reply != nullptr ? xcb_randr_get_monitors_monitors_iterator(reply.get()) : xcb_randr_monitor_info_iterator_t{};
    for (; info.rem > 0; xcb_randr_monitor_info_next(&info))
    {
        const RECT bounds{info.data->x, info.data->y, info.data->x + info.data->width,
                          info.data->y + info.data->height};
        monitors.insert(info.data->primary != 0 ? monitors.begin() : monitors.end(), {bounds, bounds, kDefaultDpi});
    }
    if (monitors.empty())
        monitors.push_back({RootBounds(), RootBounds(), kDefaultDpi});
    return monitors;
}

/// The part of the root window that a panel takes away from a monitor (_NET_WM_STRUT_PARTIAL: left, right, top, bottom
/// widths measured from the root's edges, then the range along each edge).
void ApplyStrut(Monitor& monitor, const std::vector<std::uint32_t>& strut, const RECT& root)
{
    const auto at = [&](std::size_t index) { return static_cast<LONG>(strut[index]); };
    const auto meets = [&](std::size_t range, LONG low, LONG high) { return at(range) < high && at(range + 1) >= low; };
    const RECT& b = monitor.bounds;
    RECT& work = monitor.workArea;
    if (at(0) > 0 && meets(4, b.top, b.bottom) && at(0) < b.right)
        work.left = std::max(work.left, at(0));
    if (at(1) > 0 && meets(6, b.top, b.bottom) && root.right - at(1) > b.left)
        work.right = std::min(work.right, root.right - at(1));
    if (at(2) > 0 && meets(8, b.left, b.right) && at(2) < b.bottom)
        work.top = std::max(work.top, at(2));
    if (at(3) > 0 && meets(10, b.left, b.right) && root.bottom - at(3) > b.top)
        work.bottom = std::min(work.bottom, root.bottom - at(3));
}

void ApplyStruts(std::vector<Monitor>& monitors, const std::vector<xcb_window_t>& clients)
{
    std::vector<xcb_get_property_cookie_t> cookies;
    for (const xcb_window_t client : clients)
    {
        cookies.push_back(
            xcb_get_property(Xcb(), 0, client, TheConnection()[Atom::NetWmStrutPartial], XCB_ATOM_CARDINAL, 0, 12));
    }
    for (const auto cookie : cookies)
    {
        const auto strut = CollectWords(cookie);
        for (Monitor& monitor : strut.size() == 12 ? std::span(monitors) : std::span<Monitor>())
            ApplyStrut(monitor, strut, RootBounds());
    }
}

/// _NET_WORKAREA is one rectangle for all monitors: it says all there is to say only when there is one.
bool ApplyWorkArea(Monitor& monitor, const std::vector<std::uint32_t>& areas, std::size_t desktop)
{
    if (areas.size() < 4)
        return false;
    const std::size_t first = desktop * 4 + 4 <= areas.size() ? desktop * 4 : 0;
    const auto at = [&](std::size_t index) { return static_cast<LONG>(areas[first + index]); };
    const RECT area{at(0), at(1), at(0) + at(2), at(1) + at(3)};
    const RECT& b = monitor.bounds;
    const RECT work{std::max(area.left, b.left), std::max(area.top, b.top), std::min(area.right, b.right),
                    std::min(area.bottom, b.bottom)};
    monitor.workArea = work.left < work.right && work.top < work.bottom ? work : monitor.workArea;
    return true;
}

void ReadWorkAreas(std::vector<Monitor>& monitors)
{
    Connection& connection = TheConnection();
    const auto areas = CollectWords(connection.workArea);
    const auto desktop = CollectWords(connection.currentDesktop);
    const auto clients = CollectWords(connection.clientList);
    const bool known = monitors.size() == 1 && ApplyWorkArea(monitors[0], areas, desktop.empty() ? 0 : desktop[0]);
    if (!known)
        ApplyStruts(monitors, clients);
}

std::vector<Monitor> Read()
{
    if (!TheConnection().IsOpen())
        return {{RECT{0, 0, 1024, 768}, RECT{0, 0, 1024, 768}, kDefaultDpi}};
    TheConnection().SendSecondBatch();
    auto monitors = ReadMonitors();
    ReadWorkAreas(monitors);
    const UINT dpi = ReadDpi();
    for (Monitor& monitor : monitors)
        monitor.dpi = dpi;
    return monitors;
}

} // namespace

void RereadMonitors()
{
    State& state = TheState();
    if (!std::exchange(state.stale, true))
        TheConnection().AskMonitors();
}

} // namespace platform::x11

namespace platform::screen
{

const std::vector<Monitor>& Monitors()
{
    auto& state = x11::TheState();
    if (std::exchange(state.stale, false))
        state.monitors = x11::Read();
    return state.monitors;
}

} // namespace platform::screen
