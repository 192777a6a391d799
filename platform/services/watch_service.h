// Noticing changes of folders, by GIO's file monitors on a thread of their own.
#pragma once

#include <cstdint>

namespace platform
{

/// Whoever wants to know; the functions are called on the watching thread, never after `released`.
struct FolderWatcher
{
    void* context;
    /// The folder may have changed. False asks to be told again a little later.
    bool (*changed)(void* context);
    /// The watch is in place, and the folder's modification time (nanoseconds, 0 when it is not there) now is this.
    void (*started)(void* context, std::int64_t modified);
    /// Nothing more will come.
    void (*released)(void* context);
};

struct WatchService
{
    /// Watches the folder from now on: files coming, going and being renamed, and desktop entries whose content
    /// changed. Hidden files do not count. Changes in quick succession are told as one. Returns at once, may be called
    /// on any thread.
    void (*start)(const char* folder, FolderWatcher watcher);
    /// Ends the watch with this context, which may still be told a change while this returns at once.
    void (*stop)(void* context);
};

} // namespace platform

extern "C" const platform::WatchService orb_watch_service;
