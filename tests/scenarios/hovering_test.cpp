// Hovering, clicking and keys, with invented times: what starts the timer, what it does, what is refused.
#include "tests/scenarios/desk.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using CustomMenu::CustomBar;
using Labels = std::vector<std::string>;

namespace
{

class Hovering : public testing::Test
{
protected:
    Hovering()
    {
        desk.MakeFile("Games/Arcade/pong");
        desk.MakeFile("Games/chess");
        desk.MakeFolder("Office");
        desk.MakeFile("readme");
    }

    Desk desk;
};

TEST_F(Hovering, AMenuThatOpensUnderARestingCursorWaitsForAMove)
{
    desk.MoveTo({130, 690});
    desk.Launch("100,700,0");
    ASSERT_TRUE(PtInRect(std::array{desk.Bounds()}.data(), {130, 690}));
    desk.Advance(2000ms);
    EXPECT_EQ(desk.Levels(), 1);
    EXPECT_EQ(desk.Hot(), "");
}

TEST(HoveringAtTheEdge, ASubLevelThatOpensUnderARestingCursorWaitsForAMove)
{
    // So narrow that the sub-level must lie over its opener.
    Desk desk("180x600+0+0");
    for (int i = 0; i < 5; ++i)
        desk.MakeFile("Games/Arcade " + std::to_string(i) + "/pong");
    desk.Launch("0,0,2");
    desk.RestOn("Games");
    const POINT resting = CentreOf(desk.ItemBounds("Games"));
    desk.Advance(500ms);
    ASSERT_EQ(desk.Levels(), 2);
    const RECT child = desk.Bounds(1);
    ASSERT_TRUE(PtInRect(&child, resting));
    desk.Advance(2000ms);
    EXPECT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Hot(1), "");
    desk.MoveTo({resting.x + 1, resting.y});
    EXPECT_NE(desk.Hot(1), "") << "the first real move counts";
    desk.Advance(500ms);
    EXPECT_EQ(desk.Levels(), 3);
}

TEST_F(Hovering, TheTimerStartsAnewOnEveryFolder)
{
    desk.Launch("100,700,0");
    desk.RestOn("Games");
    desk.Advance(300ms);
    desk.RestOn("Office");
    desk.Advance(300ms);
    EXPECT_EQ(desk.Levels(), 1);
    desk.Advance(110ms);
    ASSERT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Items(1), Labels{"(Empty)"});
}

TEST_F(Hovering, TheTimerOpensNothingThatIsNoLongerHot)
{
    desk.Launch("100,700,0");
    desk.RestOn("Games");
    desk.Advance(300ms);
    desk.RestOn("readme");
    desk.Advance(1000ms);
    EXPECT_EQ(desk.Levels(), 1);
    desk.RestOn("Games");
    desk.Advance(300ms);
    desk.MoveTo({1500, 100});
    desk.Advance(1000ms);
    EXPECT_EQ(desk.Levels(), 1) << "the mouse has left the menu";
    desk.RestOn("Games");
    desk.Press(VK_DOWN);
    desk.Advance(1000ms);
    EXPECT_EQ(desk.Levels(), 1) << "the keyboard has moved on";
}

TEST_F(Hovering, TheTimerRunsOutOnce)
{
    desk.Launch("100,700,0");
    desk.RestOn("Games");
    desk.Advance(500ms);
    ASSERT_EQ(desk.Levels(), 2);
    desk.Press(VK_ESCAPE);
    ASSERT_EQ(desk.Hot(), "Games");
    desk.Advance(2000ms);
    EXPECT_EQ(desk.Levels(), 1) << "what was closed under a resting cursor stays closed";
}

TEST_F(Hovering, TheLastPositionIsThatOfTheLastMoveOrOpening)
{
    desk.Launch("100,700,0");
    desk.RestOn("readme");
    const POINT resting = CentreOf(desk.ItemBounds("readme"));
    EXPECT_EQ(desk.Level(0).m_lastMessagePos, static_cast<DWORD>(MAKELONG(resting.x, resting.y)));
    desk.Level(0).m_lastMessagePos = 0xFFFFFFFF;
    desk.Level(0).OnItemCommand(ItemCommandMode::OpenSubmenuByKey, 0);
    EXPECT_EQ(desk.Level(0).m_lastMessagePos, GetMessagePos());
}

TEST_F(Hovering, TheDelayIsTheDesktopsOwn)
{
    desk.Launch("100,700,0");
    g_launcher.m_menuShowDelay = 50;
    desk.RestOn("Games");
    desk.Advance(60ms);
    EXPECT_EQ(desk.Levels(), 2);
}

TEST_F(Hovering, RestingOnTheOpenFolderAgainChangesNothing)
{
    desk.Launch("100,700,0");
    desk.RestOn("Games");
    desk.Advance(500ms);
    const CustomBar* const child = &desk.Level(1);
    desk.RestOn("chess", 1);
    desk.RestOn("Games", 0);
    desk.Advance(1000ms);
    ASSERT_EQ(desk.Levels(), 2);
    EXPECT_EQ(&desk.Level(1), child);
}

TEST_F(Hovering, PassingOverAnotherItemOnTheWayToTheSubLevelKeepsIt)
{
    desk.Launch("100,700,0");
    desk.RestOn("Games");
    desk.Advance(500ms);
    desk.RestOn("Office", 0);
    desk.Advance(200ms);
    desk.RestOn("chess", 1);
    desk.Advance(1000ms);
    EXPECT_EQ(desk.Items(1), (Labels{"Arcade", "chess"})) << "leaving the items made the opener hot again";
    EXPECT_EQ(desk.Hot(0), "Games");
}

TEST_F(Hovering, ARepeatedPositionIsNoMove)
{
    desk.Launch("100,700,0");
    CustomBar& root = desk.Level(0);
    desk.RestOn("readme");
    root.SetHotItem(-1);
    const DWORD recorded = root.m_lastMessagePos;
    const POINT resting = CentreOf(desk.ItemBounds("readme"));
    root.m_lastMessagePos = 0xFFFFFFFF;
    platform::headless::MoveMouse(resting.x, resting.y);
    desk.Settle();
    EXPECT_EQ(root.m_lastMessagePos, 0xFFFFFFFF) << "it is not recorded as a move";
    root.m_lastMessagePos = recorded;
    desk.MoveTo({resting.x + 1, resting.y});
    EXPECT_EQ(desk.Hot(), "readme");
}

TEST_F(Hovering, AfterAPressTheSamePositionIsNoMoveEither)
{
    desk.Launch("100,700,0");
    CustomBar& root = desk.Level(0);
    const POINT client{20, 10};
    SendMessageW(root.m_toolbar, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(client.x, client.y));
    root.m_lastMessagePos = 0xFFFFFFFF;
    SendMessageW(root.m_toolbar, WM_MOUSEMOVE, 0, MAKELPARAM(client.x, client.y));
    EXPECT_EQ(root.m_lastMessagePos, 0xFFFFFFFF);
}

TEST_F(Hovering, OverTheEmptyMarginTheHighlightStays)
{
    desk.Launch("100,700,0");
    desk.RestOn("readme");
    const RECT last = desk.ItemBounds("readme");
    desk.MoveTo({last.left + 30, last.bottom + 1});
    EXPECT_EQ(desk.Hot(), "readme");
}

TEST_F(Hovering, LeavingWithoutASubLevelTakesTheHighlightAway)
{
    desk.Launch("100,700,0");
    desk.RestOn("readme");
    desk.MoveTo({1500, 100});
    EXPECT_EQ(desk.Hot(), "");
}

TEST_F(Hovering, WithoutASubLevelAMoveBringsTheKeyboardToTheDeepestLevel)
{
    desk.Launch("100,700,0");
    desk.Click("Games");
    SetFocus(desk.Level(0).m_toolbar);
    desk.RestOn("chess", 1);
    EXPECT_EQ(GetFocus(), desk.Level(1).m_toolbar);
}

TEST_F(Hovering, WhileAnItemsMenuShowsTheHighlightStaysOnIt)
{
    desk.Launch("100,700,0");
    desk.RestOn("readme");
    desk.Level(0).m_contextIndex = desk.IndexOf("readme");
    desk.RestOn("Games");
    desk.Advance(1000ms);
    EXPECT_EQ(desk.Hot(), "readme");
    EXPECT_EQ(desk.Levels(), 1);
    desk.Level(0).m_contextIndex = -1;
}

TEST_F(Hovering, AReleaseWithoutAPressIsNoClick)
{
    desk.Launch("100,700,0");
    const RECT games = desk.ItemBounds("Games");
    // The release of the click that opened the menu.
    SendMessageW(desk.Level(0).m_toolbar, WM_LBUTTONUP, 0, MAKELPARAM(20, 10));
    desk.Settle();
    EXPECT_EQ(desk.Levels(), 1);
    EXPECT_TRUE(desk.IsOpen());
    EXPECT_EQ(g_launcher.m_options, 0u) << "nor does it cycle the separators";
    // A press on one item that ends on another starts neither.
    const auto readmeIsPressed = [&]
    {
        const CustomBar& root = desk.Level(0);
        TBBUTTON button{};
        root.SendToolbar(TB_GETBUTTON, 2, reinterpret_cast<LPARAM>(&button));
        return (button.fsState & TBSTATE_PRESSED) != 0;
    };
    desk.RestOn("readme");
    desk.PressMouse();
    EXPECT_TRUE(readmeIsPressed());
    desk.MoveTo({1500, 100});
    EXPECT_FALSE(readmeIsPressed()) << "while a button is held the items hear of every move";
    desk.MoveTo(CentreOf(games));
    desk.ReleaseMouse();
    EXPECT_TRUE(desk.IsOpen());
    EXPECT_EQ(desk.BoxTexts(), Labels{});
}

TEST_F(Hovering, TheOtherButtonsStartNothing)
{
    desk.Launch("100,700,0");
    for (const auto button : {platform::screen::Button::Right, platform::screen::Button::Middle})
    {
        desk.RestOn("Games");
        desk.PressMouse(button);
        desk.ReleaseMouse(button);
        EXPECT_EQ(desk.Levels(), 1);
        EXPECT_TRUE(desk.IsOpen());
    }
}

TEST_F(Hovering, AClickOnAPlainItemWithASubLevelOpenStartsItAndClosesAll)
{
    const std::filesystem::path proof = desk.Folder().parent_path() / "proof";
    std::filesystem::remove(proof);
    desk.MakeShortcut("zz.desktop", "ZZ", "touch " + proof.string());
    desk.Launch("100,700,0");
    desk.Click("Games");
    ASSERT_EQ(desk.Levels(), 2);
    desk.Click("ZZ", 0);
    EXPECT_EQ(desk.Levels(), 0);
    EXPECT_FALSE(desk.IsOpen());
    EXPECT_TRUE(desk.WaitFor([&] { return std::filesystem::exists(proof); }));
}

TEST_F(Hovering, ReturnStartsAnItemAndOpensAFolder)
{
    const std::filesystem::path proof = desk.Folder().parent_path() / "proof";
    std::filesystem::remove(proof);
    desk.MakeShortcut("Games/run.desktop", "run it", "touch " + proof.string());
    desk.Launch("100,700,0");
    desk.Press(VK_RETURN);
    EXPECT_TRUE(desk.IsOpen()) << "with nothing highlighted";
    desk.Press(VK_DOWN);
    desk.Press(VK_RETURN);
    ASSERT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Hot(1), "Arcade");
    desk.Press(VK_UP);
    EXPECT_EQ(desk.Hot(1), "Arcade") << "at the first item Up stays";
    desk.Press(VK_DOWN);
    desk.Press(VK_DOWN);
    desk.Press(VK_DOWN);
    EXPECT_EQ(desk.Hot(1), "run it") << "at the last item Down stays";
    desk.Press(VK_RETURN);
    EXPECT_FALSE(desk.IsOpen());
    EXPECT_TRUE(desk.WaitFor([&] { return std::filesystem::exists(proof); }));
}

TEST_F(Hovering, AHeldKeyRepeats)
{
    desk.Launch("100,700,0");
    desk.Hold(VK_DOWN);
    desk.Hold(VK_DOWN);
    desk.Hold(VK_DOWN);
    desk.LetGo(VK_DOWN);
    EXPECT_EQ(desk.Hot(), "readme");
}

TEST_F(Hovering, ClosingKeysActOnTheDeepestLevelWhicheverHasTheKeyboard)
{
    for (const UINT key : {UINT{VK_ESCAPE}, UINT{VK_LEFT}})
    {
        desk.Launch("100,700,0");
        desk.Click("Games");
        desk.Level(0).OnToolbarKeyDown(key);
        EXPECT_EQ(desk.Levels(), 2) << "it is asked to close";
        desk.Settle();
        EXPECT_EQ(desk.Levels(), 1);
        EXPECT_EQ(GetActiveWindow(), desk.Level(0).m_hWnd);
        EXPECT_EQ(desk.Level(0).m_openIndex, -1);
        EXPECT_EQ(GetFocus(), desk.Level(0).m_toolbar);
        desk.End();
    }
}

TEST_F(Hovering, MovingAnItemWithShiftKeepsTheMousesLastPosition)
{
    desk.Launch("100,700,0");
    desk.RestOn("readme");
    const POINT resting = CentreOf(desk.ItemBounds("readme"));
    desk.Hold(VK_SHIFT);
    desk.Press(VK_UP);
    desk.LetGo(VK_SHIFT);
    EXPECT_EQ(desk.Items(), (Labels{"Games", "readme", "Office"}));
    EXPECT_EQ(desk.Hot(), "readme");
    EXPECT_NE(desk.Level(0).m_lastMessagePos, 0xFFFFFFFF) << "the resting mouse does not take the highlight back";
    EXPECT_FALSE(desk.Level(0).m_refreshByKeyboard);
    EXPECT_EQ(desk.Level(0).m_refreshIndex, -1);
    platform::headless::MoveMouse(resting.x, resting.y);
    desk.Settle();
    EXPECT_EQ(desk.Hot(), "readme");
    desk.Hold(VK_SHIFT);
    desk.Press(VK_UP);
    desk.Press(VK_UP);
    desk.Press('S');
    desk.Press(VK_RETURN);
    desk.LetGo(VK_SHIFT);
    EXPECT_EQ(desk.Items(), (Labels{"readme", "Games", "Office"}))
        << "the first item cannot rise, and S needs no Shift";
    EXPECT_EQ(desk.Levels(), 1);
}

TEST_F(Hovering, ASeparatorNeedsItemsOnBothSides)
{
    desk.Launch("100,700,0");
    desk.Press('S');
    desk.Press(VK_DOWN);
    desk.Press('S');
    EXPECT_EQ(desk.Items(), (Labels{"Games", "Office", "readme"})) << "none without a highlight, none above the first";
    desk.Press(VK_DOWN);
    desk.Press('S');
    desk.Press('S');
    EXPECT_EQ(desk.Items(), (Labels{"Games", "|", "Office", "readme"})) << "never two in a row";
    desk.Press(VK_UP);
    EXPECT_EQ(desk.Hot(), "Games") << "the highlight steps over it";
    desk.Hold(VK_SHIFT);
    desk.Press(VK_DOWN);
    desk.LetGo(VK_SHIFT);
    EXPECT_EQ(desk.Items(), (Labels{"Games", "Office", "readme"})) << "a separator that has come first goes";
    EXPECT_EQ(desk.Hot(), "Games");
}

} // namespace
