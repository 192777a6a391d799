// Fonts over FreeType.
#include "platform/drawing/glyph_font.h"

#include "platform/base/text.h"
#include "platform/drawing/font_files.h"
#include "platform/drawing/font_stream.h"
#include "platform/drawing/gdi_objects.h"
#include "platform/drawing/text_rendering.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <tuple>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H
#include FT_SIZES_H
#include FT_TRUETYPE_TABLES_H

namespace platform
{
namespace
{

constexpr std::int16_t kUnknown = -1;
constexpr std::int16_t kNeedsService = -2;
// A font of height 0, the caller's "whatever is usual".
constexpr int kDefaultEmHeight = 12;
constexpr int kLargestEmHeight = 1000;

FT_Library Library()
{
    static const FT_Library library = []
    {
        FT_Library created = nullptr;
        return FT_Init_FreeType(&created) == 0 ? created : nullptr;
    }();
    return library;
}

/// The file's face, opened by the first call for it and kept for the life of the process, so that all sizes share what
/// is read of it; null when it cannot be opened.
FT_Face FaceIn(const FontFile& file)
{
    struct OpenFont
    {
        explicit OpenFont(const FontFile& file)
            : stream(file.path), face(Library() != nullptr ? stream.OpenFace(Library(), file.faceIndex) : nullptr)
        {
        }

        FontStream stream; ///< what the face reads from
        FT_Face face;
    };
    static auto& fonts = *new std::map<std::pair<std::string, int>, std::unique_ptr<OpenFont>>();
    std::unique_ptr<OpenFont>& font = fonts[{file.path, file.faceIndex}];
    if (font == nullptr)
        font = std::make_unique<OpenFont>(file);
    return font->face;
}

FT_Face FaceFor(const LOGFONTW& font, const std::string& name)
{
    const int size = font.lfHeight == 0 ? kDefaultEmHeight : std::abs(font.lfHeight);
    const auto file = FindFontFile({name, size, font.lfWeight != 0 ? font.lfWeight : FW_NORMAL, font.lfItalic != 0});
    return file ? FaceIn(*file) : nullptr;
}

struct UnitRange
{
    char16_t first;
    char16_t last;
};

// Blocks of the Unicode Standard (Blocks.txt) whose text needs shaping, reordering or stacking; sorted.
constexpr UnitRange kShapedRanges[] = {
    {0x0300, 0x036F},                                     // combining diacritical marks
    {0x0483, 0x0489},                                     // Cyrillic combining marks
    {0x0590, 0x10FF},                                     // Hebrew to Myanmar; Georgian rides along
    {0x1100, 0x11FF},                                     // Hangul Jamo
    {0x135D, 0x135F},                                     // Ethiopic combining marks
    {0x1700, 0x18AF},                                     // Philippine scripts, Khmer, Mongolian
    {0x1900, 0x1CFF},                                     // Limbu to Vedic extensions
    {0x1DC0, 0x1DFF},                                     // combining marks supplement
    {0x200B, 0x200F},                                     // joiners, direction marks
    {0x2028, 0x202E},                                     // separators, embeddings
    {0x2060, 0x206F},                                     // invisible operators, isolates
    {0x20D0, 0x20FF},                                     // combining marks for symbols
    {0x2CEF, 0x2CF1},                                     // Coptic combining marks
    {0x2DE0, 0x2DFF},                                     // Cyrillic extended A
    {0x302A, 0x302F},                                     // CJK tone marks
    {0x3099, 0x309A},                                     // kana voicing marks
    {0xA66F, 0xA67D},                                     // Cyrillic combining marks
    {0xA69E, 0xA69F}, {0xA6F0, 0xA6F1}, {0xA800, 0xABFF}, // Syloti Nagri to Meetei Mayek
    {0xD7B0, 0xDFFF},                                     // Hangul Jamo extended, surrogates
    {0xFB1D, 0xFDFF},                                     // Hebrew and Arabic presentation forms
    {0xFE00, 0xFE0F},                                     // variation selectors
    {0xFE20, 0xFE2F},                                     // combining half marks
    {0xFE70, 0xFEFF},                                     // Arabic presentation forms, byte order mark
};

int EmFor(const LOGFONTW& font, FT_Face face)
{
    int em = font.lfHeight == 0 ? kDefaultEmHeight : std::abs(font.lfHeight);
    const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    if (font.lfHeight > 0)
    {
        const int cell = os2 != nullptr && os2->usWinAscent != 0 ? os2->usWinAscent + os2->usWinDescent
                                                                 : face->ascender - face->descender;
        em = cell > 0 ? MulDiv(em, face->units_per_EM, cell) : em;
    }
    return std::clamp(em, 1, kLargestEmHeight);
}

/// The slot's rendered picture, 256 levels of grey or one bit a pixel.
Glyph CopyGlyph(const FT_GlyphSlotRec& slot)
{
    const FT_Bitmap& bitmap = slot.bitmap;
    Glyph glyph{slot.bitmap_left, slot.bitmap_top, static_cast<int>(bitmap.width), static_cast<int>(bitmap.rows), {}};
    glyph.coverage.reserve(static_cast<std::size_t>(bitmap.width) * bitmap.rows);
    for (unsigned y = 0; y < bitmap.rows; ++y)
    {
        const unsigned char* row = bitmap.buffer + static_cast<std::ptrdiff_t>(y) * bitmap.pitch;
        for (unsigned x = 0; x < bitmap.width; ++x)
        {
            const bool mono = bitmap.pixel_mode == FT_PIXEL_MODE_MONO;
            glyph.coverage.push_back(mono ? ((row[x / 8] >> (7 - x % 8) & 1) != 0 ? 255 : 0) : row[x]);
        }
    }
    return glyph;
}

using FontKey = std::tuple<std::u16string, LONG, LONG, BYTE, BYTE, BYTE>;

FontKey KeyOf(const LOGFONTW& font)
{
    return {font.lfFaceName, font.lfHeight, font.lfWeight, font.lfItalic, font.lfUnderline, font.lfStrikeOut};
}

} // namespace

bool NeedsShaping(char16_t unit)
{
    if (unit < kShapedRanges[0].first)
        return false;
    const UnitRange* range = std::upper_bound(std::begin(kShapedRanges), std::end(kShapedRanges), unit,
                                              [](char16_t value, const UnitRange& r) { return value < r.first; });
    return unit <= std::prev(range)->last;
}

GlyphFont& GlyphFont::For(const LOGFONTW& font)
{
    static auto& fonts = *new std::map<FontKey, std::unique_ptr<GlyphFont>>();
    std::unique_ptr<GlyphFont>& entry = fonts[KeyOf(font)];
    if (entry == nullptr)
        entry = std::make_unique<GlyphFont>(font);
    return *entry;
}

GlyphFont& FontObject::Glyphs()
{
    if (m_glyphs == nullptr)
        m_glyphs = &GlyphFont::For(logFont);
    return *m_glyphs;
}

GlyphFont::GlyphFont(const LOGFONTW& font) : m_faceName(Utf8FromUtf16(font.lfFaceName))
{
    m_latinAdvances.fill(kUnknown);
    const TextRendering rendering = CurrentTextRendering();
    m_loadFlags = GlyphLoadFlags(rendering);
    m_face = FaceFor(font, m_faceName);
    if (m_face != nullptr && SetSize(font))
    {
        ReadMetrics(font);
    }
    else
    {
        m_face = nullptr;
        m_emHeight = font.lfHeight == 0 ? kDefaultEmHeight : std::min(std::abs(font.lfHeight), kLargestEmHeight);
        AssumeMetrics();
    }
    m_serviceFont = {m_faceName.c_str(),
                     m_emHeight,
                     font.lfWeight != 0 ? static_cast<int>(std::clamp<LONG>(font.lfWeight, 1, 1000)) : FW_NORMAL,
                     font.lfItalic != 0,
                     font.lfUnderline != 0,
                     font.lfStrikeOut != 0,
                     rendering.antialias,
                     rendering.hinting};
}

GlyphFont::~GlyphFont()
{
    if (m_size != nullptr)
        FT_Done_Size(m_size);
}

bool GlyphFont::SetSize(const LOGFONTW& font)
{
    m_emHeight = EmFor(font, m_face);
    return FT_IS_SCALABLE(m_face) && m_face->charmap != nullptr && FT_New_Size(m_face, &m_size) == 0 &&
           FT_Activate_Size(m_size) == 0 && FT_Set_Pixel_Sizes(m_face, 0, static_cast<FT_UInt>(m_emHeight)) == 0;
}

// As GDI takes them: the cell is what the OS/2 table says Windows needs, so that nothing of a glyph is cut.
void GlyphFont::ReadMetrics(const LOGFONTW& font)
{
    const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(m_face, FT_SFNT_OS2));
    const bool hasCell = os2 != nullptr && os2->usWinAscent + os2->usWinDescent != 0;
    const auto scale = [this](int units) { return MulDiv(units, m_emHeight, m_face->units_per_EM); };
    m_metrics.tmAscent = scale(hasCell ? os2->usWinAscent : m_face->ascender);
    m_metrics.tmDescent = scale(hasCell ? os2->usWinDescent : -m_face->descender);
    m_metrics.tmHeight = m_metrics.tmAscent + m_metrics.tmDescent;
    m_metrics.tmInternalLeading = std::max(0, m_metrics.tmHeight - m_emHeight);
    m_metrics.tmExternalLeading = std::max(0, scale(m_face->height) - m_metrics.tmHeight);
    m_metrics.tmAveCharWidth = std::max(1, scale(os2 != nullptr ? os2->xAvgCharWidth : m_face->units_per_EM / 2));
    m_metrics.tmMaxCharWidth = std::max(m_metrics.tmAveCharWidth, scale(m_face->max_advance_width));
    m_metrics.tmWeight = os2 != nullptr ? os2->usWeightClass : FW_NORMAL;
    m_metrics.tmDigitizedAspectX = 96;
    m_metrics.tmDigitizedAspectY = 96;
    m_metrics.tmFirstChar = u' ';
    m_metrics.tmLastChar = 0xFFFC;
    m_metrics.tmDefaultChar = 0x1F;
    m_metrics.tmBreakChar = u' ';
    m_metrics.tmItalic = font.lfItalic;
    m_metrics.tmUnderlined = font.lfUnderline;
    m_metrics.tmStruckOut = font.lfStrikeOut;
    m_metrics.tmCharSet = font.lfCharSet;
}

void GlyphFont::AssumeMetrics()
{
    m_metrics.tmAscent = m_emHeight;
    m_metrics.tmDescent = (m_emHeight + 3) / 4;
    m_metrics.tmHeight = m_metrics.tmAscent + m_metrics.tmDescent;
    m_metrics.tmInternalLeading = m_metrics.tmDescent;
    m_metrics.tmAveCharWidth = std::max(1, m_emHeight / 2);
    m_metrics.tmMaxCharWidth = m_emHeight;
    m_metrics.tmWeight = FW_NORMAL;
}

std::int16_t& GlyphFont::AdvanceSlot(char16_t unit)
{
    if (unit < m_latinAdvances.size())
        return m_latinAdvances[unit];
    std::unique_ptr<AdvancePage>& page = m_advances[unit >> 8];
    if (page == nullptr)
    {
        page = std::make_unique<AdvancePage>();
        page->fill(kUnknown);
    }
    return (*page)[unit & 0xFF];
}

std::int16_t GlyphFont::ReadAdvance(char16_t unit)
{
    if (m_face == nullptr || NeedsShaping(unit))
        return kNeedsService;
    // Control characters in a file name are shown as blanks.
    const FT_UInt glyph = FT_Get_Char_Index(m_face, unit < u' ' ? u' ' : unit);
    FT_Fixed advance = 0;
    if (glyph == 0 || FT_Activate_Size(m_size) != 0 || FT_Get_Advance(m_face, glyph, m_loadFlags, &advance) != 0)
        return kNeedsService;
    return static_cast<std::int16_t>(std::clamp<FT_Fixed>((advance + 0x8000) >> 16, 0, INT16_MAX));
}

int GlyphFont::Advance(char16_t unit)
{
    std::int16_t& slot = AdvanceSlot(unit);
    if (slot == kUnknown)
        slot = ReadAdvance(unit);
    return slot;
}

std::optional<int> GlyphFont::Measure(std::u16string_view text)
{
    int width = 0;
    for (const char16_t unit : text)
    {
        int advance = unit < m_latinAdvances.size() ? m_latinAdvances[unit] : kUnknown;
        if (advance < 0 && (advance = Advance(unit)) == kNeedsService)
            return std::nullopt;
        width += advance;
    }
    return width;
}

const Glyph& GlyphFont::GlyphFor(char16_t unit)
{
    const auto [entry, isNew] = m_glyphs.try_emplace(unit);
    const bool hasInk = isNew && m_face != nullptr && unit > u' ';
    const int flags = m_loadFlags | static_cast<int>(FT_LOAD_RENDER);
    if (hasInk && FT_Activate_Size(m_size) == 0 && FT_Load_Char(m_face, unit, flags) == 0)
        entry->second = CopyGlyph(*m_face->glyph);
    return entry->second;
}

} // namespace platform
