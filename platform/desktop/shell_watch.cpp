// Folder watches.
#include "platform/services/watch_service.h"

#include "platform/base/file_stamp.h"
#include "platform/desktop/glib_owner.h"

#include <algorithm>
#include <list>
#include <string>
#include <string_view>

namespace platform
{

namespace
{

/// The shortest time between two tellings, in milliseconds.
constexpr guint kQuietTime = 100;

struct Watch
{
    std::string folder;
    FolderWatcher watcher;
    GObjectOwner<GFileMonitor> monitor;
    gint64 lastTold = 0;      ///< g_get_monotonic_time
    GSource* later = nullptr; ///< the telling that waits, if any
};

/// The watching thread's context and, used on that thread alone, the watches.
struct Watching
{
    GMainContext* context = g_main_context_new();
    std::list<Watch> watches;
};

gpointer RunContext(gpointer context)
{
    g_main_context_push_thread_default(static_cast<GMainContext*>(context));
    GMainLoop* loop = g_main_loop_new(static_cast<GMainContext*>(context), FALSE);
    g_main_loop_run(loop);
    return nullptr;
}

Watching& Thread()
{
    static auto& watching = *[]
    {
        auto* made = new Watching;
        g_thread_unref(g_thread_new("orb-watch", RunContext, made->context));
        return made;
    }();
    return watching;
}

/// Runs a function object once on the watching thread.
template <typename F>
void OnWatchingThread(F work)
{
    const auto run = [](gpointer data) -> gboolean
    {
        (*static_cast<F*>(data))();
        return G_SOURCE_REMOVE;
    };
    const auto destroy = [](gpointer data) { delete static_cast<F*>(data); };
    GSource* source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(source, run, new F(std::move(work)), destroy);
    g_source_attach(source, Thread().context);
    g_source_unref(source);
}

void TellLater(Watch& watch, guint delay);

void TellNow(Watch& watch)
{
    watch.lastTold = g_get_monotonic_time();
    if (!watch.watcher.changed(watch.watcher.context))
        TellLater(watch, kQuietTime);
}

void TellLater(Watch& watch, guint delay)
{
    const auto tell = [](gpointer data) -> gboolean
    {
        auto& waiting = *static_cast<Watch*>(data);
        waiting.later = nullptr;
        TellNow(waiting);
        return G_SOURCE_REMOVE;
    };
    watch.later = g_timeout_source_new(delay);
    g_source_set_callback(watch.later, tell, &watch, nullptr);
    g_source_attach(watch.later, Thread().context);
    g_source_unref(watch.later); // the context keeps it until it has run or is destroyed
}

/// The first change is told at once, what follows on its heels together.
void Changed(Watch& watch)
{
    if (watch.later != nullptr)
        return;
    const gint64 since = (g_get_monotonic_time() - watch.lastTold) / 1000;
    if (watch.lastTold == 0 || since >= kQuietTime)
        TellNow(watch);
    else
        TellLater(watch, kQuietTime - static_cast<guint>(since));
}

bool IsShownName(GFile* file)
{
    const GTextOwner name(file != nullptr ? g_file_get_basename(file) : nullptr);
    return name != nullptr && *name != '.' && !std::string_view(name.get()).ends_with('~');
}

bool ContentMatters(GFile* file)
{
    const GTextOwner name(g_file_get_basename(file));
    return name != nullptr && std::string_view(name.get()).ends_with(".desktop");
}

void OnEvent(GFileMonitor*, GFile* file, GFile* otherFile, GFileMonitorEvent event, gpointer data)
{
    auto& watch = *static_cast<Watch*>(data);
    switch (event)
    {
    case G_FILE_MONITOR_EVENT_CHANGED: // one of many; the hint follows when they are over
    case G_FILE_MONITOR_EVENT_ATTRIBUTE_CHANGED:
        return;
    case G_FILE_MONITOR_EVENT_CHANGES_DONE_HINT:
        if (!ContentMatters(file))
            return;
        break;
    default:
        break;
    }
    const GTextOwner path(g_file_get_path(file));
    const bool folderItself = path != nullptr && watch.folder == path.get();
    if (folderItself || IsShownName(file) || IsShownName(otherFile))
        Changed(watch);
}

void Begin(Watch& watch)
{
    const GObjectOwner<GFile> file(g_vfs_get_file_for_path(g_vfs_get_local(), watch.folder.c_str()));
    watch.monitor.reset(g_file_monitor_directory(file.get(), G_FILE_MONITOR_WATCH_MOVES, nullptr, nullptr));
    if (watch.monitor != nullptr)
        g_signal_connect(watch.monitor.get(), "changed", G_CALLBACK(OnEvent), &watch);
    watch.watcher.started(watch.watcher.context, ModificationTime(watch.folder));
}

void End(Watch& watch)
{
    if (watch.later != nullptr)
        g_source_destroy(watch.later);
    if (watch.monitor != nullptr)
    {
        g_signal_handlers_disconnect_by_data(watch.monitor.get(), &watch);
        g_file_monitor_cancel(watch.monitor.get());
    }
    watch.watcher.released(watch.watcher.context);
}

void Start(const char* folder, FolderWatcher watcher)
{
    OnWatchingThread(
        [path = std::string(folder), watcher] {
            Begin(Thread().watches.emplace_back(Watch{path, watcher, nullptr}));
        });
}

void Stop(void* context)
{
    OnWatchingThread(
        [context]
        {
            std::list<Watch>& watches = Thread().watches;
            const auto found = std::find_if(
                watches.begin(), watches.end(),
                [context](const Watch& watch) { return watch.watcher.context == context; });
            if (found != watches.end())
            {
                End(*found);
                watches.erase(found);
            }
        });
}

} // namespace

} // namespace platform

extern "C" __attribute__((visibility("default")))
const platform::WatchService orb_watch_service = {platform::Start, platform::Stop};
