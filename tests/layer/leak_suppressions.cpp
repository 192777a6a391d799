// What the leak sanitizer must not count: fontconfig keeps its patterns by offsets, which it cannot follow, and GIO's
// copy of xdgmime loses track of lists that it makes once per process.
#include <unistd.h>

extern "C" const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\nleak:libgio-2.0\n";
}

static const pid_t kTestProcess = getpid();

// In a forked process the parent's other threads are gone, and what only they could reach looks lost.
extern "C" int __lsan_is_turned_off();
int __lsan_is_turned_off()
{
    return getpid() != kTestProcess;
}
