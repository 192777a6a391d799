// A person who answers the launcher's own message boxes.
#pragma once

#include "tests/scenarios/desk.h"

#include <algorithm>
#include <functional>
#include <utility>

constexpr int kCheckBox = 5555;

/// A person before each box that shows: what they do with it, once.
class BeforeTheBox
{
public:
    using Act = std::function<void(HWND)>;
    explicit BeforeTheBox(Act act) : m_act(std::move(act))
    {
        platform::headless::SetIdleHandler(
            [this]
            {
                const HWND box = GetActiveWindow();
                const bool shows = std::ranges::any_of(
                    platform::headless::Windows(), [](const auto& window)
                    { return window.visible && window.kind == platform::screen::WindowKind::Managed; });
                if (!shows)
                    return false;
                ++m_shown;
                m_act(box);
                return true;
            });
    }
    ~BeforeTheBox() { platform::headless::SetIdleHandler(nullptr); }
    BeforeTheBox(const BeforeTheBox&) = delete;
    BeforeTheBox& operator=(const BeforeTheBox&) = delete;
    int Shown() const { return m_shown; }

private:
    Act m_act;
    int m_shown = 0;
};

inline void Click(HWND box, int id)
{
    SendMessageW(GetDlgItem(box, id), BM_CLICK, 0, 0);
}
