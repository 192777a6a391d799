// Asking the platform for the DPI. The arithmetic is in dpi_scale.cpp.
#include "geometry/dpi_scale.h"

#include "support/unique_handle.h"

#include <shellscalingapi.h>

namespace
{

using GetDpiForMonitorFunction = decltype(&::GetDpiForMonitor);
using MonitorFromPointFunction = decltype(&::MonitorFromPoint);

/// Functions that older systems lack, looked up once among the modules already loaded.
struct MonitorFunctions
{
    GetDpiForMonitorFunction getDpiForMonitor;
    MonitorFromPointFunction monitorFromPoint;
    FARPROC monitorFromWindow;

    bool AllFound() const { return getDpiForMonitor && monitorFromPoint && monitorFromWindow; }
};

template <typename Function>
Function FindFunction(HMODULE module, LPCSTR name)
{
    return module != nullptr ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)))
                             : nullptr;
}

const MonitorFunctions& FindMonitorFunctions()
{
    static const MonitorFunctions functions = []
    {
        const HMODULE shcore = GetModuleHandleW(TEXT("shcore"));
        const HMODULE user32 = GetModuleHandleW(TEXT("user32"));
        return MonitorFunctions{FindFunction<GetDpiForMonitorFunction>(shcore, "GetDpiForMonitor"),
                                FindFunction<MonitorFromPointFunction>(user32, "MonitorFromPoint"),
                                FindFunction<FARPROC>(user32, "MonitorFromWindow")};
    }();
    return functions;
}

int DpiOfPrimaryMonitor(const MonitorFunctions& functions)
{
    const POINT centre{GetSystemMetrics(SM_CXSCREEN) / 2, GetSystemMetrics(SM_CYSCREEN) / 2};
    const HMONITOR monitor = functions.monitorFromPoint(centre, MONITOR_DEFAULTTONEAREST);
    UINT x = 0;
    UINT y = 0;
    if (monitor == nullptr || FAILED(functions.getDpiForMonitor(monitor, MDT_EFFECTIVE_DPI, &x, &y)))
        return 0;
    return static_cast<int>(x);
}

} // namespace

int GetDpi()
{
    const MonitorFunctions& functions = FindMonitorFunctions();
    if (functions.AllFound())
    {
        if (const int dpi = DpiOfPrimaryMonitor(functions))
            return dpi;
    }
    const WindowDC screen(nullptr);
    return screen.Get() != nullptr ? GetDeviceCaps(screen.Get(), LOGPIXELSX) : 96;
}

DpiScale g_dpi = DpiScale::FromDpi(GetDpi());
