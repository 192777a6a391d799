// Memory by handle. Nothing moves, so a handle is the address.
//
// Global memory, which data objects hand over, knows its size: it stands before the bytes.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"

#include <cstddef>
#include <cstdlib>

using namespace platform;

namespace
{

struct alignas(std::max_align_t) SizeHeader
{
    SIZE_T size;
};

SizeHeader* HeaderOf(HGLOBAL memory)
{
    return static_cast<SizeHeader*>(memory) - 1;
}

} // namespace

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

HGLOBAL GlobalAlloc(UINT, SIZE_T size)
{
    const bool fits = size <= static_cast<SIZE_T>(-1) - sizeof(SizeHeader);
    void* memory = !fits || FaultPoint("GlobalAlloc") ? nullptr : std::calloc(sizeof(SizeHeader) + size, 1);
    if (memory == nullptr)
        return Fail(ERROR_NOT_ENOUGH_MEMORY, static_cast<HGLOBAL>(nullptr));
    auto* header = static_cast<SizeHeader*>(memory);
    header->size = size;
    return header + 1;
}

LPVOID GlobalLock(HGLOBAL memory)
{
    return FaultPoint("GlobalLock") ? Fail(ERROR_NOT_ENOUGH_MEMORY, static_cast<LPVOID>(nullptr)) : memory;
}

BOOL GlobalUnlock(HGLOBAL)
{
    return FALSE; // documented: it is not locked any more
}

SIZE_T GlobalSize(HGLOBAL memory)
{
    return memory != nullptr ? HeaderOf(memory)->size : 0;
}

HGLOBAL GlobalFree(HGLOBAL memory)
{
    if (memory != nullptr)
        std::free(HeaderOf(memory));
    return nullptr;
}
