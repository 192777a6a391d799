// Mouse capture: one window gets all mouse input.
//
// The display is not asked to grab anything: while a button is down it reports the pointer to the window of the press
// anyway, and that is the only time at which capture has to reach beyond this program's windows.
#include "platform/windowing/input_state.h"
#include "platform/windowing/message_queue.h"
#include "platform/windowing/window.h"

namespace platform
{
namespace
{

constinit HWND g_capture = nullptr;

void ChangeCapture(HWND next)
{
    const HWND previous = std::exchange(g_capture, next);
    if (previous != next && IsWindow(previous))
        SendMessageW(previous, WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(next));
    RequestMouseRefresh();
}

} // namespace

void CancelCapture()
{
    if (IsWindow(g_capture))
        SendMessageW(g_capture, WM_CANCELMODE, 0, 0);
    if (g_capture != nullptr)
        ChangeCapture(nullptr);
}

void ForgetCaptureOf(HWND window)
{
    if (g_capture != nullptr && (g_capture == window || IsChild(window, g_capture)))
        ChangeCapture(nullptr);
}

} // namespace platform

using namespace platform;

HWND SetCapture(HWND window)
{
    if (RequireWindow(window) == nullptr)
        return nullptr;
    const HWND previous = g_capture;
    ChangeCapture(window);
    return previous;
}

HWND GetCapture()
{
    return g_capture;
}

BOOL ReleaseCapture()
{
    if (g_capture != nullptr)
        ChangeCapture(nullptr);
    return TRUE;
}
