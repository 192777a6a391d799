// Between fork and exec.
#include "platform/desktop/spawn.h"

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

} // namespace platform
