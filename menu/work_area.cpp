// Asking for the nearest monitor's work area. The arithmetic is in geometry/placement.cpp.
#include "menu/work_area.h"

#include "geometry/placement.h"

void ClipToWorkArea(RECT& rect)
{
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    const HMONITOR monitor = MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST);
    if (monitor != nullptr && GetMonitorInfoW(monitor, &info))
        rect = ClampToWorkArea(rect, info.rcWork);
}
