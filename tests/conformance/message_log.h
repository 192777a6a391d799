// Windows that write down the messages they get, to be compared with a table.
#pragma once

#include <windows.h>

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace conformance
{

/// "window: message", such as "child: WM_SIZE".
using Lines = std::vector<std::string>;

inline const std::map<UINT, const char*>& MessageNames()
{
#define ORB_MESSAGE(name)                                                                                              \
    {                                                                                                                  \
        name, #name                                                                                                    \
    }
    static const std::map<UINT, const char*> names = {
        ORB_MESSAGE(WM_CREATE),
        ORB_MESSAGE(WM_DESTROY),
        ORB_MESSAGE(WM_MOVE),
        ORB_MESSAGE(WM_SIZE),
        ORB_MESSAGE(WM_ACTIVATE),
        ORB_MESSAGE(WM_SETFOCUS),
        ORB_MESSAGE(WM_KILLFOCUS),
        ORB_MESSAGE(WM_ENABLE),
        ORB_MESSAGE(WM_PAINT),
        ORB_MESSAGE(WM_CLOSE),
        ORB_MESSAGE(WM_ERASEBKGND),
        ORB_MESSAGE(WM_SHOWWINDOW),
        ORB_MESSAGE(WM_ACTIVATEAPP),
        ORB_MESSAGE(WM_CANCELMODE),
        ORB_MESSAGE(WM_WINDOWPOSCHANGING),
        ORB_MESSAGE(WM_WINDOWPOSCHANGED),
        ORB_MESSAGE(WM_STYLECHANGED),
        ORB_MESSAGE(WM_NCCREATE),
        ORB_MESSAGE(WM_NCDESTROY),
        ORB_MESSAGE(WM_NCCALCSIZE),
        ORB_MESSAGE(WM_NCACTIVATE),
        ORB_MESSAGE(WM_TIMER),
        ORB_MESSAGE(WM_CAPTURECHANGED),
        ORB_MESSAGE(WM_NULL),
        ORB_MESSAGE(WM_QUIT),
        ORB_MESSAGE(WM_USER),
        ORB_MESSAGE(WM_APP),
        {0x0210, "WM_PARENTNOTIFY"},
    };
#undef ORB_MESSAGE
    return names;
}

inline std::string NameOf(UINT message)
{
    const auto found = MessageNames().find(message);
    return found != MessageNames().end() ? found->second : "message " + std::to_string(message);
}

/// Both tables beside each other, with a mark where they differ.
inline testing::AssertionResult SameLines(const char*, const char*, const Lines& expected, const Lines& actual)
{
    if (expected == actual)
        return testing::AssertionSuccess();
    auto result = testing::AssertionFailure();
    for (std::size_t i = 0; i < std::max(expected.size(), actual.size()); ++i)
    {
        const std::string left = i < expected.size() ? expected[i] : "";
        const std::string right = i < actual.size() ? actual[i] : "";
        result << '\n'
               << (left == right ? "    " : " != ") << left << std::string(left.size() < 40 ? 40 - left.size() : 1, ' ')
               << right;
    }
    return result;
}
#define EXPECT_MESSAGES(expected, actual)                                                                              \
    EXPECT_PRED_FORMAT2(conformance::SameLines, conformance::Lines expected, actual)

class MessageTest : public testing::Test
{
public:
    using Handler = std::function<std::optional<LRESULT>(HWND, WPARAM, LPARAM)>;

protected:
    MessageTest()
    {
        s_test = this;
        WNDCLASSEXW windowClass{};
        windowClass.cbSize = sizeof(windowClass);
        windowClass.lpfnWndProc = Procedure;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.cbWndExtra = 2 * sizeof(LONG_PTR);
        windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_MENU + 1);
        windowClass.lpszClassName = TEXT("LoggedWindow");
        RegisterClassExW(&windowClass);
    }

    ~MessageTest() override
    {
        for (const auto& window : m_windows)
            if (IsWindow(window.first))
                DestroyWindow(window.first);
        s_test = nullptr;
        Pump();
        UnregisterClassW(TEXT("LoggedWindow"), GetModuleHandleW(nullptr));
    }

    HWND Create(const char* name, DWORD style, RECT place, HWND parent = nullptr, UINT_PTR id = 0)
    {
        m_creating = name;
        const HWND window = CreateWindowExW(0, TEXT("LoggedWindow"), TEXT("text"), style, place.left, place.top,
                                            place.right - place.left, place.bottom - place.top, parent,
                                            reinterpret_cast<HMENU>(id), GetModuleHandleW(nullptr), nullptr);
        m_creating.clear();
        return window;
    }

    HWND Popup(const char* name = "popup", DWORD style = WS_POPUP) { return Create(name, style, {100, 120, 300, 400}); }

    HWND Child(HWND parent, const char* name = "child", DWORD style = WS_VISIBLE, UINT_PTR id = 0)
    {
        return Create(name, WS_CHILD | style, {10, 20, 60, 50}, parent, id);
    }

    static void Pump()
    {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }

    /// From now on only these messages are written down.
    void Watch(std::vector<UINT> messages)
    {
        m_watched = std::move(messages);
        m_lines.clear();
    }

    Lines Take() { return std::exchange(m_lines, {}); }
    void Note(const std::string& line) { m_lines.push_back(line); }

    std::map<UINT, Handler> m_handlers;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (s_test != nullptr)
        {
            s_test->Record(window, message, wParam);
            const auto handler = s_test->m_handlers.find(message);
            if (handler != s_test->m_handlers.end())
            {
                if (const auto answer = handler->second(window, wParam, lParam))
                    return *answer;
            }
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }

    void Record(HWND window, UINT message, WPARAM wParam)
    {
        auto known = m_windows.find(window);
        if (known == m_windows.end())
            known = m_windows.emplace(window, m_creating).first;
        else if (!m_creating.empty() && message == WM_NCCREATE)
            known->second = m_creating; // the handle of a window that has gone
        if (std::find(m_watched.begin(), m_watched.end(), message) == m_watched.end())
            return;
        std::string line = known->second + ": " + NameOf(message);
        const bool state = message == WM_ACTIVATE || message == WM_ACTIVATEAPP || message == WM_NCACTIVATE ||
                           message == WM_SHOWWINDOW || message == WM_ENABLE;
        m_lines.push_back(state ? line + " " + std::to_string(LOWORD(wParam)) : line);
    }

    static inline MessageTest* s_test = nullptr;
    std::map<HWND, std::string> m_windows;
    std::string m_creating;
    std::vector<UINT> m_watched;
    Lines m_lines;
};

} // namespace conformance
