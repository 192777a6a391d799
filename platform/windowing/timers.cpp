// Timers: at most one message each, however late the program comes to look.
#include "platform/base/clock.h"
#include "platform/base/fault_points.h"
#include "platform/windowing/message_queue.h"
#include "platform/windowing/window.h"

#include <algorithm>

namespace platform
{
namespace
{

// USER_TIMER_MINIMUM and USER_TIMER_MAXIMUM.
constexpr UINT kShortest = 10;
constexpr UINT kLongest = 0x7FFFFFFF;

struct Timer
{
    HWND window = nullptr;
    UINT_PTR id = 0;
    UINT period = 0;
    std::uint64_t due = 0;
    TIMERPROC procedure = nullptr;
};

std::vector<Timer>& Timers()
{
    static auto& timers = *new std::vector<Timer>;
    return timers;
}

std::vector<Timer>::iterator FindTimer(HWND window, UINT_PTR id)
{
    auto& timers = Timers();
    return std::find_if(timers.begin(), timers.end(), [&](const Timer& t) { return t.window == window && t.id == id; });
}

UINT_PTR UnusedId()
{
    UINT_PTR id = 0x7FFF;
    while (FindTimer(nullptr, id) != Timers().end())
        --id;
    return id;
}

bool DueBefore(const Timer& a, const Timer& b)
{
    return a.due < b.due;
}

} // namespace

bool TakeTimer(MSG& message, const MessageFilter& filter, bool remove)
{
    if (!filter.AcceptsMessage(WM_TIMER) || Timers().empty())
        return false;
    const std::uint64_t now = NowMs();
    Timer* next = nullptr;
    for (Timer& timer : Timers())
        if (timer.due <= now && filter.AcceptsWindow(timer.window) && (next == nullptr || DueBefore(timer, *next)))
            next = &timer;
    if (next == nullptr)
        return false;
    message = {next->window,  WM_TIMER, next->id, reinterpret_cast<LPARAM>(next->procedure), static_cast<DWORD>(now),
               MessagePoint()};
    if (remove)
    {
        // Expiries that were missed are one message.
        next->due = next->due + next->period > now ? next->due + next->period : now + next->period;
    }
    return true;
}

std::optional<std::uint64_t> NextTimer()
{
    const auto& timers = Timers();
    const auto next = std::min_element(timers.begin(), timers.end(), DueBefore);
    return next != timers.end() ? std::optional(next->due) : std::nullopt;
}

void ForgetTimersOf(HWND window)
{
    std::erase_if(
        Timers(), [&](const Timer& timer) { return timer.window == window; });
}

} // namespace platform

using namespace platform;

UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT elapse, TIMERPROC procedure)
{
    if (FaultPoint("SetTimer"))
        return Fail<UINT_PTR>(ERROR_NOT_ENOUGH_MEMORY, 0);
    if (window != nullptr && RequireWindow(window) == nullptr)
        return 0;
    const UINT period = std::clamp(elapse, kShortest, kLongest);
    auto found = FindTimer(window, id);
    if (found == Timers().end())
    {
        const UINT_PTR newId = window == nullptr ? UnusedId() : id;
        found = Timers().insert(Timers().end(), Timer{window, newId, 0, 0, nullptr});
    }
    found->period = period;
    found->due = NowMs() + period;
    found->procedure = procedure;
    // A timer with a window reports success; one without reports the id it was given.
    return window == nullptr ? found->id : (id != 0 ? id : 1);
}

BOOL KillTimer(HWND window, UINT_PTR id)
{
    const auto found = FindTimer(window, id);
    if (found == Timers().end())
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    Timers().erase(found);
    return TRUE;
}
