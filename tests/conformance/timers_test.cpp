// Timers.
#include "message_log.h"

namespace
{

int g_calls = 0;

void CALLBACK CountCall(HWND window, UINT message, UINT_PTR, DWORD)
{
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(message, static_cast<UINT>(WM_TIMER));
    ++g_calls;
}

class Timers : public conformance::MessageTest
{
protected:
    static void Burn(DWORD milliseconds)
    {
        const DWORD start = GetTickCount();
        while (GetTickCount() - start < milliseconds)
        {
        }
    }
};

TEST_F(Timers, MissedExpiriesAreOneMessage)
{
    const HWND popup = Popup();
    Pump();
    Watch({WM_TIMER});
    EXPECT_NE(SetTimer(popup, 1, 30, nullptr), 0U);
    Burn(100);
    Pump();
    EXPECT_MESSAGES(({"popup: WM_TIMER"}), Take());
    EXPECT_TRUE(KillTimer(popup, 1));
    EXPECT_FALSE(KillTimer(popup, 1));
}

TEST_F(Timers, KilledAndRestartedOnesDoNotFire)
{
    const HWND popup = Popup();
    Pump();
    Watch({WM_TIMER});
    SetTimer(popup, 1, 20, nullptr);
    SetTimer(popup, 2, 20, nullptr);
    Burn(40);
    KillTimer(popup, 1);
    SetTimer(popup, 2, 60000, nullptr); // the same timer, started anew
    Pump();
    EXPECT_MESSAGES((conformance::Lines{}), Take());
    KillTimer(popup, 2);
}

TEST_F(Timers, RepeatUntilTheirWindowGoes)
{
    const HWND popup = Popup();
    int fired = 0;
    m_handlers[WM_TIMER] = [&](HWND window, WPARAM wParam, LPARAM) -> std::optional<LRESULT>
    {
        EXPECT_EQ(wParam, 9U);
        if (++fired == 3)
        {
            DestroyWindow(window);
            PostQuitMessage(0);
        }
        return 0;
    };
    SetTimer(popup, 9, 10, nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    EXPECT_EQ(fired, 3);
}

TEST_F(Timers, ProcedureIsCalledByDispatch)
{
    g_calls = 0;
    const UINT_PTR first = SetTimer(nullptr, 0, 10, CountCall);
    const UINT_PTR second = SetTimer(nullptr, 0, 60000, CountCall);
    EXPECT_NE(first, 0U);
    EXPECT_NE(second, first) << "timers without a window are numbered by the system";
    MSG message;
    GetMessageW(&message, nullptr, WM_TIMER, WM_TIMER);
    DispatchMessageW(&message);
    EXPECT_EQ(g_calls, 1);
    EXPECT_TRUE(KillTimer(nullptr, first));
    EXPECT_TRUE(KillTimer(nullptr, second));
}

} // namespace
