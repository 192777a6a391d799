// The pager as a person sees and uses it, with the clock by hand.
#include "tests/layer/controls_desk.h"

#include "platform/windowing/message_queue.h"

namespace
{

constexpr int kWidth = 200;
constexpr int kHeight = 180;
constexpr int kButton = 12;
constexpr int kItem = 24;
constexpr int kItems = 40;
constexpr int kEnd = kItems * kItem + 2 - (kHeight - kButton);

struct PagerOnScreen : ControlsDesk
{
    PagerOnScreen()
    {
        for (int i = 0; i < kItems; ++i)
            Add(u"Item");
        SizeButtons(kWidth - 20, kItem);
        Page(kWidth, kHeight, kButton);
        Show();
    }

    void Wait(std::uint64_t milliseconds)
    {
        platform::AdvanceManualClock(milliseconds);
        Pump();
    }
    void RestOnLower() { MoveTo(kWidth / 2, kHeight - kButton / 2); }
    void RestOnUpper() { MoveTo(kWidth / 2, kButton / 2); }
    void SetPosition(int position)
    {
        SendMessageW(pager, PGM_SETPOS, 0, position);
        Pump();
    }
    LRESULT State(int button) { return SendMessageW(pager, PGM_GETBUTTONSTATE, 0, button); }
};

std::uint32_t ScreenColor(int index)
{
    const COLORREF color = GetSysColor(index);
    return GetRValue(color) * 0x10000u + GetGValue(color) * 0x100u + GetBValue(color);
}

} // namespace

TEST_F(PagerOnScreen, ButtonsArePaintedWhereTheyShow)
{
    EXPECT_EQ(Pixel(2, 2), kBackground) << "no upper button at the top";
    EXPECT_EQ(Pixel(2, kHeight - 2), ScreenColor(COLOR_MENU));
    EXPECT_EQ(Pixel(kWidth / 2, kHeight - kButton / 2), ScreenColor(COLOR_MENUTEXT)) << "the arrow";
    SetPosition(100);
    EXPECT_EQ(Pixel(2, 2), ScreenColor(COLOR_MENU));
    EXPECT_EQ(Pixel(kWidth / 2, kButton / 2), ScreenColor(COLOR_MENUTEXT));
    SetPosition(0);
    EXPECT_EQ(Pixel(2, 2), kBackground) << "what the button covered is painted again";
}

// A pager that the press on it destroys left a timer behind that belonged to no window.
TEST_F(PagerOnScreen, PressThatDestroysThePagerLeavesNoTimer)
{
    const HWND holder =
        CreateWindowExW(0, TEXT("Button"), nullptr, WS_CHILD, 0, 0, 1, 1, level, nullptr, nullptr, nullptr);
    const auto destroyPager = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR data)
    {
        if (message == WM_CAPTURECHANGED)
            DestroyWindow(reinterpret_cast<HWND>(data));
        return DefSubclassProc(window, message, wParam, lParam);
    };
    SetWindowSubclass(holder, destroyPager, 1, reinterpret_cast<DWORD_PTR>(pager));
    SetCapture(holder);
    SendMessageW(pager, WM_LBUTTONDOWN, 0, MAKELPARAM(kWidth / 2, kHeight - kButton / 2));
    EXPECT_FALSE(IsWindow(pager));
    EXPECT_FALSE(platform::NextTimer());
}

TEST_F(PagerOnScreen, RestingOnAButtonScrollsInSteps)
{
    RestOnLower();
    EXPECT_EQ(State(PGB_BOTTOMORRIGHT), PGF_HOT);
    EXPECT_EQ(Position(), 0);
    Wait(50);
    EXPECT_EQ(Position(), kItem);
    Wait(50);
    EXPECT_EQ(Position(), 2 * kItem);
    MoveTo(kWidth / 2, kHeight / 2);
    Wait(500);
    EXPECT_EQ(Position(), 2 * kItem) << "it stops when the mouse leaves the button";
    EXPECT_EQ(State(PGB_BOTTOMORRIGHT), PGF_NORMAL);
    RestOnUpper();
    Wait(50);
    EXPECT_EQ(Position(), kItem);
    MoveTo(600, 600);
    Wait(500);
    EXPECT_EQ(Position(), kItem) << "it stops when the mouse leaves the level";
}

TEST_F(PagerOnScreen, TheEndStopsTheScrolling)
{
    SetPosition(kEnd - 5);
    RestOnLower();
    Wait(50);
    EXPECT_EQ(Position(), kEnd);
    EXPECT_EQ(State(PGB_BOTTOMORRIGHT), PGF_GRAYED);
    EXPECT_EQ(Pixel(kWidth / 2, kHeight - kButton / 2), ScreenColor(COLOR_GRAYTEXT));
    const int before = scrolls;
    Wait(500);
    EXPECT_EQ(scrolls, before) << "nothing more to scroll";
    MoveTo(kWidth / 2, kHeight / 2);
    EXPECT_EQ(State(PGB_BOTTOMORRIGHT), PGF_INVISIBLE);
}

TEST_F(PagerOnScreen, AHeldPressScrollsAtOnceThenRepeatedly)
{
    RestOnLower();
    Press();
    EXPECT_EQ(Position(), kItem);
    EXPECT_EQ(State(PGB_BOTTOMORRIGHT), PGF_DEPRESSED);
    Wait(499);
    EXPECT_EQ(Position(), kItem);
    Wait(1);
    EXPECT_EQ(Position(), 2 * kItem);
    Wait(50);
    EXPECT_EQ(Position(), 3 * kItem);
    MoveTo(600, 600);
    Release();
    Wait(500);
    EXPECT_EQ(Position(), 3 * kItem);
    EXPECT_TRUE(clicks.empty()) << "no item was clicked";
}

TEST_F(PagerOnScreen, OnlyTheUncoveredPartIsItems)
{
    SetPosition(100);
    MoveTo(20, kButton + 1);
    EXPECT_EQ(Hot(), (100 + 1) / kItem);
    MoveTo(20, kHeight - kButton + 2);
    EXPECT_EQ(Hot(), -1) << "the button is not the item under it";
}

TEST_F(PagerOnScreen, AChildThatShrinksPullsThePositionBack)
{
    SetPosition(kEnd);
    SetWindowPos(toolbar, nullptr, 0, 0, kWidth, 300, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(pager, PGM_RECALCSIZE, 0, 0);
    EXPECT_EQ(Position(), 300 - (kHeight - kButton));
    SetWindowPos(toolbar, nullptr, 0, 0, kWidth, 100, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(pager, PGM_RECALCSIZE, 0, 0);
    EXPECT_EQ(Position(), 0);
    EXPECT_EQ(State(PGB_TOPORLEFT), PGF_INVISIBLE);
    EXPECT_EQ(State(PGB_BOTTOMORRIGHT), PGF_INVISIBLE);
}
