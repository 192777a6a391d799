// Starting programs that have nothing more to do with this one.
#pragma once

#include <gio/gio.h>

#include <string>
#include <vector>

namespace platform
{

/// For g_spawn: descriptors closed, standard streams on /dev/null, no child of this process (an intermediate one dies).
constexpr GSpawnFlags kDetachedSpawnFlags =
    GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);

/// Child set-up for g_spawn: a session of its own, default signal handling, nothing blocked.
void DetachChild(gpointer);

/// Starts a program with the arguments `words`, in a folder; "" on success, else the reason.
std::string SpawnDetached(const std::vector<std::string>& words, const std::string& folder);

} // namespace platform
