// Finding the native window of an owner.
#include "platform/shell/native_parent.h"

#include "platform/windowing/window.h"

namespace platform
{

std::uint32_t NativeParent(HWND owner)
{
    const Window* window = FindObject<Window>(owner != nullptr ? owner : GetActiveWindow());
    return window != nullptr ? RootOf(*window).native : 0;
}

} // namespace platform
