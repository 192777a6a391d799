// Work that can wait until nothing else is to be done: the first frame shows and the message queue has run dry.
//
// User-interface thread only. The process exits beside the program that it has just started, so of what is still
// waiting then only that is done without which the next run would have to pay again, and every one after it in the same
// hurry: saving what was found out about files and pictures. Looking again at what was shown, and watching it, is for a
// menu that is open.
#pragma once

#include <functional>

namespace platform
{

enum class AtExit
{
    Drop,
    Do,
};

/// Adds work behind all that waits already.
void Defer(AtExit atExit, std::function<void()> work);
bool HasDeferredWork();
/// Runs the oldest waiting piece of work; false when there was none.
bool RunOneDeferred();

} // namespace platform
