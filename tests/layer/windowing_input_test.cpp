// Input on the headless screen: which window hears of it, and when.
#include "windowing_desk.h"

#include "windowsx.h"

namespace
{

namespace headless = platform::headless;

struct Input : Desk
{
};

TEST_F(Input, ClickGoesToTheDeepestEnabledWindowInClientCoordinates)
{
    const HWND window = ShownPopup(100, 100, 200, 200, WS_POPUP | WS_BORDER);
    const HWND child = Child(window, 10, 10, 50, 50);
    Click(131, 141);
    Pump();
    ASSERT_EQ(Count(child, WM_LBUTTONDOWN), 1);
    EXPECT_EQ(Count(window, WM_LBUTTONDOWN), 0);
    const Record& press = *Last(child, WM_LBUTTONDOWN);
    EXPECT_EQ(GET_X_LPARAM(press.lParam), 20);
    EXPECT_EQ(GET_Y_LPARAM(press.lParam), 30);
    EXPECT_EQ(press.wParam, static_cast<WPARAM>(MK_LBUTTON));
    EXPECT_EQ(Last(child, WM_LBUTTONUP)->wParam, 0U);

    EnableWindow(child, FALSE);
    Click(131, 141);
    Pump();
    EXPECT_EQ(Count(child, WM_LBUTTONDOWN), 1);
    EXPECT_EQ(Count(window, WM_LBUTTONDOWN), 1) << "a disabled child lets the mouse through";
    EnableWindow(window, FALSE);
    Click(131, 141);
    Pump();
    EXPECT_EQ(Count(window, WM_LBUTTONDOWN), 1) << "a disabled top-level window gets nothing";
}

TEST_F(Input, ReleaseWithoutPressIsNotReported)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    headless::MoveMouse(50, 50);
    headless::ReleaseButton();
    Pump();
    EXPECT_EQ(Count(window, WM_LBUTTONUP), 0);
}

TEST_F(Input, CaptureTakesTheMouseBeyondTheWindow)
{
    const HWND window = ShownPopup(100, 100, 50, 50);
    headless::MoveMouse(110, 110);
    headless::PressButton();
    SetCapture(window);
    headless::MoveMouse(10, 20);
    Pump();
    EXPECT_EQ(GET_X_LPARAM(Last(window, WM_MOUSEMOVE)->lParam), -90);
}

TEST_F(Input, QueuedMovesAreOne)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    m_records.clear();
    for (int x = 0; x < 100; ++x)
        headless::MoveMouse(x, 7);
    Pump();
    EXPECT_EQ(Count(window, WM_MOUSEMOVE), 1);
    EXPECT_EQ(GET_X_LPARAM(Last(window, WM_MOUSEMOVE)->lParam), 99);
    EXPECT_EQ(GetMessagePos(), static_cast<DWORD>(MAKELONG(99, 7)));
}

// A hit test that took messages had the next event dropped in place of its own, which came twice.
TEST_F(Input, AHitTestMayTakeMessagesItself)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    headless::MoveMouse(50, 50);
    Pump();
    std::vector<UINT> taken;
    const auto take = [&](UINT first, UINT last)
    {
        MSG message{};
        if (!PeekMessageW(&message, nullptr, first, last, PM_REMOVE))
            return false;
        taken.push_back(message.message);
        DispatchMessageW(&message);
        return true;
    };
    std::function<void()> whenAsked;
    m_handlers[WM_NCHITTEST] = [&](HWND, WPARAM, LPARAM) -> std::optional<LRESULT>
    {
        if (const auto work = std::exchange(whenAsked, nullptr))
            work();
        return HTCLIENT;
    };

    headless::PressButton();
    headless::ReleaseButton();
    whenAsked = [&] { take(WM_MOUSEFIRST, WM_MOUSELAST); };
    while (take(WM_MOUSEFIRST, WM_MOUSELAST))
        continue;
    EXPECT_EQ(taken, (std::vector<UINT>{WM_LBUTTONDOWN, WM_LBUTTONUP}));

    taken.clear();
    headless::PressButton();
    headless::PressKey(VK_F2);
    whenAsked = [&] { take(WM_MOUSEFIRST, WM_MOUSELAST); };
    EXPECT_TRUE(take(WM_KEYFIRST, WM_KEYLAST)) << "behind the press that went";
    Pump();

    headless::MoveMouse(60, 60);
    whenAsked = [&]
    {
        headless::MoveMouse(70, 70);
        take(WM_KEYFIRST, WM_KEYLAST);
    };
    Pump();
    EXPECT_EQ(GET_X_LPARAM(Last(window, WM_MOUSEMOVE)->lParam), 70) << "a move that came meanwhile is the one";
}

TEST_F(Input, DoubleClickNeedsTheSamePlaceAndATimelySecondPress)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    Click(10, 10);
    platform::AdvanceManualClock(GetDoubleClickTime());
    Click(11, 10);
    Pump();
    EXPECT_EQ(Count(window, WM_LBUTTONDBLCLK), 1);
    Click(10, 10);
    Pump();
    EXPECT_EQ(Count(window, WM_LBUTTONDBLCLK), 1) << "a third click starts anew";
    platform::AdvanceManualClock(GetDoubleClickTime() + 1);
    Click(10, 10);
    Pump();
    EXPECT_EQ(Count(window, WM_LBUTTONDBLCLK), 1);
    Click(50, 10);
    Pump();
    EXPECT_EQ(Count(window, WM_LBUTTONDBLCLK), 1);
}

TEST_F(Input, WheelGoesToTheFocusAndBubblesToTheParent)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    const HWND child = Child(window, 0, 0, 50, 50);
    SetFocus(child);
    headless::MoveMouse(80, 80);
    headless::TurnWheel(-120);
    Pump();
    ASSERT_EQ(Count(child, WM_MOUSEWHEEL), 1);
    ASSERT_EQ(Count(window, WM_MOUSEWHEEL), 1);
    EXPECT_EQ(static_cast<short>(HIWORD(Last(window, WM_MOUSEWHEEL)->wParam)), -120);
    EXPECT_EQ(GET_X_LPARAM(Last(window, WM_MOUSEWHEEL)->lParam), 80);
}

TEST_F(Input, LeavingIsToldOnce)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    headless::MoveMouse(50, 50);
    Pump();
    TRACKMOUSEEVENT track{sizeof(track), TME_LEAVE, window, 0};
    ASSERT_TRUE(TrackMouseEvent(&track));
    headless::MoveMouse(500, 500);
    Pump();
    EXPECT_EQ(Count(window, WM_MOUSELEAVE), 1);
    headless::MoveMouse(50, 50);
    headless::MoveMouse(500, 500);
    Pump();
    EXPECT_EQ(Count(window, WM_MOUSELEAVE), 1) << "tracking ends with the message";
}

TEST_F(Input, WindowThatAppearsUnderAStillPointerHearsOfIt)
{
    headless::MoveMouse(50, 50);
    const HWND window = ShownPopup(0, 0, 100, 100);
    EXPECT_EQ(Count(window, WM_MOUSEMOVE), 1);
    const HWND child = Child(window, 40, 40, 30, 30);
    Pump();
    EXPECT_EQ(Count(child, WM_MOUSEMOVE), 1) << "children that come or move count too";
}

TEST_F(Input, AWindowThatGoesLeavesNoPointerBehind)
{
    const HWND gone = ShownPopup(0, 0, 100, 100);
    headless::MoveMouse(50, 50);
    Pump();
    DestroyWindow(gone);
    headless::MoveMouse(500, 500);
    Pump();
    const HWND child = Child(ShownPopup(0, 0, 100, 100), 40, 40, 30, 30);
    Pump();
    EXPECT_EQ(Count(child, WM_MOUSEMOVE), 0) << "the pointer is where it was last seen no more";
}

TEST_F(Input, ContextMenuComesFromTheRightButtonAndTheKeyboard)
{
    const HWND window = ShownPopup(100, 100, 100, 100);
    const HWND child = Child(window, 0, 0, 50, 50);
    SetFocus(child);
    headless::MoveMouse(120, 130);
    headless::PressButton(platform::screen::Button::Right);
    headless::ReleaseButton(platform::screen::Button::Right);
    Pump();
    ASSERT_EQ(Count(window, WM_CONTEXTMENU), 1) << "a child's goes on to its parent";
    EXPECT_EQ(Last(window, WM_CONTEXTMENU)->wParam, reinterpret_cast<WPARAM>(child));
    EXPECT_EQ(GET_X_LPARAM(Last(window, WM_CONTEXTMENU)->lParam), 120);
    headless::PressKey(VK_APPS);
    headless::ReleaseKey(VK_APPS);
    Pump();
    EXPECT_EQ(Count(window, WM_CONTEXTMENU), 2);
    EXPECT_EQ(Last(window, WM_CONTEXTMENU)->lParam, -1);
    headless::PressKey(VK_SHIFT);
    headless::PressKey(VK_F10);
    headless::ReleaseKey(VK_F10);
    headless::ReleaseKey(VK_SHIFT);
    Pump();
    EXPECT_EQ(Count(window, WM_CONTEXTMENU), 3);
}

TEST_F(Input, KeysMakeMessagesAndCharacters)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    headless::PressKey('A', u"a");
    Pump();
    EXPECT_EQ(Last(window, WM_KEYDOWN)->wParam, static_cast<WPARAM>('A'));
    EXPECT_EQ(Last(window, WM_CHAR)->wParam, static_cast<WPARAM>('a'));
    EXPECT_TRUE(GetKeyState('A') < 0);
    headless::ReleaseKey('A');
    Pump();
    EXPECT_EQ(Count(window, WM_KEYUP), 1);
    EXPECT_FALSE(GetKeyState('A') < 0);

    headless::PressKey(VK_CONTROL);
    headless::PressKey('C', u"c");
    Pump();
    EXPECT_EQ(Last(window, WM_CHAR)->wParam, 3U) << "Control makes control characters";
    headless::ReleaseKey('C');
    headless::ReleaseKey(VK_CONTROL);

    headless::PressKey(VK_MENU);
    headless::PressKey('F', u"f");
    Pump();
    EXPECT_EQ(Last(window, WM_SYSKEYDOWN)->wParam, static_cast<WPARAM>('F'));
    EXPECT_EQ(Last(window, WM_SYSCHAR)->wParam, static_cast<WPARAM>('f'));
    EXPECT_NE(Last(window, WM_SYSKEYDOWN)->lParam & (1 << 29), 0);
    headless::ReleaseKey('F');
    headless::ReleaseKey(VK_MENU);
    Pump();

    keybd_event(VK_MENU, 0, KEYEVENTF_EXTENDEDKEY, 0);
    Pump();
    EXPECT_TRUE(GetKeyState(VK_MENU) < 0);
    keybd_event(VK_MENU, 0, KEYEVENTF_EXTENDEDKEY | KEYEVENTF_KEYUP, 0);
    Pump();
    EXPECT_FALSE(GetKeyState(VK_MENU) < 0);
}

} // namespace
