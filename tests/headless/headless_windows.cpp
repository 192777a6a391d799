// The headless screen's windows: pictures in memory, stacked.
#include "tests/headless/headless_state.h"

#include "platform/base/clock.h"

#include <algorithm>
#include <utility>

namespace platform::headless
{
namespace
{

constexpr std::uint32_t kDesktopColor = 0x00404040;
// What nobody has drawn yet: shows up in pictures and in tests that read a pixel.
constexpr std::uint32_t kUndrawn = 0x00FF00FF;

bool Contains(const RECT& rect, POINT point)
{
    return point.x >= rect.left && point.x < rect.right && point.y >= rect.top && point.y < rect.bottom;
}

} // namespace

Picture::Picture(int width, int height)
    : pixels(static_cast<std::size_t>(std::max(width, 0)) * static_cast<std::size_t>(std::max(height, 0)), kUndrawn),
      surface{pixels.data(), std::max(width, 0), std::max(height, 0), std::max(width, 0)}
{
}

HeadlessWindow* FindWindow(screen::NativeWindow window)
{
    for (HeadlessWindow& candidate : TheState().windows)
        if (candidate.info.id == window)
            return &candidate;
    return nullptr;
}

screen::NativeWindow WindowAt(POINT point)
{
    for (const HeadlessWindow& window : TheState().windows)
        if (window.info.visible && Contains(window.info.bounds, point))
            return window.info.id;
    return 0;
}

std::vector<WindowInfo> Windows()
{
    std::vector<WindowInfo> result;
    for (const HeadlessWindow& window : TheState().windows)
        result.push_back(window.info);
    return result;
}

bool HasKeyboard()
{
    return TheState().hasKeyboard;
}

std::uint32_t PixelAt(int x, int y)
{
    const HeadlessWindow* window = FindWindow(WindowAt({x, y}));
    if (window == nullptr)
        return kDesktopColor;
    const Surface& shown = window->shown->surface;
    const std::uint32_t pixel =
        shown.pixels[(y - window->info.bounds.top) * shown.stride + x - window->info.bounds.left];
    return pixel & 0x00FFFFFF;
}

std::size_t TakePlaceRequests()
{
    return std::exchange(TheState().placeRequests, 0);
}

std::size_t TakePresentedPixels()
{
    return std::exchange(TheState().presentedPixels, 0);
}

} // namespace platform::headless

namespace platform::screen
{

using headless::FindWindow;
using headless::HeadlessWindow;
using headless::Picture;
using headless::State;
using headless::TheState;

NativeWindow CreateNativeWindow(const WindowOptions& options)
{
    State& state = TheState();
    HeadlessWindow window;
    window.info = {state.nextWindow++, options.bounds, false, options.kind, std::u16string(options.title)};
    const int width = options.bounds.right - options.bounds.left;
    const int height = options.bounds.bottom - options.bounds.top;
    window.drawn = std::make_shared<Picture>(width, height);
    window.shown = std::make_shared<Picture>(width, height);
    state.windows.insert(state.windows.begin(), std::move(window));
    return state.windows.front().info.id;
}

void DestroyNativeWindow(NativeWindow window)
{
    ShowNativeWindow(window, false);
    State& state = TheState();
    std::erase_if(
        state.windows, [&](const HeadlessWindow& candidate) { return candidate.info.id == window; });
    std::erase_if(state.events, [&](const Event& event) { return event.window == window; });
}

void ShowNativeWindow(NativeWindow window, bool show)
{
    State& state = TheState();
    HeadlessWindow* found = FindWindow(window);
    if (found == nullptr || found->info.visible == show)
        return;
    found->info.visible = show;
    if (!show && state.pressedWindow == window)
    {
        state.pressedWindow = 0;
        state.pressedButtons = headless::IsDragging() ? state.pressedButtons : 0;
    }
    if (std::none_of(state.windows.begin(), state.windows.end(), [](const auto& other) { return other.info.visible; }))
        state.hasKeyboard = false;
    headless::PointerMayHaveChangedWindow();
}

void PlaceNativeWindow(NativeWindow window, const RECT& bounds)
{
    const HeadlessWindow* found = FindWindow(window);
    if (found == nullptr || EqualRect(&found->info.bounds, &bounds))
        return;
    ++TheState().placeRequests;
    NotePlacement(window, bounds);
}

void NotePlacement(NativeWindow window, const RECT& bounds)
{
    HeadlessWindow* found = FindWindow(window);
    if (found == nullptr)
        return;
    const int width = bounds.right - bounds.left;
    const int height = bounds.bottom - bounds.top;
    if (width != found->drawn->surface.width || height != found->drawn->surface.height)
    {
        found->drawn = std::make_shared<Picture>(width, height);
        found->shown = std::make_shared<Picture>(width, height);
    }
    found->info.bounds = bounds;
    headless::PointerMayHaveChangedWindow();
}

void StackNativeWindow(NativeWindow window, NativeWindow above)
{
    auto& windows = TheState().windows;
    const auto is = [](NativeWindow id) { return [id](const HeadlessWindow& w) { return w.info.id == id; }; };
    const auto found = std::find_if(windows.begin(), windows.end(), is(window));
    if (found == windows.end())
        return;
    HeadlessWindow moved = std::move(*found);
    windows.erase(found);
    const auto place = std::find_if(windows.begin(), windows.end(), is(above));
    windows.insert(place == windows.end() ? windows.begin() : place + 1, std::move(moved));
    headless::PointerMayHaveChangedWindow();
}

void RingBell() {}

void SetNativeTitle(NativeWindow window, std::u16string_view title)
{
    if (HeadlessWindow* found = FindWindow(window))
        found->info.title = title;
}

const Surface& WindowSurface(NativeWindow window)
{
    static const Surface& none = *new Surface;
    const HeadlessWindow* found = FindWindow(window);
    return found != nullptr ? found->drawn->surface : none;
}

std::shared_ptr<void> KeepSurface(NativeWindow window)
{
    const HeadlessWindow* found = FindWindow(window);
    return found != nullptr ? found->drawn : nullptr;
}

void Present(NativeWindow window, std::span<const RECT> damage)
{
    const HeadlessWindow* found = FindWindow(window);
    for (const RECT& rect : found != nullptr ? damage : std::span<const RECT>())
    {
        for (int y = rect.top; y < rect.bottom; ++y)
        {
            const int start = y * found->drawn->surface.stride + rect.left;
            std::copy_n(found->drawn->surface.pixels + start, rect.right - rect.left,
                        found->shown->surface.pixels + start);
        }
        const auto area =
            static_cast<std::size_t>(rect.right - rect.left) * static_cast<std::size_t>(rect.bottom - rect.top);
        TheState().presentedPixels += area;
    }
}

void Commit() {}

void Finish() {}

void YieldToForeignDialog(bool) {}

void TakeKeyboard(NativeWindow window)
{
    State& state = TheState();
    if (state.hasKeyboard)
        return;
    state.hasKeyboard = true;
    Event event;
    event.type = EventType::Activated;
    event.window = window;
    event.time = NowMs();
    state.events.push_back(event);
}

} // namespace platform::screen
