// Windows that go while they, or those around them, are being told of something: nothing may use them afterwards.
#include "message_log.h"

namespace
{

class Lifetime : public conformance::MessageTest
{
protected:
    /// Every such message to `window` (any for null) destroys `victim` and is otherwise left alone.
    void Destroy(HWND victim, UINT message, HWND window = nullptr)
    {
        m_handlers[message] = [=](HWND told, WPARAM, LPARAM) -> std::optional<LRESULT>
        {
            if (window == nullptr || told == window)
                DestroyWindow(victim);
            return std::nullopt;
        };
    }
};

// A child destroyed by a sibling's WM_DESTROY was asked for its handle.
TEST_F(Lifetime, ChildDestroyedByItsSiblingsDestructionIsDestroyedOnce)
{
    const HWND popup = Popup();
    const HWND first = Child(popup, "first");
    const HWND second = Child(popup, "second");
    Watch({WM_DESTROY, WM_NCDESTROY});
    Destroy(second, WM_DESTROY, first);
    DestroyWindow(popup);
    EXPECT_MESSAGES(({"popup: WM_DESTROY", "first: WM_DESTROY", "second: WM_DESTROY", "second: WM_NCDESTROY",
                      "first: WM_NCDESTROY", "popup: WM_NCDESTROY"}),
                    Take());
}

// A child was used after its parent had destroyed it instead of saying which cursor it wants there.
TEST_F(Lifetime, ChildDestroyedByItsParentsAnswer)
{
    const HWND popup = Popup();
    for (const UINT message : {WM_SETCURSOR, WM_MOUSEACTIVATE, WM_CONTEXTMENU})
    {
        const HWND child = Child(popup);
        Destroy(child, message, popup);
        SendMessageW(child, message, reinterpret_cast<WPARAM>(child), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        EXPECT_FALSE(IsWindow(child)) << message;
    }
}

// The active window was one that had just been destroyed by the one that was active before it.
TEST_F(Lifetime, WindowDestroyedInsteadOfBecomingActive)
{
    const HWND first = Popup("first", WS_POPUP | WS_VISIBLE);
    const HWND second = Popup("second", WS_POPUP | WS_VISIBLE);
    SetActiveWindow(first);
    Destroy(second, WM_ACTIVATE, first);
    SetActiveWindow(second);
    EXPECT_FALSE(IsWindow(second));
    EXPECT_NE(GetActiveWindow(), second);
    EXPECT_NE(GetFocus(), second);
}

// The search for the window under the pointer asked children that an answer before had destroyed.
TEST_F(Lifetime, ChildDestroyedByTheHitTestOfOneAboveIt)
{
    const HWND popup = Popup("popup", WS_POPUP | WS_VISIBLE);
    const HWND above = Child(popup, "above");
    const HWND below = Child(popup, "below");
    m_handlers[WM_NCHITTEST] = [&](HWND, WPARAM, LPARAM) -> std::optional<LRESULT>
    {
        DestroyWindow(below);
        return HTTRANSPARENT;
    };
    POINT point{15, 25}; // inside both
    ClientToScreen(popup, &point);
    WindowFromPoint(point);
    EXPECT_TRUE(IsWindow(above));
}

} // namespace
