// Work that can wait until nothing else is to be done: the first frame shows and the message queue has run dry.
//
// User-interface thread only. What is still waiting when the process exits runs then.
#pragma once

#include <functional>

namespace platform
{

/// Adds work behind all that waits already.
void Defer(std::function<void()> work);
bool HasDeferredWork();
/// Runs the oldest waiting piece of work; false when there was none.
bool RunOneDeferred();

} // namespace platform
