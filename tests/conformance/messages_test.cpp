// Messages: in which order they come, what a filter lets through, and what wakes the waiting thread.
#include "message_log.h"

#include <thread>

namespace
{

class Messages : public conformance::MessageTest
{
protected:
    /// Takes all messages, with what they are.
    conformance::Lines TakeAll(HWND window = nullptr, UINT first = 0, UINT last = 0)
    {
        conformance::Lines lines;
        MSG message;
        while (lines.size() < 20 && PeekMessageW(&message, window, first, last, PM_REMOVE))
        {
            lines.push_back(conformance::NameOf(message.message) + " " + std::to_string(message.wParam));
            DispatchMessageW(&message);
            if (message.message == WM_QUIT)
                break;
        }
        return lines;
    }

    HWND Shown()
    {
        const HWND popup = Popup();
        ShowWindow(popup, SW_SHOW);
        UpdateWindow(popup);
        Pump();
        return popup;
    }
};

TEST_F(Messages, SentOnesComeAtOncePostedOnesInOrder)
{
    const HWND popup = Popup();
    Pump();
    Watch({WM_USER, WM_APP});
    PostMessageW(popup, WM_USER, 1, 0);
    PostMessageW(popup, WM_APP, 2, 0);
    EXPECT_EQ(SendMessageW(popup, WM_USER, 3, 0), 0);
    EXPECT_MESSAGES(({"popup: WM_USER"}), Take()) << "only the sent one has arrived";
    EXPECT_MESSAGES(({"WM_USER 1", "WM_APP 2"}), TakeAll());
}

TEST_F(Messages, PostedBeforePaintBeforeTimer)
{
    const HWND popup = Shown();
    SetTimer(popup, 5, 10, nullptr);
    // Let the timer run out before anything is taken.
    const DWORD start = GetTickCount();
    while (GetTickCount() - start < 40)
    {
    }
    InvalidateRect(popup, nullptr, FALSE);
    PostMessageW(popup, WM_USER, 1, 0);
    auto lines = TakeAll();
    lines.resize(3);
    EXPECT_MESSAGES(({"WM_USER 1", "WM_PAINT 0", "WM_TIMER 5"}), lines);
}

TEST_F(Messages, QuitComesWhenThePostedOnesAreTaken)
{
    const HWND popup = Popup();
    Pump();
    PostQuitMessage(42);
    PostMessageW(popup, WM_USER, 1, 0);
    EXPECT_MESSAGES(({"WM_USER 1", "WM_QUIT 42"}), TakeAll());
    PostMessageW(popup, WM_QUIT, 3, 0);
    MSG message;
    EXPECT_EQ(GetMessageW(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, 3U);
}

TEST_F(Messages, FiltersByWindowAndByRange)
{
    const HWND popup = Popup();
    const HWND child = Child(popup);
    const HWND other = Create("other", WS_POPUP, {0, 0, 5, 5});
    Pump();
    PostMessageW(other, WM_USER, 1, 0);
    PostMessageW(child, WM_USER, 2, 0);
    PostMessageW(popup, WM_APP, 3, 0);
    PostThreadMessageW(GetCurrentThreadId(), WM_APP, 4, 0);
    EXPECT_MESSAGES(({"WM_USER 2", "WM_APP 3"}), TakeAll(popup)) << "a window's children count as the window";
    PostMessageW(popup, WM_APP, 5, 0);
    EXPECT_MESSAGES(({"WM_USER 1"}), TakeAll(nullptr, WM_USER, WM_USER));
    EXPECT_MESSAGES(({"WM_APP 4", "WM_APP 5"}), TakeAll());
}

TEST_F(Messages, LookingTakesNothing)
{
    const HWND popup = Popup();
    Pump();
    PostMessageW(popup, WM_USER, 1, 0);
    MSG message;
    EXPECT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE));
    EXPECT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE));
    EXPECT_MESSAGES(({"WM_USER 1"}), TakeAll());
}

TEST_F(Messages, OfAWindowThatIsGoneAreGone)
{
    const HWND popup = Popup();
    const HWND other = Create("other", WS_POPUP, {0, 0, 5, 5});
    Pump();
    PostMessageW(popup, WM_USER, 1, 0);
    PostMessageW(other, WM_USER, 2, 0);
    DestroyWindow(popup);
    EXPECT_MESSAGES(({"WM_USER 2"}), TakeAll());
}

TEST_F(Messages, PostedByAnotherThreadWakeTheWaitingOne)
{
    const HWND popup = Popup();
    Pump();
    const DWORD thread = GetCurrentThreadId();
    std::thread poster(
        [&]
        {
            PostMessageW(popup, WM_USER, 1, 2);
            PostThreadMessageW(thread, WM_APP, 3, 4);
        });
    MSG message;
    EXPECT_GT(GetMessageW(&message, popup, WM_USER, WM_USER), 0);
    EXPECT_EQ(message.hwnd, popup);
    EXPECT_EQ(message.lParam, 2);
    EXPECT_GT(GetMessageW(&message, nullptr, WM_APP, WM_APP), 0);
    EXPECT_EQ(message.hwnd, nullptr);
    EXPECT_EQ(message.wParam, 3U);
    poster.join();
    EXPECT_FALSE(PostThreadMessageW(0x7FFFFFFF, WM_NULL, 0, 0));
}

TEST_F(Messages, PaintIsAskedForUntilThePartIsValid)
{
    const HWND popup = Shown();
    Watch({WM_ERASEBKGND, WM_PAINT});
    const RECT first{10, 10, 20, 20};
    const RECT second{30, 40, 50, 60};
    InvalidateRect(popup, &first, TRUE);
    InvalidateRect(popup, &second, FALSE);
    const RECT expected{10, 10, 50, 60};
    RECT painted{};
    m_handlers[WM_PAINT] = [&](HWND window, WPARAM, LPARAM) -> std::optional<LRESULT>
    {
        PAINTSTRUCT paint;
        BeginPaint(window, &paint);
        painted = paint.rcPaint;
        EndPaint(window, &paint);
        return 0;
    };
    Pump();
    EXPECT_MESSAGES(({"popup: WM_PAINT", "popup: WM_ERASEBKGND"}), Take());
    EXPECT_TRUE(EqualRect(&painted, &expected));

    InvalidateRect(popup, nullptr, FALSE);
    ValidateRect(popup, nullptr);
    Pump();
    EXPECT_MESSAGES((conformance::Lines{}), Take());
    InvalidateRect(popup, &first, FALSE);
    UpdateWindow(popup);
    EXPECT_MESSAGES(({"popup: WM_PAINT"}), Take()) << "at once, and nothing to erase";
}

TEST_F(Messages, PaintGoesFromParentToChildren)
{
    const HWND popup = Shown();
    Child(popup);
    Pump();
    Watch({WM_PAINT});
    InvalidateRect(popup, nullptr, TRUE);
    Pump();
    EXPECT_MESSAGES(({"popup: WM_PAINT", "child: WM_PAINT"}), Take());
}

TEST_F(Messages, HiddenWindowsAreNotPainted)
{
    const HWND popup = Popup();
    Pump();
    Watch({WM_PAINT});
    InvalidateRect(popup, nullptr, TRUE);
    Pump();
    EXPECT_MESSAGES((conformance::Lines{}), Take());
}

} // namespace
