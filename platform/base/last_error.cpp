// The last-error value of each thread, and the mapping of errno.
#include "platform/base/last_error.h"

#include <cerrno>

namespace
{

constinit thread_local DWORD t_lastError = ERROR_SUCCESS;

} // namespace

DWORD GetLastError()
{
    return t_lastError;
}

void SetLastError(DWORD error)
{
    t_lastError = error;
}

DWORD platform::ErrorFromErrno(int error)
{
    switch (error)
    {
    case 0:
        return ERROR_SUCCESS;
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
        return ERROR_PATH_NOT_FOUND;
    case EEXIST:
        return ERROR_ALREADY_EXISTS;
    case EACCES:
    case EPERM:
    case EROFS:
        return ERROR_ACCESS_DENIED;
    case ENAMETOOLONG:
        return ERROR_FILENAME_EXCED_RANGE;
    case EINVAL:
        return ERROR_INVALID_NAME;
    case ENOSPC:
    case EDQUOT:
        return ERROR_DISK_FULL;
    case ENOMEM:
        return ERROR_NOT_ENOUGH_MEMORY;
    case EIO:
        return ERROR_WRITE_FAULT;
    default:
        return ERROR_GEN_FAILURE;
    }
}
