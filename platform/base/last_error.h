// Last-error helpers: how errno and missing resources become Windows error codes.
#pragma once

#include "winbase.h"
#include "winerror.h"

namespace platform
{

/// The Windows error code that says what an errno value says.
DWORD ErrorFromErrno(int error);

/// Sets the last error and returns `result`, so that a failing call is one statement.
template <typename T>
T Fail(DWORD error, T result)
{
    SetLastError(error);
    return result;
}

} // namespace platform
