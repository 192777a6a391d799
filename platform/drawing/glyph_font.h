// One font at one size: advances and rendered glyphs, straight from FreeType.
//
// This is the fast path for plain left-to-right text: every code unit is one glyph of this font, at a whole pixel
// position, without kerning. Text that is more than that says so (NeedsService) and is left to the text service.
#pragma once

#include "platform/services/text_service.h"

#include "wingdi.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct FT_FaceRec_;
struct FT_SizeRec_;

namespace platform
{

/// Coverage of one glyph, 0 to 255 a pixel.
struct Glyph
{
    int left = 0; ///< pixels from the pen position to the first column
    int top = 0;  ///< pixels from the baseline up to the first row
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> coverage;
};

class GlyphFont
{
public:
    /// The font for a description; made by the first call for it and kept for the life of the process.
    static GlyphFont& For(const LOGFONTW& font);

    /// Width in pixels; nothing when the text needs the service.
    std::optional<int> Measure(std::u16string_view text);
    /// Advance in pixels of a unit that does not need the service.
    int Advance(char16_t unit);
    const Glyph& GlyphFor(char16_t unit);

    const TEXTMETRICW& Metrics() const { return m_metrics; }
    int EmHeight() const { return m_emHeight; }
    /// The same font in the text service's terms; valid as long as this object.
    const TextFont& ServiceFont() const { return m_serviceFont; }

    explicit GlyphFont(const LOGFONTW& font);
    ~GlyphFont();

private:
    using AdvancePage = std::array<std::int16_t, 256>;

    bool SetSize(const LOGFONTW& font);
    void ReadMetrics(const LOGFONTW& font);
    void AssumeMetrics();
    std::int16_t ReadAdvance(char16_t unit);
    std::int16_t& AdvanceSlot(char16_t unit);

    FT_FaceRec_* m_face = nullptr; ///< its file's only one; null when there is none: all text goes to the service
    FT_SizeRec_* m_size = nullptr; ///< of the face, which has it when it is activated
    int m_loadFlags = 0;
    int m_emHeight = 0;
    TEXTMETRICW m_metrics{};
    std::string m_faceName;
    TextFont m_serviceFont{};
    AdvancePage m_latinAdvances;                              ///< the first page, which most of all text is on
    std::array<std::unique_ptr<AdvancePage>, 256> m_advances; ///< the others, by high byte
    std::unordered_map<char16_t, Glyph> m_glyphs;
};

/// True for units that one glyph each, left to right, cannot show: combining marks, right-to-left and shaped scripts,
/// surrogates, joiners and direction marks, variation selectors.
bool NeedsShaping(char16_t unit);

} // namespace platform
