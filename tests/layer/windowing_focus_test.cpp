// Focus and activation between this program and others.
#include "windowing_desk.h"

namespace
{

namespace headless = platform::headless;

struct Focus : Desk
{
};

TEST_F(Focus, ShowingTakesTheKeyboardAndHidingGivesItBack)
{
    EXPECT_FALSE(headless::HasKeyboard());
    const HWND window = ShownPopup(0, 0, 100, 100);
    EXPECT_TRUE(headless::HasKeyboard());
    EXPECT_EQ(GetForegroundWindow(), window);
    EXPECT_EQ(GetFocus(), window);
    DestroyWindow(window);
    EXPECT_FALSE(headless::HasKeyboard());
    EXPECT_EQ(GetForegroundWindow(), nullptr);
}

TEST_F(Focus, ShowingWithoutActivationLeavesTheKeyboard)
{
    const HWND window = Popup(0, 0, 100, 100);
    ShowWindow(window, SW_SHOWNOACTIVATE);
    Pump();
    EXPECT_FALSE(headless::HasKeyboard());
    Click(50, 50);
    Pump();
    EXPECT_TRUE(headless::HasKeyboard()) << "a click activates";
    EXPECT_EQ(LOWORD(Last(window, WM_ACTIVATE)->wParam), WA_CLICKACTIVE);
}

TEST_F(Focus, AnotherProgramTakingOverIsToldToEveryTopLevelWindow)
{
    const HWND root = ShownPopup(0, 0, 100, 100);
    const HWND level = ShownPopup(100, 0, 100, 100);
    m_records.clear();
    headless::ActivateOtherApplication();
    Pump();
    for (const HWND window : {root, level})
    {
        ASSERT_EQ(Count(window, WM_ACTIVATEAPP), 1);
        EXPECT_EQ(Last(window, WM_ACTIVATEAPP)->wParam, static_cast<WPARAM>(FALSE));
    }
    EXPECT_EQ(LOWORD(Last(level, WM_ACTIVATE)->wParam), WA_INACTIVE);
    EXPECT_EQ(GetActiveWindow(), nullptr);
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_EQ(Count(level, WM_KILLFOCUS), 1);

    m_records.clear();
    EXPECT_TRUE(SetForegroundWindow(root));
    EXPECT_TRUE(headless::HasKeyboard());
    EXPECT_EQ(Last(level, WM_ACTIVATEAPP)->wParam, static_cast<WPARAM>(TRUE));
    EXPECT_EQ(GetForegroundWindow(), root);
}

TEST_F(Focus, PressOutsideAllWindowsIsAnotherProgram)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    Click(500, 500);
    Pump();
    EXPECT_EQ(Last(window, WM_ACTIVATEAPP)->wParam, static_cast<WPARAM>(FALSE));
}

TEST_F(Focus, MovesBetweenLevelsWithoutTouchingTheProgramsActivation)
{
    const HWND root = ShownPopup(0, 0, 100, 100);
    const HWND rootList = Child(root, 0, 0, 100, 100);
    SetFocus(rootList);
    const HWND level = ShownPopup(100, 0, 100, 100);
    const HWND levelList = Child(level, 0, 0, 100, 100);
    SetFocus(levelList);
    m_records.clear();
    SetFocus(rootList);
    EXPECT_EQ(GetActiveWindow(), root);
    EXPECT_EQ(Count(root, WM_ACTIVATEAPP), 0);
    EXPECT_EQ(Count(levelList, WM_KILLFOCUS), 1);
    EXPECT_EQ(Count(rootList, WM_SETFOCUS), 1);
    EXPECT_EQ(GetFocus(), rootList);
    SetFocus(levelList);
    DestroyWindow(level);
    EXPECT_EQ(GetActiveWindow(), root) << "the next level takes over";
    EXPECT_TRUE(headless::HasKeyboard());
}

TEST_F(Focus, MouseActivateMayRefuseActivation)
{
    const HWND root = ShownPopup(0, 0, 100, 100);
    const HWND level = ShownPopup(100, 0, 100, 100);
    LRESULT answer = MA_NOACTIVATE;
    m_handlers[WM_MOUSEACTIVATE] = [&](HWND, WPARAM, LPARAM) -> std::optional<LRESULT> { return answer; };
    Click(50, 50);
    Pump();
    EXPECT_EQ(GetActiveWindow(), level);
    EXPECT_EQ(Count(root, WM_LBUTTONDOWN), 1) << "only the activation is refused";
    answer = MA_ACTIVATEANDEAT;
    Click(50, 50);
    Pump();
    EXPECT_EQ(GetActiveWindow(), root);
    EXPECT_EQ(Count(root, WM_LBUTTONDOWN), 1) << "the press was eaten";
}

TEST_F(Focus, DisabledWindowsGetNeitherFocusNorKeys)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    const HWND child = Child(window, 0, 0, 50, 50);
    SetFocus(child);
    EnableWindow(child, FALSE);
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_EQ(SetFocus(child), nullptr);
    EnableWindow(child, TRUE);
    SetFocus(child);
    EnableWindow(window, FALSE);
    headless::PressKey(VK_RETURN);
    headless::ReleaseKey(VK_RETURN);
    Pump();
    EXPECT_EQ(Count(child, WM_KEYDOWN), 0) << "a disabled menu does not act on keys";
}

// The window that was to become active again was used after it had been destroyed by what it, or another, was told.
TEST_F(Focus, WindowThatGoesWhenTheProgramComesBackIsNotActivated)
{
    for (const UINT message : {WM_ACTIVATEAPP, WM_ACTIVATE})
    {
        const HWND root = ShownPopup(0, 0, 100, 100);
        const HWND level = ShownPopup(100, 0, 100, 100);
        headless::ActivateOtherApplication();
        Pump();
        m_handlers[message] = [&](HWND, WPARAM how, LPARAM) -> std::optional<LRESULT>
        {
            if (LOWORD(how) != 0)
                DestroyWindow(level);
            return 0;
        };
        platform::screen::TakeKeyboard(0);
        Pump();
        m_handlers.clear();
        EXPECT_FALSE(IsWindow(level));
        EXPECT_TRUE(GetActiveWindow() == nullptr || GetActiveWindow() == root);
        DestroyWindow(root);
    }
}

TEST_F(Focus, DialogsOwnerGetsActivationBack)
{
    const HWND owner = ShownPopup(0, 0, 100, 100);
    const HWND box = CreateWindowExW(0, TEXT("DeskWindow"), TEXT("Box"), WS_POPUP | WS_CAPTION | WS_VISIBLE, 10, 10, 50,
                                     50, owner, nullptr, nullptr, nullptr);
    EnableWindow(owner, FALSE);
    Pump();
    EXPECT_EQ(GetActiveWindow(), box);
    EXPECT_EQ(headless::Windows().front().kind, platform::screen::WindowKind::Managed);
    EXPECT_EQ(headless::Windows().front().title, u"Box");
    headless::RequestClose(headless::Windows().front().id);
    EnableWindow(owner, TRUE);
    Pump();
    EXPECT_FALSE(IsWindow(box));
    EXPECT_EQ(GetActiveWindow(), owner);
}

} // namespace
