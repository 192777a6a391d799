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

/// The class of a name or atom (letter case ignored); null when there is none.
WindowClass* FindWindowClass(LPCWSTR nameOrAtom);

/// A class that the layer itself offers to every program. Its windows have room for one pointer (GetWindowLongPtrW with
/// index 0), so that GWLP_USERDATA stays the program's.
struct SystemClass
{
    LPCWSTR name;
    WNDPROC procedure;
    UINT style;
    SystemClass* next = nullptr;
};
/// Makes a class known; it is registered when somebody first asks for it, so that a program without it pays nothing.
/// Called by each control before main, with an entry that lives as long as the process.
void OfferSystemClass(SystemClass& entry);

} // namespace platform
