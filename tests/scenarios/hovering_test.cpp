// Hovering, clicking and keys, with invented times: what starts the timer, what it does, what is refused.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/staged_drop.h"
#include "tests/scenarios/staged_ui.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using CustomMenu::CustomBar;

namespace
{

class Hovering : public testing::Test
{
protected:
    Hovering()
    {
        m_desk.MakeFile("Games/Arcade/pong");
        m_desk.MakeFile("Games/chess");
        m_desk.MakeFolder("Office");
        m_desk.MakeFile("readme");
    }

    Desk m_desk;
};

TEST_F(Hovering, AMenuThatOpensUnderARestingCursorWaitsForAMove)
{
    m_desk.MoveTo({130, 690});
    m_desk.Launch("100,700,0");
    ASSERT_TRUE(PtInRect(std::array{m_desk.Bounds()}.data(), {130, 690}));
    m_desk.Advance(2000ms);
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_EQ(m_desk.Hot(), "");
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
    m_desk.Launch("100,700,0");
    m_desk.RestOn("Games");
    m_desk.Advance(300ms);
    m_desk.RestOn("Office");
    m_desk.Advance(300ms);
    EXPECT_EQ(m_desk.Levels(), 1);
    m_desk.Advance(110ms);
    ASSERT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(m_desk.Items(1), Labels{"(Empty)"});
}

TEST_F(Hovering, TheTimerOpensNothingThatIsNoLongerHot)
{
    m_desk.Launch("100,700,0");
    m_desk.RestOn("Games");
    m_desk.Advance(300ms);
    m_desk.RestOn("readme");
    m_desk.Advance(1000ms);
    EXPECT_EQ(m_desk.Levels(), 1);
    m_desk.RestOn("Games");
    m_desk.Advance(300ms);
    m_desk.MoveTo({1500, 100});
    m_desk.Advance(1000ms);
    EXPECT_EQ(m_desk.Levels(), 1) << "the mouse has left the menu";
    m_desk.RestOn("Games");
    m_desk.Press(VK_DOWN);
    m_desk.Advance(1000ms);
    EXPECT_EQ(m_desk.Levels(), 1) << "the keyboard has moved on";
}

TEST_F(Hovering, TheTimerRunsOutOnce)
{
    m_desk.Launch("100,700,0");
    m_desk.RestOn("Games");
    m_desk.Advance(500ms);
    ASSERT_EQ(m_desk.Levels(), 2);
    m_desk.Press(VK_ESCAPE);
    ASSERT_EQ(m_desk.Hot(), "Games");
    m_desk.Advance(2000ms);
    EXPECT_EQ(m_desk.Levels(), 1) << "what was closed under a resting cursor stays closed";
}

TEST_F(Hovering, TheLastPositionIsThatOfTheLastMoveOrOpening)
{
    m_desk.Launch("100,700,0");
    m_desk.RestOn("readme");
    const POINT resting = CentreOf(m_desk.ItemBounds("readme"));
    EXPECT_EQ(m_desk.Level(0).m_lastMessagePos, static_cast<DWORD>(MAKELONG(resting.x, resting.y)));
    m_desk.Level(0).m_lastMessagePos = 0xFFFFFFFF;
    m_desk.Level(0).OnItemCommand(ItemCommandMode::OpenSubmenuByKey, 0);
    EXPECT_EQ(m_desk.Level(0).m_lastMessagePos, GetMessagePos());
}

TEST_F(Hovering, TheDelayIsTheDesktopsOwn)
{
    m_desk.Launch("100,700,0");
    g_launcher.m_menuShowDelay = 50;
    m_desk.RestOn("Games");
    m_desk.Advance(60ms);
    EXPECT_EQ(m_desk.Levels(), 2);
}

TEST_F(Hovering, RestingOnTheOpenFolderAgainChangesNothing)
{
    m_desk.Launch("100,700,0");
    m_desk.RestOn("Games");
    m_desk.Advance(500ms);
    const CustomBar* const child = &m_desk.Level(1);
    m_desk.RestOn("chess", 1);
    m_desk.RestOn("Games", 0);
    m_desk.Advance(1000ms);
    ASSERT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(&m_desk.Level(1), child);
}

TEST_F(Hovering, PassingOverAnotherItemOnTheWayToTheSubLevelKeepsIt)
{
    m_desk.Launch("100,700,0");
    m_desk.RestOn("Games");
    m_desk.Advance(500ms);
    m_desk.RestOn("Office", 0);
    m_desk.Advance(200ms);
    m_desk.RestOn("chess", 1);
    m_desk.Advance(1000ms);
    EXPECT_EQ(m_desk.Items(1), (Labels{"Arcade", "chess"})) << "leaving the items made the opener hot again";
    EXPECT_EQ(m_desk.Hot(0), "Games");
}

TEST_F(Hovering, ARepeatedPositionIsNoMove)
{
    m_desk.Launch("100,700,0");
    CustomBar& root = m_desk.Level(0);
    m_desk.RestOn("readme");
    root.SetHotItem(-1);
    const DWORD recorded = root.m_lastMessagePos;
    const POINT resting = CentreOf(m_desk.ItemBounds("readme"));
    root.m_lastMessagePos = 0xFFFFFFFF;
    platform::headless::MoveMouse(resting.x, resting.y);
    m_desk.Settle();
    EXPECT_EQ(root.m_lastMessagePos, 0xFFFFFFFF) << "it is not recorded as a move";
    root.m_lastMessagePos = recorded;
    m_desk.MoveTo({resting.x + 1, resting.y});
    EXPECT_EQ(m_desk.Hot(), "readme");
}

TEST_F(Hovering, AfterAPressTheSamePositionIsNoMoveEither)
{
    m_desk.Launch("100,700,0");
    CustomBar& root = m_desk.Level(0);
    const POINT client{20, 10};
    SendMessageW(root.m_toolbar, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(client.x, client.y));
    root.m_lastMessagePos = 0xFFFFFFFF;
    SendMessageW(root.m_toolbar, WM_MOUSEMOVE, 0, MAKELPARAM(client.x, client.y));
    EXPECT_EQ(root.m_lastMessagePos, 0xFFFFFFFF);
}

TEST_F(Hovering, AMoveIsWhereItsMessageSays)
{
    // The place of a move was taken from the pointer's position, that of a press from the message.
    m_desk.Launch("100,700,0");
    CustomBar& root = m_desk.Level(0);
    const RECT office = root.ButtonRect(m_desk.IndexOf("Office"));
    root.m_lastMessagePos = 0xFFFFFFFF;
    SendMessageW(root.m_toolbar, WM_MOUSEMOVE, 0, MAKELPARAM(office.left + 9, office.top + 9));
    EXPECT_EQ(m_desk.Hot(), "Office") << "though the pointer is elsewhere";
    root.m_lastMessagePos = 0xFFFFFFFF;
    SendMessageW(root.m_toolbar, WM_MOUSEMOVE, 0, MAKELPARAM(office.left + 9, 5000));
    EXPECT_EQ(m_desk.Hot(), "Office") << "below the items nothing changes";
}

TEST_F(Hovering, LeavingWithoutASubLevelTakesTheHighlightAway)
{
    m_desk.Launch("100,700,0");
    m_desk.RestOn("readme");
    m_desk.MoveTo({1500, 100});
    EXPECT_EQ(m_desk.Hot(), "");
}

TEST_F(Hovering, WithoutASubLevelAMoveBringsTheKeyboardToTheDeepestLevel)
{
    m_desk.Launch("100,700,0");
    m_desk.Click("Games");
    SetFocus(m_desk.Level(0).m_toolbar);
    m_desk.RestOn("chess", 1);
    EXPECT_EQ(GetFocus(), m_desk.Level(1).m_toolbar);
}

TEST_F(Hovering, WhileAnItemsMenuShowsTheHighlightStaysOnIt)
{
    m_desk.Launch("100,700,0");
    m_desk.RestOn("readme");
    m_desk.Level(0).m_contextIndex = m_desk.IndexOf("readme");
    m_desk.RestOn("Games");
    m_desk.Advance(1000ms);
    EXPECT_EQ(m_desk.Hot(), "readme");
    EXPECT_EQ(m_desk.Levels(), 1);
    m_desk.Level(0).m_contextIndex = -1;
}

TEST_F(Hovering, AReleaseWithoutAPressIsNoClick)
{
    m_desk.Launch("100,700,0");
    const RECT games = m_desk.ItemBounds("Games");
    // The release of the click that opened the menu.
    SendMessageW(m_desk.Level(0).m_toolbar, WM_LBUTTONUP, 0, MAKELPARAM(20, 10));
    m_desk.Settle();
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_TRUE(m_desk.IsOpen());
    EXPECT_EQ(g_launcher.m_options, 0u) << "nor does it cycle the separators";
    // A press on one item that ends on another starts neither.
    const auto readmeIsPressed = [&]
    {
        const CustomBar& root = m_desk.Level(0);
        TBBUTTON button{};
        root.SendToolbar(TB_GETBUTTON, 2, reinterpret_cast<LPARAM>(&button));
        return (button.fsState & TBSTATE_PRESSED) != 0;
    };
    StagedDrag drag; // which such a press begins, and which ends at once
    m_desk.RestOn("readme");
    m_desk.PressMouse();
    EXPECT_TRUE(readmeIsPressed());
    m_desk.MoveTo({1500, 100});
    EXPECT_FALSE(readmeIsPressed()) << "while a button is held the items hear of every move";
    m_desk.MoveTo(CentreOf(games));
    m_desk.ReleaseMouse();
    EXPECT_TRUE(m_desk.IsOpen());
    EXPECT_EQ(m_desk.BoxTexts(), Labels{});
}

TEST_F(Hovering, TheOtherButtonsStartNothing)
{
    const StagedPopup contextMenu;
    m_desk.Launch("100,700,0");
    for (const auto button : {platform::screen::Button::Right, platform::screen::Button::Middle})
    {
        m_desk.RestOn("Games");
        m_desk.PressMouse(button);
        m_desk.ReleaseMouse(button);
        EXPECT_EQ(m_desk.Levels(), 1);
        EXPECT_TRUE(m_desk.IsOpen());
    }
}

TEST_F(Hovering, AClickOnAPlainItemWithASubLevelOpenStartsItAndClosesAll)
{
    const std::filesystem::path proof = m_desk.Folder().parent_path() / "proof";
    std::filesystem::remove(proof);
    m_desk.MakeShortcut("zz.desktop", "ZZ", "touch " + proof.string());
    m_desk.Launch("100,700,0");
    m_desk.Click("Games");
    ASSERT_EQ(m_desk.Levels(), 2);
    m_desk.Click("ZZ", 0);
    EXPECT_EQ(m_desk.Levels(), 0);
    EXPECT_FALSE(m_desk.IsOpen());
    EXPECT_TRUE(m_desk.WaitFor([&] { return std::filesystem::exists(proof); }));
}

TEST_F(Hovering, ReturnStartsAnItemAndOpensAFolder)
{
    const std::filesystem::path proof = m_desk.Folder().parent_path() / "proof";
    std::filesystem::remove(proof);
    m_desk.MakeShortcut("Games/run.desktop", "run it", "touch " + proof.string());
    m_desk.Launch("100,700,0");
    m_desk.Press(VK_RETURN);
    EXPECT_TRUE(m_desk.IsOpen()) << "with nothing highlighted";
    m_desk.Press(VK_DOWN);
    m_desk.Press(VK_RETURN);
    ASSERT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(m_desk.Hot(1), "Arcade");
    m_desk.Press(VK_UP);
    EXPECT_EQ(m_desk.Hot(1), "Arcade") << "at the first item Up stays";
    m_desk.Press(VK_DOWN);
    m_desk.Press(VK_DOWN);
    m_desk.Press(VK_DOWN);
    EXPECT_EQ(m_desk.Hot(1), "run it") << "at the last item Down stays";
    m_desk.Press(VK_RETURN);
    EXPECT_FALSE(m_desk.IsOpen());
    EXPECT_TRUE(m_desk.WaitFor([&] { return std::filesystem::exists(proof); }));
}

TEST_F(Hovering, AHeldKeyRepeats)
{
    m_desk.Launch("100,700,0");
    m_desk.Hold(VK_DOWN);
    m_desk.Hold(VK_DOWN);
    m_desk.Hold(VK_DOWN);
    m_desk.LetGo(VK_DOWN);
    EXPECT_EQ(m_desk.Hot(), "readme");
}

TEST_F(Hovering, ClosingKeysActOnTheDeepestLevelWhicheverHasTheKeyboard)
{
    for (const UINT key : {UINT{VK_ESCAPE}, UINT{VK_LEFT}})
    {
        m_desk.Launch("100,700,0");
        m_desk.Click("Games");
        const MessageCounter activations(m_desk.Level(0).m_hWnd, WM_ACTIVATE);
        m_desk.Level(0).OnToolbarKeyDown(key);
        EXPECT_EQ(m_desk.Levels(), 2) << "it is asked to close";
        EXPECT_GE(activations.Count(), 1) << "and its opener made active";
        m_desk.Settle();
        EXPECT_EQ(m_desk.Levels(), 1);
        EXPECT_EQ(GetActiveWindow(), m_desk.Level(0).m_hWnd);
        EXPECT_EQ(m_desk.Level(0).m_openIndex, -1);
        EXPECT_EQ(GetFocus(), m_desk.Level(0).m_toolbar);
        m_desk.End();
    }
}

TEST_F(Hovering, MovingAnItemWithShiftKeepsTheMousesLastPosition)
{
    m_desk.Launch("100,700,0");
    m_desk.RestOn("readme");
    const POINT resting = CentreOf(m_desk.ItemBounds("readme"));
    m_desk.PressWith(VK_SHIFT, {VK_UP});
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "readme", "Office"}));
    EXPECT_EQ(m_desk.Hot(), "readme");
    EXPECT_NE(m_desk.Level(0).m_lastMessagePos, 0xFFFFFFFF) << "the resting mouse does not take the highlight back";
    EXPECT_FALSE(m_desk.Level(0).m_refreshByKeyboard);
    EXPECT_EQ(m_desk.Level(0).m_refreshIndex, -1);
    platform::headless::MoveMouse(resting.x, resting.y);
    m_desk.Settle();
    EXPECT_EQ(m_desk.Hot(), "readme");
    m_desk.PressWith(VK_SHIFT, {VK_UP, VK_UP, 'S', VK_RETURN});
    EXPECT_EQ(m_desk.Items(), (Labels{"readme", "Games", "Office"}))
        << "the first item cannot rise, and S needs no Shift";
    EXPECT_EQ(m_desk.Levels(), 1);
}

TEST_F(Hovering, ASeparatorNeedsItemsOnBothSides)
{
    m_desk.Launch("100,700,0");
    m_desk.Press('S');
    m_desk.Press(VK_DOWN);
    m_desk.Press('S');
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "Office", "readme"}))
        << "none without a highlight, none above the first";
    m_desk.Press(VK_DOWN);
    m_desk.Press('S');
    m_desk.Press('S');
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "|", "Office", "readme"})) << "never two in a row";
    m_desk.Press(VK_UP);
    EXPECT_EQ(m_desk.Hot(), "Games") << "the highlight steps over it";
    m_desk.PressWith(VK_SHIFT, {VK_DOWN});
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "Office", "readme"})) << "a separator that has come first goes";
    EXPECT_EQ(m_desk.Hot(), "Games");
}

} // namespace
