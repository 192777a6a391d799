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

/// Work on a thread of its own, which is left behind when nobody waits any longer.
template <typename T>
class AsideCall
{
public:
    using Work = std::function<std::shared_ptr<T>()>;

    /// `work` must own all it uses. `finished` is called on that thread when the result is there. Null when no thread
    /// can be had.
    static std::shared_ptr<AsideCall> Start(
        const Work& work, const std::function<void()>& finished = [] {})
    {
        const auto call = std::make_shared<AsideCall>();
        try
        {
            std::thread(
                [call, work, finished]
                {
                    call->Finish(work());
                    finished();
                })
                .detach();
        }
        catch (const std::system_error&)
        {
            return nullptr;
        }
        return call;
    }

    bool IsFinished() { return WaitFor(std::chrono::milliseconds::zero()); }
    /// Whether it has finished by then.
    bool WaitFor(std::chrono::milliseconds limit)
    {
        std::unique_lock lock(m_mutex);
        return m_done.wait_for(lock, limit, [&] { return m_finished; });
    }
    /// Null while it has not finished.
    std::shared_ptr<T> Result()
    {
        const std::lock_guard lock(m_mutex);
        return m_result;
    }

private:
    void Finish(std::shared_ptr<T> result)
    {
        const std::lock_guard lock(m_mutex);
        m_result = std::move(result);
        m_finished = true;
        m_done.notify_one();
    }

    std::mutex m_mutex;
    std::condition_variable m_done;
    std::shared_ptr<T> m_result;
    bool m_finished = false;
};

/// The result of `work`, or null when it takes longer than `limit`; its late result is then handed to nobody.
/// Falls back to a direct call when no thread can be had.
template <typename T>
std::shared_ptr<T> CallWithin(std::chrono::milliseconds limit, const std::function<std::shared_ptr<T>()>& work)
{
    const auto call = AsideCall<T>::Start(work);
    if (call == nullptr)
        return work();
    return call->WaitFor(limit) ? call->Result() : nullptr;
}

} // namespace platform
