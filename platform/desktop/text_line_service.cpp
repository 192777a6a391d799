// The text line service: carets, words and selections of one line by Pango (platform/services/text_line_service.h).
#include "platform/services/text_line_service.h"

#include "platform/desktop/pango_layout.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace platform
{

/// Pango counts bytes of UTF-8 and code points, the layer UTF-16 units.
struct LaidOutLine
{
    UniqueLayout layout;
    std::vector<int> byteOf;          ///< of each place; of the code point's start for one within a surrogate pair
    std::vector<std::uint8_t> places; ///< what is true of each
};

namespace
{

bool IsLow(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

bool IsPair(std::u16string_view text, std::size_t index)
{
    return index + 1 < text.size() && (text[index] & 0xFC00) == 0xD800 && IsLow(text[index + 1]);
}

std::uint8_t FlagsOf(const PangoLogAttr& attributes)
{
    return static_cast<std::uint8_t>(
        (attributes.is_cursor_position ? kCaretStop : 0) | (attributes.is_word_start ? kWordStart : 0) |
        (attributes.is_word_end ? kWordEnd : 0) | (attributes.backspace_deletes_character ? kErasesPart : 0));
}

void FindPlaces(LaidOutLine& line, std::u16string_view text)
{
    const char* utf8 = pango_layout_get_text(line.layout.get());
    const char* next = utf8;
    int count = 0;
    const PangoLogAttr* attributes = pango_layout_get_log_attrs_readonly(line.layout.get(), &count);
    for (std::size_t i = 0; i < text.size(); ++i, ++attributes)
    {
        line.byteOf.push_back(static_cast<int>(next - utf8));
        line.places.push_back(FlagsOf(*attributes));
        if (IsPair(text, i))
        {
            line.byteOf.push_back(static_cast<int>(next - utf8));
            line.places.push_back(0);
            ++i;
        }
        next = g_utf8_next_char(next);
    }
    line.byteOf.push_back(static_cast<int>(next - utf8));
    line.places.push_back(FlagsOf(*attributes));
}

int ByteOf(const LaidOutLine& line, std::size_t index)
{
    return line.byteOf[std::min(index, line.byteOf.size() - 1)];
}

/// The place at a byte, or `characters` code points behind it.
std::size_t PlaceOf(const LaidOutLine& line, int byte, int characters = 0)
{
    const char* utf8 = pango_layout_get_text(line.layout.get());
    const char* at = utf8 + byte;
    for (int i = 0; i < characters && *at != '\0'; ++i)
        at = g_utf8_next_char(at);
    const auto found = std::lower_bound(line.byteOf.begin(), line.byteOf.end(), static_cast<int>(at - utf8));
    return std::min(static_cast<std::size_t>(found - line.byteOf.begin()), line.byteOf.size() - 1);
}

struct CaretEdges
{
    int primary = 0;
    int secondary = 0;
};

/// Pango units.
CaretEdges EdgesOf(const LaidOutLine& line, std::size_t index)
{
    PangoRectangle strong{};
    PangoRectangle weak{};
    pango_layout_get_cursor_pos(line.layout.get(), ByteOf(line, index), &strong, &weak);
    return {strong.x, weak.x};
}

/// The place, shown at the one of its edges that is nearer to x (Pango units).
CaretPlace NearestEdge(const LaidOutLine& line, std::size_t index, int x)
{
    const CaretEdges edges = EdgesOf(line, index);
    return {index, std::abs(edges.secondary - x) < std::abs(edges.primary - x)};
}

LaidOutLine* Open(const TextFont* font, const char16_t* text, std::size_t length, TextSpan underlined)
{
    auto line = std::make_unique<LaidOutLine>();
    line->layout = LayOut(*font, {text, length});
    FindPlaces(*line, {text, length});
    if (!underlined.Empty())
    {
        PangoAttribute* underline = pango_attr_underline_new(PANGO_UNDERLINE_SINGLE);
        underline->start_index = static_cast<guint>(ByteOf(*line, underlined.begin));
        underline->end_index = static_cast<guint>(ByteOf(*line, underlined.end));
        PangoAttrList* attributes = pango_attr_list_copy(pango_layout_get_attributes(line->layout.get()));
        pango_attr_list_change(attributes, underline);
        pango_layout_set_attributes(line->layout.get(), attributes);
        pango_attr_list_unref(attributes);
    }
    return line.release();
}

void Close(LaidOutLine* line)
{
    delete line;
}

TextExtent Extent(LaidOutLine* line)
{
    return ExtentOf(line->layout.get());
}

const std::uint8_t* Places(LaidOutLine* line)
{
    return line->places.data();
}

int CaretX(LaidOutLine* line, CaretPlace place)
{
    const CaretEdges edges = EdgesOf(*line, place.index);
    return PANGO_PIXELS(place.secondary ? edges.secondary : edges.primary);
}

CaretPlace PlaceAt(LaidOutLine* line, int x)
{
    int byte = 0;
    int trailing = 0;
    PangoLayoutLine* first = pango_layout_get_line_readonly(line->layout.get(), 0);
    pango_layout_line_x_to_index(first, x * PANGO_SCALE, &byte, &trailing);
    return NearestEdge(*line, PlaceOf(*line, byte, trailing), x * PANGO_SCALE);
}

CaretPlace PlaceAfter(LaidOutLine* line, std::size_t index)
{
    if (index == 0)
        return {};
    PangoRectangle last{};
    // The rectangle's width is negative where text runs to the left: its far side is always the trailing edge.
    pango_layout_index_to_pos(line->layout.get(), ByteOf(*line, index - 1), &last);
    return NearestEdge(*line, index, last.x + last.width);
}

/// Another place whose first edge is where a place's second one is; there is one wherever the direction changes.
CaretPlace PrimaryTwin(const LaidOutLine& line, CaretPlace place)
{
    const int x = EdgesOf(line, place.index).secondary;
    for (std::size_t i = 0; i < line.places.size(); ++i)
        if ((line.places[i] & kCaretStop) != 0 && EdgesOf(line, i).primary == x)
            return {i};
    return place;
}

CaretPlace Moved(LaidOutLine* line, CaretPlace place, int step)
{
    // Pango takes a weak cursor at the end of the text for one at the end of the line.
    const CaretPlace from = place.secondary ? PrimaryTwin(*line, place) : place;
    int byte = 0;
    int trailing = 0;
    pango_layout_move_cursor_visually(line->layout.get(), !from.secondary, ByteOf(*line, from.index), 0, step, &byte,
                                      &trailing);
    return byte < 0 || byte == G_MAXINT ? place : CaretPlace{PlaceOf(*line, byte, trailing)};
}

void Spans(LaidOutLine* line, TextSpan span, void (*receive)(void*, int, int), void* context)
{
    int* ranges = nullptr;
    int count = 0;
    PangoLayoutLine* first = pango_layout_get_line_readonly(line->layout.get(), 0);
    pango_layout_line_get_x_ranges(first, ByteOf(*line, span.begin), ByteOf(*line, span.end), &ranges, &count);
    for (int i = 0; i < count; ++i)
        receive(context, PANGO_PIXELS(ranges[2 * i]), PANGO_PIXELS(ranges[2 * i + 1]));
    g_free(ranges);
}

void DrawLine(LaidOutLine* line, const TextTarget* target, int x, int baseline, std::uint32_t rgb)
{
    DrawLayout(line->layout.get(), *target, x, baseline, rgb);
}

} // namespace
} // namespace platform

extern "C" __attribute__((visibility("default"))) const platform::TextLineService orb_text_line_service;
const platform::TextLineService orb_text_line_service = {
    platform::Open,    platform::Close,      platform::Extent, platform::Places, platform::CaretX,
    platform::PlaceAt, platform::PlaceAfter, platform::Moved,  platform::Spans,  platform::DrawLine};
