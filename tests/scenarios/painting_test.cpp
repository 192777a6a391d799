// What is on the screen: single telling pixels at places that are computed here.
#include "tests/scenarios/desk.h"

#include "app/launcher_state.h"
#include "geometry/dpi_scale.h"

#include <gtest/gtest.h>

#include <set>

namespace
{

constexpr int kFrame = 1;

/// 0x00BBGGRR as the system has colours, as 0x00RRGGBB as the screen has them.
std::uint32_t Rgb(COLORREF color)
{
    return static_cast<std::uint32_t>(GetRValue(color)) << 16 | static_cast<std::uint32_t>(GetGValue(color)) << 8 |
           GetBValue(color);
}

/// Looks at the screen as it is now.
class Look
{
public:
    explicit Look(Desk& desk) { desk.Idle(); }
    std::uint32_t At(LONG x, LONG y) const { return platform::headless::PixelAt(x, y); }

    int Count(const RECT& within, std::uint32_t color) const
    {
        int count = 0;
        for (LONG y = within.top; y < within.bottom; ++y)
            for (LONG x = within.left; x < within.right; ++x)
                count += At(x, y) == color;
        return count;
    }

    bool AllAre(const RECT& within, std::uint32_t color) const
    {
        return Count(within, color) == (within.right - within.left) * (within.bottom - within.top);
    }
};

/// Where an item's arrow must be, in screen coordinates.
struct Arrow
{
    explicit Arrow(const RECT& item)
        : size(g_dpi.Scaled(4)), left(item.right - 2 * size), middle((item.top + item.bottom) / 2)
    {
    }
    /// Its whole left edge and its tip are of the colour, and nothing beside it is.
    void ExpectOn(const Look& look, std::uint32_t color, std::uint32_t background) const
    {
        for (LONG y = middle - size + 1; y < middle + size - 1; ++y)
            EXPECT_EQ(look.At(left, y), color) << "left edge, row " << y - middle;
        EXPECT_EQ(look.At(left + size / 2 - 1, middle), color);
        EXPECT_EQ(look.At(left - 1, middle), background);
        EXPECT_EQ(look.At(left + size + 1, middle), background);
        EXPECT_EQ(look.At(left + size / 2, middle - size), background) << "it narrows to the right";
        EXPECT_EQ(look.At(left + size / 2, middle + size), background);
    }
    int size;
    LONG left;
    LONG middle;
};

class AtScale : public testing::TestWithParam<int>
{
};

TEST_P(AtScale, HighlightAndArrowAreWhereTheyBelong)
{
    Desk desk("3840x2160+0+0", GetParam());
    desk.MakeFile("folder/inside");
    desk.MakeFile("plain");
    desk.Launch("100,2000,0");
    const std::uint32_t menu = Rgb(g_launcher.m_menuColor);
    const std::uint32_t text = Rgb(g_launcher.m_menuTextColor);
    const std::uint32_t highlight = Rgb(g_launcher.m_highlightColor);
    const std::uint32_t highlightText = Rgb(g_launcher.m_highlightTextColor);
    const RECT folder = desk.ItemBounds("folder");
    const RECT plain = desk.ItemBounds("plain");
    {
        const Look look(desk);
        Arrow(folder).ExpectOn(look, text, menu);
        EXPECT_EQ(look.Count({Arrow(plain).left, plain.top, plain.right, plain.bottom}, text), 0) << "no arrow";
        EXPECT_EQ(look.Count(folder, highlight), 0);
        EXPECT_EQ(look.At(folder.right - 2, folder.top + 1), menu);
    }
    desk.RestOn("folder");
    {
        const Look look(desk);
        Arrow(folder).ExpectOn(look, highlightText, highlight);
        for (const POINT corner : {POINT{folder.left, folder.top}, POINT{folder.right - 1, folder.top},
                                   POINT{folder.left, folder.bottom - 1}, POINT{folder.right - 1, folder.bottom - 1}})
            EXPECT_EQ(look.At(corner.x, corner.y), highlight) << corner.x << ", " << corner.y;
        EXPECT_EQ(look.Count(plain, highlight), 0) << "only the hot item";
    }
    desk.RestOn("plain");
    {
        const Look look(desk);
        EXPECT_EQ(look.Count(folder, highlight), 0) << "nothing is left behind";
        EXPECT_EQ(look.At(plain.right - 1, plain.top), highlight);
        Arrow(folder).ExpectOn(look, text, menu);
    }
}

TEST_P(AtScale, TheBannerCarriesItsColoursAndTheTitle)
{
    Desk desk("3840x2160+0+0", GetParam());
    for (int i = 0; i < 9; ++i)
        desk.MakeFile("item " + std::to_string(i));
    desk.Launch("100,2000,0");
    const RECT bounds = desk.Bounds();
    const RECT items = desk.ItemBounds("item 0");
    const RECT banner{bounds.left + kFrame, bounds.top + kFrame, items.left, bounds.bottom - kFrame};
    EXPECT_EQ(banner.right - banner.left, desk.Level().m_contentRect.left);
    const Look look(desk);
    // The skin's ends and its upper half; its border columns let the menu's colour through.
    EXPECT_EQ(look.At(banner.left + 4, banner.top + 4), 0x33BAFFu);
    EXPECT_EQ(look.At(banner.left, (banner.top + banner.bottom) / 2), Rgb(g_launcher.m_menuColor));
    const std::uint32_t bottom = look.At(banner.left + 2, banner.bottom - 2);
    EXPECT_EQ(bottom, 0x0C3A81u);
    // The title is white, reads upward from the bottom and stays within its strip.
    const int strip = desk.Level().m_banner ? static_cast<int>(banner.bottom - banner.top) : 0;
    RECT text{};
    {
        const WindowDC screen(nullptr);
        const SelectGuard font(screen.Get(), g_launcher.m_font.Get());
        DrawTextW(screen.Get(), g_launcher.m_title.c_str(), -1, &text, DT_SINGLELINE | DT_NOPREFIX | DT_CALCRECT);
    }
    const int length = std::min<int>(strip, text.right - text.left + 15);
    EXPECT_GT(look.Count({banner.left, banner.bottom - length, banner.right, banner.bottom - 12}, 0xFFFFFF), 20);
    EXPECT_EQ(look.Count({banner.left, banner.top, banner.right, banner.bottom - length}, 0xFFFFFF), 0);
    EXPECT_EQ(look.Count({banner.left, banner.bottom - 12, banner.right, banner.bottom}, 0xFFFFFF), 0);
    // Its "O" is closed at the start and the first capital reaches as far as the last letters' ascenders do.
    EXPECT_EQ(look.Count({banner.left, banner.bottom - length, banner.left + 3, banner.bottom}, 0xFFFFFF), 0)
        << "three pixels of margin";
}

TEST(Painting, TheSkinMayReachIntoTheBody)
{
    constexpr int kBodyColumn = 5;
    Desk desk;
    for (int i = 0; i < 9; ++i)
        desk.MakeFile("item " + std::to_string(i));
    desk.Launch();
    const RECT bounds = desk.Bounds();
    const RECT item = desk.ItemBounds("item 4");
    const POINT inBody{item.right - 2, item.top + 1};
    EXPECT_EQ(Look(desk).At(inBody.x, inBody.y), Rgb(g_launcher.m_menuColor));
    BITMAP skin{};
    ASSERT_NE(GetObjectW(g_launcher.m_bannerSkin.Get(), sizeof(skin), &skin), 0);
    for (LONG y = 0; y < skin.bmHeight; ++y)
        static_cast<std::uint32_t*>(skin.bmBits)[y * skin.bmWidth + kBodyColumn] = 0xFF204060;
    desk.Level().RequestRefresh();
    const Look look(desk);
    EXPECT_EQ(look.At(inBody.x, inBody.y), 0x204060u);
    EXPECT_EQ(look.At(bounds.right - kFrame - 1, bounds.bottom - kFrame - 1), 0x204060u);
    EXPECT_EQ(look.At(bounds.left + kFrame, (bounds.top + bounds.bottom) / 2), Rgb(g_launcher.m_menuColor))
        << "the banner keeps its own";
}

INSTANTIATE_TEST_SUITE_P(Painting, AtScale, testing::Values(96, 144, 192),
                         [](const auto& info) { return std::to_string(info.param); });

/// So long that the separator's picture is stretched: where it is shrunk, gaps of one pixel get lost.
constexpr char kLongName[] = "a name that makes the level more than twice as wide as the separator's picture is";

/// Lengths of the runs of line and of gap along the separator's row, both ends included.
std::pair<std::set<int>, std::set<int>> RunsOf(const Look& look, const RECT& separator, std::uint32_t menu)
{
    std::pair<std::set<int>, std::set<int>> runs;
    bool on = false;
    int length = 0;
    for (LONG x = separator.left; x < separator.right; ++x, ++length)
    {
        const bool line = look.At(x, separator.top + 3) != menu;
        if (line != on)
        {
            (on ? runs.first : runs.second).insert(length);
            length = 0;
        }
        on = line;
    }
    return runs;
}

TEST(Painting, SeparatorsHaveTheirThreeStyles)
{
    for (const std::uint32_t style : {0u, 0x10000u, 0x20000u})
    {
        Desk desk;
        desk.MakeFile(kLongName);
        desk.MakeFile("b");
        desk.StoreOptions(style);
        desk.StoreOrder(kRootLayout, Order({kLongName, "|", "b"}));
        desk.Launch();
        const Look look(desk);
        const RECT separator = desk.ItemBounds("|");
        const std::uint32_t menu = Rgb(g_launcher.m_menuColor);
        ASSERT_EQ(separator.bottom - separator.top, 8);
        for (const LONG row : {0, 1, 2, 5, 6, 7})
            EXPECT_TRUE(
                look.AllAre({separator.left, separator.top + row, separator.right, separator.top + row + 1}, menu))
                << "row " << row << " of style " << style;
        const LONG width = separator.right - separator.left;
        const int line = look.Count({separator.left, separator.top + 3, separator.right, separator.top + 5}, 0xA5B9DD);
        // A solid line is inset by 4 in 100 at each end; the dashes leave gaps in it.
        const int solid = static_cast<int>(2 * (width - 8 * width / 100));
        const auto [dashes, gaps] = RunsOf(look, separator, menu);
        if (style == 0)
        {
            EXPECT_NEAR(line, solid, 8);
            EXPECT_EQ(dashes.size(), 1u);
        }
        else
        {
            EXPECT_LT(line, solid * 19 / 20);
            ASSERT_FALSE(dashes.empty());
            const auto stretched = [&](int pixels) { return static_cast<int>(pixels * width / 100); };
            EXPECT_GE(*dashes.rbegin(), stretched(style == 0x10000 ? 10 : 2));
            EXPECT_LE(*dashes.rbegin(), stretched(style == 0x10000 ? 11 : 3) + 1);
            EXPECT_GE(*gaps.begin(), stretched(1));
        }
    }
}

TEST(Painting, ThePlaceholderHasNeitherArrowNorPicture)
{
    Desk desk;
    desk.MakeFolder("folder");
    desk.Launch();
    desk.Click("folder");
    const RECT item = desk.ItemBounds("(Empty)", 1);
    const Look look(desk);
    const std::uint32_t text = Rgb(g_launcher.m_menuTextColor);
    EXPECT_EQ(look.Count({Arrow(item).left, item.top, item.right, item.bottom}, text), 0);
    const RECT label{item.left + 32, item.top, Arrow(item).left, item.bottom};
    EXPECT_FALSE(look.AllAre(label, Rgb(g_launcher.m_menuColor)));
    EXPECT_TRUE(look.AllAre({item.left, item.top, item.left + 4, item.bottom}, Rgb(g_launcher.m_menuColor)));
}

TEST(Painting, ASubLevelIsPlainAndBordered)
{
    Desk desk;
    desk.MakeFile("folder/inside");
    desk.Launch();
    desk.Click("folder");
    const RECT bounds = desk.Bounds(1);
    const Look look(desk);
    const std::uint32_t border = look.At(bounds.left, bounds.top);
    EXPECT_NE(border, Rgb(g_launcher.m_menuColor));
    EXPECT_TRUE(look.AllAre({bounds.left, bounds.top, bounds.right, bounds.top + 1}, border));
    EXPECT_TRUE(look.AllAre({bounds.left, bounds.bottom - 1, bounds.right, bounds.bottom}, border));
    EXPECT_TRUE(look.AllAre({bounds.left + 1, bounds.bottom - 2, bounds.right - 1, bounds.bottom - 1},
                            Rgb(g_launcher.m_menuColor)))
        << "the margin under the last item";
}

TEST(Painting, ScrollingAndRefreshingLeaveNothingUndrawn)
{
    constexpr std::uint32_t kUndrawn = 0xFF00FF;
    Desk desk("800x600+0+0");
    for (int i = 0; i < 50; ++i)
        desk.MakeFile("item " + std::to_string(100 + i));
    desk.Launch("0,600,0");
    const auto whole = [&]
    {
        RECT bounds = desk.Bounds();
        bounds.bottom = std::min<LONG>(bounds.bottom, 600);
        return bounds;
    };
    desk.RestOn("item 110");
    desk.Wheel(-120);
    EXPECT_EQ(Look(desk).Count(whole(), kUndrawn), 0);
    for (int i = 10; i < 50; ++i)
        std::filesystem::remove(desk.Folder() / ("item " + std::to_string(100 + i)));
    desk.SendNotice();
    EXPECT_EQ(Look(desk).Count(whole(), kUndrawn), 0);
    desk.MakeFile("a name that makes all of it wider");
    desk.SendNotice();
    const Look look(desk);
    EXPECT_EQ(look.Count(whole(), kUndrawn), 0);
}

TEST(Painting, AMoveOfTheHighlightRedrawsTwoItemsOnly)
{
    Desk desk;
    for (int i = 0; i < 20; ++i)
        desk.MakeFile("item " + std::to_string(10 + i));
    desk.Launch("100,1000,0");
    desk.RestOn("item 12");
    desk.Idle();
    platform::headless::TakePresentedPixels();
    desk.RestOn("item 13");
    desk.Idle();
    const RECT item = desk.ItemBounds("item 13");
    const auto area = static_cast<std::size_t>((item.right - item.left) * (item.bottom - item.top));
    const std::size_t presented = platform::headless::TakePresentedPixels();
    EXPECT_GE(presented, area);
    EXPECT_LE(presented, 2 * area);
}

} // namespace
