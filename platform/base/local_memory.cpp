// Memory by handle. Nothing moves, so a handle is the address.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"

#include <cstdlib>

using namespace platform;

HLOCAL LocalAlloc(UINT, SIZE_T size)
{
    // Always zeroed: nobody relies on what memory held before.
    void* memory = FaultPoint("LocalAlloc") ? nullptr : std::calloc(size != 0 ? size : 1, 1);
    return memory != nullptr ? memory : Fail(ERROR_NOT_ENOUGH_MEMORY, static_cast<HLOCAL>(nullptr));
}

LPVOID LocalLock(HLOCAL memory)
{
    return FaultPoint("LocalLock") ? Fail(ERROR_NOT_ENOUGH_MEMORY, static_cast<LPVOID>(nullptr)) : memory;
}

BOOL LocalUnlock(HLOCAL)
{
    return FALSE; // documented: it is not locked any more
}

HLOCAL LocalFree(HLOCAL memory)
{
    std::free(memory);
    return nullptr;
}
