// Registrations for change notices.
//
// A registration begins to watch only when the program has nothing else to do, after its first frame. What changed in
// between is found by the folder's modification time. A notice is posted at most once until the folder has been read
// again, so a receiver that is slow to read is not flooded.
#include "platform/shell/change_notify.h"

#include "windows.h"

#include "platform/base/deferred.h"
#include "platform/services/desktop_module.h"
#include "platform/base/fault_points.h"
#include "platform/files/applications_menu.h"
#include "platform/files/menu_reading.h"
#include "platform/services/watch_service.h"
#include "platform/shell/namespace.h"
#include "platform/files/trusted_place.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <mutex>
#include <sys/stat.h>
#include <thread>

namespace platform
{

namespace
{

/// One registration; shared with the watching thread.
class Registration
{
public:
    Registration(HWND window, UINT message, std::string path)
        : m_window(window), m_message(message), m_path(std::move(path))
    {
    }

    const std::string& Path() const { return m_path; }

    void FolderRead(std::int64_t stamp)
    {
        const std::lock_guard lock(m_mutex);
        m_readStamp = stamp;
        m_undelivered = false;
    }

    /// Posts the notice; false while an earlier one waits to be served.
    bool Notify()
    {
        // A receiver that never reads the folder again is told all the same, only not so often.
        constexpr std::chrono::seconds kForgotten{1};
        std::unique_lock lock(m_mutex);
        if (m_active && m_undelivered && std::chrono::steady_clock::now() - m_posted < kForgotten)
            return false;
        lock.unlock();
        Post();
        return true;
    }

    /// Posts the notice whatever waits to be served, for those who tell but once.
    void Post()
    {
        {
            const std::lock_guard lock(m_mutex);
            if (!m_active)
                return;
            m_undelivered = true;
            m_posted = std::chrono::steady_clock::now();
        }
        PostMessageW(m_window, m_message, 0, 0);
    }

    void WatchStarted(std::int64_t modified)
    {
        std::unique_lock lock(m_mutex);
        const bool missed = m_readStamp != kNeverRead && m_readStamp != modified;
        lock.unlock();
        if (missed)
            Notify();
    }

    /// Starts the watch, unless the registration has ended meanwhile.
    static void Watch(const std::shared_ptr<Registration>& self);
    void End();

private:
    static constexpr std::int64_t kNeverRead = -2;

    const HWND m_window;
    const UINT m_message;
    const std::string m_path;
    std::mutex m_mutex;
    bool m_active = true;
    bool m_undelivered = false;
    std::chrono::steady_clock::time_point m_posted;
    std::int64_t m_readStamp = kNeverRead;
    void* m_watch = nullptr; ///< context of the watch
};

using Shared = std::shared_ptr<Registration>;

Registration& RegistrationOf(void* context)
{
    return **static_cast<Shared*>(context);
}

const WatchService* Service()
{
    return static_cast<const WatchService*>(DesktopModuleSymbol("orb_watch_service"));
}

void Registration::Watch(const Shared& self)
{
    const std::lock_guard lock(self->m_mutex);
    const WatchService* service = self->m_active ? Service() : nullptr; // no loading of libraries for nothing
    if (service == nullptr)
        return;
    const FolderWatcher watcher{
        new Shared(self),
        [](void* context) { return RegistrationOf(context).Notify(); },
        [](void* context, std::int64_t modified) { RegistrationOf(context).WatchStarted(modified); },
        [](void* context) { delete static_cast<Shared*>(context); },
    };
    self->m_watch = watcher.context;
    service->start(self->m_path.empty() ? "/" : self->m_path.c_str(), watcher);
}

void Registration::End()
{
    const std::lock_guard lock(m_mutex);
    m_active = false;
    if (m_watch != nullptr)
        Service()->stop(m_watch);
}

/// Starts the watch now, or, where touching the folder may block, from a thread that can afford to wait.
void BeginWatch(const Shared& registration)
{
    if (IsMenuPath(registration->Path()))
    {
        FollowMenu();
        return;
    }
    if (InTrustedPlace(registration->Path()))
    {
        Registration::Watch(registration);
        return;
    }
    try
    {
        std::thread(
            [registration]
            {
                struct stat status;
                stat(registration->Path().c_str(), &status);
                Registration::Watch(registration);
            })
            .detach();
    }
    catch (const std::system_error&)
    {
        // Without a thread there are no notices; the folder is still read afresh at every opening.
    }
}

struct Registrations
{
    std::mutex mutex;
    std::map<ULONG, Shared> byId;
    std::map<std::string, std::int64_t> readStamps; ///< of the folders read so far
    ULONG lastId = 0;
};

Registrations& All()
{
    static auto& registrations = *new Registrations;
    return registrations;
}

} // namespace

void FolderWasRead(const FolderListing& listing)
{
    const std::lock_guard lock(All().mutex);
    All().readStamps[listing.path] = listing.modified;
    for (const auto& [id, registration] : All().byId)
        if (registration->Path() == listing.path)
            registration->FolderRead(listing.modified);
}

void FolderHasChanged(const std::string& path)
{
    const std::lock_guard lock(All().mutex);
    for (const auto& [id, registration] : All().byId)
        if (registration->Path() == path)
            registration->Post();
}

} // namespace platform

ULONG SHChangeNotifyRegister(HWND window, int sources, LONG events, UINT message, int entries,
                             const SHChangeNotifyEntry* entry)
{
    std::string path;
    const bool valid = entries == 1 && entry != nullptr && entry->pidl != nullptr && sources != 0 && events != 0;
    if (!valid || platform::FaultPoint("SHChangeNotifyRegister") || !platform::AppendListPath(path, entry->pidl))
        return 0;
    const auto registration = std::make_shared<platform::Registration>(window, message, path);
    platform::Registrations& all = platform::All();
    const std::lock_guard lock(all.mutex);
    const auto read = all.readStamps.find(path);
    if (read != all.readStamps.end())
        registration->FolderRead(read->second);
    all.byId.emplace(++all.lastId, registration);
    platform::Defer(platform::AtExit::Drop, [registration] { platform::BeginWatch(registration); });
    return all.lastId;
}

BOOL SHChangeNotifyDeregister(ULONG id)
{
    platform::Registrations& all = platform::All();
    std::unique_lock lock(all.mutex);
    const auto node = all.byId.extract(id);
    lock.unlock();
    if (node.empty())
        return FALSE;
    node.mapped()->End();
    return TRUE;
}
