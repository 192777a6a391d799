// Module handles: pseudo handles for the program and for the system modules that the layer stands for.
#include "platform/base/modules.h"

#include "platform/base/last_error.h"
#include "platform/base/text.h"

#include <iterator>
#include <string_view>

namespace platform
{
namespace
{

constexpr std::u16string_view kSystemModules[] = {u"USER32",   u"GDI32", u"SHCORE",  u"SHELL32",
                                                  u"COMCTL32", u"OLE32", u"KERNEL32"};
// Values that no object of the handle table and no address has.
constexpr ULONG_PTR kProgram = 0x10;
constexpr ULONG_PTR kFirstSystemModule = 0x11;

HMODULE ModuleFromValue(ULONG_PTR value)
{
    return reinterpret_cast<HMODULE>(value);
}

} // namespace

bool IsProgramModule(HMODULE module)
{
    return module == nullptr || module == ModuleFromValue(kProgram);
}

bool IsSystemModule(HMODULE module)
{
    const auto value = reinterpret_cast<ULONG_PTR>(module);
    return value >= kFirstSystemModule && value < kFirstSystemModule + std::size(kSystemModules);
}

} // namespace platform

HMODULE GetModuleHandleW(LPCWSTR moduleName)
{
    using namespace platform;
    if (moduleName == nullptr)
        return ModuleFromValue(kProgram);
    std::u16string name = UpperCase(std::u16string_view(moduleName));
    if (name.ends_with(u".DLL"))
        name.resize(name.size() - 4);
    for (std::size_t i = 0; i < std::size(kSystemModules); ++i)
        if (name == kSystemModules[i])
            return ModuleFromValue(kFirstSystemModule + i);
    return Fail(ERROR_MOD_NOT_FOUND, static_cast<HMODULE>(nullptr));
}
