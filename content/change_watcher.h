// Shell change-notification registrations of one level.
#pragma once

#include <shlobj.h>

#include <cstdint>

class CShellItemChangeWatcher
{
public:
    CShellItemChangeWatcher() = default;
    CShellItemChangeWatcher(const CShellItemChangeWatcher&) = delete;
    CShellItemChangeWatcher& operator=(const CShellItemChangeWatcher&) = delete;

    /// Registers the slot (0 or 1) for changes directly inside the folder, reported to the window as `message`; an
    /// earlier registration of the slot goes first.
    void Watch(int slot, LPCITEMIDLIST folder, HWND window, UINT message);

protected:
    ~CShellItemChangeWatcher() { StopWatching(); }

    /// Change callback. Levels get their notices as window messages instead, and override it to do nothing.
    virtual void OnShellItemChange(LONG event, LPCITEMIDLIST first, LPCITEMIDLIST second) = 0;

    void StopWatching();

private:
    static constexpr int kSlots = 4;

    void StopWatching(int slot);

    std::uint32_t m_notifyIds[kSlots] = {}; ///< 0: no registration
};
