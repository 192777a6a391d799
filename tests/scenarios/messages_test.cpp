// What a level answers to each message and notification that it handles, row by row.
#include "tests/scenarios/desk.h"

#include "app/launcher_state.h"
#include "platform/base/fault_points.h"

#include <gtest/gtest.h>

#include <string_view>

using namespace std::chrono_literals;
using CustomMenu::CustomBar;
using Labels = std::vector<std::string>;

namespace
{

class Messages : public testing::Test
{
protected:
    Messages()
    {
        desk.MakeFile("Games/Arcade/pong");
        desk.MakeFile("Games/chess");
        desk.MakeFolder("Office");
        desk.MakeFile("readme");
        desk.Launch("100,700,0");
    }

    LRESULT Send(int level, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return SendMessageW(desk.Level(level).m_hWnd, message, wParam, lParam);
    }

    LRESULT Notify(int level, NMHDR& header, HWND from, UINT code)
    {
        header.hwndFrom = from;
        header.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(from));
        header.code = code;
        return Send(level, WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
    }

    Desk desk;
};

TEST_F(Messages, BeingActivatedHighlightsTheOpenerOrNothing)
{
    desk.RestOn("readme");
    ASSERT_EQ(desk.Hot(), "readme");
    EXPECT_EQ(Send(0, WM_ACTIVATE, WA_INACTIVE), 0);
    EXPECT_EQ(desk.Hot(), "readme") << "being left changes nothing";
    EXPECT_EQ(Send(0, WM_ACTIVATE, WA_CLICKACTIVE), 0);
    EXPECT_EQ(desk.Hot(), "");

    desk.Click("Games");
    ASSERT_EQ(desk.Levels(), 2);
    SendMessageW(desk.Level(0).m_toolbar, TB_SETHOTITEM, 2, 0);
    SetFocus(desk.Level(0).m_toolbar);
    Send(0, WM_ACTIVATE, WA_ACTIVE);
    EXPECT_EQ(desk.Hot(0), "Games");
    EXPECT_EQ(GetFocus(), desk.Level(1).m_toolbar) << "the keyboard is the deepest level's";
}

TEST_F(Messages, OnlyAnotherApplicationsComingClosesAndOnlyAnEnabledMenu)
{
    desk.Click("Games");
    EXPECT_EQ(Send(0, WM_ACTIVATEAPP, TRUE), 0);
    desk.Settle();
    EXPECT_EQ(desk.Levels(), 2);
    EnableWindow(desk.Level(0).m_hWnd, FALSE);
    Send(0, WM_ACTIVATEAPP, FALSE);
    desk.Settle();
    EXPECT_EQ(desk.Levels(), 2) << "a disabled level waits for its operation";
    EXPECT_EQ(Send(1, WM_ACTIVATEAPP, FALSE), 0);
    EXPECT_EQ(desk.Levels(), 2) << "levels are asked to close, not torn down within the message";
    desk.Settle();
    EXPECT_EQ(desk.Levels(), 0);
}

TEST_F(Messages, APressActivatesOnlyALevelWithoutSubLevel)
{
    const LPARAM press = MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN);
    EXPECT_EQ(Send(0, WM_MOUSEACTIVATE, 0, press), MA_ACTIVATE);
    desk.Click("Games");
    EXPECT_EQ(Send(0, WM_MOUSEACTIVATE, 0, press), MA_NOACTIVATE);
    EXPECT_EQ(Send(1, WM_MOUSEACTIVATE, 0, press), MA_ACTIVATE);
}

TEST_F(Messages, ContextMenusOverNothingAreNone)
{
    CustomBar& root = desk.Level(0);
    const auto ask = [&](HWND from, LPARAM point)
    { return Send(0, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(from), point); };
    desk.Click("Games");
    ASSERT_EQ(desk.Levels(), 2);
    const RECT last = desk.ItemBounds("readme", 0);
    EXPECT_EQ(ask(root.m_toolbar, MAKELPARAM(last.left + 5, last.bottom + 1)), 0);
    SendMessageW(desk.Level(1).m_toolbar, TB_SETHOTITEM, static_cast<WPARAM>(-1), 0);
    EXPECT_EQ(SendMessageW(desk.Level(1).m_hWnd, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(desk.Level(1).m_toolbar), -1),
              0)
        << "by keyboard without a highlight";
    desk.Settle();
    EXPECT_EQ(desk.Levels(), 2);
    EXPECT_EQ(root.m_contextIndex, -1);
}

TEST_F(Messages, OtherTimersAreNotTheHoverTimer)
{
    desk.RestOn("Games");
    EXPECT_EQ(Send(0, WM_TIMER, 2), 0);
    EXPECT_EQ(desk.Levels(), 1);
    EXPECT_EQ(Send(0, WM_TIMER, 1), 0);
    EXPECT_EQ(desk.Levels(), 2);
}

TEST_F(Messages, TheLevelHandsOutItsDropTarget)
{
    NMOBJECTNOTIFY request{};
    request.piid = &IID_IDropTarget;
    request.hResult = E_FAIL;
    CustomBar& root = desk.Level(0);
    const ULONG before = root.m_refCount;
    EXPECT_EQ(Notify(0, request.hdr, root.m_toolbar, TBN_GETOBJECT), 0);
    ASSERT_EQ(request.hResult, S_OK);
    EXPECT_EQ(root.m_refCount, before + 1);
    ComPtr<IDropTarget> target;
    *target.ReceiveVoid() = request.pObject;
    request.piid = &IID_IShellFolder;
    Notify(0, request.hdr, root.m_toolbar, TBN_GETOBJECT);
    EXPECT_EQ(request.hResult, E_NOINTERFACE);
}

TEST_F(Messages, WhatIsNotForTheLevelGoesToTheDefaultProcedure)
{
    NMHDR header{};
    EXPECT_EQ(Notify(0, header, desk.Level(0).m_toolbar, 12345), 0);
    EXPECT_EQ(Notify(0, header, desk.Level(0).m_hWnd, static_cast<UINT>(NM_CLICK)), 0);
    NMTBCUSTOMDRAW draw{};
    draw.nmcd.dwDrawStage = CDDS_POSTPAINT;
    EXPECT_EQ(Notify(0, draw.nmcd.hdr, desk.Level(0).m_toolbar, static_cast<UINT>(NM_CUSTOMDRAW)), 0);
    EXPECT_EQ(desk.Levels(), 1);
}

TEST_F(Messages, CustomDrawAsksForTheItemsAndAnswersInColours)
{
    CustomBar& root = desk.Level(0);
    const HDC dc = GetDC(root.m_toolbar);
    NMTBCUSTOMDRAW draw{};
    draw.nmcd.hdc = dc;
    const auto stage = [&](DWORD which, UINT state)
    {
        draw.nmcd.dwDrawStage = which;
        draw.nmcd.uItemState = state;
        return Notify(0, draw.nmcd.hdr, root.m_toolbar, static_cast<UINT>(NM_CUSTOMDRAW));
    };
    EXPECT_EQ(stage(CDDS_PREPAINT, 0), CDRF_NOTIFYITEMDRAW);
    EXPECT_EQ(stage(CDDS_ITEMPREPAINT, CDIS_HOT), 0x8F0010);
    EXPECT_EQ(draw.clrText, g_launcher.m_highlightTextColor);
    EXPECT_EQ(draw.clrHighlightHotTrack, g_launcher.m_highlightColor);
    EXPECT_EQ(stage(CDDS_ITEMPREPAINT, 0), 0x8D0010);
    EXPECT_EQ(draw.clrText, g_launcher.m_menuTextColor);
    EXPECT_EQ(draw.clrHighlightHotTrack, g_launcher.m_menuColor);
    ReleaseDC(root.m_toolbar, dc);
}

TEST_F(Messages, ARefusedToolbarKeyIsAlwaysNonzero)
{
    NMKEY key{};
    for (const UINT virtualKey : {UINT{VK_TAB}, UINT{VK_SPACE}, UINT{'Q'}})
    {
        key.nVKey = virtualKey;
        EXPECT_NE(Notify(0, key.hdr, desk.Level(0).m_toolbar, static_cast<UINT>(NM_KEYDOWN)), 0) << virtualKey;
    }
    EXPECT_EQ(desk.Hot(), "");
}

TEST_F(Messages, ADisabledMenuTakesNoInput)
{
    desk.Click("Games");
    desk.Level(1).EnableMenu(false);
    desk.RestOn("chess", 1);
    desk.PressMouse();
    desk.ReleaseMouse();
    desk.RestOn("Office", 0);
    desk.Advance(1000ms);
    desk.Press(VK_ESCAPE);
    EXPECT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Hot(1), "");
    desk.Level(1).EnableMenu(true);
    EXPECT_EQ(GetActiveWindow(), desk.Level(1).m_hWnd);
    EXPECT_EQ(GetFocus(), desk.Level(1).m_toolbar);
    for (int level = 0; level < 2; ++level)
        EXPECT_TRUE(IsWindowEnabled(desk.Level(level).m_hWnd)) << level;
    desk.Press(VK_ESCAPE);
    EXPECT_EQ(desk.Levels(), 1);
}

TEST_F(Messages, EnablingAClosingLevelDoesNotBringItBack)
{
    desk.Click("Games");
    CustomBar& child = desk.Level(1);
    child.AddRef();
    DestroyWindow(child.m_hWnd);
    ASSERT_TRUE(child.m_closing);
    child.EnableMenu(false);
    EXPECT_FALSE(IsWindowEnabled(desk.Level(0).m_hWnd));
    child.EnableMenu(true);
    EXPECT_TRUE(IsWindowEnabled(desk.Level(0).m_hWnd)) << "the others are enabled all the same";
    child.Release();
    EXPECT_EQ(desk.Levels(), 1);
}

TEST_F(Messages, ALevelHeldElsewhereDoesNotPassForItsSuccessor)
{
    desk.Click("Games");
    CustomBar& child = desk.Level(1);
    child.AddRef();
    desk.Click("Office", 0);
    ASSERT_EQ(desk.Level(0).m_openIndex, 1);
    child.Release();
    EXPECT_EQ(desk.Level(0).m_openIndex, 1) << "the level that goes is not the open one";
    EXPECT_EQ(desk.Levels(), 2);
}

TEST_F(Messages, LevelsAreAskedToCloseDeepestFirst)
{
    desk.Click("Games");
    desk.Click("Arcade", 1);
    std::vector<HWND> expected;
    for (int level = 2; level >= 0; --level)
        expected.push_back(desk.Level(level).m_hWnd);
    CustomMenu::CloseAllLevels();
    std::vector<HWND> asked;
    for (MSG message; PeekMessageW(&message, nullptr, WM_CLOSE, WM_CLOSE, PM_REMOVE);)
        asked.push_back(message.hwnd);
    EXPECT_EQ(asked, expected);
}

TEST_F(Messages, AltIsPressedForAForegroundThatIsRefused)
{
    for (const bool refused : {false, true})
    {
        static int refusals;
        refusals = refused ? 1 : 0;
        MessageCounter presses(desk.Level(0).m_toolbar, WM_SYSKEYDOWN);
        platform::SetFaultHook([](const char* asked)
                               { return std::string_view(asked) == "SetForegroundWindow" && refusals-- > 0; });
        desk.Level(0).EnableMenu(true);
        platform::SetFaultHook(nullptr);
        desk.Settle();
        EXPECT_EQ(presses.Count(), refused ? 1 : 0);
        EXPECT_GE(GetKeyState(VK_MENU), 0) << "it is let go again";
    }
}

TEST_F(Messages, WhileAnItemStartsTheMenuWaitsForIt)
{
    desk.MakeShortcut("Games/broken.desktop", "Broken", "/nonexistent/program");
    desk.Click("Games");
    desk.ExpectBoxes();
    CustomBar& child = desk.Level(1);
    const int index = desk.IndexOf("Broken", 1);
    int looks = 0;
    platform::headless::SetIdleHandler(
        [&]
        {
            // The box that says why it cannot be started is up.
            ++looks;
            EXPECT_EQ(g_operationBar, &child);
            for (int level = 0; level < 2; ++level)
                EXPECT_FALSE(IsWindowEnabled(desk.Level(level).m_hWnd)) << level;
            EXPECT_EQ(desk.Hot(1), "Broken");
            platform::headless::PressKey(VK_RETURN);
            platform::headless::ReleaseKey(VK_RETURN);
            return true;
        });
    child.OnItemCommand(ItemCommandMode::Launch, index);
    platform::headless::SetIdleHandler(nullptr);
    EXPECT_GE(looks, 1);
    EXPECT_EQ(g_operationBar, nullptr);
    for (int level = 0; level < 2; ++level)
        EXPECT_TRUE(IsWindowEnabled(desk.Level(level).m_hWnd)) << level;
    EXPECT_EQ(GetFocus(), child.m_toolbar);
    EXPECT_EQ(child.m_refreshIndex, index) << "should the level live on, the item keeps the highlight";
    desk.Settle();
    EXPECT_EQ(desk.Levels(), 0);
}

TEST_F(Messages, ALevelIsATopmostToolWindowWithAShadow)
{
    desk.Click("Games");
    for (int level = 0; level < 2; ++level)
    {
        const HWND window = desk.Level(level).m_hWnd;
        EXPECT_EQ(GetWindowLongPtrW(window, GWL_STYLE) & (WS_POPUP | WS_BORDER | WS_CAPTION), WS_POPUP | WS_BORDER);
        EXPECT_EQ(GetWindowLongPtrW(window, GWL_EXSTYLE) & (WS_EX_TOPMOST | WS_EX_TOOLWINDOW),
                  WS_EX_TOPMOST | WS_EX_TOOLWINDOW);
        EXPECT_EQ(desk.Level(level).SendToolbar(TB_GETINSERTMARKCOLOR),
                  static_cast<LRESULT>(g_launcher.m_menuTextColor));
    }
    WNDCLASSEXW levelClass{};
    levelClass.cbSize = sizeof(levelClass);
    ASSERT_TRUE(GetClassInfoExW(g_instance, TEXT("CustomBar"), &levelClass));
    EXPECT_EQ(levelClass.style, static_cast<UINT>(CS_DROPSHADOW));
}

TEST_F(Messages, ALevelHeldElsewhereLeavesTheChainWhenItIsLetGo)
{
    desk.Click("Games");
    CustomBar& child = desk.Level(1);
    child.AddRef();
    DestroyWindow(child.m_hWnd);
    EXPECT_EQ(desk.Level(0).m_openIndex, 0) << "its destructor clears it";
    child.Release();
    EXPECT_EQ(desk.Level(0).m_openIndex, -1);
    EXPECT_EQ(GetFocus(), desk.Level(0).m_toolbar);
}

// --- a level taller than the screen

class TallLevel : public testing::Test
{
protected:
    TallLevel()
    {
        for (int i = 0; i < 60; ++i)
            desk.MakeFile("item " + std::to_string(100 + i));
        desk.MakeFile("a folder/inside");
        desk.Launch("0,600,0");
    }

    int Position() { return static_cast<int>(SendMessageW(desk.Level(0).m_pager, PGM_GETPOS, 0, 0)); }
    int ButtonHeight() { return HIWORD(desk.Level(0).SendToolbar(TB_GETBUTTONSIZE)); }
    void PointAtScrollButton(bool lower)
    {
        RECT pager{};
        GetWindowRect(desk.Level(0).m_pager, &pager);
        const LONG middle = (pager.left + pager.right) / 2;
        // The lower button's last row lies under the frame's bottom, which the work area cuts off.
        desk.MoveTo({middle, lower ? std::min<LONG>(pager.bottom, 600) - 3 : pager.top + 2});
    }

    Desk desk{"800x600+0+0"};
};

TEST_F(TallLevel, OneTurnOfTheWheelMovesOneButton)
{
    desk.RestOn("item 103");
    EXPECT_EQ(Position(), 0);
    desk.Wheel(-120);
    EXPECT_EQ(Position(), ButtonHeight());
    desk.Wheel(-1200);
    EXPECT_EQ(Position(), 2 * ButtonHeight()) << "whatever the size of the turn";
    desk.Wheel(120);
    desk.Wheel(120);
    desk.Wheel(120);
    EXPECT_EQ(Position(), 0);
    for (int i = 0; i < 100; ++i)
        desk.Wheel(-120);
    EXPECT_LE(desk.ItemBounds("item 159").bottom, 600) << "the last item is in view at the end";
    EXPECT_GE(desk.ItemBounds("item 159").bottom, 600 - 2 * ButtonHeight());
}

TEST_F(TallLevel, TheWheelKeepsTheSubLevelAndAPagerButtonClosesIt)
{
    desk.Click("a folder");
    ASSERT_EQ(desk.Levels(), 2);
    PointAtScrollButton(true);
    desk.PressMouse();
    EXPECT_EQ(Position(), ButtonHeight()) << "one step is one button";
    EXPECT_EQ(desk.Levels(), 1);
    desk.ReleaseMouse();
}

TEST_F(TallLevel, RestingOnAPagerButtonScrollsOn)
{
    PointAtScrollButton(true);
    desk.Advance(1000ms);
    const int position = Position();
    EXPECT_GT(position, 3 * ButtonHeight());
    desk.MoveTo({700, 20});
    desk.Advance(1000ms);
    EXPECT_EQ(Position(), position) << "away from it nothing scrolls";
    PointAtScrollButton(false);
    desk.Advance(5000ms);
    EXPECT_EQ(Position(), 0);
}

TEST_F(TallLevel, ThePagerAsksForTheToolbarsSize)
{
    CustomBar& root = desk.Level(0);
    RECT toolbar{};
    GetWindowRect(root.m_toolbar, &toolbar);
    NMPGCALCSIZE size{};
    size.hdr.hwndFrom = root.m_pager;
    size.hdr.code = static_cast<UINT>(PGN_CALCSIZE);
    size.iWidth = -7;
    size.dwFlag = PGF_CALCHEIGHT;
    EXPECT_EQ(SendMessageW(root.m_hWnd, WM_NOTIFY, 1, reinterpret_cast<LPARAM>(&size)), 0);
    EXPECT_EQ(size.iHeight, toolbar.bottom - toolbar.top);
    EXPECT_EQ(size.iWidth, -7) << "only what is asked for";
    size.dwFlag = PGF_CALCWIDTH;
    SendMessageW(root.m_hWnd, WM_NOTIFY, 1, reinterpret_cast<LPARAM>(&size));
    EXPECT_EQ(size.iWidth, toolbar.right - toolbar.left);
}

TEST_F(TallLevel, KeysScrollBackToTheTop)
{
    desk.Level(0).OnItemCommand(ItemCommandMode::Select, 60);
    EXPECT_GT(Position(), 0);
    desk.Level(0).OnItemCommand(ItemCommandMode::Select, 0);
    EXPECT_EQ(Position(), 0);
    desk.Level(0).OnItemCommand(ItemCommandMode::Select, -1);
    EXPECT_EQ(desk.Hot(), "");
}

TEST(Wheel, WithoutAPagerItDoesNothing)
{
    Desk desk;
    desk.MakeFile("folder/x");
    desk.MakeFile("b");
    desk.Launch();
    desk.Click("folder");
    const RECT before = desk.ItemBounds("b", 0);
    desk.MoveTo(CentreOf(desk.ItemBounds("b", 0)));
    desk.Wheel(-120);
    EXPECT_EQ(desk.ItemBounds("b", 0).top, before.top);
    EXPECT_EQ(desk.Levels(), 2);
}

} // namespace
