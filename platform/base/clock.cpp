// The clock: the one place that reads the system's monotonic time.
#include "platform/base/clock.h"

#include "winbase.h"

#include <atomic>
#include <time.h>

namespace platform
{
namespace
{

// Atomic because worker threads stamp posted messages.
constinit std::atomic<bool> g_manual{false};
constinit std::atomic<std::uint64_t> g_manualNow{0};

std::uint64_t MonotonicMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1000 + static_cast<std::uint64_t>(now.tv_nsec) / 1000000;
}

} // namespace

std::uint64_t NowMs()
{
    return g_manual ? g_manualNow.load() : MonotonicMs();
}

void UseManualClock()
{
    g_manualNow = NowMs();
    g_manual = true;
}

void AdvanceManualClock(std::uint64_t milliseconds)
{
    g_manualNow += milliseconds;
}

bool ClockIsManual()
{
    return g_manual;
}

} // namespace platform

DWORD GetTickCount()
{
    return static_cast<DWORD>(platform::NowMs());
}
