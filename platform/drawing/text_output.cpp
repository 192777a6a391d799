// The text calls: output at a point, extents, metrics.
#include "platform/drawing/glyph_font.h"
#include "platform/drawing/text_line.h"

#include <numeric>

using namespace platform;

namespace
{

void FillBackground(const DeviceContext& context, const Canvas& canvas, const RECT& area)
{
    canvas.Fill(area, PixelFromColor(context.state.backColor));
}

} // namespace

BOOL ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rect, LPCWSTR text, UINT length, const int* spacing)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || (text == nullptr && length != 0) || FaultPoint("ExtTextOutW"))
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    const Canvas canvas(*context);
    const RECT box = rect != nullptr ? context->ToSurface(*rect) : RECT{};
    if (rect != nullptr && (options & ETO_OPAQUE) != 0)
        FillBackground(*context, canvas, box);
    if (length == 0)
        return TRUE;
    const std::u16string_view line(text, length);
    const POINT position = context->ToSurface(POINT{x, y});
    FontObject& font = context->Font();
    if (context->state.backMode == OPAQUE && (options & ETO_OPAQUE) == 0)
    {
        const int width = spacing != nullptr ? std::accumulate(spacing, spacing + length, 0) : TextWidth(font, line);
        FillBackground(*context, canvas,
                       {position.x, position.y, position.x + width, position.y + font.Glyphs().Metrics().tmHeight});
    }
    const bool clipped = rect != nullptr && (options & ETO_CLIPPED) != 0;
    DrawTextLine(canvas, font, line, position, context->state.textColor, clipped ? &box : nullptr, spacing);
    return TRUE;
}

BOOL TextOutW(HDC dc, int x, int y, LPCWSTR text, int length)
{
    return length >= 0 ? ExtTextOutW(dc, x, y, 0, nullptr, text, static_cast<UINT>(length), nullptr)
                       : Fail(ERROR_INVALID_PARAMETER, FALSE);
}

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
