// Monitors that come, go and change.
#pragma once

namespace platform::x11
{

/// The monitors have changed: the next question for them asks the server again.
void RereadMonitors();

} // namespace platform::x11
