// Starting programs: their environment, and what lies between fork and exec.
#include "platform/desktop/spawn.h"

#include "platform/desktop/glib_owner.h"

#include <csignal>
#include <unistd.h>

namespace platform
{

void DetachChild(gpointer)
{
    setsid();
    for (int number = 1; number < NSIG; ++number)
        std::signal(number, SIG_DFL); // fails for those that cannot be changed, which are at their default
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

std::string SpawnDetached(const std::vector<std::string>& words, const std::string& folder)
{
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    char** environment = g_get_environ();
    environment = g_environ_unsetenv(environment, "DESKTOP_STARTUP_ID");
    environment = g_environ_unsetenv(environment, "XDG_ACTIVATION_TOKEN");
    const GStrvOwner owner(g_environ_setenv(environment, "PWD", folder.c_str(), TRUE));
    GError* error = nullptr;
    const bool started = g_spawn_async(folder.c_str(), arguments.data(), owner.get(), kDetachedSpawnFlags, DetachChild,
                                       nullptr, nullptr, &error) != FALSE;
    const GErrorOwner errorOwner(error);
    return started ? "" : error->message;
}

} // namespace platform
