// Loading of the modules.
#include "platform/services/desktop_module.h"

#include "platform/base/product.h"

#include <dlfcn.h>
#include <string>
#include <unistd.h>

namespace platform
{
namespace
{

std::string ProgramFolder()
{
    char path[4096];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof(path));
    const std::string program(path, length > 0 ? static_cast<std::size_t>(length) : 0);
    const std::size_t slash = program.rfind('/');
    return program.substr(0, slash == std::string::npos ? 0 : slash);
}

/// Beside the program, as it is built, or where the installation puts it seen from there: wherever an installed tree is
/// moved, the program finds its own module and no other.
void* LoadModule(const char* name)
{
    for (const char* folder : {"", "/" ORB_MODULE_FROM_PROGRAM})
    {
        const std::string path = ProgramFolder() + folder + name;
        if (void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE))
            return module;
    }
    return nullptr;
}

} // namespace

void* DesktopModuleSymbol(const char* name)
{
    static void* const module = LoadModule("/" ORB_PRODUCT "-desktop.so");
    return module != nullptr ? dlsym(module, name) : nullptr;
}

void* KeyboardModuleSymbol(const char* name)
{
    static void* const module = LoadModule("/" ORB_PRODUCT "-keyboard.so");
    return module != nullptr ? dlsym(module, name) : nullptr;
}

void* InputMethodModuleSymbol(const char* name)
{
    static void* const module = LoadModule("/" ORB_PRODUCT "-input-method.so");
    return module != nullptr ? dlsym(module, name) : nullptr;
}

void* CursorModuleSymbol(const char* name)
{
    static void* const module = LoadModule("/" ORB_PRODUCT "-cursors.so");
    return module != nullptr ? dlsym(module, name) : nullptr;
}

} // namespace platform
