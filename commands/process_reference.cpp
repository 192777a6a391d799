// The process reference and its exit handler.
#include "commands/process_reference.h"

#include <shlobj.h>

#include <cstdlib>

ShellProcessReference::ShellProcessReference() : m_mainThread(GetCurrentThreadId()) {}

HRESULT STDMETHODCALLTYPE ShellProcessReference::QueryInterface(REFIID iid, void** object)
{
    if (!IsEqualIID(iid, IID_IUnknown))
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IUnknown*>(this);
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE ShellProcessReference::AddRef()
{
    return ++m_count;
}

ULONG STDMETHODCALLTYPE ShellProcessReference::Release()
{
    const ULONG count = --m_count;
    if (count == 0)
        PostThreadMessageW(m_mainThread, WM_NULL, 0, 0);
    return count;
}

void ShellProcessReference::Drain()
{
    SHSetInstanceExplorer(nullptr);
    Release();
    MSG message;
    while (m_count != 0 && GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

namespace
{

/// Outlives every exit handler: shell threads may hold it to the very end.
ShellProcessReference& ProcessReference()
{
    static ShellProcessReference& reference = *new ShellProcessReference;
    return reference;
}

[[maybe_unused]] const bool g_registered = []
{
    SHSetInstanceExplorer(&ProcessReference());
    std::atexit([] { ProcessReference().Drain(); });
    return true;
}();

} // namespace
