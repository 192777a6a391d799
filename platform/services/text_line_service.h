// One line of text that is edited: where a caret may stand in it, and where it moves. Answered by Pango.
//
// Places are between UTF-16 units: place 0 is before the first, the last one is after the last. Pixels count from the
// line's left end, whichever way its text runs.
#pragma once

#include "platform/services/text_service.h"

#include <cstddef>
#include <cstdint>

namespace platform
{

// What is true of a place.
inline constexpr std::uint8_t kCaretStop = 1; ///< not within what a person sees as one character
inline constexpr std::uint8_t kWordStart = 2;
inline constexpr std::uint8_t kWordEnd = 4;
inline constexpr std::uint8_t kErasesPart = 8; ///< Backspace takes one code point here, not all back to the last stop

/// Where text changes its direction, one place is shown twice: where more text in the line's direction would go, and,
/// `secondary`, where text in the other direction would.
struct CaretPlace
{
    std::size_t index = 0;
    bool secondary = false;

    bool operator==(const CaretPlace&) const = default;
};

/// Places from `begin` up to `end`, or pixels.
struct TextSpan
{
    std::size_t begin = 0;
    std::size_t end = 0;

    bool Empty() const { return begin >= end; }
    bool operator==(const TextSpan&) const = default;
};

/// A line that has been laid out; the module's own.
struct LaidOutLine;

struct TextLineService
{
    /// Lays a line out, with the units of `underlined` underlined. To be closed; never null.
    LaidOutLine* (*open)(const TextFont* font, const char16_t* text, std::size_t length, TextSpan underlined);
    void (*close)(LaidOutLine* line);
    TextExtent (*extent)(LaidOutLine* line);
    /// One byte for each of the length + 1 places.
    const std::uint8_t* (*places)(LaidOutLine* line);
    int (*caretX)(LaidOutLine* line, CaretPlace place);
    /// The stop that is nearest to a pixel.
    CaretPlace (*placeAt)(LaidOutLine* line, int x);
    /// A place as it is shown to someone who has just typed what is before it.
    CaretPlace (*placeAfter)(LaidOutLine* line, std::size_t index);
    /// One step to the left (−1) or right (+1) of what is seen; the same place at an end.
    CaretPlace (*moved)(LaidOutLine* line, CaretPlace place, int step);
    /// Calls `receive` with the pixels, from left to right, that the units of a span cover.
    void (*spans)(LaidOutLine* line, TextSpan span, void (*receive)(void* context, int left, int right), void* context);
    /// As TextService::draw.
    void (*draw)(LaidOutLine* line, const TextTarget* target, int x, int baseline, std::uint32_t rgb);
};

} // namespace platform

extern "C" const platform::TextLineService orb_text_line_service;
