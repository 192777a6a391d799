// GetProcAddress over a table of the functions that programs look up at run time.
//
// In a file of its own: the table refers to the windowing library, and only a program that calls GetProcAddress should
// have to link that. The table is constant data, so it answers during static initialisation too.
#include "platform/base/last_error.h"
#include "platform/base/modules.h"

#include "windows.h"
#include "shellscalingapi.h"

#include <cstring>

namespace
{

/// The type is put right by the caller; on the way it is a plain address.
template <typename Function>
FARPROC AddressOf(Function* function)
{
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

FARPROC FindProcedure(const char* name)
{
    struct Procedure
    {
        const char* name;
        FARPROC address;
    };
    // Function-local, because a cast of a function's address is no constant expression.
    const Procedure procedures[] = {
        {"GetDpiForMonitor", AddressOf(&GetDpiForMonitor)},
        {"MonitorFromPoint", AddressOf(&MonitorFromPoint)},
        {"MonitorFromWindow", AddressOf(&MonitorFromWindow)},
    };
    for (const Procedure& procedure : procedures)
        if (std::strcmp(procedure.name, name) == 0)
            return procedure.address;
    return nullptr;
}

} // namespace

FARPROC GetProcAddress(HMODULE module, LPCSTR procName)
{
    constexpr FARPROC kNone = nullptr;
    if (!platform::IsSystemModule(module) || (reinterpret_cast<ULONG_PTR>(procName) >> 16) == 0)
        return platform::Fail(ERROR_PROC_NOT_FOUND, kNone);
    const FARPROC address = FindProcedure(procName);
    return address != nullptr ? address : platform::Fail(ERROR_PROC_NOT_FOUND, kNone);
}
