// Keeping and handing out the program's process reference.
#include "platform/base/process_hold.h"

#include <mutex>

namespace platform
{

namespace
{

// The program sets its reference during static initialisation, so this must be ready before any code runs.
constinit std::mutex g_mutex;
constinit IUnknown* g_reference = nullptr;

IUnknown* TakeReference()
{
    const std::lock_guard lock(g_mutex); // between reading and AddRef it must not be withdrawn
    if (g_reference != nullptr)
        g_reference->AddRef();
    return g_reference;
}

} // namespace

ProcessHold::ProcessHold() : m_reference(TakeReference()) {}

ProcessHold::~ProcessHold()
{
    if (m_reference != nullptr)
        m_reference->Release();
}

} // namespace platform

void SHSetInstanceExplorer(IUnknown* reference)
{
    const std::lock_guard lock(platform::g_mutex);
    platform::g_reference = reference;
}
