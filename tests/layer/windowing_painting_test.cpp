// Painting on the headless screen: what is drawn arrives, once, and nothing else does.
#include "windowing_desk.h"

namespace
{

namespace headless = platform::headless;

constexpr std::uint32_t kMenuColor = 0x00F0F0F0;
constexpr std::uint32_t kFrameColor = 0x00646464;
constexpr std::uint32_t kDesktop = 0x00404040;

std::optional<LRESULT> FillRed(HWND window, WPARAM, LPARAM)
{
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(window, &paint);
    const HBRUSH brush = CreateSolidBrush(RGB(255, 0, 0));
    RECT client{};
    GetClientRect(window, &client);
    FillRect(dc, &client, brush);
    DeleteObject(brush);
    EndPaint(window, &paint);
    return 0;
}

struct Painting : Desk
{
    /// Paints this window red from now on, the others as ever.
    void PaintRed(HWND red)
    {
        m_handlers[WM_PAINT] = [red](HWND painted, WPARAM wParam, LPARAM lParam) -> std::optional<LRESULT>
        { return painted == red ? FillRed(painted, wParam, lParam) : std::nullopt; };
    }
};

TEST_F(Painting, ShownWindowHasFrameAndBackground)
{
    ShownPopup(100, 50, 40, 30, WS_POPUP | WS_BORDER);
    EXPECT_EQ(headless::PixelAt(100, 50), kFrameColor);
    EXPECT_EQ(headless::PixelAt(139, 79), kFrameColor);
    EXPECT_EQ(headless::PixelAt(101, 51), kMenuColor);
    EXPECT_EQ(headless::PixelAt(138, 78), kMenuColor);
    EXPECT_EQ(headless::PixelAt(140, 80), kDesktop);
}

TEST_F(Painting, EachPixelOfTheFirstPictureIsSentOnce)
{
    const HWND window = Popup(0, 0, 200, 100, WS_POPUP | WS_BORDER);
    Child(window, 10, 10, 50, 50);
    ShowWindow(window, SW_SHOW);
    headless::TakePresentedPixels();
    Pump();
    EXPECT_EQ(headless::TakePresentedPixels(), 200U * 100U);
    Pump();
    EXPECT_EQ(headless::TakePresentedPixels(), 0U) << "an idle program sends nothing";
}

TEST_F(Painting, OnlyTheInvalidPartIsErasedPaintedAndSent)
{
    const HWND window = ShownPopup(0, 0, 200, 100);
    headless::TakePresentedPixels();
    m_handlers[WM_PAINT] = FillRed;
    const RECT part{10, 20, 30, 40};
    InvalidateRect(window, &part, TRUE);
    Pump();
    EXPECT_EQ(headless::PixelAt(10, 20), 0x00FF0000U);
    EXPECT_EQ(headless::PixelAt(29, 39), 0x00FF0000U);
    EXPECT_EQ(headless::PixelAt(30, 40), kMenuColor) << "drawing outside the update region must be clipped";
    EXPECT_EQ(headless::TakePresentedPixels(), 20U * 20U);
}

TEST_F(Painting, DrawingIsClippedToParentsAndSiblings)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    const HWND holder = Child(window, 20, 20, 40, 40);
    const HWND tall = Child(holder, 0, -100, 40, 1000);
    const HWND above = Child(window, 30, 30, 10, 10);
    SetWindowPos(above, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    Pump();
    PaintRed(tall);
    InvalidateRect(tall, nullptr, TRUE);
    Pump();
    EXPECT_EQ(headless::PixelAt(20, 20), 0x00FF0000U);
    EXPECT_EQ(headless::PixelAt(59, 59), 0x00FF0000U);
    EXPECT_EQ(headless::PixelAt(19, 30), kMenuColor);
    EXPECT_EQ(headless::PixelAt(20, 60), kMenuColor) << "the holder ends here";
    EXPECT_EQ(headless::PixelAt(35, 35), kMenuColor) << "the sibling above covers this";
}

TEST_F(Painting, MovedChildIsRedrawnAndUncoversItsParent)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    const HWND child = Child(window, 0, 0, 20, 20);
    PaintRed(child);
    InvalidateRect(child, nullptr, TRUE);
    Pump();
    EXPECT_EQ(headless::PixelAt(5, 5), 0x00FF0000U);
    SetWindowPos(child, nullptr, 50, 50, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    Pump();
    EXPECT_EQ(headless::PixelAt(5, 5), kMenuColor);
    EXPECT_EQ(headless::PixelAt(55, 55), 0x00FF0000U);
    DestroyWindow(child);
    Pump();
    EXPECT_EQ(headless::PixelAt(55, 55), kMenuColor);
}

TEST_F(Painting, UpdateWindowPaintsParentsFirstAndShowsAtOnce)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    const HWND child = Child(window, 0, 0, 20, 20);
    PaintRed(child);
    InvalidateRect(window, nullptr, TRUE);
    UpdateWindow(child);
    EXPECT_EQ(headless::PixelAt(5, 5), 0x00FF0000U);
    EXPECT_FALSE(NeedsPaint(window)) << "the parent's background must not come later, over the child";
    Pump();
    EXPECT_EQ(headless::PixelAt(5, 5), 0x00FF0000U);
}

TEST_F(Painting, RedrawSwitchedOffDrawsNothing)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    SendMessageW(window, WM_SETREDRAW, FALSE, 0);
    InvalidateRect(window, nullptr, TRUE);
    EXPECT_FALSE(NeedsPaint(window));
    SendMessageW(window, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(window, nullptr, TRUE);
    EXPECT_TRUE(NeedsPaint(window));
}

TEST_F(Painting, ContextOutlivesItsWindowHarmlessly)
{
    const HWND window = ShownPopup(0, 0, 100, 100);
    const HDC dc = GetDC(window);
    SetWindowPos(window, nullptr, 0, 0, 300, 300, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    const RECT pixel{5, 5, 6, 6};
    FillRect(dc, &pixel, GetSysColorBrush(COLOR_HIGHLIGHT)); // on the old surface, which the context keeps
    DestroyWindow(window);
    EXPECT_EQ(ReleaseDC(window, dc), 0);
}

} // namespace
