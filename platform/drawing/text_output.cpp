// The text calls that measure.
#include "platform/drawing/glyph_font.h"
#include "platform/drawing/text_line.h"

using namespace platform;

BOOL GetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || size == nullptr || length < 0 || (text == nullptr && length != 0) ||
        FaultPoint("GetTextExtentPoint32W"))
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    FontObject& font = context->Font();
    size->cx = TextWidth(font, std::u16string_view(text, static_cast<std::size_t>(length)));
    size->cy = font.Glyphs().Metrics().tmHeight;
    return TRUE;
}

BOOL GetTextMetricsW(HDC dc, TEXTMETRICW* metrics)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || metrics == nullptr)
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    *metrics = context->Font().Glyphs().Metrics();
    return TRUE;
}
