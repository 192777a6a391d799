// Boxes that show while something runs: counted, and answered by Return.
#pragma once

#include "windows.h"

#include "tests/headless/headless.h"

#include <functional>
#include <poll.h>
#include <string>

namespace shell_test
{

/// Waits in small steps while it lives, so that threads get on; `step`, if there is one, is done at each.
class Boxes
{
public:
    explicit Boxes(std::function<void()> step = {})
    {
        platform::headless::SetIdleHandler(
            [this, step]
            {
                poll(nullptr, 0, 2);
                if (step)
                    step();
                const HWND box = GetActiveWindow();
                WCHAR caption[64] = {};
                if (box != nullptr && box != m_answered && GetWindowTextW(box, caption, 64) > 0 &&
                    std::u16string(caption) == u"Orb Launcher")
                {
                    ++m_count;
                    m_answered = box; // a second Return would answer the next one
                    platform::headless::PressKey(VK_RETURN);
                    platform::headless::ReleaseKey(VK_RETURN);
                }
                PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
                return true;
            });
    }
    ~Boxes() { platform::headless::SetIdleHandler(nullptr); }
    Boxes(const Boxes&) = delete;
    Boxes& operator=(const Boxes&) = delete;

    int Count() const { return m_count; }

private:
    int m_count = 0;
    HWND m_answered = nullptr;
};

} // namespace shell_test
