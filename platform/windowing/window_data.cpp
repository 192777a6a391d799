// A window's own data: its long values, its text, its class name, whether it is enabled.
#include "platform/windowing/window.h"

#include <algorithm>
#include <cstring>

namespace platform
{
namespace
{

LONG_PTR SetStyle(Window& window, DWORD& style, LONG_PTR value, int which)
{
    // The window's own bookkeeping of visibility stays with ShowWindow and SetWindowPos.
    const LONG_PTR old = static_cast<LONG>(style);
    const DWORD kept = which == GWL_STYLE ? WS_VISIBLE & style : 0;
    style = (static_cast<DWORD>(value) & ~(which == GWL_STYLE ? static_cast<DWORD>(WS_VISIBLE) : 0)) | kept;
    struct
    {
        DWORD before;
        DWORD after;
    } change{static_cast<DWORD>(old), style};
    SendMessageW(window.handle, WM_STYLECHANGED, static_cast<WPARAM>(which), reinterpret_cast<LPARAM>(&change));
    return old;
}

template <typename T, typename V>
LONG_PTR Exchange(T& field, V value)
{
    const T old = field;
    field = value;
    return (LONG_PTR)old; // one of the integer and pointer types that the values below have
}

BYTE* ExtraBytes(Window& window, int index)
{
    const bool inside = index >= 0 && static_cast<std::size_t>(index) + sizeof(LONG_PTR) <= window.extra.size();
    return inside ? window.extra.data() + index : nullptr;
}

void Disable(HWND handle)
{
    Window* window = FindObject<Window>(handle);
    if (window == nullptr || (window->style & WS_DISABLED) != 0)
        return;
    window->style |= WS_DISABLED;
    ForgetCaptureOf(handle);
    if (GetFocus() == handle)
        SetFocus(nullptr);
    SendMessageW(handle, WM_ENABLE, FALSE, 0);
}

} // namespace
} // namespace platform

using namespace platform;

LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value)
{
    Window* found = RequireWindow(window);
    if (found == nullptr)
        return 0;
    switch (index)
    {
    case GWL_STYLE:
        return SetStyle(*found, found->style, value, index);
    case GWL_EXSTYLE:
        return SetStyle(*found, found->exStyle, value, index);
    case GWLP_WNDPROC:
        return Exchange(found->procedure, reinterpret_cast<WNDPROC>(value));
    case GWLP_USERDATA:
        return Exchange(found->userData, value);
    default:
        break;
    }
    BYTE* bytes = ExtraBytes(*found, index);
    if (bytes == nullptr)
        return Fail<LONG_PTR>(ERROR_INVALID_INDEX, 0);
    LONG_PTR old = 0;
    std::memcpy(&old, bytes, sizeof(old));
    std::memcpy(bytes, &value, sizeof(value));
    return old;
}

LONG_PTR GetWindowLongPtrW(HWND window, int index)
{
    Window* found = RequireWindow(window);
    if (found == nullptr)
        return 0;
    switch (index)
    {
    case GWL_STYLE:
        return static_cast<LONG>(found->style);
    case GWL_EXSTYLE:
        return static_cast<LONG>(found->exStyle);
    case GWLP_WNDPROC:
        return reinterpret_cast<LONG_PTR>(found->procedure);
    case GWLP_USERDATA:
        return found->userData;
    default:
        break;
    }
    const BYTE* bytes = ExtraBytes(*found, index);
    if (bytes == nullptr)
        return Fail<LONG_PTR>(ERROR_INVALID_INDEX, 0);
    LONG_PTR value = 0;
    std::memcpy(&value, bytes, sizeof(value));
    return value;
}

BOOL SetWindowTextW(HWND window, LPCWSTR text)
{
    return RequireWindow(window) != nullptr && SendMessageW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0;
}

int GetWindowTextW(HWND window, LPWSTR text, int capacity)
{
    if (RequireWindow(window) == nullptr || text == nullptr || capacity <= 0)
        return 0;
    text[0] = 0;
    return static_cast<int>(
        SendMessageW(window, WM_GETTEXT, static_cast<WPARAM>(capacity), reinterpret_cast<LPARAM>(text)));
}

int GetWindowTextLengthW(HWND window)
{
    return RequireWindow(window) != nullptr ? static_cast<int>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) : 0;
}

BOOL EnableWindow(HWND handle, BOOL enable)
{
    Window* window = RequireWindow(handle);
    if (window == nullptr)
        return FALSE;
    const bool wasDisabled = (window->style & WS_DISABLED) != 0;
    if (enable && wasDisabled)
    {
        window->style &= ~static_cast<DWORD>(WS_DISABLED);
        SendMessageW(handle, WM_ENABLE, TRUE, 0);
    }
    else if (!enable)
    {
        SendMessageW(handle, WM_CANCELMODE, 0, 0);
        Disable(handle);
    }
    return wasDisabled;
}
