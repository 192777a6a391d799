// Level sizes and places.
#include "geometry/dpi_query.h"
#include "geometry/placement.h"
#include "support/unique_handle.h"

#include <gtest/gtest.h>

#include <ostream>

static bool operator==(const RECT& a, const RECT& b)
{
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

static std::ostream& operator<<(std::ostream& out, const RECT& r)
{
    return out << '(' << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ')';
}

namespace
{

const RECT kWork{0, 0, 1000, 700};
const RECT kFrame{-1, -1, 1, 1};

TEST(DpiScale, CountsInPercentOf96)
{
    const struct
    {
        int dpi;
        int percent;
        int largeIcon;
        int smallIcon;
    } cases[] = {{96, 100, 32, 16}, {109, 114, 36, 18}, {120, 125, 40, 20}, {144, 150, 48, 24}, {192, 200, 64, 32}};
    for (const auto& c : cases)
    {
        const DpiScale scale = DpiScale::FromDpi(c.dpi);
        EXPECT_EQ(scale.percent, c.percent) << c.dpi;
        EXPECT_EQ(scale.relativePercent, 100) << c.dpi;
        EXPECT_EQ(scale.Scaled(32), c.largeIcon) << c.dpi;
        EXPECT_EQ(scale.Scaled(16), c.smallIcon) << c.dpi;
    }
}

HRESULT WINAPI TellDpi(HMONITOR, MONITOR_DPI_TYPE type, UINT* x, UINT* y)
{
    *x = type == MDT_EFFECTIVE_DPI ? 131 : 1;
    *y = 2;
    return S_OK;
}

HRESULT WINAPI TellNoDpi(HMONITOR, MONITOR_DPI_TYPE, UINT* x, UINT* y)
{
    *x = *y = 3;
    return E_FAIL;
}

POINT g_askedPoint;
DWORD g_askedFlags;

HMONITOR WINAPI FindMonitor(POINT point, DWORD flags)
{
    g_askedPoint = point;
    g_askedFlags = flags;
    return reinterpret_cast<HMONITOR>(static_cast<UINT_PTR>(1));
}

HMONITOR WINAPI FindNoMonitor(POINT, DWORD)
{
    return nullptr;
}

TEST(GetDpi, IsTheMonitorsOwnAtTheCentreOfTheScreen)
{
    EXPECT_EQ(QueryDpi({TellDpi, FindMonitor, ::MonitorFromWindow}), 131);
    EXPECT_EQ(g_askedPoint.x, GetSystemMetrics(SM_CXSCREEN) / 2);
    EXPECT_EQ(g_askedPoint.y, GetSystemMetrics(SM_CYSCREEN) / 2);
    EXPECT_EQ(g_askedFlags, static_cast<DWORD>(MONITOR_DEFAULTTONEAREST));
}

TEST(GetDpi, IsTheScreensWhereTheMonitorDoesNotTell)
{
    const WindowDC screen(nullptr);
    const int dpi = GetDeviceCaps(screen.Get(), LOGPIXELSX);
    EXPECT_EQ(QueryDpi({nullptr, FindMonitor, ::MonitorFromWindow}), dpi);
    EXPECT_EQ(QueryDpi({TellDpi, nullptr, ::MonitorFromWindow}), dpi);
    EXPECT_EQ(QueryDpi({TellDpi, FindMonitor, nullptr}), dpi);
    EXPECT_EQ(QueryDpi({TellDpi, FindNoMonitor, ::MonitorFromWindow}), dpi);
    EXPECT_EQ(QueryDpi({TellNoDpi, FindMonitor, ::MonitorFromWindow}), dpi);
}

LevelMeasure FiveItems()
{
    LevelMeasure measure;
    for (int i = 0; i < 5; ++i)
        measure.buttons.Add({0, i * 36, 120, i * 36 + 36}, false);
    measure.buttons.Add({0, 180, 400, 188}, true);
    measure.workHeight = 700;
    return measure;
}

TEST(LevelSize, MarginsScaleAndSeparatorsDoNotWiden)
{
    for (const int dpi : {96, 144, 192})
    {
        const DpiScale scale = DpiScale::FromDpi(dpi);
        const LevelSize size = ComputeLevelSize(FiveItems(), scale);
        EXPECT_EQ(size.width, 120 + scale.Scaled(16));
        EXPECT_EQ(size.height, 188 + scale.Scaled(2));
        EXPECT_EQ(size.itemHeight, 36);
        EXPECT_EQ(size.content, (RECT{0, 0, size.width, size.height}));
        EXPECT_FALSE(size.needsPager);
    }
}

TEST(LevelSize, OnlyALevelWithDeeperOnesKeepsItsWidth)
{
    LevelMeasure measure = FiveItems();
    measure.previousWidth = 300;
    EXPECT_EQ(ComputeLevelSize(measure, DpiScale::FromDpi(96)).width, 136);
    measure.deeperLevelsOpen = true;
    EXPECT_EQ(ComputeLevelSize(measure, DpiScale::FromDpi(96)).width, 300);
}

TEST(LevelSize, PagerExactlyWhenTallerThanTheWorkArea)
{
    LevelMeasure measure = FiveItems();
    measure.workHeight = 190;
    EXPECT_FALSE(ComputeLevelSize(measure, DpiScale::FromDpi(96)).needsPager);
    measure.workHeight = 189;
    const LevelSize size = ComputeLevelSize(measure, DpiScale::FromDpi(96));
    EXPECT_TRUE(size.needsPager);
    EXPECT_EQ(size.client.cy, 189);
    EXPECT_EQ(size.height, 190);
    EXPECT_EQ(size.pagerButtonSize, 18);
}

TEST(LevelSize, BannerStandsBesideTheItems)
{
    LevelMeasure measure = FiveItems();
    measure.bannerText = SIZE{150, 26};
    const LevelSize size = ComputeLevelSize(measure, DpiScale::FromDpi(96));
    EXPECT_EQ(size.content, (RECT{32, 0, 32 + 136, 190}));
    EXPECT_EQ(size.client.cx, 168);
    EXPECT_EQ(ComputeBannerSize({150, 26}, 136, 190).stripLength, 165);
    EXPECT_EQ(ComputeBannerSize({150, 26}, 136, 100).stripLength, 100) << "never longer than the banner";
    const BannerSize tiny = ComputeBannerSize({0, -6}, 0, 0);
    EXPECT_EQ(tiny.bannerWidth, 4);
    EXPECT_EQ(tiny.totalWidth, 8);
    EXPECT_EQ(tiny.totalHeight, 4);
}

TEST(LevelSize, NothingToShowIsNotAnError)
{
    const LevelSize size = ComputeLevelSize({}, DpiScale::FromDpi(96));
    EXPECT_EQ(size.width, 16);
    EXPECT_EQ(size.itemHeight, 0);
}

TEST(Clamp, KeepsTheSizeAndLetsLeftAndTopWin)
{
    const RECT second{1920, 100, 3200, 1124};
    EXPECT_EQ(ClampToWorkArea({10, 20, 110, 220}, kWork), (RECT{10, 20, 110, 220}));
    EXPECT_EQ(ClampToWorkArea({-50, 650, 50, 750}, kWork), (RECT{0, 600, 100, 700}));
    EXPECT_EQ(ClampToWorkArea({950, -10, 1050, 90}, kWork), (RECT{900, 0, 1000, 100}));
    EXPECT_EQ(ClampToWorkArea({500, 0, 1700, 800}, kWork), (RECT{0, 0, 1200, 800}));
    EXPECT_EQ(ClampToWorkArea({1900, 0, 2000, 100}, second), (RECT{1920, 100, 2020, 200}));
}

TEST(PlaceLevel, PutsTheCornerThatTheAlignmentNamesOnTheAnchor)
{
    const RECT anchor{400, 300, 400, 300};
    const SIZE client{98, 198};
    EXPECT_EQ(PlaceLevel(client, kFrame, anchor, true, 0), (RECT{400, 100, 500, 300}));
    EXPECT_EQ(PlaceLevel(client, kFrame, anchor, true, 1), (RECT{300, 100, 400, 300}));
    EXPECT_EQ(PlaceLevel(client, kFrame, anchor, true, 2), (RECT{400, 300, 500, 500}));
    EXPECT_EQ(PlaceLevel(client, kFrame, anchor, true, 3), (RECT{300, 300, 400, 500}));
    EXPECT_EQ(PlaceLevel(client, kFrame, anchor, true, -7), (RECT{-1, -1, 99, 199})) << "stays at the origin";
}

TEST(PlaceSubLevel, RightThenLeftThenAgainstTheEdge)
{
    const SIZE child{200, 100};
    const auto left = [&](LONG from, LONG to, bool root) {
        return PlaceSubLevel(child, {from, 50, to, 86}, kWork, root).left;
    };
    EXPECT_EQ(left(100, 300, true), 300);
    EXPECT_EQ(left(700, 800, true), 800) << "touches the edge of the work area";
    EXPECT_EQ(left(700, 801, true), 500);
    EXPECT_EQ(left(200, 801, true), 0) << "fits at the left to the pixel";
    EXPECT_EQ(left(100, 900, false), 800) << "neither side: against the right edge";
    EXPECT_EQ(left(100, 900, true), 900) << "never over the root's item";
    EXPECT_EQ(PlaceSubLevel({1200, 10}, {100, 50, 900, 86}, kWork, false).left, 0);
}

TEST(PlaceSubLevel, DownThenUpThenAgainstTheEdge)
{
    const auto top = [](LONG height, LONG itemTop) {
        return PlaceSubLevel({200, height}, {0, itemTop, 100, itemTop + 36}, kWork, true).top;
    };
    EXPECT_EQ(top(100, 50), 50);
    EXPECT_EQ(top(100, 600), 600);
    EXPECT_EQ(top(101, 600), 636 - 101);
    EXPECT_EQ(top(660, 300), 40);
}

} // namespace
