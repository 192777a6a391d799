// Text by its two paths, and the font cache.
#include "platform/base/cache_folder.h"
#include "platform/base/file_content.h"
#include "platform/drawing/font_cache.h"
#include "platform/drawing/font_stream.h"
#include "platform/drawing/gdi_objects.h"
#include "platform/drawing/glyph_font.h"
#include "platform/drawing/text_line.h"
#include "platform/drawing/text_rendering.h"
#include "platform/services/text_service_access.h"
#include "tests/headless/headless.h"

#include "windows.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

using namespace platform;

namespace
{

LOGFONTW LogFont(LONG height, std::u16string_view face = u"Sans")
{
    LOGFONTW font{};
    font.lfHeight = height;
    font.lfWeight = FW_NORMAL;
    std::copy(face.begin(), face.end(), font.lfFaceName);
    return font;
}

/// White text on black, in a bitmap of its own.
class Paper
{
public:
    explicit Paper(LONG height) : m_dc(CreateCompatibleDC(nullptr))
    {
        BITMAPINFO info{{sizeof(BITMAPINFOHEADER), kWidth, -kHeight, 1, 32, 0, 0, 0, 0, 0, 0}, {}};
        void* bits = nullptr;
        m_bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        m_bits = static_cast<std::uint32_t*>(bits);
        m_previousBitmap = SelectObject(m_dc, m_bitmap);
        const LOGFONTW font = LogFont(height);
        m_font = CreateFontIndirectW(&font);
        m_previousFont = SelectObject(m_dc, m_font);
        SetTextColor(m_dc, RGB(255, 255, 255));
        SetBkMode(m_dc, TRANSPARENT);
    }
    ~Paper()
    {
        SelectObject(m_dc, m_previousBitmap);
        SelectObject(m_dc, m_previousFont);
        DeleteObject(m_bitmap);
        DeleteObject(m_font);
        DeleteDC(m_dc);
    }
    Paper(const Paper&) = delete;
    Paper& operator=(const Paper&) = delete;

    /// Draws at (20, 20) and returns the columns that have ink as [first, last).
    std::pair<int, int> Ink(std::u16string_view text)
    {
        std::fill(m_bits, m_bits + kWidth * kHeight, 0u);
        RECT rect{20, 20, kWidth, kHeight};
        DrawTextW(m_dc, text.data(), static_cast<int>(text.size()), &rect, DT_SINGLELINE | DT_NOPREFIX | DT_NOCLIP);
        std::pair<int, int> ink{kWidth, 0};
        for (int i = 0; i < kWidth * kHeight; ++i)
            if ((m_bits[i] & 0xFFFFFF) != 0)
                ink = {std::min(ink.first, i % kWidth), std::max(ink.second, i % kWidth + 1)};
        return ink;
    }
    int Width(std::u16string_view text) const
    {
        SIZE size{};
        EXPECT_TRUE(GetTextExtentPoint32W(m_dc, text.data(), static_cast<int>(text.size()), &size));
        return size.cx;
    }

private:
    static constexpr int kWidth = 300;
    static constexpr int kHeight = 80;
    HDC m_dc;
    HBITMAP m_bitmap;
    std::uint32_t* m_bits;
    HGDIOBJ m_previousBitmap;
    HFONT m_font;
    HGDIOBJ m_previousFont;
};

FontCache SampleCache(const std::string& source, const std::string& fontFile)
{
    FontCache cache;
    cache.sources = {source};
    cache.fonts.push_back({{"Segoe UI", 12, 400, false}, {fontFile, 0}, StampOf(fontFile)});
    cache.fonts.push_back({{"", 16, 700, true}, {fontFile, 65536}, StampOf(fontFile)});
    return cache;
}

} // namespace

TEST(TextPaths, PlainTextStaysOffTheService)
{
    EXPECT_FALSE(NeedsShaping(u'a'));
    EXPECT_FALSE(NeedsShaping(u'é'));
    EXPECT_FALSE(NeedsShaping(u'Ж'));
    EXPECT_FALSE(NeedsShaping(u'字')) << "one glyph each, if the font has it";
    for (const char16_t unit : {u'\u0301', u'א', u'ع', u'न', u'ก', u'\u200D', u'\uFE0F', char16_t{0xD83D},
                                char16_t{0xDE00}, u'\u202E', u'\uFEFF'})
        EXPECT_TRUE(NeedsShaping(unit)) << std::hex << static_cast<unsigned>(unit);
    GlyphFont& font = GlyphFont::For(LogFont(-14));
    EXPECT_TRUE(font.Measure(u"Plain name (2)"));
    EXPECT_TRUE(font.Measure(u"tab\there")) << "control characters show as blanks";
    EXPECT_FALSE(font.Measure(u"with עברית"));
    EXPECT_FALSE(font.Measure(u"missing \uE123")) << "a glyph that the font lacks";
}

TEST(TextPaths, BothDrawWhatTheyMeasure)
{
    Paper paper(-20);
    for (const std::u16string_view text : {u"Hamburg", u"e\u0301 accent", u"שלום", u"☺😀"})
    {
        SCOPED_TRACE(testing::PrintToString(std::u16string(text)));
        const auto [first, last] = paper.Ink(text);
        ASSERT_LT(first, last) << "nothing drawn";
        EXPECT_NEAR(first, 20, 3);
        EXPECT_NEAR(last, 20 + paper.Width(text), 4);
    }
    EXPECT_EQ(paper.Width(u"e\u0301"), paper.Width(u"é")) << "a combining mark takes no room of its own";
}

TEST(TextPaths, TheServiceIsThere)
{
    ASSERT_NE(GetTextService(), nullptr) << "the desktop module must lie beside the program";
    TextExtent extent{};
    TextFont font{};
    font.face = "Sans";
    font.pixelSize = 16;
    font.weight = 400;
    const char16_t lone[] = {u'a', 0xD83D, u'b'};
    ASSERT_TRUE(GetTextService()->measure(&font, lone, 3, &extent));
    EXPECT_GT(extent.width, 16) << "a lone surrogate does not swallow the text";
}

TEST(TextPaths, FontsAreMadeOnce)
{
    EXPECT_EQ(&GlyphFont::For(LogFont(-14)), &GlyphFont::For(LogFont(-14)));
    EXPECT_NE(&GlyphFont::For(LogFont(-14)), &GlyphFont::For(LogFont(-15)));
    EXPECT_GT(GlyphFont::For(LogFont(-5000)).EmHeight(), 0) << "absurd sizes are limited";
    EXPECT_GT(GlyphFont::For(LogFont(0)).Metrics().tmHeight, 8);
}

TEST(TextPaths, FollowTheUsersRenderingSettings)
{
    EXPECT_EQ(CurrentTextRendering().hinting, TextHinting::Slight) << "where nothing is set";
    headless::SetDesktopSetting("Xft/Antialias", "0");
    headless::SetDesktopSetting("Xft/HintStyle", "hintfull");
    EXPECT_EQ(CurrentTextRendering().hinting, TextHinting::Full);
    const Glyph& glyph = GlyphFont::For(LogFont(-31)).GlyphFor(u'O');
    headless::SetDesktopSetting("Xft/Hinting", "0");
    EXPECT_EQ(CurrentTextRendering().hinting, TextHinting::None);
    headless::Reset();
    ASSERT_FALSE(glyph.coverage.empty());
    EXPECT_TRUE(std::all_of(glyph.coverage.begin(), glyph.coverage.end(),
                            [](std::uint8_t level) { return level == 0 || level == 255; }))
        << "without antialiasing a pixel is ink or paper";
}

TEST(FontCacheFile, KeepsAnswersBetweenRuns)
{
    const std::string file = CacheFolder() + "/some.ttf";
    ReplaceCacheFile(file, "font");
    const std::string text = WriteFontCache(SampleCache(CacheFolder(), file), "env");
    const FontCache read = ReadFontCache(text, "env");
    ASSERT_EQ(read.fonts.size(), 2u);
    EXPECT_EQ(read.fonts[1].request, (FontRequest{"", 16, 700, true}));
    EXPECT_EQ(read.fonts[1].file.faceIndex, 65536);
    EXPECT_EQ(read.fonts[0].file.path, file);
    EXPECT_TRUE(ReadFontCache(text, "other locale").fonts.empty());
}

TEST(FontCacheFile, IsVoidWhenASourceChanges)
{
    const std::string folder = CacheFolder() + "/fonts-installed";
    const std::string text = WriteFontCache(SampleCache(folder, "/x.ttf"), "env");
    EXPECT_FALSE(ReadFontCache(text, "env").fonts.empty());
    std::filesystem::create_directory(folder);
    EXPECT_TRUE(ReadFontCache(text, "env").fonts.empty()) << "a folder that was missing has appeared";
    std::filesystem::remove(folder);
}

TEST(FontCacheFile, DamageIsAnEmptyCache)
{
    const std::string good = WriteFontCache(SampleCache("/etc", "/x.ttf"), "env");
    ASSERT_EQ(ReadFontCache(good, "env").fonts.size(), 2u);
    const std::size_t lastLine = good.rfind('\n', good.size() - 2) + 1;
    for (std::size_t size = 0; size < good.size(); ++size)
    {
        const FontCache cut = ReadFontCache(good.substr(0, size), "env");
        EXPECT_LE(cut.fonts.size(), size <= lastLine ? 1u : 0u) << "cut to " << size;
    }
    for (std::size_t i = 0; i < good.size(); ++i)
    {
        std::string bad = good;
        bad[i] = '\t';
        ReadFontCache(bad, "env");
    }
}

// The answer comes from the file: a second look-up in a fresh process must not need the desktop module.
TEST(FontCacheFile, IsWrittenByTheFirstLookUp)
{
    GlyphFont::For(LogFont(-23, u"Segoe UI"));
    const FileContent file(CacheFolder() + "/fonts");
    const FontCache cache = ReadFontCache(file.Content(), FontEnvironment());
    EXPECT_FALSE(cache.sources.empty());
    EXPECT_TRUE(std::any_of(cache.fonts.begin(), cache.fonts.end(),
                            [](const CachedFont& font) {
                                return font.request == FontRequest{"Segoe UI", 23, 400, false};
                            }));
}

TEST(FontFiles, HoldAllSizesOfTheirFont)
{
    GlyphFont large(LogFont(-60));
    GlyphFont small(LogFont(-15));
    for (const char16_t unit : {u'm', u'o'})
    {
        EXPECT_GT(large.Advance(unit), 3 * small.Advance(unit));
        EXPECT_GT(large.GlyphFor(unit).height, 3 * small.GlyphFor(unit).height);
    }
}

// A font that another program shortened while it was mapped ended this one.
TEST(FontFiles, MayShrinkWhileTheyAreRead)
{
    const std::optional<FontFile> font = FindFontFile({"Sans", 20, 400, false});
    ASSERT_TRUE(font);
    const std::string copy = CacheFolder() + "/shrinking.ttf";
    std::filesystem::copy_file(font->path, copy, std::filesystem::copy_options::overwrite_existing);
    FT_Library library = nullptr;
    ASSERT_EQ(FT_Init_FreeType(&library), 0);
    FontStream stream(copy);
    const FT_Face face = stream.OpenFace(library, font->faceIndex);
    ASSERT_NE(face, nullptr);
    ASSERT_EQ(FT_Set_Pixel_Sizes(face, 0, 20), 0);
    EXPECT_EQ(FT_Load_Char(face, 'a', FT_LOAD_RENDER), 0);
    std::filesystem::resize_file(copy, 100);
    int missing = 0;
    for (FT_UInt glyph = 0; glyph < static_cast<FT_UInt>(face->num_glyphs); ++glyph)
        missing += FT_Load_Glyph(face, glyph, FT_LOAD_RENDER) != 0;
    EXPECT_GT(missing, 0) << "which are then not drawn";
    EXPECT_EQ(FontStream(copy).OpenFace(library, 0), nullptr) << "and a file like that is no font";
    FT_Done_Face(face);
    FT_Done_FreeType(library);
}
