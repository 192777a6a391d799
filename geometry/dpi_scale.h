// The DPI record that every pixel constant is scaled by.
#pragma once

#include <windows.h>

struct DpiScale
{
    int percent;         ///< scale in percent of 96 DPI: 100 at 96, 150 at 144
    int relativePercent; ///< scale in percent of baseDpi
    int baseDpi;         ///< the DPI read when the record was filled

    static DpiScale FromDpi(int dpi) { return {MulDiv(dpi, 100, 96), MulDiv(dpi, 100, dpi), dpi}; }
    /// n pixels at 96 DPI, in device pixels.
    int Scaled(int n) const { return MulDiv(n, percent, 100); }
};

/// The process's scale, filled before the entry point runs.
extern DpiScale g_dpi;

/// Effective DPI of the monitor at the centre of the primary screen; without per-monitor DPI the screen device
/// context's; 96 when there is neither.
int GetDpi();
