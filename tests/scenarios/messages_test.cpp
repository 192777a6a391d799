// What a level answers to each message and notification that it handles, row by row.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/failing.h"

#include "app/launcher_state.h"
#include "platform/base/fault_points.h"

#include <gtest/gtest.h>

#include <string_view>

using namespace std::chrono_literals;
using CustomMenu::CustomBar;

namespace
{

class Messages : public testing::Test
{
protected:
    Messages()
    {
        m_desk.MakeFile("Games/Arcade/pong");
        m_desk.MakeFile("Games/chess");
        m_desk.MakeFolder("Office");
        m_desk.MakeFile("readme");
        m_desk.Launch("100,700,0");
    }

    LRESULT Send(int level, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return SendMessageW(m_desk.Level(level).m_hWnd, message, wParam, lParam);
    }

    LRESULT Notify(int level, NMHDR& header, HWND from, UINT code)
    {
        header.hwndFrom = from;
        header.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(from));
        header.code = code;
        return Send(level, WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
    }

    Desk m_desk;
};

TEST_F(Messages, BeingActivatedHighlightsTheOpenerOrNothing)
{
    m_desk.RestOn("readme");
    ASSERT_EQ(m_desk.Hot(), "readme");
    EXPECT_EQ(Send(0, WM_ACTIVATE, WA_INACTIVE), 0);
    EXPECT_EQ(m_desk.Hot(), "readme") << "being left changes nothing";
    EXPECT_EQ(Send(0, WM_ACTIVATE, WA_CLICKACTIVE), 0);
    EXPECT_EQ(m_desk.Hot(), "");

    m_desk.Click("Games");
    ASSERT_EQ(m_desk.Levels(), 2);
    SendMessageW(m_desk.Level(0).m_toolbar, TB_SETHOTITEM, 2, 0);
    SetFocus(m_desk.Level(0).m_toolbar);
    Send(0, WM_ACTIVATE, WA_ACTIVE);
    EXPECT_EQ(m_desk.Hot(0), "Games");
    EXPECT_EQ(GetFocus(), m_desk.Level(1).m_toolbar) << "the keyboard is the deepest level's";
}

TEST_F(Messages, OnlyAnotherApplicationsComingClosesAndOnlyAnEnabledMenu)
{
    m_desk.Click("Games");
    EXPECT_EQ(Send(0, WM_ACTIVATEAPP, TRUE), 0);
    m_desk.Settle();
    EXPECT_EQ(m_desk.Levels(), 2);
    EnableWindow(m_desk.Level(0).m_hWnd, FALSE);
    Send(0, WM_ACTIVATEAPP, FALSE);
    m_desk.Settle();
    EXPECT_EQ(m_desk.Levels(), 2) << "a disabled level waits for its operation";
    EXPECT_EQ(Send(1, WM_ACTIVATEAPP, FALSE), 0);
    EXPECT_EQ(m_desk.Levels(), 2) << "levels are asked to close, not torn down within the message";
    m_desk.Settle();
    EXPECT_EQ(m_desk.Levels(), 0);
}

TEST_F(Messages, APressActivatesOnlyALevelWithoutSubLevel)
{
    const LPARAM press = MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN);
    EXPECT_EQ(Send(0, WM_MOUSEACTIVATE, 0, press), MA_ACTIVATE);
    m_desk.Click("Games");
    EXPECT_EQ(Send(0, WM_MOUSEACTIVATE, 0, press), MA_NOACTIVATE);
    EXPECT_EQ(Send(1, WM_MOUSEACTIVATE, 0, press), MA_ACTIVATE);
}

TEST_F(Messages, ContextMenusOverNothingAreNone)
{
    CustomBar& root = m_desk.Level(0);
    const auto ask = [&](HWND from, LPARAM point)
    { return Send(0, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(from), point); };
    m_desk.Click("Games");
    ASSERT_EQ(m_desk.Levels(), 2);
    const RECT last = m_desk.ItemBounds("readme", 0);
    EXPECT_EQ(ask(root.m_toolbar, MAKELPARAM(last.left + 5, last.bottom + 1)), 0);
    SendMessageW(m_desk.Level(1).m_toolbar, TB_SETHOTITEM, static_cast<WPARAM>(-1), 0);
    EXPECT_EQ(
        SendMessageW(m_desk.Level(1).m_hWnd, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(m_desk.Level(1).m_toolbar), -1),
        0)
        << "by keyboard without a highlight";
    m_desk.Settle();
    EXPECT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(root.m_contextIndex, -1);
}

TEST_F(Messages, OtherTimersAreNotTheHoverTimer)
{
    m_desk.RestOn("Games");
    EXPECT_EQ(Send(0, WM_TIMER, 2), 0);
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_EQ(Send(0, WM_TIMER, 1), 0);
    EXPECT_EQ(m_desk.Levels(), 2);
}

TEST_F(Messages, TheLevelHandsOutItsDropTarget)
{
    NMOBJECTNOTIFY request{};
    request.piid = &IID_IDropTarget;
    request.hResult = E_FAIL;
    CustomBar& root = m_desk.Level(0);
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
    EXPECT_EQ(Notify(0, header, m_desk.Level(0).m_toolbar, 12345), 0);
    EXPECT_EQ(Notify(0, header, m_desk.Level(0).m_hWnd, static_cast<UINT>(NM_CLICK)), 0);
    NMTBCUSTOMDRAW draw{};
    draw.nmcd.dwDrawStage = CDDS_POSTPAINT;
    EXPECT_EQ(Notify(0, draw.nmcd.hdr, m_desk.Level(0).m_toolbar, static_cast<UINT>(NM_CUSTOMDRAW)), 0);
    EXPECT_EQ(m_desk.Levels(), 1);
}

TEST_F(Messages, CustomDrawAsksForTheItemsAndAnswersInColours)
{
    CustomBar& root = m_desk.Level(0);
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
        EXPECT_NE(Notify(0, key.hdr, m_desk.Level(0).m_toolbar, static_cast<UINT>(NM_KEYDOWN)), 0) << virtualKey;
    }
    EXPECT_EQ(m_desk.Hot(), "");
}

TEST_F(Messages, ADisabledMenuTakesNoInput)
{
    m_desk.Click("Games");
    m_desk.Level(1).EnableMenu(false);
    m_desk.RestOn("chess", 1);
    m_desk.PressMouse();
    m_desk.ReleaseMouse();
    m_desk.RestOn("Office", 0);
    m_desk.Advance(1000ms);
    m_desk.Press(VK_ESCAPE);
    EXPECT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(m_desk.Hot(1), "");
    m_desk.Level(1).EnableMenu(true);
    EXPECT_EQ(GetActiveWindow(), m_desk.Level(1).m_hWnd);
    EXPECT_EQ(GetFocus(), m_desk.Level(1).m_toolbar);
    for (int level = 0; level < 2; ++level)
        EXPECT_TRUE(IsWindowEnabled(m_desk.Level(level).m_hWnd)) << level;
    m_desk.Press(VK_ESCAPE);
    EXPECT_EQ(m_desk.Levels(), 1);
}

TEST_F(Messages, AnEnabledMenuHasTheKeyboardInItsDeepestLevel)
{
    m_desk.Click("Games");
    SetFocus(m_desk.Level(0).m_toolbar);
    m_desk.Level(0).EnableMenu(true);
    EXPECT_EQ(GetFocus(), m_desk.Level(1).m_toolbar) << "the level was active already";
}

TEST_F(Messages, AnItemWithoutSubLevelBringsItsLevelToTheForeground)
{
    EnableWindow(m_desk.Level(0).m_hWnd, FALSE);
    m_desk.SwitchToOtherProgram();
    EnableWindow(m_desk.Level(0).m_hWnd, TRUE);
    ASSERT_EQ(GetForegroundWindow(), nullptr);
    m_desk.Level(0).OnItemCommand(ItemCommandMode::OpenSubmenu, m_desk.IndexOf("readme"));
    EXPECT_EQ(GetForegroundWindow(), m_desk.Level(0).m_hWnd);
    EXPECT_TRUE(platform::headless::HasKeyboard());
}

TEST_F(Messages, ALevelIsActiveBeforeItsSubLevelIs)
{
    const HWND other = CreateWindowExW(0, TEXT("Static"), nullptr, WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr,
                                       nullptr, nullptr);
    SetActiveWindow(other);
    const MessageCounter activations(m_desk.Level(0).m_hWnd, WM_ACTIVATE);
    m_desk.Level(0).OnItemCommand(ItemCommandMode::OpenSubmenu, m_desk.IndexOf("Games"));
    EXPECT_EQ(activations.Count(), 2) << "it comes and goes";
    EXPECT_EQ(GetActiveWindow(), m_desk.Level(1).m_hWnd);
    DestroyWindow(other);
}

TEST_F(Messages, ALevelHeldElsewhereDoesNotPassForItsSuccessor)
{
    m_desk.Click("Games");
    CustomBar& child = m_desk.Level(1);
    child.AddRef();
    m_desk.Click("Office", 0);
    ASSERT_EQ(m_desk.Level(0).m_openIndex, 1);
    child.Release();
    EXPECT_EQ(m_desk.Level(0).m_openIndex, 1) << "the level that goes is not the open one";
    EXPECT_EQ(m_desk.Levels(), 2);
}

TEST_F(Messages, LevelsAreAskedToCloseDeepestFirst)
{
    m_desk.Click("Games");
    m_desk.Click("Arcade", 1);
    std::vector<HWND> expected;
    for (int level = 2; level >= 0; --level)
        expected.push_back(m_desk.Level(level).m_hWnd);
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
        MessageCounter presses(m_desk.Level(0).m_toolbar, WM_SYSKEYDOWN);
        {
            const Failing once("SetForegroundWindow", refused ? 1 : 0);
            m_desk.Level(0).EnableMenu(true);
        }
        m_desk.Settle();
        EXPECT_EQ(presses.Count(), refused ? 1 : 0);
        EXPECT_GE(GetKeyState(VK_MENU), 0) << "it is let go again";
    }
}

TEST_F(Messages, ALevelIsATopmostToolWindowWithAShadow)
{
    m_desk.Click("Games");
    for (int level = 0; level < 2; ++level)
    {
        const HWND window = m_desk.Level(level).m_hWnd;
        EXPECT_EQ(GetWindowLongPtrW(window, GWL_STYLE) & (WS_POPUP | WS_BORDER | WS_CAPTION), WS_POPUP | WS_BORDER);
        EXPECT_EQ(GetWindowLongPtrW(window, GWL_EXSTYLE) & (WS_EX_TOPMOST | WS_EX_TOOLWINDOW),
                  WS_EX_TOPMOST | WS_EX_TOOLWINDOW);
        EXPECT_EQ(m_desk.Level(level).SendToolbar(TB_GETINSERTMARKCOLOR),
                  static_cast<LRESULT>(g_launcher.m_menuTextColor));
    }
    WNDCLASSEXW levelClass{};
    levelClass.cbSize = sizeof(levelClass);
    ASSERT_TRUE(GetClassInfoExW(g_instance, TEXT("CustomBar"), &levelClass));
    EXPECT_EQ(levelClass.style, static_cast<UINT>(CS_DROPSHADOW));
}

// --- a level taller than the screen

class TallLevel : public testing::Test
{
protected:
    TallLevel()
    {
        for (int i = 0; i < 60; ++i)
            m_desk.MakeFile("item " + std::to_string(100 + i));
        m_desk.MakeFile("a folder/inside");
        m_desk.Launch("0,600,0");
    }

    int Position() { return static_cast<int>(SendMessageW(m_desk.Level(0).m_pager, PGM_GETPOS, 0, 0)); }
    int ButtonHeight() { return HIWORD(m_desk.Level(0).SendToolbar(TB_GETBUTTONSIZE)); }
    void PointAtScrollButton(bool lower)
    {
        RECT pager{};
        GetWindowRect(m_desk.Level(0).m_pager, &pager);
        const LONG middle = (pager.left + pager.right) / 2;
        // The lower button's last row lies under the frame's bottom, which the work area cuts off.
        m_desk.MoveTo({middle, lower ? std::min<LONG>(pager.bottom, 600) - 3 : pager.top + 2});
    }

    Desk m_desk{"800x600+0+0"};
};

TEST_F(TallLevel, OneTurnOfTheWheelMovesOneButton)
{
    m_desk.RestOn("item 103");
    EXPECT_EQ(Position(), 0);
    m_desk.Wheel(-120);
    EXPECT_EQ(Position(), ButtonHeight());
    m_desk.Wheel(-1200);
    EXPECT_EQ(Position(), 2 * ButtonHeight()) << "whatever the size of the turn";
    m_desk.Wheel(120);
    m_desk.Wheel(120);
    m_desk.Wheel(120);
    EXPECT_EQ(Position(), 0);
    for (int i = 0; i < 100; ++i)
        m_desk.Wheel(-120);
    EXPECT_LE(m_desk.ItemBounds("item 159").bottom, 600) << "the last item is in view at the end";
    EXPECT_GE(m_desk.ItemBounds("item 159").bottom, 600 - 2 * ButtonHeight());
}

TEST_F(TallLevel, TheWheelKeepsTheSubLevelAndAPagerButtonClosesIt)
{
    m_desk.Click("a folder");
    ASSERT_EQ(m_desk.Levels(), 2);
    PointAtScrollButton(true);
    m_desk.PressMouse();
    EXPECT_EQ(Position(), ButtonHeight()) << "one step is one button";
    EXPECT_EQ(m_desk.Levels(), 1);
    m_desk.ReleaseMouse();
}

TEST_F(TallLevel, RestingOnAPagerButtonScrollsOn)
{
    PointAtScrollButton(true);
    m_desk.Advance(1000ms);
    const int position = Position();
    EXPECT_GT(position, 3 * ButtonHeight());
    m_desk.MoveTo({700, 20});
    m_desk.Advance(1000ms);
    EXPECT_EQ(Position(), position) << "away from it nothing scrolls";
    PointAtScrollButton(false);
    m_desk.Advance(5000ms);
    EXPECT_EQ(Position(), 0);
}

TEST_F(TallLevel, ThePagerAsksForTheToolbarsSize)
{
    CustomBar& root = m_desk.Level(0);
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

TEST(VeryTallLevel, AMoveFarDownIsFoundBySixteenBits)
{
    // A row beyond 32,767 is told by 16 bits that also mean a row above the toolbar.
    constexpr int kCount = 1300;
    Desk desk("800x600+0+0");
    for (int i = 0; i < kCount; ++i)
        desk.MakeFile("item " + std::to_string(10000 + i));
    desk.Launch("0,600,0");
    CustomBar& root = desk.Level(0);
    root.OnItemCommand(ItemCommandMode::Select, kCount - 1);
    root.SetHotItem(-1);
    const RECT last = root.ButtonRect(kCount - 1);
    ASSERT_LT(static_cast<SHORT>(last.top + 9), 0) << "the toolbar is tall enough for the story";
    root.m_lastMessagePos = 0xFFFFFFFF;
    SendMessageW(root.m_toolbar, WM_MOUSEMOVE, 0, MAKELPARAM(last.left + 9, last.top + 9));
    EXPECT_EQ(desk.Hot(), "item 11299");
}

TEST_F(TallLevel, KeysScrollBackToTheTop)
{
    m_desk.Level(0).OnItemCommand(ItemCommandMode::Select, 60);
    EXPECT_GT(Position(), 0);
    m_desk.Level(0).OnItemCommand(ItemCommandMode::Select, 0);
    EXPECT_EQ(Position(), 0);
    m_desk.Level(0).OnItemCommand(ItemCommandMode::Select, -1);
    EXPECT_EQ(m_desk.Hot(), "");
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
