// Waiting for the file system, but not for ever.
//
// A folder on a mount that stopped answering blocks whoever touches it, uninterruptibly. What walks into folders of
// unknown health therefore runs on a thread of its own, which is left behind when it does not come back.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

namespace platform
{

/// The result of `work`, or null when it takes longer than `limit`; its late result is then handed to nobody.
/// `work` must own all it uses. Falls back to a direct call when no thread can be had.
template <typename T>
std::shared_ptr<T> CallWithin(std::chrono::milliseconds limit, std::function<std::shared_ptr<T>()> work)
{
    struct Call
    {
        std::mutex mutex;
        std::condition_variable done;
        std::shared_ptr<T> result;
        bool finished = false;
    };
    const auto call = std::make_shared<Call>();
    try
    {
        std::thread(
            [call, work]
            {
                std::shared_ptr<T> result = work();
                const std::lock_guard lock(call->mutex);
                call->result = std::move(result);
                call->finished = true;
                call->done.notify_one();
            })
            .detach();
    }
    catch (const std::system_error&)
    {
        return work();
    }
    std::unique_lock lock(call->mutex);
    call->done.wait_for(lock, limit, [&] { return call->finished; });
    return call->result;
}

} // namespace platform
