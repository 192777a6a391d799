// What the launcher relies on in window subclassing.
#include <windows.h>
#include <commctrl.h>

#include <gtest/gtest.h>

#include <vector>

namespace
{

constexpr UINT kMessage = WM_APP + 7;
std::vector<int> g_order;

LRESULT CALLBACK Window(HWND window, UINT msg, WPARAM wParam, LPARAM lParam)
{
    if (msg == kMessage)
    {
        g_order.push_back(0);
        return 100;
    }
    return DefWindowProcW(window, msg, wParam, lParam);
}

/// Pushes its data before and the negated data after the rest of the chain.
LRESULT CALLBACK Link(HWND window, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR data)
{
    if (msg != kMessage)
        return DefSubclassProc(window, msg, wParam, lParam);
    g_order.push_back(static_cast<int>(data));
    const LRESULT result = DefSubclassProc(window, msg, wParam, lParam);
    g_order.push_back(-static_cast<int>(data));
    return result + 1;
}

LRESULT CALLBACK Leaving(HWND window, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR data)
{
    if (msg == kMessage)
    {
        g_order.push_back(static_cast<int>(data));
        RemoveWindowSubclass(window, Leaving, id);
    }
    return DefSubclassProc(window, msg, wParam, lParam);
}

LRESULT CALLBACK Destroying(HWND window, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR)
{
    if (msg == kMessage)
    {
        DestroyWindow(window);
        return 7;
    }
    return DefSubclassProc(window, msg, wParam, lParam);
}

class SubclassTest : public testing::Test
{
protected:
    void SetUp() override
    {
        WNDCLASSEXW windowClass = {};
        windowClass.cbSize = sizeof(windowClass);
        windowClass.lpfnWndProc = Window;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = TEXT("SubclassTest");
        RegisterClassExW(&windowClass);
        m_window = CreateWindowExW(0, TEXT("SubclassTest"), nullptr, WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                   windowClass.hInstance, nullptr);
        g_order.clear();
    }
    void TearDown() override
    {
        if (IsWindow(m_window))
            DestroyWindow(m_window);
    }
    LRESULT Send() { return SendMessageW(m_window, kMessage, 0, 0); }

    HWND m_window = nullptr;
};

} // namespace

TEST_F(SubclassTest, TheLatestIsCalledFirst)
{
    EXPECT_TRUE(SetWindowSubclass(m_window, Link, 1, 1));
    EXPECT_TRUE(SetWindowSubclass(m_window, Link, 2, 2));
    EXPECT_EQ(Send(), 102);
    EXPECT_EQ(g_order, (std::vector<int>{2, 1, 0, -1, -2}));
}

TEST_F(SubclassTest, TheSameProcedureAndIdOnlyGetNewData)
{
    SetWindowSubclass(m_window, Link, 1, 1);
    EXPECT_TRUE(SetWindowSubclass(m_window, Link, 1, 5));
    Send();
    EXPECT_EQ(g_order, (std::vector<int>{5, 0, -5}));
}

TEST_F(SubclassTest, RemovalRestoresTheWindow)
{
    const LONG_PTR procedure = GetWindowLongPtrW(m_window, GWLP_WNDPROC);
    SetWindowSubclass(m_window, Link, 1, 1);
    EXPECT_TRUE(RemoveWindowSubclass(m_window, Link, 1));
    EXPECT_FALSE(RemoveWindowSubclass(m_window, Link, 1));
    EXPECT_EQ(Send(), 100);
    EXPECT_EQ(GetWindowLongPtrW(m_window, GWLP_WNDPROC), procedure);
}

TEST_F(SubclassTest, ALinkMayLeaveWhileItRuns)
{
    SetWindowSubclass(m_window, Link, 1, 1);
    SetWindowSubclass(m_window, Leaving, 2, 2);
    SetWindowSubclass(m_window, Link, 3, 3);
    EXPECT_EQ(Send(), 102);
    EXPECT_EQ(g_order, (std::vector<int>{3, 2, 1, 0, -1, -3}));
    g_order.clear();
    Send();
    EXPECT_EQ(g_order, (std::vector<int>{3, 1, 0, -1, -3}));
}

TEST_F(SubclassTest, TheWindowMayGoWhileALinkRuns)
{
    SetWindowSubclass(m_window, Link, 1, 1);
    SetWindowSubclass(m_window, Destroying, 2, 2);
    EXPECT_EQ(Send(), 7);
    EXPECT_FALSE(IsWindow(m_window));
}
