// The program's own file.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/base/text.h"

#include <algorithm>
#include <limits.h>
#include <unistd.h>

DWORD GetModuleFileNameW(HMODULE, LPWSTR path, DWORD capacity)
{
    using namespace platform;
    char file[PATH_MAX];
    const ssize_t length = FaultPoint("GetModuleFileNameW") ? -1 : readlink("/proc/self/exe", file, sizeof(file));
    if (length < 0 || path == nullptr || capacity == 0)
        return Fail(length < 0 ? ERROR_FILE_NOT_FOUND : ERROR_INVALID_PARAMETER, DWORD{0});
    const std::u16string name = ShellPathFromPosix({file, static_cast<std::size_t>(length)});
    const std::size_t copied = std::min<std::size_t>(name.size(), capacity - 1);
    *std::copy_n(name.begin(), copied, path) = 0;
    if (copied < name.size())
        return Fail(ERROR_INSUFFICIENT_BUFFER, capacity);
    return static_cast<DWORD>(copied);
}
