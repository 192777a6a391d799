// Windows that go while they are being told of something, where the layer's own ways lead there.
#include "windowing_desk.h"

namespace
{

struct WindowLifetime : Desk
{
};

// A window hidden while it had the capture was used after it had been destroyed by the loss of it.
TEST_F(WindowLifetime, HiddenWindowDestroyedByTheLossOfCapture)
{
    const HWND popup = ShownPopup(0, 0, 100, 100);
    const HWND child = Child(popup, 0, 0, 50, 50);
    SetCapture(child);
    m_handlers[WM_CAPTURECHANGED] = [&](HWND, WPARAM, LPARAM) -> std::optional<LRESULT>
    {
        DestroyWindow(child);
        return 0;
    };
    ShowWindow(child, SW_HIDE);
    EXPECT_FALSE(IsWindow(child));
    EXPECT_TRUE(IsWindow(popup));
}

// A child that lost the capture in its destruction was used after its parent had been destroyed by that.
TEST_F(WindowLifetime, ParentDestroyedByTheLossOfCapture)
{
    const HWND popup = ShownPopup(0, 0, 100, 100);
    const HWND child = Child(popup, 0, 0, 50, 50);
    SetCapture(child);
    m_handlers[WM_CAPTURECHANGED] = [&](HWND, WPARAM, LPARAM) -> std::optional<LRESULT>
    {
        DestroyWindow(popup);
        return 0;
    };
    DestroyWindow(child);
    EXPECT_FALSE(IsWindow(child));
    EXPECT_FALSE(IsWindow(popup));
    EXPECT_EQ(GetCapture(), nullptr);
}

// The search for the window under the pointer came back to one that a child's answer had destroyed.
TEST_F(WindowLifetime, PopUpDestroyedByItsChildsHitTestIsNotFound)
{
    const HWND popup = ShownPopup(0, 0, 100, 100);
    Child(popup, 0, 0, 50, 50);
    m_handlers[WM_NCHITTEST] = [&](HWND, WPARAM, LPARAM) -> std::optional<LRESULT>
    {
        DestroyWindow(popup);
        return HTTRANSPARENT;
    };
    EXPECT_EQ(WindowFromPoint({20, 20}), nullptr);
}

// A child made in answer to its parent's last message pointed to a parent that was gone.
TEST_F(WindowLifetime, ChildMadeInTheLastMessageGoesWithItsParent)
{
    const HWND popup = Popup(0, 0, 100, 100);
    HWND late = nullptr;
    m_handlers[WM_NCDESTROY] = [&](HWND window, WPARAM, LPARAM) -> std::optional<LRESULT>
    {
        if (window == popup && late == nullptr)
            late = Child(popup, 0, 0, 10, 10);
        return 0;
    };
    DestroyWindow(popup);
    EXPECT_NE(late, nullptr);
    EXPECT_FALSE(IsWindow(late));
}

TEST_F(WindowLifetime, PopUpMadeInItsOwnersLastMessageIsNobodys)
{
    const HWND owner = Popup(0, 0, 100, 100);
    HWND late = nullptr;
    m_handlers[WM_NCDESTROY] = [&](HWND window, WPARAM, LPARAM) -> std::optional<LRESULT>
    {
        if (window == owner)
            late = CreateWindowExW(0, TEXT("DeskWindow"), TEXT(""), WS_POPUP, 0, 0, 9, 9, owner, nullptr, nullptr,
                                   nullptr);
        return 0;
    };
    DestroyWindow(owner);
    EXPECT_TRUE(IsWindow(late));
    EXPECT_EQ(GetParent(late), nullptr);
    DestroyWindow(late);
}

TEST_F(WindowLifetime, WindowThatGoesWhileItIsActivatedIsNotActive)
{
    const HWND first = ShownPopup(0, 0, 100, 100);
    const HWND second = ShownPopup(100, 0, 100, 100);
    const HWND child = Child(second, 0, 0, 50, 50);
    SetActiveWindow(first);
    HWND going = child;
    m_handlers[WM_ACTIVATE] = [&](HWND, WPARAM, LPARAM) -> std::optional<LRESULT>
    {
        DestroyWindow(std::exchange(going, nullptr));
        return 0;
    };
    SetFocus(child);
    EXPECT_EQ(GetFocus(), second) << "not the child, which is gone";
    SetActiveWindow(first);
    going = second;
    SetActiveWindow(second);
    EXPECT_NE(GetActiveWindow(), second);
    EXPECT_NE(GetFocus(), second);
}

TEST_F(WindowLifetime, WindowThatGoesWhileItsCursorIsSetGetsNoMessage)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    platform::headless::MoveMouse(50, 50);
    m_handlers[WM_SETCURSOR] = [&](HWND, WPARAM, LPARAM) -> std::optional<LRESULT>
    {
        DestroyWindow(window);
        return TRUE;
    };
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        EXPECT_NE(message.hwnd, window) << message.message;
    EXPECT_FALSE(IsWindow(window));
}

// What the window manager had done to a box went back to it as a request, and where frames are added the box crept.
TEST_F(WindowLifetime, PlaceGivenByTheWindowManagerIsNotAskedForAgain)
{
    namespace headless = platform::headless;
    const HWND box = ShownPopup(100, 100, 200, 100, WS_POPUP | WS_CAPTION);
    headless::TakePlaceRequests();
    m_records.clear();
    const auto native = headless::Windows().front().id;
    for (int i = 1; i <= 10; ++i)
        headless::PlaceByManager(native, {100 + i, 100, 300 + i, 200 + 10 * (i / 10)});
    Pump();
    EXPECT_EQ(headless::TakePlaceRequests(), 0U);
    RECT place{};
    GetWindowRect(box, &place);
    EXPECT_EQ(place.left, 110);
    EXPECT_EQ(place.bottom, 210);
    EXPECT_EQ(Count(box, WM_MOVE), 10);
    EXPECT_EQ(Count(box, WM_SIZE), 1);
    EXPECT_EQ(headless::Windows().front().bounds.bottom, 210) << "drawn at the new size";
    SetWindowPos(box, nullptr, 50, 50, 200, 110, SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(headless::TakePlaceRequests(), 1U) << "the program's own wish is";
}

} // namespace
