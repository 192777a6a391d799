// GetDeviceCaps. In a file of its own because the resolution is the windowing library's to know.
#include "platform/drawing/device_context.h"

#include "shellscalingapi.h"

int GetDeviceCaps(HDC dc, int index)
{
    if (platform::FindContext(dc) == nullptr)
        return 0;
    if (index == BITSPIXEL)
        return 32;
    UINT x = 96;
    UINT y = 96;
    if (index == LOGPIXELSX || index == LOGPIXELSY)
    {
        GetDpiForMonitor(MonitorFromPoint(POINT{0, 0}, MONITOR_DEFAULTTOPRIMARY), MDT_EFFECTIVE_DPI, &x, &y);
        return static_cast<int>(index == LOGPIXELSX ? x : y);
    }
    return 0;
}
