// The one clock that message times, timers and waits read.
#pragma once

#include <cstdint>

namespace platform
{

/// Milliseconds since an arbitrary start; never goes back.
std::uint64_t NowMs();

/// Puts the clock under a test's control: from now on it stands at its present value until advanced.
void UseManualClock();
void AdvanceManualClock(std::uint64_t milliseconds);
bool ClockIsManual();

} // namespace platform
