// Showing, activation, focus, enabling and capture: who is told what, in which order.
#include "message_log.h"

namespace
{

using conformance::Lines;

class Activation : public conformance::MessageTest
{
protected:
    HWND Shown(const char* name = "popup", int x = 100)
    {
        const HWND window = Create(name, WS_POPUP, {x, 100, x + 100, 200});
        ShowWindow(window, SW_SHOW);
        SetForegroundWindow(window);
        Pump();
        return window;
    }
};

const std::vector<UINT> kActivation = {WM_ACTIVATEAPP, WM_NCACTIVATE, WM_ACTIVATE, WM_SETFOCUS, WM_KILLFOCUS};

TEST_F(Activation, ShowingActivatesAndFocuses)
{
    const HWND popup = Popup();
    Watch({WM_SHOWWINDOW, WM_WINDOWPOSCHANGING, WM_WINDOWPOSCHANGED, WM_ACTIVATE, WM_SETFOCUS});
    EXPECT_FALSE(ShowWindow(popup, SW_SHOW)) << "it was hidden";
    auto lines = Take();
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    EXPECT_MESSAGES(({"popup: WM_SHOWWINDOW 1", "popup: WM_WINDOWPOSCHANGING", "popup: WM_ACTIVATE 1",
                      "popup: WM_SETFOCUS", "popup: WM_WINDOWPOSCHANGED"}),
                    lines);
    EXPECT_EQ(GetActiveWindow(), popup);
    EXPECT_EQ(GetFocus(), popup);
    EXPECT_TRUE(ShowWindow(popup, SW_SHOW));
    EXPECT_MESSAGES((Lines{}), Take()) << "it is shown already";
}

TEST_F(Activation, MovesFromOneWindowToTheNext)
{
    const HWND first = Shown("first");
    const HWND second = Shown("second", 300);
    Watch(kActivation);
    SetActiveWindow(first);
    EXPECT_MESSAGES(({"second: WM_NCACTIVATE 0", "second: WM_ACTIVATE 0", "first: WM_NCACTIVATE 1",
                      "first: WM_ACTIVATE 1", "second: WM_KILLFOCUS", "first: WM_SETFOCUS"}),
                    Take());
    SetActiveWindow(first);
    EXPECT_MESSAGES((Lines{}), Take());
    EXPECT_EQ(SetActiveWindow(second), first) << "the previous one is returned";
}

TEST_F(Activation, FocusBringsItsTopLevelWindowAlong)
{
    const HWND first = Shown("first");
    const HWND child = Child(first);
    Shown("second", 300);
    Watch({WM_ACTIVATE, WM_SETFOCUS, WM_KILLFOCUS});
    SetFocus(child);
    EXPECT_EQ(GetFocus(), child);
    EXPECT_EQ(GetActiveWindow(), first);
    EXPECT_MESSAGES(({"second: WM_ACTIVATE 0", "first: WM_ACTIVATE 1", "second: WM_KILLFOCUS", "first: WM_SETFOCUS",
                      "first: WM_KILLFOCUS", "child: WM_SETFOCUS"}),
                    Take());
}

TEST_F(Activation, WindowThatIsHiddenOrDestroyedPassesActivationOn)
{
    const HWND first = Shown("first");
    const HWND second = Shown("second", 300);
    const HWND third = Shown("third", 500);
    ShowWindow(third, SW_HIDE);
    EXPECT_EQ(GetActiveWindow(), second);
    DestroyWindow(second);
    EXPECT_EQ(GetActiveWindow(), first);
    EXPECT_EQ(GetFocus(), first);
}

TEST_F(Activation, FocusLeavesAChildThatIsHidden)
{
    const HWND popup = Shown();
    const HWND child = Child(popup);
    SetFocus(child);
    ShowWindow(child, SW_HIDE);
    EXPECT_EQ(GetFocus(), popup);
}

TEST_F(Activation, DisabledWindows)
{
    const HWND popup = Shown();
    const HWND child = Child(popup);
    SetFocus(child);
    Watch({WM_CANCELMODE, WM_ENABLE, WM_KILLFOCUS});
    EXPECT_FALSE(EnableWindow(child, FALSE)) << "it was enabled";
    EXPECT_MESSAGES(({"child: WM_CANCELMODE", "child: WM_KILLFOCUS", "child: WM_ENABLE 0"}), Take());
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_EQ(SetFocus(child), nullptr);
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_FALSE(IsWindowEnabled(child));
    EXPECT_TRUE(EnableWindow(child, FALSE));
    EXPECT_MESSAGES(({"child: WM_CANCELMODE"}), Take());
    EXPECT_TRUE(EnableWindow(child, TRUE));
    EXPECT_MESSAGES(({"child: WM_ENABLE 1"}), Take());
    EnableWindow(popup, FALSE);
    EXPECT_TRUE(IsWindowEnabled(child)) << "only the window itself is marked";
    EnableWindow(popup, TRUE);
}

TEST_F(Activation, CaptureGoesFromWindowToWindow)
{
    const HWND popup = Shown();
    const HWND child = Child(popup);
    Watch({WM_CAPTURECHANGED});
    EXPECT_EQ(SetCapture(popup), nullptr);
    EXPECT_MESSAGES((Lines{}), Take());
    EXPECT_EQ(SetCapture(child), popup);
    EXPECT_MESSAGES(({"popup: WM_CAPTURECHANGED"}), Take());
    EXPECT_TRUE(ReleaseCapture());
    EXPECT_MESSAGES(({"child: WM_CAPTURECHANGED"}), Take());
    EXPECT_EQ(GetCapture(), nullptr);
    SetCapture(child);
    DestroyWindow(child);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(Activation, VisibilityNeedsVisibleParents)
{
    const HWND popup = Popup();
    const HWND child = Child(popup);
    EXPECT_FALSE(IsWindowVisible(child));
    ShowWindow(popup, SW_SHOWNOACTIVATE);
    EXPECT_TRUE(IsWindowVisible(child));
    ShowWindow(child, SW_HIDE);
    EXPECT_FALSE(IsWindowVisible(child));
    EXPECT_TRUE(IsWindowVisible(popup));
}

} // namespace
