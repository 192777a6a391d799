// The headless screen's monitors, settings and other programs' windows.
#include "tests/headless/headless_state.h"

#include <cstdio>

namespace platform::headless
{
namespace
{

std::vector<screen::Monitor> ParseMonitors(std::string_view text, UINT dpi)
{
    std::vector<screen::Monitor> monitors;
    while (!text.empty())
    {
        const std::string part(text.substr(0, text.find(',')));
        text.remove_prefix(std::min(text.size(), part.size() + 1));
        int width = 0, height = 0, x = 0, y = 0, used = 0;
        const int fields = std::sscanf(part.c_str(), "%dx%d%d%d%n", &width, &height, &x, &y, &used);
        if (fields != 4 || static_cast<std::size_t>(used) != part.size() || width <= 0 || height <= 0)
            return {};
        const RECT bounds{x, y, x + width, y + height};
        monitors.push_back({bounds, bounds, dpi});
    }
    return monitors;
}

} // namespace

State& TheState()
{
    static State& state = *[]
    {
        auto* made = new State;
        made->monitors = ParseMonitors("1920x1080+0+0", 96);
        return made;
    }();
    return state;
}

bool SetMonitors(std::string_view text, UINT dpi)
{
    auto monitors = ParseMonitors(text, dpi);
    if (monitors.empty())
        return false;
    TheState().monitors = std::move(monitors);
    return true;
}

void SetWorkArea(std::size_t monitor, const RECT& workArea)
{
    TheState().monitors.at(monitor).workArea = workArea;
}

void SetDpi(std::size_t monitor, UINT dpi)
{
    TheState().monitors.at(monitor).dpi = dpi;
}

void SetDesktopSetting(std::string_view name, std::string_view value)
{
    TheState().settings.insert_or_assign(std::string(name), std::string(value));
}

void SetForeignWindow(std::uint32_t id, const RECT& bounds)
{
    TheState().foreignWindows.erase(id);
    if (bounds.right > bounds.left && bounds.bottom > bounds.top)
        TheState().foreignWindows.emplace(id, bounds);
}

void Reset()
{
    State& state = TheState();
    SetMonitors("1920x1080+0+0");
    state.settings.clear();
    state.foreignWindows.clear();
    state.events.clear();
    state.pointer = {};
    state.pointerWindow = state.pressedWindow = 0;
    state.pressedButtons = state.modifiers = 0;
    state.textCaret.reset();
    state.composition = {};
    state.idleHandler = nullptr;
    state.woken = false;
    state.presentedPixels = 0;
    ForgetSelections();
    ForgetDrags();
}

} // namespace platform::headless

namespace platform::screen
{

bool Open()
{
    return true;
}

std::string DisplayName()
{
    return "headless";
}

const std::vector<Monitor>& Monitors()
{
    return headless::TheState().monitors;
}

const std::map<std::string, std::string, std::less<>>& PublishedSettings()
{
    // Never the settings file of whoever runs the tests.
    auto& settings = headless::TheState().settings;
    settings.try_emplace("Headless", "1");
    return settings;
}

std::optional<RECT> ForeignWindowBounds(std::uint32_t id)
{
    const auto& windows = headless::TheState().foreignWindows;
    const auto found = windows.find(id);
    return found != windows.end() ? std::optional(found->second) : std::nullopt;
}

} // namespace platform::screen
