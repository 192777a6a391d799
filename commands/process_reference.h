// What keeps the process alive while shell work started from it goes on.
#pragma once

#include <unknwn.h>

#include <atomic>

/// The object that shell components reference while they need the process. One static instance, never deleted; the
/// process itself holds the first reference until it exits. AddRef and Release may come from any thread.
class ShellProcessReference final : public IUnknown
{
public:
    /// Remembers the calling thread as the one that runs the message loop.
    ShellProcessReference();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    /// At 0 wakes the main thread with WM_NULL.
    ULONG STDMETHODCALLTYPE Release() override;

    /// Withdraws the object from the shell, gives up the process's own reference and dispatches messages until no
    /// reference is left or WM_QUIT comes.
    void Drain();

private:
    std::atomic<ULONG> m_count{1};
    DWORD m_mainThread;
};
