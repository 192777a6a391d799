// What the window manager is told of a window: properties by the conventions of X clients.
#include "platform/screen/x11/windows.h"
#include "platform/screen/x11/xdnd.h"

#include "platform/base/product.h"
#include "platform/base/text.h"

#include <algorithm>
#include <unistd.h>

namespace platform::x11
{
namespace
{

constexpr char kWindowClass[] = ORB_PRODUCT "\0" ORB_PRODUCT_CLASS; // instance and class, each ended by 0

template <typename T>
void SetProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::span<const T> values)
{
    xcb_change_property(Xcb(), XCB_PROP_MODE_REPLACE, window, property, type, sizeof(T) * 8,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

void SetAtoms(xcb_window_t window, Atom property, std::initializer_list<Atom> values)
{
    std::vector<xcb_atom_t> atoms;
    for (const Atom value : values)
        atoms.push_back(TheConnection()[value]);
    SetProperty<xcb_atom_t>(window, TheConnection()[property], XCB_ATOM_ATOM, atoms);
}

/// WM_HINTS (ICCCM 4.1.2.4): the window wants the keyboard.
void SetInputHint(xcb_window_t window)
{
    constexpr std::uint32_t kInputHint = 1;
    const std::uint32_t hints[9] = {kInputHint, 1};
    SetProperty<std::uint32_t>(window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, hints);
}

/// _MOTIF_WM_HINTS (flags, functions, decorations, mode, status), as all window managers read it: to be moved and
/// closed, with a border, a title and a menu, and without buttons that would minimise or maximise it.
void SetDialogFrame(xcb_window_t window)
{
    constexpr std::uint32_t kFunctionsAndDecorations = 1 | 2, kMove = 4, kClose = 32, kBorder = 2, kTitle = 8,
                            kMenu = 16;
    const std::uint32_t hints[5] = {kFunctionsAndDecorations, kMove | kClose, kBorder | kTitle | kMenu};
    const xcb_atom_t property = TheConnection()[Atom::MotifWmHints];
    SetProperty<std::uint32_t>(window, property, property, hints);
}

} // namespace

void SetTitle(xcb_window_t window, std::u16string_view title)
{
    const std::string text = Utf8FromUtf16(title);
    SetProperty<char>(window, TheConnection()[Atom::NetWmName], TheConnection()[Atom::Utf8String], text);
    SetProperty<char>(window, XCB_ATOM_WM_NAME, TheConnection()[Atom::Utf8String], text);
}

/// WM_NORMAL_HINTS (ICCCM 4.1.2.3): the program's own place, and one size.
void SetFixedSize(const NativeWindowState& window)
{
    constexpr std::uint32_t kProgramPosition = 1U << 2, kMinSize = 1U << 4, kMaxSize = 1U << 5;
    const auto width = static_cast<std::uint32_t>(std::max<LONG>(window.bounds.right - window.bounds.left, 1));
    const auto height = static_cast<std::uint32_t>(std::max<LONG>(window.bounds.bottom - window.bounds.top, 1));
    std::uint32_t hints[18] = {kProgramPosition | kMinSize | kMaxSize};
    hints[5] = hints[7] = width;
    hints[6] = hints[8] = height;
    SetProperty<std::uint32_t>(window.id, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, hints);
}

void SetProperties(const NativeWindowState& window, const screen::WindowOptions& options)
{
    SetProperty<char>(window.id, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, {kWindowClass, sizeof(kWindowClass)});
    const std::uint32_t pid = static_cast<std::uint32_t>(getpid());
    SetProperty<std::uint32_t>(window.id, TheConnection()[Atom::NetWmPid], XCB_ATOM_CARDINAL, {&pid, 1});
    SetTitle(window.id, options.title.empty() ? u"" ORB_PRODUCT_TITLE : options.title);
    SetProperty<std::uint32_t>(window.id, TheConnection()[Atom::XdndAware], XCB_ATOM_ATOM, {&kXdndVersion, 1});
    if (window.kind == screen::WindowKind::Popup)
    {
        SetAtoms(window.id, Atom::NetWmWindowType, {Atom::NetWmWindowTypePopupMenu});
        return;
    }
    SetAtoms(window.id, Atom::NetWmWindowType, {Atom::NetWmWindowTypeDialog});
    SetAtoms(window.id, Atom::NetWmState, {Atom::NetWmStateAbove});
    SetAtoms(window.id, Atom::WmProtocols, {Atom::WmDeleteWindow});
    SetInputHint(window.id);
    SetFixedSize(window);
    SetDialogFrame(window.id);
    const NativeWindowState* owner = FindNative(options.transientFor);
    if (owner != nullptr && owner->kind == screen::WindowKind::Managed)
        SetProperty<xcb_window_t>(window.id, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, {&owner->id, 1});
}

} // namespace platform::x11
