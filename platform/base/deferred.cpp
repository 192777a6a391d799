// The queue of deferred work.
#include "platform/base/deferred.h"

#include <cstdlib>
#include <deque>

namespace platform
{

namespace
{

using WorkQueue = std::deque<std::function<void()>>;

void RunAllDeferred()
{
    while (RunOneDeferred())
    {
    }
}

WorkQueue& Queue()
{
    static auto& queue = *[]
    {
        std::atexit(RunAllDeferred);
        return new WorkQueue;
    }();
    return queue;
}

} // namespace

void Defer(std::function<void()> work)
{
    Queue().push_back(std::move(work));
}

bool HasDeferredWork()
{
    return !Queue().empty();
}

bool RunOneDeferred()
{
    WorkQueue& queue = Queue();
    if (queue.empty())
        return false;
    const std::function<void()> work = std::move(queue.front());
    queue.pop_front();
    work();
    return true;
}

} // namespace platform
