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
    static constexpr int kWidth = 180;
    static constexpr int kItem = 24;
    static constexpr int kContent = 20 * kItem + 2;
    static constexpr int kHeight = 200;
    static constexpr int kButton = 12;
    /// At the end only the upper button shows.
    static constexpr int kLastPosition = kContent - (kHeight - kButton);

    void SetUp() override
    {
        for (int i = 0; i < 20; ++i)
            m_desk.Add(TEXT("Item"));
        m_desk.SizeButtons(kWidth - 20, kItem);
        m_desk.scrollStep = kItem;
        m_desk.Page(kWidth, kHeight, kButton);
    }

    int Position() { return static_cast<int>(SendMessageW(m_desk.pager, PGM_GETPOS, 0, 0)); }
    void SetPosition(int position) { SendMessageW(m_desk.pager, PGM_SETPOS, 0, position); }
    LRESULT ButtonState(int which) { return SendMessageW(m_desk.pager, PGM_GETBUTTONSTATE, 0, which); }

    int ClientHeight()
    {
        RECT client;
        GetClientRect(m_desk.pager, &client);
        return client.bottom;
    }

    /// Where the toolbar's top is, in the level's client area.
    int ToolbarTop()
    {
        POINT origin = {0, 0};
        MapWindowPoints(m_desk.toolbar, m_desk.level, &origin, 1);
        return origin.y;
    }

    /// Presses and releases the left button at client coordinates of the pager, negative above its client area.
    void Press(int y) { SendMessageW(m_desk.pager, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, y)); }
    void Release(int y) { SendMessageW(m_desk.pager, WM_LBUTTONUP, 0, MAKELPARAM(20, y)); }

    void PutCursor(int x, int y)
    {
        POINT point = {x, y};
        ClientToScreen(m_desk.level, &point);
        SetCursorPos(point.x, point.y);
    }

    Desk m_desk;
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
        {0, kHeight - kButton, 0, PGF_INVISIBLE, PGF_NORMAL},
        {kItem, kHeight - 2 * kButton, kButton - kItem, PGF_NORMAL, PGF_NORMAL},
        {1, kHeight - 2 * kButton, kButton - 1, PGF_NORMAL, PGF_NORMAL},
        {100, kHeight - 2 * kButton, kButton - 100, PGF_NORMAL, PGF_NORMAL},
        {kLastPosition, kHeight - kButton, kButton - kLastPosition, PGF_NORMAL, PGF_INVISIBLE},
    };
    EXPECT_EQ(SendMessageW(m_desk.pager, PGM_GETBUTTONSIZE, 0, 0), kButton);
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
    SetPosition(kLastPosition + 500);
    EXPECT_EQ(Position(), kLastPosition);
    SetPosition(-5);
    EXPECT_EQ(Position(), 0);
    EXPECT_EQ(ToolbarTop(), 0);
}

TEST_F(PagerTest, TheToolbarsNotificationsReachTheLevel)
{
    m_desk.Show();
    m_desk.Send(TB_SETHOTITEM, 3);
    m_desk.Press(5, 5 * kItem);
    m_desk.Release(5, 5 * kItem);
    m_desk.Send(WM_KEYDOWN, VK_DOWN);
    InvalidateRect(m_desk.toolbar, nullptr, TRUE);
    m_desk.drawn.clear();
    m_desk.erased = 0;
    UpdateWindow(m_desk.toolbar);
    EXPECT_EQ(m_desk.hotChanges.size(), 2u);
    ASSERT_EQ(m_desk.clicks.size(), 1u);
    EXPECT_EQ(m_desk.clicks[0].dwItemSpec, 1005u);
    EXPECT_EQ(m_desk.clicks[0].hdr.idFrom, 2u);
    EXPECT_EQ(m_desk.keys.size(), 1u);
    EXPECT_GE(m_desk.drawn.size(), 1u);
    EXPECT_GE(m_desk.erased, 1) << "the background is the level's";

    m_desk.Send(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(m_desk.toolbar), 0);
    const std::vector<HWND> expected = {m_desk.pager};
    EXPECT_EQ(m_desk.contextMenus, expected) << "passed on by the pager in its own name";
    m_desk.Send(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA));
    EXPECT_EQ(m_desk.wheels, 1);
}

TEST_F(PagerTest, RestingOnAButtonScrollsToTheEnd)
{
    m_desk.Show();
    PutCursor(kWidth / 2, kHeight - kButton / 2);
    EXPECT_TRUE(PumpUntil([&] { return Position() == kLastPosition; })) << "stopped at " << Position();
    ASSERT_FALSE(m_desk.scrolls.empty());
    EXPECT_EQ(m_desk.scrolls.front(), PGF_SCROLLDOWN);
    EXPECT_EQ(ButtonState(PGB_BOTTOMORRIGHT), PGF_GRAYED) << "it stays, greyed, under the cursor";
    PutCursor(kWidth / 2, kButton / 2);
    EXPECT_TRUE(PumpUntil([&] { return Position() == 0; })) << "stopped at " << Position();
    EXPECT_EQ(m_desk.scrolls.back(), PGF_SCROLLUP);
    PutCursor(600, 400);
    EXPECT_TRUE(PumpUntil([&] { return ButtonState(PGB_TOPORLEFT) == PGF_INVISIBLE; }));
}

TEST_F(PagerTest, APressScrollsAtOnceByWhatTheOwnerSays)
{
    m_desk.Show();
    SetPosition(100);
    Press(ClientHeight() + kButton / 2);
    EXPECT_EQ(Position(), 100 + kItem);
    EXPECT_EQ(ButtonState(PGB_BOTTOMORRIGHT), PGF_DEPRESSED);
    Release(ClientHeight() + kButton / 2);
    Press(-kButton / 2);
    Release(-kButton / 2);
    EXPECT_EQ(Position(), 100);
    const std::vector<int> expected = {PGF_SCROLLDOWN, PGF_SCROLLUP};
    EXPECT_EQ(m_desk.scrolls, expected);
    EXPECT_EQ(m_desk.scrollHeight, kHeight - 2 * kButton);
    EXPECT_EQ(m_desk.scrollPosition, 100 + kItem);
}

TEST_F(PagerTest, AHeldPressRepeats)
{
    m_desk.Show();
    Press(ClientHeight() + kButton / 2);
    EXPECT_TRUE(PumpUntil([&] { return m_desk.scrolls.size() >= 3; })) << m_desk.scrolls.size() << " scrolls";
    Release(ClientHeight() + kButton / 2);
}

TEST_F(PagerTest, ARebuiltLevelGetsItsPositionBack)
{
    SetPosition(100);
    const int position = Position();
    SetParent(m_desk.toolbar, m_desk.level);
    SetWindowPos(m_desk.pager, nullptr, 0, 0, kWidth, kHeight, SWP_NOZORDER | SWP_NOACTIVATE);
    SetParent(m_desk.toolbar, m_desk.pager);
    SetWindowPos(m_desk.toolbar, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(m_desk.pager, PGM_SETCHILD, 0, reinterpret_cast<LPARAM>(m_desk.toolbar));
    SetPosition(position);
    EXPECT_EQ(Position(), 100);
    EXPECT_EQ(ToolbarTop(), kButton - 100);
    SetParent(m_desk.toolbar, m_desk.level);
    DestroyWindow(m_desk.pager);
    EXPECT_TRUE(IsWindow(m_desk.toolbar));
}
