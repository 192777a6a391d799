// DragDetect: whether a press becomes a drag.
#include "platform/windowing/message_queue.h"
#include "platform/windowing/window.h"

using namespace platform;

BOOL DragDetect(HWND window, POINT point)
{
    if (RequireWindow(window) == nullptr)
        return FALSE;
    ClientToScreen(window, &point);
    RECT still{point.x, point.y, point.x + 1, point.y + 1};
    InflateRect(&still, GetSystemMetrics(SM_CXDRAG), GetSystemMetrics(SM_CYDRAG));
    SetCapture(window);
    while (GetCapture() == window)
    {
        MSG message{};
        if (PeekMessageW(&message, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE))
        {
            if (message.message == WM_LBUTTONUP || message.message == WM_RBUTTONUP)
            {
                ReleaseCapture();
                // The program still sees the release.
                PostMessageW(message.hwnd, message.message, message.wParam, message.lParam);
            }
            else if (message.message == WM_MOUSEMOVE && !PtInRect(&still, message.pt))
            {
                ReleaseCapture();
                return TRUE;
            }
        }
        else if (PeekMessageW(&message, nullptr, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE) && message.wParam == VK_ESCAPE)
        {
            ReleaseCapture();
        }
        else
        {
            WaitForMessage();
        }
    }
    return FALSE;
}
