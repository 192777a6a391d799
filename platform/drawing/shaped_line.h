// A line of text to be edited, laid out in a font: carets, selections, drawing. Pango does it, behind the text line
// service; without the desktop module every code point is a character, from left to right.
#pragma once

#include "platform/services/text_line_service.h"

#include "windows.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

class GlyphFont;

/// Pixels count from the line's left end.
class ShapedLine
{
public:
    /// Null means the default font; `underlined` units are underlined.
    ShapedLine(HFONT font, std::u16string_view text, TextSpan underlined = {});

    int Width() const { return m_width; }
    /// Pixels from the top of a line to its end below, and to its baseline.
    int Height() const;
    int EmHeight() const;
    /// What is true of each place (text_line_service.h).
    std::span<const std::uint8_t> Places() const { return m_places; }
    int CaretX(CaretPlace place) const;
    CaretPlace PlaceAt(int x) const;
    CaretPlace PlaceAfter(std::size_t index) const;
    CaretPlace Moved(CaretPlace place, int step) const;
    /// Left and right of each stretch that the units of a span cover.
    std::vector<std::pair<int, int>> Stretches(TextSpan span) const;
    /// Draws with the line's top left corner at `position`; nothing outside `clip` (the context's coordinates).
    void Draw(HDC dc, POINT position, COLORREF color, const RECT& clip) const;

private:
    void MeasurePlain();

    struct Closer
    {
        void operator()(LaidOutLine* line) const;
    };
    GlyphFont* m_font;
    std::u16string m_text;
    std::unique_ptr<LaidOutLine, Closer> m_line; ///< null without the module
    std::vector<std::uint8_t> m_places;
    std::vector<int> m_plainX; ///< of each place, without the module
    int m_width = 0;
};

} // namespace platform
