// Dialog units, which grow with the font.
#include "platform/base/last_error.h"
#include "platform/dialogs/dialog.h"

#include <string_view>

namespace platform
{

HFONT CreateMessageFont()
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    return SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0)
               ? CreateFontIndirectW(&metrics.lfMessageFont)
               : nullptr;
}

/// Source: "GetDialogBaseUnits" in the Windows documentation: the average width of the Latin letters, rounded.
SIZE DialogUnits(HFONT font)
{
    constexpr std::u16string_view kLetters = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const HDC dc = GetDC(nullptr);
    const HGDIOBJ previous = SelectObject(dc, font != nullptr ? font : GetStockObject(SYSTEM_FONT));
    SIZE size{};
    TEXTMETRICW metrics{};
    GetTextExtentPoint32W(dc, kLetters.data(), static_cast<int>(kLetters.size()), &size);
    GetTextMetricsW(dc, &metrics);
    SelectObject(dc, previous);
    ReleaseDC(nullptr, dc);
    // Out of device contexts nothing can be measured; nobody must divide by zero for that.
    constexpr SIZE kUsual = {7, 15};
    return size.cx != 0 && metrics.tmHeight != 0 ? SIZE{(size.cx / 26 + 1) / 2, metrics.tmHeight} : kUsual;
}

RECT DialogToPixels(const RECT& units, SIZE base)
{
    return {MulDiv(units.left, base.cx, 4), MulDiv(units.top, base.cy, 8), MulDiv(units.right, base.cx, 4),
            MulDiv(units.bottom, base.cy, 8)};
}

} // namespace platform

using namespace platform;

LONG GetDialogBaseUnits()
{
    const SIZE units = DialogUnits(nullptr);
    return MAKELONG(units.cx, units.cy);
}

BOOL MapDialogRect(HWND window, LPRECT rect)
{
    const Dialog* dialog = FindDialog(window);
    if (dialog == nullptr || rect == nullptr)
        return Fail(ERROR_INVALID_WINDOW_HANDLE, FALSE);
    *rect = DialogToPixels(*rect, dialog->units);
    return TRUE;
}
