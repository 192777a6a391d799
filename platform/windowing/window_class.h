// Window classes.
#pragma once

#include "windows.h"

#include <string>
#include <string_view>

namespace platform
{

/// A class style of the layer's own controls: told to erase its background, a window of the class has its parent draw
/// all of it. The parent, when it is painted itself, leaves such children's areas to them.
constexpr UINT kErasedByParent = 0x80000000;

struct WindowClass
{
    std::u16string name;
    ATOM atom = 0;
    UINT style = 0;
    WNDPROC procedure = nullptr;
    int windowExtra = 0;
    HINSTANCE instance = nullptr;
    HICON icon = nullptr;
    HCURSOR cursor = nullptr;
    HBRUSH background = nullptr;
    int windows = 0; ///< that exist
};

/// The class of a name or atom (letter case ignored); null when there is none. The common controls' classes come to be
/// when a name is first not found, so that a program without them pays nothing.
WindowClass* FindWindowClass(LPCWSTR nameOrAtom);

} // namespace platform
