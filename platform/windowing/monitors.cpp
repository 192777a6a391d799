// Monitors as handles.
#include "platform/base/fault_points.h"
#include "platform/windowing/window.h"

#include "shellscalingapi.h"

#include <algorithm>

namespace platform
{
namespace
{

// A monitor's handle is its place in the screen's list, moved away from the small numbers.
constexpr std::uintptr_t kFirstHandle = 0x10001;

HMONITOR HandleOfMonitor(std::size_t index)
{
    return reinterpret_cast<HMONITOR>(kFirstHandle + index);
}

const screen::Monitor* FindMonitor(HMONITOR monitor)
{
    const auto& all = screen::Monitors();
    const std::size_t index = reinterpret_cast<std::uintptr_t>(monitor) - kFirstHandle;
    return index < all.size() ? &all[index] : Fail<const screen::Monitor*>(ERROR_INVALID_MONITOR_HANDLE, nullptr);
}

std::int64_t Overlap(const RECT& a, const RECT& b)
{
    RECT common{};
    return IntersectRect(&common, &a, &b) ? static_cast<std::int64_t>(Width(common)) * Height(common) : 0;
}

/// Squared distance between two rectangles.
std::int64_t Distance(const RECT& a, const RECT& b)
{
    const std::int64_t dx = std::max({0, a.left - b.right + 1, b.left - a.right + 1});
    const std::int64_t dy = std::max({0, a.top - b.bottom + 1, b.top - a.bottom + 1});
    return dx * dx + dy * dy;
}

HMONITOR Fallback(const RECT& rect, DWORD flags)
{
    const auto& all = screen::Monitors();
    if (flags == MONITOR_DEFAULTTONEAREST)
    {
        const auto nearest = std::min_element(all.begin(), all.end(),
                                              [&](const auto& a, const auto& b)
                                              { return Distance(rect, a.bounds) < Distance(rect, b.bounds); });
        return HandleOfMonitor(static_cast<std::size_t>(nearest - all.begin()));
    }
    return flags == MONITOR_DEFAULTTOPRIMARY ? HandleOfMonitor(0) : nullptr;
}

} // namespace
} // namespace platform

using namespace platform;

HMONITOR MonitorFromRect(const RECT* rect, DWORD flags)
{
    const auto& all = screen::Monitors();
    // An empty rectangle stands for its top-left pixel.
    const RECT area = IsRectEmpty(rect) ? RECT{rect->left, rect->top, rect->left + 1, rect->top + 1} : *rect;
    const auto most = std::max_element(all.begin(), all.end(),
                                       [&](const auto& a, const auto& b)
                                       { return Overlap(area, a.bounds) < Overlap(area, b.bounds); });
    return Overlap(area, most->bounds) > 0 ? HandleOfMonitor(static_cast<std::size_t>(most - all.begin()))
                                           : Fallback(area, flags);
}

HMONITOR MonitorFromPoint(POINT point, DWORD flags)
{
    const RECT pixel{point.x, point.y, point.x + 1, point.y + 1};
    return MonitorFromRect(&pixel, flags);
}

HMONITOR MonitorFromWindow(HWND window, DWORD flags)
{
    RECT rect{};
    if (GetWindowRect(window, &rect))
        return MonitorFromRect(&rect, flags);
    return flags == MONITOR_DEFAULTTONULL ? nullptr : HandleOfMonitor(0);
}

BOOL GetMonitorInfoW(HMONITOR monitor, MONITORINFO* info)
{
    const screen::Monitor* found = FaultPoint("GetMonitorInfoW") ? nullptr : FindMonitor(monitor);
    if (found == nullptr || info == nullptr || info->cbSize < sizeof(MONITORINFO))
        return FALSE;
    info->rcMonitor = found->bounds;
    info->rcWork = found->workArea;
    info->dwFlags = found == screen::Monitors().data() ? MONITORINFOF_PRIMARY : 0;
    return TRUE;
}

HRESULT GetDpiForMonitor(HMONITOR monitor, MONITOR_DPI_TYPE, UINT* dpiX, UINT* dpiY)
{
    if (FaultPoint("GetDpiForMonitor"))
        return E_FAIL;
    const screen::Monitor* found = FindMonitor(monitor);
    if (found == nullptr || dpiX == nullptr || dpiY == nullptr)
        return E_INVALIDARG;
    *dpiX = *dpiY = found->dpi;
    return S_OK;
}
