// Registering with the shell for change notices.
#include "content/change_watcher.h"

namespace
{

constexpr int kSources = SHCNRF_InterruptLevel | SHCNRF_ShellLevel | SHCNRF_NewDelivery;
constexpr LONG kEvents =
    SHCNE_RENAMEITEM | SHCNE_CREATE | SHCNE_DELETE | SHCNE_MKDIR | SHCNE_RMDIR | SHCNE_RENAMEFOLDER;
static_assert(kSources == 0x8003 && kEvents == 0x2001F);

} // namespace

void CShellItemChangeWatcher::Watch(int slot, LPCITEMIDLIST folder, HWND window, UINT message)
{
    StopWatching(slot);
    SHChangeNotifyEntry entry{};
    entry.pidl = folder;
    entry.fRecursive = FALSE;
    m_notifyIds[slot] = SHChangeNotifyRegister(window, kSources, kEvents, message, 1, &entry);
}

void CShellItemChangeWatcher::StopWatching(int slot)
{
    if (m_notifyIds[slot] != 0)
        SHChangeNotifyDeregister(m_notifyIds[slot]);
    m_notifyIds[slot] = 0;
}

void CShellItemChangeWatcher::StopWatching()
{
    for (int slot = 0; slot < kSlots; ++slot)
        StopWatching(slot);
}
