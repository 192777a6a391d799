// Small calls of the system: arithmetic, threads, memory, directories.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/base/text.h"

#include <cerrno>
#include <cstdlib>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

int MulDiv(int number, int numerator, int denominator)
{
    if (denominator == 0)
        return -1;
    const std::int64_t product = static_cast<std::int64_t>(number) * numerator;
    const std::int64_t divisor = denominator;
    const std::int64_t half = (divisor < 0 ? -divisor : divisor) / 2;
    const std::int64_t result = (product < 0 ? product - half : product + half) / divisor;
    const bool fits = result >= std::numeric_limits<int>::min() && result <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(result) : -1;
}

DWORD GetCurrentThreadId()
{
    return static_cast<DWORD>(gettid());
}

LPVOID CoTaskMemAlloc(SIZE_T size)
{
    return platform::FaultPoint("CoTaskMemAlloc") ? nullptr : std::malloc(size != 0 ? size : 1);
}

void CoTaskMemFree(LPVOID memory)
{
    std::free(memory);
}

BOOL CreateDirectoryW(LPCWSTR pathName, SECURITY_ATTRIBUTES*)
{
    if (platform::FaultPoint("CreateDirectoryW"))
        return platform::Fail(ERROR_NOT_ENOUGH_MEMORY, FALSE);
    if (pathName == nullptr || pathName[0] == 0)
        return platform::Fail(ERROR_PATH_NOT_FOUND, FALSE);
    if (mkdir(platform::PosixFromShellPath(pathName).c_str(), 0777) != 0)
        return platform::Fail(platform::ErrorFromErrno(errno), FALSE);
    return TRUE;
}
