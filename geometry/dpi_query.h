// The query of the DPI, apart from the look-up of the functions that it needs.
#pragma once

#include <windows.h>
#include <shellscalingapi.h>

/// Functions that older systems lack; null where they do.
struct MonitorFunctions
{
    decltype(&::GetDpiForMonitor) getDpiForMonitor;
    decltype(&::MonitorFromPoint) monitorFromPoint;
    decltype(&::MonitorFromWindow) monitorFromWindow;
};

/// What GetDpi returns where these are the functions found.
int QueryDpi(const MonitorFunctions& functions);
