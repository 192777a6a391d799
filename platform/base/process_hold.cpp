// Keeping and handing out the program's process reference.
#include "platform/base/process_hold.h"

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace platform
{

namespace
{

// The program sets its reference during static initialisation, so this must be ready before any code runs.
constinit std::mutex g_mutex;
constinit IUnknown* g_reference = nullptr;
constinit ProcessHold* g_limited = nullptr; ///< all that are

IUnknown* TakeReference()
{
    const std::lock_guard lock(g_mutex); // between reading and AddRef it must not be withdrawn
    if (g_reference != nullptr)
        g_reference->AddRef();
    return g_reference;
}

} // namespace

ProcessHold::ProcessHold() : m_reference(TakeReference()) {}

ProcessHold::ProcessHold(const ProcessHold& other)
{
    const std::lock_guard lock(g_mutex);
    m_reference = other.m_reference;
    if (m_reference != nullptr)
        m_reference->AddRef();
}

ProcessHold::~ProcessHold()
{
    if (m_limited)
    {
        const std::lock_guard lock(g_mutex);
        ProcessHold** link = &g_limited;
        while (*link != this)
            link = &(*link)->m_next;
        *link = m_next;
    }
    if (m_reference != nullptr)
        m_reference->Release();
}

void ProcessHold::Limit()
{
    const std::lock_guard lock(g_mutex);
    if (!std::exchange(m_limited, true))
        m_next = std::exchange(g_limited, this);
}

void ProcessHold::GiveUpLimited()
{
    const std::lock_guard lock(g_mutex);
    for (ProcessHold* hold = g_limited; hold != nullptr; hold = hold->m_next)
        if (IUnknown* reference = std::exchange(hold->m_reference, nullptr))
            reference->Release();
}

} // namespace platform

void SHSetInstanceExplorer(IUnknown* reference)
{
    using platform::ProcessHold;
    std::unique_lock lock(platform::g_mutex);
    platform::g_reference = reference;
    const bool isAwaited = reference == nullptr && platform::g_limited != nullptr;
    lock.unlock();
    if (!isAwaited)
        return;
    try
    {
        std::thread(
            []
            {
                std::this_thread::sleep_for(ProcessHold::kLongestWait);
                ProcessHold::GiveUpLimited();
            })
            .detach();
    }
    catch (const std::system_error&)
    {
        ProcessHold::GiveUpLimited(); // nobody would do it later
    }
}
