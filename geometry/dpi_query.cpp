// Asking the platform for the DPI.
#include "geometry/dpi_query.h"

#include "geometry/dpi_scale.h"
#include "support/unique_handle.h"

namespace
{

template <typename Function>
Function FindFunction(HMODULE module, LPCSTR name)
{
    return module != nullptr ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)))
                             : nullptr;
}

/// Looks among the modules already loaded, once.
const MonitorFunctions& FindMonitorFunctions()
{
    static const MonitorFunctions functions = []
    {
        const HMODULE shcore = GetModuleHandleW(TEXT("shcore"));
        const HMODULE user32 = GetModuleHandleW(TEXT("user32"));
        return MonitorFunctions{FindFunction<decltype(&::GetDpiForMonitor)>(shcore, "GetDpiForMonitor"),
                                FindFunction<decltype(&::MonitorFromPoint)>(user32, "MonitorFromPoint"),
                                FindFunction<decltype(&::MonitorFromWindow)>(user32, "MonitorFromWindow")};
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

int QueryDpi(const MonitorFunctions& functions)
{
    if (functions.getDpiForMonitor && functions.monitorFromPoint && functions.monitorFromWindow)
    {
        if (const int dpi = DpiOfPrimaryMonitor(functions))
            return dpi;
    }
    const WindowDC screen(nullptr);
    return screen.Get() != nullptr ? GetDeviceCaps(screen.Get(), LOGPIXELSX) : 96;
}

int GetDpi()
{
    return QueryDpi(FindMonitorFunctions());
}

DpiScale g_dpi = DpiScale::FromDpi(GetDpi());
