// What the launcher relies on in the toolbar control.
#include "control_desk.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace conformance;

namespace
{

constexpr int kSeparatorExtent = 8;

/// Three items of known size with a separator before the last: rows at 0, 24, 48 (separator) and 56.
class ToolbarTest : public testing::Test
{
protected:
    static constexpr int kWidth = 180;
    static constexpr int kHeight = 24;

    void SetUp() override
    {
        m_desk.Add(TEXT("Games"));
        m_desk.Add(TEXT("A rather long item name"));
        m_desk.Add(TEXT(""), kSeparatorExtent);
        m_desk.Add(TEXT("Music"));
        m_desk.SizeButtons(kWidth, kHeight);
    }

    std::vector<HotChange> Changes() { return m_desk.TakeHotChanges(); }

    Desk m_desk;
};

} // namespace

TEST(ToolbarLayout, RowsFollowTheFontTheImagesAndTheWidestText)
{
    Desk desk;
    const Text names[] = {TEXT("x"), TEXT("A rather long item name"), TEXT("Games")};
    const int padding = HIWORD(desk.Send(TB_GETPADDING));
    const SIZE longest = desk.Measure(names[1]);
    desk.Add(names[0]);
    desk.Send(TB_AUTOSIZE);
    const RECT narrow = desk.Item(0);
    EXPECT_GT(narrow.right, Desk::kImageSize + desk.Measure(names[0]).cx);

    desk.Add(names[1]);
    desk.Add(TEXT(""), kSeparatorExtent);
    desk.Add(names[2]);
    desk.Send(TB_AUTOSIZE);

    const LONG rowHeight = std::max<LONG>(Desk::kImageSize, longest.cy) + padding;
    const LONG rowWidth = narrow.right + longest.cx - desk.Measure(names[0]).cx;
    const LONG afterSeparator = 2 * rowHeight + kSeparatorExtent;
    EXPECT_EQ(Box(desk.Item(0)), Box(0, 0, rowWidth, rowHeight));
    EXPECT_EQ(Box(desk.Item(1)), Box(0, rowHeight, rowWidth, 2 * rowHeight));
    EXPECT_EQ(Box(desk.Item(2)), Box(0, 2 * rowHeight, rowWidth, afterSeparator));
    EXPECT_EQ(Box(desk.Item(3)), Box(0, afterSeparator, rowWidth, afterSeparator + rowHeight));
    EXPECT_EQ(desk.Send(TB_GETBUTTONSIZE), MAKELONG(rowWidth, rowHeight));
}

TEST(ToolbarLayout, LargerImagesMakeHigherRows)
{
    Desk desk;
    desk.Add(TEXT("Games"));
    const RECT before = desk.Item(0);
    HIMAGELIST large = ImageList_Create(48, 48, ILC_COLOR32 | ILC_MASK, 1, 1);
    EXPECT_EQ(desk.Send(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(large)), reinterpret_cast<LRESULT>(desk.images));
    desk.Send(TB_AUTOSIZE);
    EXPECT_EQ(desk.Item(0).bottom, 48 + HIWORD(desk.Send(TB_GETPADDING)));
    EXPECT_EQ(desk.Item(0).right - before.right, 48 - Desk::kImageSize);
    desk.Send(TB_SETIMAGELIST, 0, 0);
    ImageList_Destroy(large);
}

TEST_F(ToolbarTest, SetSizeHoldsForItemsUntilTheNextInsertion)
{
    EXPECT_EQ(Box(m_desk.Item(1)), Box(0, 24, kWidth, 48));
    EXPECT_EQ(Box(m_desk.Item(2)), Box(0, 48, kWidth, 56)) << "a separator keeps its extent";
    EXPECT_EQ(Box(m_desk.Item(3)), Box(0, 56, kWidth, 80));
    m_desk.Send(TB_AUTOSIZE);
    EXPECT_EQ(m_desk.Item(3).right, kWidth) << "autosize alone does not undo the size";
    m_desk.Send(TB_DELETEBUTTON, 3);
    m_desk.Add(TEXT("x"));
    m_desk.Send(TB_AUTOSIZE);
    EXPECT_LT(m_desk.Item(0).bottom, 24 + 1);
    EXPECT_NE(m_desk.Item(0).right, kWidth) << "a rebuilt level measures its texts again";
}

TEST_F(ToolbarTest, ButtonsAreReadBackAsTheyWereInserted)
{
    TBBUTTON button = {};
    ASSERT_TRUE(m_desk.Send(TB_GETBUTTON, 1, reinterpret_cast<LPARAM>(&button)));
    EXPECT_EQ(button.idCommand, 1001);
    EXPECT_EQ(button.dwData, 1001u);
    EXPECT_EQ(button.fsState, TBSTATE_ENABLED | TBSTATE_WRAP);
    ASSERT_TRUE(m_desk.Send(TB_GETBUTTON, 2, reinterpret_cast<LPARAM>(&button)));
    EXPECT_EQ(button.fsStyle, BTNS_SEP);
    EXPECT_EQ(button.iBitmap, kSeparatorExtent);

    EXPECT_FALSE(m_desk.Send(TB_GETBUTTON, 4, reinterpret_cast<LPARAM>(&button)));
    RECT rect;
    EXPECT_FALSE(m_desk.Send(TB_GETITEMRECT, 4, reinterpret_cast<LPARAM>(&rect)));
    EXPECT_FALSE(m_desk.Send(TB_DELETEBUTTON, 4));
}

TEST_F(ToolbarTest, DeletingEverythingLeavesAnEmptyToolbar)
{
    m_desk.Send(TB_SETHOTITEM, 1);
    while (m_desk.Count() > 0)
        ASSERT_TRUE(m_desk.Send(TB_DELETEBUTTON, static_cast<WPARAM>(m_desk.Count() - 1)));
    EXPECT_EQ(m_desk.Hot(), -1);
    EXPECT_LT(m_desk.HitTest({5, 5}), 0);
}

TEST_F(ToolbarTest, HitTestNamesOnlyItems)
{
    EXPECT_EQ(m_desk.HitTest({0, 0}), 0);
    EXPECT_EQ(m_desk.HitTest({kWidth - 1, 23}), 0);
    EXPECT_EQ(m_desk.HitTest({5, 24}), 1);
    EXPECT_EQ(m_desk.HitTest({5, 79}), 3);
    EXPECT_EQ(m_desk.HitTest({5, 50}), -2) << "a separator gives its index negated";
    EXPECT_LT(m_desk.HitTest({kWidth, 5}), 0) << "the margin at the right";
    EXPECT_LT(m_desk.HitTest({5, 80}), 0) << "below the last item";
    EXPECT_LT(m_desk.HitTest({-1, 5}), 0);
    EXPECT_LT(m_desk.HitTest({5, -1}), 0);
}

TEST_F(ToolbarTest, SettingTheHotItemTellsTheOwnerAndCanBeRefused)
{
    EXPECT_EQ(m_desk.Hot(), -1);
    EXPECT_EQ(m_desk.Send(TB_SETHOTITEM, 1), -1);
    EXPECT_EQ(m_desk.Send(TB_SETHOTITEM, 3), 1) << "the previous hot item is returned";
    EXPECT_EQ(m_desk.Send(TB_SETHOTITEM, 3), 3);
    EXPECT_EQ(m_desk.Send(TB_SETHOTITEM, 99), 3);
    EXPECT_EQ(m_desk.Hot(), 3);
    m_desk.refuseHot = true;
    m_desk.Send(TB_SETHOTITEM, 0);
    EXPECT_EQ(m_desk.Hot(), 3);
    m_desk.refuseHot = false;
    m_desk.Send(TB_SETHOTITEM, static_cast<WPARAM>(-1));
    EXPECT_EQ(m_desk.Hot(), -1);
    const std::vector<HotChange> expected = {
        {0, 1001, HICF_ENTERING}, {1001, 1003, HICF_OTHER}, {1003, 1000, HICF_OTHER}, {1003, 0, HICF_LEAVING}};
    EXPECT_EQ(Changes(), expected);
}

TEST_F(ToolbarTest, TheMouseMovesTheHotItem)
{
    m_desk.Move(5, 5);
    m_desk.Move(6, 5);
    m_desk.Move(5, 30);
    m_desk.Move(5, 50);
    EXPECT_EQ(m_desk.Hot(), -1) << "a separator is not an item";
    m_desk.Move(5, 60);
    m_desk.Move(kWidth + 5, 60);
    m_desk.Move(5, 5);
    m_desk.Send(WM_MOUSELEAVE);
    m_desk.Send(WM_MOUSELEAVE);
    EXPECT_EQ(m_desk.Hot(), -1);
    const std::vector<HotChange> expected = {
        {0, 1000, HICF_MOUSE | HICF_ENTERING}, {1000, 1001, HICF_MOUSE},
        {1001, 0, HICF_MOUSE | HICF_LEAVING},  {0, 1003, HICF_MOUSE | HICF_ENTERING},
        {1003, 0, HICF_MOUSE | HICF_LEAVING},  {0, 1000, HICF_MOUSE | HICF_ENTERING},
        {1000, 0, HICF_MOUSE | HICF_LEAVING}};
    EXPECT_EQ(Changes(), expected);
}

TEST_F(ToolbarTest, ARefusedChangeIsOfferedAgainByTheNextMove)
{
    m_desk.refuseHot = true;
    m_desk.Move(5, 5);
    m_desk.Move(6, 5);
    EXPECT_EQ(m_desk.Hot(), -1);
    EXPECT_EQ(Changes().size(), 2u);
    m_desk.refuseHot = false;
    m_desk.Move(7, 5);
    EXPECT_EQ(m_desk.Hot(), 0);
    m_desk.refuseHot = true;
    m_desk.Send(WM_MOUSELEAVE);
    EXPECT_EQ(m_desk.Hot(), 0) << "an item whose sub-level is open stays highlighted";
}

TEST_F(ToolbarTest, ClickNamesTheItem)
{
    m_desk.Move(5, 30);
    m_desk.Press(5, 30);
    EXPECT_TRUE(m_desk.clicks.empty()) << "a click is reported when the button is released";
    EXPECT_EQ(GetCapture(), m_desk.toolbar);
    m_desk.Release(5, 30);
    EXPECT_NE(GetCapture(), m_desk.toolbar);
    ASSERT_EQ(m_desk.clicks.size(), 1u);
    EXPECT_EQ(m_desk.clicks[0].dwItemSpec, 1001u);
    EXPECT_EQ(m_desk.clicks[0].dwItemData, 1001u);
    POINT expected = {5, 30};
    if (OnWine())
        ClientToScreen(m_desk.toolbar, &expected); // Wine reports the screen position, unlike what is documented.
    EXPECT_EQ(m_desk.clicks[0].pt.x, expected.x);
    EXPECT_EQ(m_desk.clicks[0].pt.y, expected.y);
}

TEST_F(ToolbarTest, ClickOutsideTheItemsNamesNone)
{
    m_desk.Press(kWidth + 5, 5);
    m_desk.Release(kWidth + 5, 5);
    ASSERT_EQ(m_desk.clicks.size(), 1u);
    EXPECT_EQ(m_desk.clicks[0].dwItemSpec, static_cast<DWORD_PTR>(-1));
    EXPECT_TRUE(OnWine() || m_desk.clicks[0].dwItemData == 0) << "which Wine leaves unset";

    m_desk.Press(5, 50);
    m_desk.Release(5, 50);
    ASSERT_EQ(m_desk.clicks.size(), 2u);
    EXPECT_EQ(m_desk.clicks[1].dwItemSpec, static_cast<DWORD_PTR>(-1)) << "a separator is no item";
}

TEST_F(ToolbarTest, ADraggedPressIsReportedWhereItIsReleased)
{
    m_desk.Move(5, 5);
    m_desk.Press(5, 5);
    m_desk.Send(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(5, 30));
    EXPECT_EQ(m_desk.Hot(), 1);
    m_desk.Release(5, 30);
    ASSERT_EQ(m_desk.clicks.size(), 1u);
    EXPECT_EQ(m_desk.clicks[0].dwItemSpec, 1001u);
}

TEST_F(ToolbarTest, OnlyAPressMadeHereMakesAClick)
{
    m_desk.Move(5, 5);
    m_desk.Release(5, 5);
    // Wine reports a click for any release. Here the release of the click that opened the menu must start nothing.
    EXPECT_EQ(m_desk.clicks.size(), OnWine() ? 1u : 0u);
}

TEST_F(ToolbarTest, TheOwnerMayDestroyTheLevelDuringAClick)
{
    m_desk.onClick = [this] { DestroyWindow(m_desk.level); };
    m_desk.Press(5, 30);
    m_desk.Release(5, 30);
    EXPECT_FALSE(IsWindow(m_desk.toolbar));
}

TEST_F(ToolbarTest, KeysGoToTheOwnerFirst)
{
    m_desk.Send(TB_SETHOTITEM, 0);
    m_desk.Send(WM_KEYDOWN, VK_DOWN);
    EXPECT_EQ(m_desk.Hot(), 0) << "a key that the owner handles does nothing more";
    m_desk.keysHandled = false;
    m_desk.Send(WM_KEYDOWN, VK_DOWN);
    m_desk.Send(WM_KEYDOWN, VK_DOWN);
    EXPECT_EQ(m_desk.Hot(), 3) << "the toolbar's own keys skip separators";
    m_desk.Send(WM_KEYDOWN, VK_UP);
    EXPECT_EQ(m_desk.Hot(), 1);
    const std::vector<UINT> expected = {VK_DOWN, VK_DOWN, VK_DOWN, VK_UP};
    EXPECT_EQ(m_desk.keys, expected);
}

TEST_F(ToolbarTest, TheFocusMakesTheFirstItemHot)
{
    m_desk.Show();
    SetFocus(m_desk.level);
    m_desk.Send(TB_SETHOTITEM, static_cast<WPARAM>(-1));
    Changes();
    SetFocus(m_desk.toolbar);
    EXPECT_EQ(m_desk.Hot(), 0);
    const std::vector<HotChange> expected = {{0, 1000, HICF_ENTERING}};
    EXPECT_EQ(Changes(), expected);
}

TEST_F(ToolbarTest, RightButtonAndWheelReachTheOwner)
{
    m_desk.Send(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    m_desk.Send(WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
    const std::vector<HWND> expected = {m_desk.toolbar};
    EXPECT_EQ(m_desk.contextMenus, expected);
    m_desk.Send(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA));
    EXPECT_EQ(m_desk.wheels, 1);
}

TEST_F(ToolbarTest, InsertionMarkIsKept)
{
    TBINSERTMARK mark = {3, TBIMHT_AFTER};
    m_desk.Send(TB_SETINSERTMARK, 0, reinterpret_cast<LPARAM>(&mark));
    TBINSERTMARK read = {};
    m_desk.Send(TB_GETINSERTMARK, 0, reinterpret_cast<LPARAM>(&read));
    EXPECT_EQ(read.iButton, 3);
    EXPECT_EQ(read.dwFlags, static_cast<DWORD>(TBIMHT_AFTER));
    mark = {-1, 0};
    m_desk.Send(TB_SETINSERTMARK, 0, reinterpret_cast<LPARAM>(&mark));
    m_desk.Send(TB_GETINSERTMARK, 0, reinterpret_cast<LPARAM>(&read));
    EXPECT_EQ(read.iButton, -1);
    m_desk.Send(TB_SETINSERTMARKCOLOR, 0, RGB(1, 2, 3));
    EXPECT_EQ(m_desk.Send(TB_GETINSERTMARKCOLOR), static_cast<LRESULT>(RGB(1, 2, 3)));
}

TEST_F(ToolbarTest, CustomDrawVisitsTheItemsOnTheOwnersBackground)
{
    m_desk.onDraw = [](NMTBCUSTOMDRAW& draw) -> LRESULT
    { return draw.nmcd.dwDrawStage == CDDS_PREPAINT ? CDRF_NOTIFYITEMDRAW : CDRF_NOTIFYPOSTPAINT; };
    m_desk.Send(TB_SETHOTITEM, 1);
    m_desk.Show();
    m_desk.drawn.clear();
    m_desk.erased = 0;
    InvalidateRect(m_desk.toolbar, nullptr, TRUE);
    UpdateWindow(m_desk.toolbar);

    EXPECT_GE(m_desk.erased, 1) << "the owner draws the background";
    ASSERT_EQ(m_desk.drawn.size(), 7u) << "the toolbar, then before and after each of the three items";
    EXPECT_EQ(m_desk.drawn[0].stage, static_cast<DWORD>(CDDS_PREPAINT));
    const DWORD_PTR items[] = {1000, 1001, 1003};
    for (int i = 0; i < 3; ++i)
    {
        const Drawn& before = m_desk.drawn[static_cast<std::size_t>(1 + 2 * i)];
        const Drawn& after = m_desk.drawn[static_cast<std::size_t>(2 + 2 * i)];
        EXPECT_EQ(before.stage, static_cast<DWORD>(CDDS_ITEMPREPAINT));
        EXPECT_EQ(after.stage, static_cast<DWORD>(CDDS_ITEMPOSTPAINT));
        EXPECT_EQ(before.item, items[i]);
        EXPECT_EQ(before.data, static_cast<LPARAM>(items[i]));
        EXPECT_EQ(before.state, items[i] == 1001 ? static_cast<UINT>(CDIS_HOT) : 0u);
        EXPECT_EQ(Box(before.rect), Box(m_desk.Item(static_cast<int>(items[i]) - 1000)));
        EXPECT_EQ(Box(after.rect), Box(before.rect));
    }
}

TEST_F(ToolbarTest, AHotChangeRepaintsTheTwoItemsOnly)
{
    m_desk.onDraw = [](NMTBCUSTOMDRAW& draw) -> LRESULT
    { return draw.nmcd.dwDrawStage == CDDS_PREPAINT ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT; };
    m_desk.Show();
    m_desk.Send(TB_SETHOTITEM, 0);
    UpdateWindow(m_desk.toolbar);
    m_desk.drawn.clear();
    m_desk.Send(TB_SETHOTITEM, 1);
    UpdateWindow(m_desk.toolbar);
    ASSERT_EQ(m_desk.drawn.size(), 3u);
    EXPECT_EQ(m_desk.drawn[1].item, 1000u);
    EXPECT_EQ(m_desk.drawn[2].item, 1001u);
}
