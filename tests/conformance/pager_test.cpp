// What the launcher relies on in the pager control.
#include "control_desk.h"

#include <gtest/gtest.h>

using namespace conformance;

namespace
{

/// Twenty items of 24 pixels (482 with the toolbar's own margin) in a pager 200 high with scroll buttons of 12.
class PagerTest : public testing::Test
{
protected:
    static constexpr int width = 180;
    static constexpr int item = 24;
    static constexpr int content = 20 * item + 2;
    static constexpr int height = 200;
    static constexpr int button = 12;
    /// At the end only the upper button shows.
    static constexpr int lastPosition = content - (height - button);

    void SetUp() override
    {
        for (int i = 0; i < 20; ++i)
        {
            desk.Add(TEXT("Item"));
        }
        desk.SizeButtons(width - 20, item);
        desk.scrollStep = item;
        desk.Page(width, height, button);
    }

    int Position() { return static_cast<int>(SendMessageW(desk.pager, PGM_GETPOS, 0, 0)); }
    void SetPosition(int position) { SendMessageW(desk.pager, PGM_SETPOS, 0, position); }
    LRESULT ButtonState(int which) { return SendMessageW(desk.pager, PGM_GETBUTTONSTATE, 0, which); }

    int ClientHeight()
    {
        RECT client;
        GetClientRect(desk.pager, &client);
        return client.bottom;
    }

    /// Where the toolbar's top is, in the level's client area.
    int ToolbarTop()
    {
        POINT origin = {0, 0};
        MapWindowPoints(desk.toolbar, desk.level, &origin, 1);
        return origin.y;
    }

    /// Presses and releases the left button at client coordinates of the pager, negative above its client area.
    void Press(int y) { SendMessageW(desk.pager, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, y)); }
    void Release(int y) { SendMessageW(desk.pager, WM_LBUTTONUP, 0, MAKELPARAM(20, y)); }

    void PutCursor(int x, int y)
    {
        POINT point = {x, y};
        ClientToScreen(desk.level, &point);
        SetCursorPos(point.x, point.y);
    }

    Desk desk;
};

} // namespace

TEST_F(PagerTest, ButtonsShowOnlyWhereThereIsMore)
{
    struct Row
    {
        int position, client, top;
        LRESULT upper, lower;
    };
    const Row rows[] = {
        {0, height - button, 0, PGF_INVISIBLE, PGF_NORMAL},
        {item, height - 2 * button, button - item, PGF_NORMAL, PGF_NORMAL},
        {1, height - 2 * button, button - 1, PGF_NORMAL, PGF_NORMAL},
        {100, height - 2 * button, button - 100, PGF_NORMAL, PGF_NORMAL},
        {lastPosition, height - button, button - lastPosition, PGF_NORMAL, PGF_INVISIBLE},
    };
    EXPECT_EQ(SendMessageW(desk.pager, PGM_GETBUTTONSIZE, 0, 0), button);
    for (const Row& row : rows)
    {
        SetPosition(row.position);
        EXPECT_EQ(Position(), row.position);
        EXPECT_EQ(ClientHeight(), row.client) << "position " << row.position;
        EXPECT_EQ(ToolbarTop(), row.top) << "position " << row.position;
        EXPECT_EQ(ButtonState(PGB_TOPORLEFT), row.upper) << "position " << row.position;
        EXPECT_EQ(ButtonState(PGB_BOTTOMORRIGHT), row.lower) << "position " << row.position;
    }
}

TEST_F(PagerTest, PositionsAreKeptInRange)
{
    SetPosition(lastPosition + 500);
    EXPECT_EQ(Position(), lastPosition);
    SetPosition(-5);
    EXPECT_EQ(Position(), 0);
    EXPECT_EQ(ToolbarTop(), 0);
}

TEST_F(PagerTest, TheToolbarsNotificationsReachTheLevel)
{
    desk.Show();
    desk.Send(TB_SETHOTITEM, 3);
    desk.Press(5, 5 * item);
    desk.Release(5, 5 * item);
    desk.Send(WM_KEYDOWN, VK_DOWN);
    InvalidateRect(desk.toolbar, nullptr, TRUE);
    desk.drawn.clear();
    desk.erased = 0;
    UpdateWindow(desk.toolbar);
    EXPECT_EQ(desk.hotChanges.size(), 2u);
    ASSERT_EQ(desk.clicks.size(), 1u);
    EXPECT_EQ(desk.clicks[0].dwItemSpec, 1005u);
    EXPECT_EQ(desk.clicks[0].hdr.idFrom, 2u);
    EXPECT_EQ(desk.keys.size(), 1u);
    EXPECT_GE(desk.drawn.size(), 1u);
    EXPECT_GE(desk.erased, 1) << "the background is the level's";

    desk.Send(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(desk.toolbar), 0);
    const std::vector<HWND> expected = {desk.pager};
    EXPECT_EQ(desk.contextMenus, expected) << "passed on by the pager in its own name";
    desk.Send(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA));
    EXPECT_EQ(desk.wheels, 1);
}

TEST_F(PagerTest, RestingOnAButtonScrollsToTheEnd)
{
    desk.Show();
    PutCursor(width / 2, height - button / 2);
    EXPECT_TRUE(PumpUntil([&] { return Position() == lastPosition; })) << "stopped at " << Position();
    ASSERT_FALSE(desk.scrolls.empty());
    EXPECT_EQ(desk.scrolls.front(), PGF_SCROLLDOWN);
    EXPECT_EQ(ButtonState(PGB_BOTTOMORRIGHT), PGF_GRAYED) << "it stays, greyed, under the cursor";
    PutCursor(width / 2, button / 2);
    EXPECT_TRUE(PumpUntil([&] { return Position() == 0; })) << "stopped at " << Position();
    EXPECT_EQ(desk.scrolls.back(), PGF_SCROLLUP);
    PutCursor(600, 400);
    EXPECT_TRUE(PumpUntil([&] { return ButtonState(PGB_TOPORLEFT) == PGF_INVISIBLE; }));
}

TEST_F(PagerTest, APressScrollsAtOnceByWhatTheOwnerSays)
{
    desk.Show();
    SetPosition(100);
    Press(ClientHeight() + button / 2);
    EXPECT_EQ(Position(), 100 + item);
    EXPECT_EQ(ButtonState(PGB_BOTTOMORRIGHT), PGF_DEPRESSED);
    Release(ClientHeight() + button / 2);
    Press(-button / 2);
    Release(-button / 2);
    EXPECT_EQ(Position(), 100);
    const std::vector<int> expected = {PGF_SCROLLDOWN, PGF_SCROLLUP};
    EXPECT_EQ(desk.scrolls, expected);
    EXPECT_EQ(desk.scrollHeight, height - 2 * button);
    EXPECT_EQ(desk.scrollPosition, 100 + item);
}

TEST_F(PagerTest, AHeldPressRepeats)
{
    desk.Show();
    Press(ClientHeight() + button / 2);
    EXPECT_TRUE(PumpUntil([&] { return desk.scrolls.size() >= 3; })) << desk.scrolls.size() << " scrolls";
    Release(ClientHeight() + button / 2);
}

TEST_F(PagerTest, ARebuiltLevelGetsItsPositionBack)
{
    SetPosition(100);
    const int position = Position();
    SetParent(desk.toolbar, desk.level);
    SetWindowPos(desk.pager, nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    SetParent(desk.toolbar, desk.pager);
    SetWindowPos(desk.toolbar, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(desk.pager, PGM_SETCHILD, 0, reinterpret_cast<LPARAM>(desk.toolbar));
    SetPosition(position);
    EXPECT_EQ(Position(), 100);
    EXPECT_EQ(ToolbarTop(), button - 100);
    SetParent(desk.toolbar, desk.level);
    DestroyWindow(desk.pager);
    EXPECT_TRUE(IsWindow(desk.toolbar));
}
