// Per-monitor DPI.
#pragma once

#include "windows.h"

enum MONITOR_DPI_TYPE
{
    MDT_EFFECTIVE_DPI = 0,
};

HRESULT GetDpiForMonitor(HMONITOR monitor, MONITOR_DPI_TYPE type, UINT* dpiX, UINT* dpiY);
