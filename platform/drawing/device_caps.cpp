// GetDeviceCaps.
#include "platform/drawing/device_context.h"

#include "platform/screen/screen.h"

int GetDeviceCaps(HDC dc, int index)
{
    if (platform::FindContext(dc) == nullptr)
        return 0;
    switch (index)
    {
    case BITSPIXEL:
        return 32;
    case LOGPIXELSX:
    case LOGPIXELSY:
        return static_cast<int>(platform::screen::Monitors().front().dpi);
    default:
        return 0;
    }
}
