// Where levels go: edges, two monitors, scales, rebuilding.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/failing.h"

#include "app/launcher_state.h"
#include "geometry/dpi_query.h"
#include "geometry/dpi_scale.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{

constexpr const char* kTwoMonitors = "1920x1080+0+0,1280x1024+1920+0";

void MakeNested(Desk& desk)
{
    for (int i = 0; i < 6; ++i)
        desk.MakeFile("outer/inner/leaf " + std::to_string(i));
    desk.MakeFile("outer/beside");
    desk.MakeFile("zz");
}

TEST(Places, EachMonitorsWorkAreaHoldsTheRoot)
{
    const struct
    {
        const char* line;
        RECT within;
    } cases[] = {
        {"5,1078,0", {0, 0, 1920, 1040}},    {"1915,2,3", {0, 0, 1920, 1040}},
        {"1925,1020,1", {0, 0, 1920, 1040}}, {"3199,5,2", {1984, 0, 3200, 1024}},
        {"-500,-500,0", {0, 0, 1920, 1040}}, {"9000,9000,3", {1984, 0, 3200, 1024}},
    };
    for (const auto& c : cases)
    {
        Desk desk(kTwoMonitors);
        platform::headless::SetWorkArea(0, {0, 0, 1920, 1040});
        platform::headless::SetWorkArea(1, {1984, 0, 3200, 1024});
        MakeNested(desk);
        desk.Launch(c.line);
        const RECT bounds = desk.Bounds();
        EXPECT_GE(bounds.left, c.within.left) << c.line;
        EXPECT_GE(bounds.top, c.within.top) << c.line;
        EXPECT_LE(bounds.right, c.within.right) << c.line;
        EXPECT_LE(bounds.bottom, c.within.bottom) << c.line;
    }
}

TEST(Places, SubLevelsChooseTheirSideByThePrimaryMonitorAndStayOnTheirOwn)
{
    Desk desk(kTwoMonitors);
    platform::headless::SetWorkArea(1, {1920, 0, 3200, 984});
    MakeNested(desk);
    desk.Launch("2400,900,0");
    desk.Click("outer");
    ASSERT_EQ(desk.Levels(), 2);
    // Right of the primary monitor nothing fits at the right, so the level opens to the left.
    const RECT opener = desk.ItemBounds("outer", 0);
    EXPECT_EQ(desk.Bounds(1).right, opener.left);
    desk.Click("inner", 1);
    ASSERT_EQ(desk.Levels(), 3);
    EXPECT_EQ(desk.Bounds(2).right, desk.ItemBounds("inner", 1).left);
    for (int level = 0; level < 3; ++level)
    {
        EXPECT_GE(desk.Bounds(level).left, 1920) << level;
        EXPECT_LE(desk.Bounds(level).bottom, 984) << level;
    }
}

TEST(Places, AtTheRightEdgeOfThePrimaryMonitorLevelsTurnBackInsteadOfCrossing)
{
    Desk desk(kTwoMonitors);
    MakeNested(desk);
    desk.Launch("1900,600,1");
    desk.Click("outer");
    desk.Click("inner", 1);
    ASSERT_EQ(desk.Levels(), 3);
    EXPECT_EQ(desk.Bounds(1).right, desk.ItemBounds("outer", 0).left);
    EXPECT_LE(desk.Bounds(2).right, 1920);
}

TEST(Places, WhereNeitherSideFitsLevelsGoAgainstTheEdge)
{
    Desk desk("340x600+0+0");
    desk.MakeFile("outer/a name that is long enough to fill the half/leaf");
    desk.Launch("0,0,2");
    desk.Click("outer");
    ASSERT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Bounds(1).right, 340) << "clamped onto the monitor";
    desk.Press(VK_DOWN);
    desk.Press(VK_RIGHT);
    ASSERT_EQ(desk.Levels(), 3);
    EXPECT_LE(desk.Bounds(2).right, 340);
    EXPECT_GE(desk.Bounds(2).left, 0);
}

TEST(Places, ARebuildKeepsTheBottomLeftCornerWhateverTheAlignment)
{
    for (const char* line : {"600,500,0", "600,500,1", "600,500,2", "600,500,3"})
    {
        Desk desk;
        for (const char* name : {"a", "b", "c"})
            desk.MakeFile(name);
        desk.Launch(line);
        const RECT before = desk.Bounds();
        desk.MakeFile("a name that is clearly wider than the three others");
        std::filesystem::remove(desk.Folder() / "b");
        std::filesystem::remove(desk.Folder() / "c");
        desk.Refresh();
        const RECT after = desk.Bounds();
        EXPECT_EQ(after.left, before.left) << line;
        EXPECT_EQ(after.bottom, before.bottom) << line;
        EXPECT_GT(after.right - after.left, before.right - before.left) << line;
        EXPECT_LT(after.bottom - after.top, before.bottom - before.top) << line;
    }
}

TEST(Places, ALevelNarrowsOnlyWhenNothingIsOpenBesideIt)
{
    Desk desk;
    desk.MakeFile("folder/x");
    desk.MakeFile("a name that makes the menu wide");
    desk.Launch();
    const LONG wide = desk.Bounds(0).right;
    desk.Click("folder");
    std::filesystem::remove(desk.Folder() / "a name that makes the menu wide");
    desk.Refresh(0);
    EXPECT_EQ(desk.Items(0), Labels{"folder"});
    EXPECT_EQ(desk.Bounds(0).right, wide) << "the sub-level must not hang in the air";
    EXPECT_EQ(desk.Bounds(1).left, desk.ItemBounds("folder", 0).right);
    desk.Press(VK_ESCAPE);
    desk.Refresh(0);
    EXPECT_LT(desk.Bounds(0).right, wide);
}

TEST(Places, ThePagerComesAndGoesWithTheItems)
{
    Desk desk("800x600+0+0");
    const auto makeItems = [&](int from, int to)
    {
        for (int i = from; i < to; ++i)
            desk.MakeFile("item " + std::to_string(100 + i));
    };
    makeItems(0, 3);
    desk.Launch("0,600,0");
    EXPECT_EQ(desk.Level().m_pager, nullptr);
    const HWND toolbar = desk.Level().m_toolbar;
    makeItems(3, 40);
    desk.Refresh();
    ASSERT_NE(desk.Level().m_pager, nullptr);
    EXPECT_EQ(desk.Bounds().top, 0);
    EXPECT_EQ(desk.Bounds().bottom, 602) << "the work area and the frame";
    const HWND pager = desk.Level().m_pager;
    const RECT item = desk.ItemBounds("item 100");
    EXPECT_EQ(SendMessageW(pager, PGM_GETBUTTONSIZE, 0, 0), (item.bottom - item.top) / 2);
    for (int i = 3; i < 40; ++i)
        std::filesystem::remove(desk.Folder() / ("item " + std::to_string(100 + i)));
    desk.Refresh();
    EXPECT_EQ(desk.Level().m_pager, nullptr);
    EXPECT_FALSE(IsWindow(pager));
    EXPECT_EQ(desk.Level().m_toolbar, toolbar) << "the toolbar outlives the pager";
    EXPECT_TRUE(IsWindow(toolbar));
    EXPECT_EQ(desk.Items(), (Labels{"item 100", "item 101", "item 102"}));
}

TEST(Places, TheScaleIsTheScreensOrElseNone)
{
    const Desk desk("1920x1080+0+0", 144);
    {
        const Failing monitor("GetDpiForMonitor", 1);
        EXPECT_EQ(GetDpi(), 144);
    }
    const Failing screen("GetDC");
    EXPECT_EQ(GetDpi(), 144) << "the monitor tells";
    EXPECT_EQ(QueryDpi({}), 96);
}

TEST(Places, SubLevelsScaleToo)
{
    for (const int dpi : {96, 144, 192})
    {
        Desk desk("3840x2160+0+0", dpi);
        MakeNested(desk);
        desk.Launch("100,2000,0");
        desk.Click("outer");
        ASSERT_EQ(desk.Levels(), 2);
        EXPECT_EQ(desk.Bounds(1).left, desk.ItemBounds("outer", 0).right);
        const RECT item = desk.ItemBounds("beside", 1);
        EXPECT_EQ(item.right - item.left, desk.Level(1).m_width);
        EXPECT_GE(item.bottom - item.top, MulDiv(32, dpi, 96));
        EXPECT_EQ(desk.Bounds(1).bottom - desk.Bounds(1).top, 2 * (item.bottom - item.top) + g_dpi.Scaled(2) + 2);
    }
}

} // namespace
