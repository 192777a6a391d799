// System metrics and parameters: Windows' defaults, and the user's desktop settings where it has any.
#include "platform/windowing/system_parameters.h"

#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/screen/desktop_settings.h"
#include "platform/windowing/window.h"

#include "uxtheme.h"

#include <charconv>
#include <cstring>

namespace platform
{
namespace
{

constexpr int kPointsPerInch = 72;
constexpr int kDefaultPoints = 9;

struct NamedFont
{
    std::string_view face;
    std::string_view style;
    double points = 0;
};

/// Splits "Cantarell Bold 11" into face, style words and size.
NamedFont ParseFontName(std::string_view name)
{
    NamedFont font{name, {}, kDefaultPoints};
    const auto space = name.rfind(' ');
    double points = 0;
    if (space != name.npos &&
        std::from_chars(name.data() + space + 1, name.data() + name.size(), points).ptr == name.data() + name.size())
    {
        font.face = name.substr(0, space);
        font.points = points > 0 ? points : kDefaultPoints;
    }
    for (const std::string_view style : {" Regular", " Bold", " Medium", " Italic"})
    {
        if (font.face.ends_with(style))
        {
            font.style = font.face.substr(font.face.size() - style.size() + 1);
            font.face.remove_suffix(style.size());
        }
    }
    while (font.face.ends_with(',') || font.face.ends_with(' '))
        font.face.remove_suffix(1);
    return font;
}

void FillNonClientMetrics(NONCLIENTMETRICSW& metrics)
{
    const LOGFONTW font = InterfaceFont();
    metrics.iBorderWidth = 1;
    metrics.iScrollWidth = metrics.iScrollHeight = ScaledPixels(17);
    metrics.iCaptionWidth = metrics.iCaptionHeight = ScaledPixels(22);
    metrics.iSmCaptionWidth = metrics.iSmCaptionHeight = ScaledPixels(22);
    metrics.iMenuWidth = metrics.iMenuHeight = ScaledPixels(19);
    metrics.lfCaptionFont = metrics.lfSmCaptionFont = metrics.lfMenuFont = font;
    metrics.lfStatusFont = metrics.lfMessageFont = font;
}

template <typename T>
BOOL Store(LPVOID data, const T& value)
{
    if (data == nullptr)
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    *static_cast<T*>(data) = value;
    return TRUE;
}

} // namespace

int DesktopNumber(const char* name, int fallback)
{
    const auto text = DesktopSetting(name);
    int value = 0;
    const bool number = text && std::from_chars(text->data(), text->data() + text->size(), value).ec == std::errc();
    return number ? value : fallback;
}

int ScaledPixels(int length)
{
    return MulDiv(length, static_cast<int>(screen::Monitors().front().dpi), 96);
}

LOGFONTW InterfaceFont()
{
    const std::string name = DesktopSetting("Gtk/FontName").value_or("Segoe UI 9");
    const NamedFont parsed = ParseFontName(name);
    LOGFONTW font{};
    const double pixels = parsed.points * screen::Monitors().front().dpi / kPointsPerInch;
    font.lfHeight = -static_cast<LONG>(pixels + 0.5);
    font.lfWeight = parsed.style == "Bold" ? FW_BOLD : FW_NORMAL;
    font.lfItalic = parsed.style == "Italic";
    font.lfCharSet = DEFAULT_CHARSET;
    font.lfQuality = CLEARTYPE_QUALITY;
    Utf16FromUtf8(parsed.face).copy(font.lfFaceName, std::size(font.lfFaceName) - 1);
    return font;
}

} // namespace platform

using namespace platform;

int GetSystemMetrics(int index)
{
    const RECT primary = screen::Monitors().front().bounds;
    switch (index)
    {
    case SM_CXSCREEN:
        return Width(primary);
    case SM_CYSCREEN:
        return Height(primary);
    case SM_CMONITORS:
        return static_cast<int>(screen::Monitors().size());
    case SM_CXICON:
    case SM_CYICON:
        return ScaledPixels(32);
    case SM_CXSMICON:
    case SM_CYSMICON:
        return ScaledPixels(16);
    case SM_CXDRAG:
    case SM_CYDRAG:
        return DesktopNumber("Net/DndDragThreshold", 4);
    case SM_CXDOUBLECLK:
    case SM_CYDOUBLECLK:
        return DesktopNumber("Net/DoubleClickDistance", 4);
    default:
        return 0; // SM_SWAPBUTTON too: the display has swapped the buttons already
    }
}

UINT GetDoubleClickTime()
{
    return static_cast<UINT>(DesktopNumber("Net/DoubleClickTime", 500));
}

BOOL SystemParametersInfoW(UINT action, UINT, LPVOID data, UINT)
{
    if (FaultPoint("SystemParametersInfoW"))
        return Fail(ERROR_NOT_ENOUGH_MEMORY, FALSE);
    switch (action)
    {
    case SPI_GETWORKAREA:
        return Store(data, screen::Monitors().front().workArea);
    case SPI_GETMENUSHOWDELAY:
        return Store(data, static_cast<DWORD>(DesktopNumber("Gtk/MenuPopupDelay", 400)));
    case SPI_GETICONTITLELOGFONT:
        return Store(data, InterfaceFont());
    case SPI_GETNONCLIENTMETRICS:
        if (data == nullptr || static_cast<NONCLIENTMETRICSW*>(data)->cbSize != sizeof(NONCLIENTMETRICSW))
            return Fail(ERROR_INVALID_PARAMETER, FALSE);
        FillNonClientMetrics(*static_cast<NONCLIENTMETRICSW*>(data));
        return TRUE;
    default:
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    }
}

HRESULT SetWindowTheme(HWND window, LPCWSTR, LPCWSTR)
{
    return RequireWindow(window) != nullptr ? S_OK : E_INVALIDARG;
}
