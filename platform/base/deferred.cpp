// The queue of deferred work.
#include "platform/base/deferred.h"

#include <cstdlib>
#include <deque>

namespace platform
{

namespace
{

struct Piece
{
    AtExit atExit;
    std::function<void()> work;
};
using WorkQueue = std::deque<Piece>;

void RunLeftOver();

WorkQueue& Queue()
{
    static auto& queue = *[]
    {
        std::atexit(RunLeftOver);
        return new WorkQueue;
    }();
    return queue;
}

void RunLeftOver()
{
    for (WorkQueue& queue = Queue(); !queue.empty();)
        if (queue.front().atExit == AtExit::Do)
            RunOneDeferred();
        else
            queue.pop_front();
}

} // namespace

void Defer(AtExit atExit, std::function<void()> work)
{
    Queue().push_back({atExit, std::move(work)});
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
    const std::function<void()> work = std::move(queue.front().work);
    queue.pop_front();
    work();
    return true;
}

} // namespace platform
