// Windows: what they are told when they are made, moved, reparented and destroyed, and what is said about them.
#include "message_log.h"

namespace
{

using conformance::Lines;

class Windows : public conformance::MessageTest
{
protected:
    static RECT ScreenRect(HWND window)
    {
        RECT rect{};
        EXPECT_TRUE(GetWindowRect(window, &rect));
        return rect;
    }
};

constexpr UINT kParentNotify = 0x0210;
const std::vector<UINT> kLifetime = {WM_NCCREATE, WM_NCCALCSIZE, WM_CREATE,    WM_SIZE,
                                     WM_MOVE,     WM_DESTROY,    WM_NCDESTROY, kParentNotify};
const std::vector<UINT> kPlacing = {WM_WINDOWPOSCHANGING, WM_NCCALCSIZE, WM_WINDOWPOSCHANGED, WM_MOVE, WM_SIZE};

bool operator==(const RECT& a, const RECT& b)
{
    return EqualRect(&a, &b) != FALSE;
}

TEST_F(Windows, CreationOfAHiddenPopUpAndAChild)
{
    Watch(kLifetime);
    const HWND popup = Popup();
    EXPECT_MESSAGES(
        ({"popup: WM_NCCREATE", "popup: WM_NCCALCSIZE", "popup: WM_CREATE", "popup: WM_SIZE", "popup: WM_MOVE"}),
        Take());
    Child(popup);
    EXPECT_MESSAGES(({"child: WM_NCCREATE", "child: WM_NCCALCSIZE", "child: WM_CREATE", "child: WM_SIZE",
                      "child: WM_MOVE", "popup: WM_PARENTNOTIFY"}),
                    Take());
}

TEST_F(Windows, CreationThatIsRefused)
{
    Watch(kLifetime);
    m_handlers[WM_NCCREATE] = [](HWND, WPARAM, LPARAM) -> std::optional<LRESULT> { return FALSE; };
    EXPECT_EQ(Popup("refused"), nullptr);
    EXPECT_MESSAGES(({"refused: WM_NCCREATE", "refused: WM_NCDESTROY"}), Take());
    m_handlers.clear();
    m_handlers[WM_CREATE] = [](HWND, WPARAM, LPARAM) -> std::optional<LRESULT> { return -1; };
    EXPECT_EQ(Popup("refused"), nullptr);
    EXPECT_MESSAGES(({"refused: WM_NCCREATE", "refused: WM_NCCALCSIZE", "refused: WM_CREATE", "refused: WM_NCDESTROY"}),
                    Take());
}

TEST_F(Windows, DestructionGoesFromTheParentDownAndEndsFromTheChildrenUp)
{
    const HWND popup = Popup();
    const HWND child = Child(popup);
    Child(child, "grandchild");
    Watch({WM_DESTROY, WM_NCDESTROY});
    EXPECT_TRUE(DestroyWindow(popup));
    EXPECT_MESSAGES(({"popup: WM_DESTROY", "child: WM_DESTROY", "grandchild: WM_DESTROY", "grandchild: WM_NCDESTROY",
                      "child: WM_NCDESTROY", "popup: WM_NCDESTROY"}),
                    Take());
    EXPECT_FALSE(IsWindow(popup));
    EXPECT_FALSE(IsWindow(child));
    EXPECT_FALSE(DestroyWindow(popup));
}

TEST_F(Windows, OwnedWindowsGoWithTheirOwner)
{
    const HWND owner = Popup("owner");
    const HWND owned = Create("owned", WS_POPUP, {0, 0, 50, 50}, owner);
    EXPECT_EQ(GetParent(owned), owner);
    Watch({WM_DESTROY});
    DestroyWindow(owner);
    EXPECT_MESSAGES(({"owned: WM_DESTROY", "owner: WM_DESTROY"}), Take());
}

TEST_F(Windows, CloseDestroysUnlessHandled)
{
    const HWND popup = Popup();
    m_handlers[WM_CLOSE] = [](HWND, WPARAM, LPARAM) -> std::optional<LRESULT> { return 0; };
    SendMessageW(popup, WM_CLOSE, 0, 0);
    EXPECT_TRUE(IsWindow(popup));
    m_handlers.clear();
    SendMessageW(popup, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(popup));
}

TEST_F(Windows, BorderIsOnePixelAroundTheClientArea)
{
    const HWND popup = Popup("popup", WS_POPUP | WS_BORDER);
    RECT client{};
    GetClientRect(popup, &client);
    EXPECT_TRUE((client == RECT{0, 0, 198, 278}));
    POINT origin{0, 0};
    ClientToScreen(popup, &origin);
    EXPECT_EQ(origin.x, 101);
    EXPECT_EQ(origin.y, 121);
    RECT frame{0, 0, 100, 50};
    EXPECT_TRUE(AdjustWindowRect(&frame, WS_POPUP | WS_BORDER, FALSE));
    EXPECT_TRUE((frame == RECT{-1, -1, 101, 51}));
    RECT bare{0, 0, 100, 50};
    AdjustWindowRect(&bare, WS_POPUP, FALSE);
    EXPECT_TRUE((bare == RECT{0, 0, 100, 50}));
}

TEST_F(Windows, PlacingTellsOnlyWhatChanges)
{
    const HWND popup = Popup();
    Watch(kPlacing);
    const UINT quiet = SWP_NOZORDER | SWP_NOACTIVATE;
    SetWindowPos(popup, nullptr, 200, 220, 0, 0, SWP_NOSIZE | quiet);
    EXPECT_MESSAGES(({"popup: WM_WINDOWPOSCHANGING", "popup: WM_WINDOWPOSCHANGED", "popup: WM_MOVE"}), Take());
    SetWindowPos(popup, nullptr, 0, 0, 50, 60, SWP_NOMOVE | quiet);
    EXPECT_MESSAGES(
        ({"popup: WM_WINDOWPOSCHANGING", "popup: WM_NCCALCSIZE", "popup: WM_WINDOWPOSCHANGED", "popup: WM_SIZE"}),
        Take());
    SetWindowPos(popup, nullptr, 200, 220, 50, 60, quiet);
    EXPECT_MESSAGES(({"popup: WM_WINDOWPOSCHANGING"}), Take()) << "nothing has changed";
    SetWindowPos(popup, nullptr, 1, 2, 30, 40, quiet | SWP_NOREDRAW);
    EXPECT_MESSAGES(({"popup: WM_WINDOWPOSCHANGING", "popup: WM_NCCALCSIZE", "popup: WM_WINDOWPOSCHANGED",
                      "popup: WM_MOVE", "popup: WM_SIZE"}),
                    Take());
    EXPECT_TRUE((ScreenRect(popup) == RECT{1, 2, 31, 42}));
}

TEST_F(Windows, PositionCanBeCorrectedWhileItChanges)
{
    const HWND popup = Popup();
    m_handlers[WM_WINDOWPOSCHANGING] = [](HWND, WPARAM, LPARAM lParam) -> std::optional<LRESULT>
    {
        reinterpret_cast<WINDOWPOS*>(lParam)->x = 500;
        return 0;
    };
    SetWindowPos(popup, nullptr, 1, 2, 3, 4, SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_TRUE((ScreenRect(popup) == RECT{500, 2, 503, 6}));
}

TEST_F(Windows, ChildrenArePlacedInTheirParentsClientArea)
{
    const HWND popup = Popup("popup", WS_POPUP | WS_BORDER);
    const HWND child = Child(popup);
    EXPECT_TRUE((ScreenRect(child) == RECT{111, 141, 161, 171}));
    SetWindowPos(popup, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_TRUE((ScreenRect(child) == RECT{11, 21, 61, 51})) << "children move along";
    POINT points[] = {{0, 0}, {5, 6}};
    MapWindowPoints(child, popup, points, 2);
    EXPECT_EQ(points[1].x, 15);
    EXPECT_EQ(points[1].y, 26);
    MapWindowPoints(popup, nullptr, points, 2);
    EXPECT_EQ(points[0].x, 11);
}

TEST_F(Windows, ParentCanBeChanged)
{
    const HWND popup = Popup();
    const HWND other = Create("other", WS_POPUP, {500, 500, 700, 700});
    const HWND child = Child(popup);
    EXPECT_EQ(SetParent(child, other), popup);
    EXPECT_EQ(GetParent(child), other);
    EXPECT_TRUE((ScreenRect(child) == RECT{510, 520, 560, 550})) << "it keeps its place in the new parent";
    EXPECT_FALSE(IsChild(popup, child));
    EXPECT_TRUE(IsChild(other, child));
    EXPECT_NE(GetWindowLongPtrW(child, GWL_STYLE) & WS_VISIBLE, 0);
    DestroyWindow(popup);
    EXPECT_TRUE(IsWindow(child)) << "the old parent does not take it along";
    const HWND second = Child(other, "second");
    EXPECT_EQ(SetParent(second, child), other);
    EXPECT_EQ(GetAncestor(second, GA_ROOT), other);
}

TEST_F(Windows, ChildrenAreStackedInTheirOrderOfCreation)
{
    const HWND popup = Popup("popup", WS_POPUP | WS_VISIBLE);
    const HWND a = Child(popup, "a");
    const HWND b = Child(popup, "b");
    const HWND c = Child(popup, "c");
    POINT point{15, 25}; // in all three
    ClientToScreen(popup, &point);
    EXPECT_EQ(WindowFromPoint(point), a);
    const UINT still = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
    SetWindowPos(c, HWND_TOP, 0, 0, 0, 0, still);
    EXPECT_EQ(WindowFromPoint(point), c);
    SetWindowPos(a, b, 0, 0, 0, 0, still);
    SetWindowPos(c, HWND_BOTTOM, 0, 0, 0, 0, still);
    EXPECT_EQ(WindowFromPoint(point), b) << "with a below it";
    DestroyWindow(b);
    EXPECT_EQ(WindowFromPoint(point), a) << "with c below it";
}

TEST_F(Windows, StylesIdsTextAndData)
{
    const HWND popup = Popup("popup", WS_POPUP | WS_BORDER);
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongPtrW(popup, GWL_STYLE)),
              static_cast<DWORD>(WS_POPUP | WS_BORDER | WS_CLIPSIBLINGS));
    const HWND child = Child(popup, "child", 0, 42);
    EXPECT_EQ(GetDlgCtrlID(child), 42);
    EXPECT_EQ(GetDlgItem(popup, 42), child);
    EXPECT_EQ(GetDlgItem(popup, 43), nullptr);
    EXPECT_EQ(SetWindowLongPtrW(popup, GWLP_USERDATA, 7), 0);
    EXPECT_EQ(GetWindowLongPtrW(popup, GWLP_USERDATA), 7);
    EXPECT_EQ(SetWindowLongPtrW(popup, sizeof(LONG_PTR), 9), 0);
    EXPECT_EQ(GetWindowLongPtrW(popup, sizeof(LONG_PTR)), 9);
    EXPECT_EQ(GetWindowLongPtrW(popup, 0), 0);
    SetLastError(0);
    EXPECT_EQ(GetWindowLongPtrW(popup, 2 * sizeof(LONG_PTR)), 0);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_INDEX));

    WCHAR text[8];
    EXPECT_EQ(GetWindowTextW(popup, text, 8), 4);
    EXPECT_TRUE(SetWindowTextW(popup, TEXT("longer text")));
    EXPECT_EQ(GetWindowTextLengthW(popup), 11);
    EXPECT_EQ(GetWindowTextW(popup, text, 8), 7) << "cut to the buffer, with its end";
    EXPECT_EQ(text[7], 0);
}

WNDPROC g_previous = nullptr;

LRESULT CALLBACK AnswerOneMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return message == WM_USER ? 77 : CallWindowProcW(g_previous, window, message, wParam, lParam);
}

TEST_F(Windows, ProcedureCanBeReplaced)
{
    const HWND popup = Popup();
    g_previous = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(popup, GWLP_WNDPROC));
    SetWindowLongPtrW(popup, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(AnswerOneMessage));
    EXPECT_EQ(SendMessageW(popup, WM_USER, 0, 0), 77);
    EXPECT_EQ(GetWindowTextLengthW(popup), 4) << "the rest goes on to the previous procedure";
}

TEST_F(Windows, ClassesAreRegisteredOnceAndOnlyFreedWithoutWindows)
{
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSEXW again{};
    again.cbSize = sizeof(again);
    again.lpfnWndProc = DefWindowProcW;
    again.hInstance = instance;
    again.lpszClassName = TEXT("LOGGEDWINDOW");
    EXPECT_EQ(RegisterClassExW(&again), 0);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_CLASS_ALREADY_EXISTS)) << "letter case does not count";
    Popup();
    EXPECT_FALSE(UnregisterClassW(TEXT("LoggedWindow"), instance));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_CLASS_HAS_WINDOWS));
    EXPECT_EQ(
        CreateWindowExW(0, TEXT("No such class"), nullptr, WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, instance, nullptr),
        nullptr);
    // Windows says the former, Wine the latter.
    EXPECT_TRUE(GetLastError() == ERROR_CANNOT_FIND_WND_CLASS || GetLastError() == ERROR_CLASS_DOES_NOT_EXIST);
    EXPECT_EQ(Create("orphan", WS_CHILD, {0, 0, 1, 1}), nullptr) << "a child needs a parent";
}

TEST_F(Windows, HandlesThatNameNoWindow)
{
    const HWND none = reinterpret_cast<HWND>(static_cast<LONG_PTR>(0x7FFFFF00));
    RECT rect{};
    EXPECT_FALSE(IsWindow(none));
    EXPECT_FALSE(GetWindowRect(none, &rect));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
    EXPECT_FALSE(GetWindowRect(nullptr, &rect));
    EXPECT_FALSE(PostMessageW(none, WM_USER, 0, 0));
    EXPECT_EQ(SendMessageW(none, WM_USER, 0, 0), 0);
    EXPECT_FALSE(ShowWindow(none, SW_SHOW));
    EXPECT_EQ(SetFocus(none), nullptr);
    EXPECT_FALSE(SetForegroundWindow(none));
    EXPECT_EQ(SetTimer(none, 1, 100, nullptr), 0U);
    EXPECT_EQ(GetParent(none), nullptr);
}

TEST_F(Windows, WindowFromPointFindsTheDeepestVisibleOne)
{
    const HWND popup = Popup();
    SetWindowPos(popup, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
    const HWND child = Child(popup);
    const HWND hidden = Child(popup, "hidden", 0);
    SetWindowPos(hidden, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    EXPECT_EQ(WindowFromPoint({115, 145}), child);
    EXPECT_EQ(WindowFromPoint({105, 125}), popup);
}

TEST(Rectangles, EmptyOnesCountForNothing)
{
    const RECT a{0, 0, 10, 10};
    const RECT beside{10, 0, 20, 10};
    const RECT inverted{5, 5, 4, 9};
    RECT result{1, 2, 3, 4};
    EXPECT_FALSE(IntersectRect(&result, &a, &beside)) << "edges that touch share no pixel";
    EXPECT_TRUE((result == RECT{0, 0, 0, 0}));
    EXPECT_TRUE(IsRectEmpty(&inverted));
    EXPECT_TRUE(PtInRect(&a, POINT{0, 0}));
    EXPECT_FALSE(PtInRect(&a, POINT{10, 5})) << "right and bottom edges are outside";
    RECT grown = a;
    InflateRect(&grown, 2, -1);
    EXPECT_TRUE((grown == RECT{-2, 1, 12, 9}));
}

} // namespace
