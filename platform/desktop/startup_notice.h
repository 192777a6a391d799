// The launch context: start-up notification on X11, and the environment of what is started.
//
// Follows the freedesktop Startup Notification protocol: the launcher broadcasts "new:" with an identifier that the
// started program repeats in "remove:" when its window is up.
#pragma once

#include "platform/desktop/glib_owner.h"

#include <string>

namespace platform
{

/// A context whose programs find `id` in DESKTOP_STARTUP_ID and XDG_ACTIVATION_TOKEN, neither of them when it is empty,
/// and in no case what this process was started with.
GObjectOwner<GAppLaunchContext> MakeLaunchContext(const std::string& id);

/// Announces that `name` is being started; returns the identifier, "" without an X server.
std::string AnnounceStart(const char* name, const char* icon, const char* program);
/// Takes an announcement back; nothing for "". Both from any thread.
void RetractStart(const std::string& id);

} // namespace platform
