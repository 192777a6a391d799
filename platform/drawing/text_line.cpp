// Measuring and drawing one line.
#include "platform/drawing/text_line.h"

#include "platform/drawing/glyph_font.h"
#include "platform/drawing/pixman_image.h"
#include "platform/services/text_service_access.h"

#include <algorithm>

namespace platform
{
namespace
{

/// Coverage of a whole line, one byte a pixel, put together before it is blended in one go.
struct Mask
{
    RECT bounds{}; ///< surface coordinates
    int stride = 0;
    std::vector<std::uint32_t> storage; ///< words, as pixman wants rows aligned

    explicit Mask(const RECT& area) : bounds(area), stride((area.right - area.left + 3) / 4 * 4)
    {
        storage.resize(static_cast<std::size_t>(stride / 4) * static_cast<std::size_t>(area.bottom - area.top));
    }
    unsigned char* Row(int y)
    {
        return reinterpret_cast<unsigned char*>(storage.data()) + static_cast<std::ptrdiff_t>(y - bounds.top) * stride -
               bounds.left;
    }
};

PixmanImage TargetImage(const Canvas& canvas, const RECT* clip)
{
    PixmanImage image = ImageOn(canvas.Pixels());
    Region visible(canvas.Clip());
    if (clip != nullptr)
        visible.Intersect(Region(*clip));
    pixman_image_set_clip_region32(image.get(), visible.Raw());
    return image;
}

void Blend(const Canvas& canvas, Mask& mask, COLORREF color, const RECT* clip)
{
    const int width = mask.bounds.right - mask.bounds.left;
    const int height = mask.bounds.bottom - mask.bounds.top;
    const PixmanImage coverage(pixman_image_create_bits(PIXMAN_a8, width, height, mask.storage.data(), mask.stride));
    const PixmanImage source = SolidImage(color);
    const PixmanImage target = TargetImage(canvas, clip);
    pixman_image_composite32(PIXMAN_OP_OVER, source.get(), coverage.get(), target.get(), 0, 0, 0, 0, mask.bounds.left,
                             mask.bounds.top, width, height);
}

/// Calls visit(glyph, x of its first column, y of its first row).
template <typename Visit>
void ForGlyphs(GlyphFont& font, std::u16string_view text, POINT position, Visit visit)
{
    int pen = position.x;
    const int baseline = position.y + font.Metrics().tmAscent;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const Glyph& glyph = font.GlyphFor(text[i]);
        if (glyph.width != 0)
            visit(glyph, pen + glyph.left, baseline - glyph.top);
        pen += font.Advance(text[i]);
    }
}

/// The part of the line's ink that can be seen; empty (right <= left) when there is none.
RECT InkBounds(const Canvas& canvas, GlyphFont& font, std::u16string_view text, POINT position)
{
    RECT ink{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    ForGlyphs(font, text, position,
              [&](const Glyph& glyph, int x, int y)
              {
                  ink.left = std::min(ink.left, x);
                  ink.top = std::min(ink.top, y);
                  ink.right = std::max(ink.right, x + glyph.width);
                  ink.bottom = std::max(ink.bottom, y + glyph.height);
              });
    const RECT seen = canvas.Clip().Bounds();
    return {std::max(ink.left, seen.left), std::max(ink.top, seen.top), std::min(ink.right, seen.right),
            std::min(ink.bottom, seen.bottom)};
}

/// Neighbours may overlap by a pixel: the stronger coverage wins there.
void AddGlyph(Mask& mask, const Glyph& glyph, int x, int y)
{
    const int left = std::max(x, mask.bounds.left);
    const int right = std::min(x + glyph.width, mask.bounds.right);
    const int bottom = std::min(y + glyph.height, mask.bounds.bottom);
    for (int row = std::max(y, mask.bounds.top); row < bottom; ++row)
    {
        unsigned char* to = mask.Row(row);
        const std::uint8_t* from = glyph.coverage.data() + static_cast<std::ptrdiff_t>(row - y) * glyph.width - x;
        for (int column = left; column < right; ++column)
            to[column] = std::max(to[column], from[column]);
    }
}

/// Underline and strike-out of the glyph path (the service draws its own).
void DrawDecorations(const Canvas& canvas, GlyphFont& font, POINT position, int width, COLORREF color, const RECT* clip)
{
    const int thickness = std::max(1, font.EmHeight() / 14);
    const int baseline = position.y + font.Metrics().tmAscent;
    const auto line = [&](int top)
    {
        Region area(RECT{position.x, top, position.x + width, top + thickness});
        if (clip != nullptr)
            area.Intersect(Region(*clip));
        canvas.Fill(area, PixelFromColor(color));
    };
    if (font.ServiceFont().underline)
        line(baseline + 1);
    if (font.ServiceFont().strikeOut)
        line(baseline - font.EmHeight() / 3);
}

void DrawByService(const Canvas& canvas, GlyphFont& font, std::u16string_view text, POINT position, COLORREF color,
                   const RECT* clip)
{
    const TextService* service = GetTextService();
    TextExtent extent{};
    if (service == nullptr || !service->measure(&font.ServiceFont(), text.data(), text.size(), &extent))
        return;
    DrawShaped(canvas, font, extent.width, position, clip,
               [&](const TextTarget& picture, POINT start) {
                   service->draw(&font.ServiceFont(), text.data(), text.size(), &picture, start.x, start.y,
                                 PixelFromColor(color));
               });
}

int WidthByService(GlyphFont& font, std::u16string_view text)
{
    const TextService* service = GetTextService();
    TextExtent extent{};
    if (service != nullptr && service->measure(&font.ServiceFont(), text.data(), text.size(), &extent))
        return extent.width;
    return static_cast<int>(text.size()) * font.Metrics().tmAveCharWidth;
}

} // namespace

void DrawPlainLine(const Canvas& canvas, GlyphFont& font, std::u16string_view text, POINT position, COLORREF color,
                   const RECT* clip)
{
    const RECT bounds = InkBounds(canvas, font, text, position);
    if (bounds.right <= bounds.left || bounds.bottom <= bounds.top)
        return;
    Mask mask(bounds);
    ForGlyphs(font, text, position, [&](const Glyph& glyph, int x, int y) { AddGlyph(mask, glyph, x, y); });
    Blend(canvas, mask, color, clip);
}

int TextWidth(FontObject& font, std::u16string_view text)
{
    GlyphFont& glyphs = font.Glyphs();
    const std::optional<int> width = glyphs.Measure(text);
    return width ? *width : WidthByService(glyphs, text);
}

void DrawTextLine(const Canvas& canvas, FontObject& font, std::u16string_view text, POINT position, COLORREF color,
                  const RECT* clip)
{
    GlyphFont& glyphs = font.Glyphs();
    const std::optional<int> width = glyphs.Measure(text);
    if (width)
    {
        DrawPlainLine(canvas, glyphs, text, position, color, clip);
        DrawDecorations(canvas, glyphs, position, *width, color, clip);
    }
    else
    {
        DrawByService(canvas, glyphs, text, position, color, clip);
    }
}

// The service draws on a picture of the line's own size, which is then blended like any other.
void DrawShaped(const Canvas& canvas, GlyphFont& font, int width, POINT position, const RECT* clip,
                const std::function<void(const TextTarget& picture, POINT start)>& draw)
{
    // Ink may leave the logical extent, and a line of another script's font be higher; an em on each side is room
    // enough.
    const int margin = font.EmHeight();
    const RECT seen = canvas.Clip().Bounds();
    const RECT area{std::max(position.x - margin, seen.left), std::max(position.y - margin, seen.top),
                    std::min(position.x + width + margin, seen.right),
                    std::min(position.y + font.Metrics().tmHeight + margin, seen.bottom)};
    const int columns = area.right - area.left;
    const int rows = area.bottom - area.top;
    if (columns <= 0 || rows <= 0)
        return;
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    draw({pixels.data(), columns, rows, columns},
         {position.x - area.left, position.y + font.Metrics().tmAscent - area.top});
    const PixmanImage source = ImageOn({pixels.data(), columns, rows, columns});
    const PixmanImage target = TargetImage(canvas, clip);
    pixman_image_composite32(PIXMAN_OP_OVER, source.get(), nullptr, target.get(), 0, 0, 0, 0, area.left, area.top,
                             columns, rows);
}

} // namespace platform
