// Waiting on the user-interface thread for what another thread does, while the windows stay alive.
#pragma once

#include "platform/files/bounded_call.h"
#include "platform/windowing/message_queue.h"

#include <chrono>
#include <functional>
#include <memory>

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
std::shared_ptr<T> CallPumped(const std::function<std::shared_ptr<T>()>& work, const MessageFilterHook& hook = {})
{
    constexpr std::chrono::milliseconds kMoment{50};
    const auto call = AsideCall<T>::Start(work, WakeQueue);
    if (call == nullptr)
        return work();
    if (!call->WaitFor(kMoment))
        PumpUntil([&] { return call->IsFinished(); }, hook);
    return call->Result();
}

/// The same with a limit: null when `work` takes longer, its late result being handed to nobody.
template <typename T>
std::shared_ptr<T> CallPumpedWithin(std::chrono::milliseconds limit, std::function<std::shared_ptr<T>()> work)
{
    return CallPumped<T>([limit, work = std::move(work)] { return CallWithin<T>(limit, work); });
}

} // namespace platform
