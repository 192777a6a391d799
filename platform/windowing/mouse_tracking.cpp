// TrackMouseEvent: word of the pointer's leaving. Hovering (TME_HOVER) is not implemented.
#include "platform/windowing/input_state.h"
#include "platform/windowing/message_queue.h"
#include "platform/windowing/window.h"

namespace platform
{
namespace
{

constinit HWND g_tracked = nullptr; ///< is told when the pointer leaves it

HWND WindowUnderPointer()
{
    return GetCapture() != nullptr ? GetCapture() : WindowFromPoint(MessagePoint());
}

} // namespace

void TrackPointer(HWND under)
{
    if (g_tracked != nullptr && under != g_tracked)
        PostMessageW(std::exchange(g_tracked, nullptr), WM_MOUSELEAVE, 0, 0);
}

void ForgetTrackingOf(HWND window)
{
    if (g_tracked == window)
        g_tracked = nullptr;
}

} // namespace platform

using namespace platform;

BOOL TrackMouseEvent(TRACKMOUSEEVENT* event)
{
    if (event == nullptr || event->cbSize != sizeof(TRACKMOUSEEVENT) || (event->dwFlags & ~TME_CANCEL) != TME_LEAVE ||
        RequireWindow(event->hwndTrack) == nullptr)
        return FALSE;
    if ((event->dwFlags & TME_CANCEL) != 0)
    {
        ForgetTrackingOf(event->hwndTrack);
        return TRUE;
    }
    g_tracked = event->hwndTrack;
    TrackPointer(WindowUnderPointer());
    return TRUE;
}
