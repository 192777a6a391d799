// Waiting on the user-interface thread for what another thread does, while the windows stay alive.
#pragma once

#include "platform/files/bounded_call.h"
#include "platform/windowing/message_queue.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

namespace platform
{

/// Sees every message before it is dispatched; true keeps it from being so.
using MessageFilterHook = std::function<bool(const MSG& message)>;

/// Dispatches messages until `done`, which is asked after each and whenever the queue was woken (WakeQueue). WM_QUIT is
/// shown to the hook and put back for whoever dispatches next.
void PumpUntil(const std::function<bool()>& done, const MessageFilterHook& hook = {});

/// Runs `work`, which must own all it uses, on a thread of its own. Returns its result when it is there; nothing is
/// dispatched while it takes no longer than a moment.
template <typename T>
std::shared_ptr<T> CallPumped(std::function<std::shared_ptr<T>()> work, const MessageFilterHook& hook = {})
{
    constexpr std::chrono::milliseconds kMoment{50};
    struct Call
    {
        std::mutex mutex;
        std::condition_variable finished;
        bool isFinished = false;
        std::shared_ptr<T> result;
    };
    const auto call = std::make_shared<Call>();
    try
    {
        std::thread(
            [call, work]
            {
                std::shared_ptr<T> result = work();
                {
                    const std::lock_guard lock(call->mutex);
                    call->result = std::move(result);
                    call->isFinished = true;
                    call->finished.notify_one();
                }
                WakeQueue();
            })
            .detach();
    }
    catch (const std::system_error&)
    {
        return work();
    }
    std::unique_lock lock(call->mutex);
    if (call->finished.wait_for(lock, kMoment, [&] { return call->isFinished; }))
        return call->result;
    lock.unlock();
    PumpUntil(
        [&]
        {
            const std::lock_guard guard(call->mutex);
            return call->isFinished;
        },
        hook);
    return call->result;
}

/// The same with a limit: null when `work` takes longer, its late result being handed to nobody.
template <typename T>
std::shared_ptr<T> CallPumpedWithin(std::chrono::milliseconds limit, std::function<std::shared_ptr<T>()> work)
{
    return CallPumped<T>([limit, work = std::move(work)] { return CallWithin<T>(limit, work); });
}

} // namespace platform
