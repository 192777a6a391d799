// Text that needs a shaping engine, and font look-up: Pango and fontconfig behind a table of function pointers.
//
// The program itself draws plain text with FreeType (platform/drawing/glyph_font.h). Whatever that cannot do properly
// (other scripts, right-to-left, combining marks, emoji, glyphs that the font lacks) goes through this service, whole
// string at a time, for measuring and for drawing.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform
{

enum class TextHinting
{
    None,
    Slight,
    Medium,
    Full,
};

/// A font as the service wants it. `face` is UTF-8, empty for the default.
struct TextFont
{
    const char* face;
    int pixelSize; ///< em height in pixels
    int weight;    ///< 100 to 900
    bool italic;
    bool underline;
    bool strikeOut;
    bool antialias = true;
    TextHinting hinting = TextHinting::Slight;
};

struct TextExtent
{
    int width;   ///< pixels, logical advance
    int ascent;  ///< pixels above the baseline
    int descent; ///< pixels below it
};

/// Where to draw: 32-bit pixels B G R A, rows from the top; nothing outside the clip rectangle is touched.
struct TextTarget
{
    std::uint32_t* pixels;
    int width;
    int height;
    int stride; ///< pixels from one row to the next
};

struct TextService
{
    /// Resolves a font to a file with fontconfig. Writes the path (terminated, UTF-8) and the index of the face in the
    /// file. False when there is no font or the path does not fit.
    bool (*findFont)(const TextFont* font, char* path, std::size_t capacity, int* faceIndex);
    /// Writes the paths of fontconfig's configuration files and font folders, each terminated, the list ended by an
    /// empty one: a change of any of them makes an earlier findFont result doubtful. False when they do not fit.
    bool (*fontSources)(char* paths, std::size_t capacity);
    /// Measures one line of UTF-16 text.
    bool (*measure)(const TextFont* font, const char16_t* text, std::size_t length, TextExtent* extent);
    /// Draws one line with its baseline starting at (x, baseline) in premultiplied colour over transparent pixels of
    /// the target. `rgb` is 0xRRGGBB.
    bool (*draw)(const TextFont* font, const char16_t* text, std::size_t length, const TextTarget* target, int x,
                 int baseline, std::uint32_t rgb);
};

/// The name under which the module exports its service: `extern "C" const TextService orb_text_service`.
constexpr char kTextServiceSymbol[] = "orb_text_service";

} // namespace platform
