// TrackMouseEvent: leaving and resting.
#include "platform/base/clock.h"
#include "platform/windowing/input_state.h"
#include "platform/windowing/message_queue.h"
#include "platform/windowing/window.h"

#include <cstdlib>

namespace platform
{
namespace
{

// SPI_GETMOUSEHOVERWIDTH and -HEIGHT: the pointer rests while it stays inside this box.
constexpr int kHoverBox = 4;

struct Tracking
{
    HWND window = nullptr;
    DWORD flags = 0;
    DWORD hoverTime = 0;
    std::uint64_t restingSince = 0;
    POINT resting{};
};

Tracking& State()
{
    static Tracking& state = *new Tracking;
    return state;
}

HWND WindowUnderPointer(POINT position)
{
    return GetCapture() != nullptr ? GetCapture() : WindowFromPoint(position);
}

void Leave()
{
    Tracking& state = State();
    if ((state.flags & TME_LEAVE) != 0)
        PostMessageW(state.window, WM_MOUSELEAVE, 0, 0);
    state = {};
}

} // namespace

void TrackPointer(HWND under, POINT position)
{
    Tracking& state = State();
    if (state.window == nullptr)
        return;
    if (under != state.window)
    {
        Leave();
        return;
    }
    const bool moved = std::abs(position.x - state.resting.x) > kHoverBox / 2 ||
                       std::abs(position.y - state.resting.y) > kHoverBox / 2;
    if (moved)
    {
        state.resting = position;
        state.restingSince = NowMs();
    }
}

std::optional<std::uint64_t> NextHover()
{
    const Tracking& state = State();
    return (state.flags & TME_HOVER) != 0 ? std::optional(state.restingSince + state.hoverTime) : std::nullopt;
}

void CheckHover()
{
    const auto due = NextHover();
    if (!due || *due > NowMs())
        return;
    Tracking& state = State();
    POINT client = state.resting;
    ScreenToClient(state.window, &client);
    PostMessageW(state.window, WM_MOUSEHOVER, MouseKeys(), MAKELPARAM(client.x, client.y));
    state.flags &= ~static_cast<DWORD>(TME_HOVER);
}

void ForgetTrackingOf(HWND window)
{
    if (State().window == window)
        State() = {};
}

} // namespace platform

using namespace platform;

BOOL TrackMouseEvent(TRACKMOUSEEVENT* event)
{
    if (event == nullptr || event->cbSize != sizeof(TRACKMOUSEEVENT) || RequireWindow(event->hwndTrack) == nullptr)
        return FALSE;
    Tracking& state = State();
    if ((event->dwFlags & TME_CANCEL) != 0)
    {
        if (state.window == event->hwndTrack)
            state.flags &= ~event->dwFlags;
        return TRUE;
    }
    UINT hoverTime = event->dwHoverTime;
    if (hoverTime == 0 || hoverTime == 0xFFFFFFFF)
        SystemParametersInfoW(SPI_GETMOUSEHOVERTIME, 0, &hoverTime, 0);
    const DWORD kept = state.window == event->hwndTrack ? state.flags : 0;
    state = {event->hwndTrack, kept | event->dwFlags, hoverTime, NowMs(), MessagePoint()};
    if (WindowUnderPointer(MessagePoint()) != event->hwndTrack)
        Leave();
    return TRUE;
}
