// Keeping and handing out the program's process reference.
#include "platform/base/process_hold.h"

#include <mutex>
#include <set>
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

/// With the lock.
std::set<ProcessHold*>& Limited()
{
    static auto& holds = *new std::set<ProcessHold*>;
    return holds;
}

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
    {
        const std::lock_guard lock(g_mutex);
        Limited().erase(this);
    }
    if (m_reference != nullptr)
        m_reference->Release();
}

void ProcessHold::Limit()
{
    const std::lock_guard lock(g_mutex);
    Limited().insert(this);
}

void ProcessHold::GiveUpLimited()
{
    const std::lock_guard lock(g_mutex);
    for (ProcessHold* hold : Limited())
        if (IUnknown* reference = std::exchange(hold->m_reference, nullptr))
            reference->Release();
}

} // namespace platform

void SHSetInstanceExplorer(IUnknown* reference)
{
    using platform::ProcessHold;
    std::unique_lock lock(platform::g_mutex);
    platform::g_reference = reference;
    const bool isAwaited = reference == nullptr && !platform::Limited().empty();
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
