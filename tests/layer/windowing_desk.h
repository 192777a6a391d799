// A window on the headless screen whose messages a test can record and answer.
#pragma once

#include "platform/base/clock.h"
#include "platform/base/handle_table.h"
#include "tests/headless/headless.h"

#include "windows.h"

#include <functional>
#include <gtest/gtest.h>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <vector>

struct Desk : ::testing::Test
{
    struct Record
    {
        HWND window;
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
    };
    /// Answers a message; nothing leaves it to DefWindowProcW.
    using Handler = std::function<std::optional<LRESULT>(HWND, WPARAM, LPARAM)>;

    Desk()
    {
        s_desk = this;
        platform::headless::Reset();
        platform::UseManualClock();
        WNDCLASSEXW windowClass{};
        windowClass.cbSize = sizeof(windowClass);
        windowClass.style = CS_DBLCLKS;
        windowClass.lpfnWndProc = Procedure;
        windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_MENU + 1);
        windowClass.lpszClassName = TEXT("DeskWindow");
        RegisterClassExW(&windowClass);
    }

    ~Desk() override
    {
        for (const HWND window : m_windows)
            if (IsWindow(window))
                DestroyWindow(window);
        Pump();
        UnregisterClassW(TEXT("DeskWindow"), nullptr);
        EXPECT_EQ(platform::LiveHandles(platform::HandleKind::Window), 0U);
        EXPECT_EQ(platform::LiveHandles(platform::HandleKind::DeviceContext), 0U) << "a context was left open";
        s_desk = nullptr;
    }

    HWND Popup(int x, int y, int width, int height, DWORD style = WS_POPUP)
    {
        return Add(CreateWindowExW(0, TEXT("DeskWindow"), TEXT(""), style, x, y, width, height, nullptr, nullptr,
                                   nullptr, nullptr));
    }

    HWND ShownPopup(int x, int y, int width, int height, DWORD style = WS_POPUP)
    {
        const HWND window = Popup(x, y, width, height, style);
        ShowWindow(window, SW_SHOW);
        Pump();
        return window;
    }

    HWND Child(HWND parent, int x, int y, int width, int height, DWORD style = WS_VISIBLE)
    {
        return Add(CreateWindowExW(0, TEXT("DeskWindow"), TEXT(""), WS_CHILD | style, x, y, width, height, parent,
                                   nullptr, nullptr, nullptr));
    }

    /// Dispatches until nothing is left to do.
    static void Pump()
    {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }

    /// Whether anything of the window is to be painted.
    static bool NeedsPaint(HWND window)
    {
        MSG message{};
        return PeekMessageW(&message, window, WM_PAINT, WM_PAINT, PM_NOREMOVE) != FALSE;
    }

    /// Presses a key and lets it go, other keys being held; a letter's key types its small letter.
    static void Tap(BYTE key, std::initializer_list<BYTE> held = {})
    {
        const auto letter = static_cast<char16_t>(key - 'A' + u'a');
        for (const BYTE modifier : held)
            platform::headless::PressKey(modifier);
        platform::headless::PressKey(key, {&letter, key >= 'A' && key <= 'Z' ? 1U : 0U});
        platform::headless::ReleaseKey(key);
        for (const BYTE modifier : held)
            platform::headless::ReleaseKey(modifier);
    }

    static std::u16string TextOf(HWND window)
    {
        std::u16string text(static_cast<std::size_t>(GetWindowTextLengthW(window)), u'\0');
        GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
        return text;
    }

    static void Click(int x, int y)
    {
        platform::headless::MoveMouse(x, y);
        platform::headless::PressButton();
        platform::headless::ReleaseButton();
    }

    /// How often a window has had a message.
    int Count(HWND window, UINT message) const
    {
        int count = 0;
        for (const Record& record : m_records)
            count += record.window == window && record.message == message;
        return count;
    }

    const Record* Last(HWND window, UINT message) const
    {
        const Record* last = nullptr;
        for (const Record& record : m_records)
            last = record.window == window && record.message == message ? &record : last;
        return last;
    }

    std::vector<Record> m_records;
    std::map<UINT, Handler> m_handlers;

private:
    HWND Add(HWND window)
    {
        EXPECT_NE(window, nullptr) << "last error " << GetLastError();
        m_windows.push_back(window);
        return window;
    }

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (s_desk == nullptr)
            return DefWindowProcW(window, message, wParam, lParam);
        s_desk->m_records.push_back({window, message, wParam, lParam});
        const auto handler = s_desk->m_handlers.find(message);
        const auto answer =
            handler != s_desk->m_handlers.end() ? handler->second(window, wParam, lParam) : std::nullopt;
        return answer ? *answer : DefWindowProcW(window, message, wParam, lParam);
    }

    static inline Desk* s_desk = nullptr;
    std::vector<HWND> m_windows;
};
