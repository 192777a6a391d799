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

} // namespace
