// Windows, and what the files of windowing share about them.
//
// Only a top-level window has a native window, and that only from its first showing on. Its children live in the layer
// alone and are drawn into its surface.
#pragma once

#include "platform/base/handle_table.h"
#include "platform/base/last_error.h"
#include "platform/screen/screen.h"
#include "platform/drawing/region.h"
#include "platform/windowing/window_class.h"
#include "windows.h"

#include <string>
#include <utility>
#include <vector>

namespace platform
{

struct Window final : HandleObject
{
    static constexpr HandleKind kHandleKind = HandleKind::Window;

    Window() : HandleObject(HandleKind::Window) {}

    HWND handle = nullptr;
    WNDPROC procedure = nullptr;
    WindowClass* windowClass = nullptr;
    DWORD style = 0;
    DWORD exStyle = 0;
    RECT rect{};   ///< the whole window: in the parent's client area, for a top-level window on the screen
    RECT client{}; ///< its client area, in the same coordinates
    Window* parent = nullptr;
    Window* owner = nullptr;
    std::vector<Window*> children; ///< top of the Z-order first
    UINT_PTR id = 0;
    HINSTANCE instance = nullptr;
    LONG_PTR userData = 0;
    std::vector<BYTE> extra;
    std::u16string text;

    Region update;             ///< client coordinates: what the next WM_PAINT paints
    bool erasePending = false; ///< the update region's background has still to be erased
    bool framePending = false; ///< the frame has still to be drawn
    bool redraw = true;        ///< WM_SETREDRAW
    bool destroying = false;
    bool messageOnly = false;
    bool sizeReported = true; ///< WM_SIZE and WM_MOVE have been sent since creation
    HWND lastFocus = nullptr;

    screen::NativeWindow native = 0; ///< top-level windows only
    Region damage;                   ///< drawn, not yet presented; surface coordinates

    bool IsChild() const { return (style & WS_CHILD) != 0; }
    bool HasFrame() const { return (style & WS_CAPTION) == WS_BORDER; }
    /// Has something outside its client area for WM_NCPAINT to draw: a border, or what a control keeps there.
    bool HasNonClientArea() const { return HasFrame() || (IsChild() && !EqualRect(&rect, &client)); }
    /// Decorated by the window manager.
    bool IsManaged() const { return !IsChild() && (style & WS_CAPTION) == WS_CAPTION; }
};

/// The window of a handle, or null and ERROR_INVALID_WINDOW_HANDLE.
inline Window* RequireWindow(HWND handle)
{
    Window* window = FindObject<Window>(handle);
    return window != nullptr ? window : Fail<Window*>(ERROR_INVALID_WINDOW_HANDLE, nullptr);
}

inline HWND HandleOf(const Window* window)
{
    return window != nullptr ? window->handle : nullptr;
}

inline int Width(const RECT& rect)
{
    return rect.right - rect.left;
}

inline int Height(const RECT& rect)
{
    return rect.bottom - rect.top;
}

inline RECT Moved(RECT rect, int dx, int dy)
{
    return {rect.left + dx, rect.top + dy, rect.right + dx, rect.bottom + dy};
}

// --- the tree (window_tree.cpp)

/// All top-level windows, the top of the Z-order first.
std::vector<Window*>& TopLevels();
/// The handles of a list, to walk it while messages are sent: any of its windows may be gone after each.
std::vector<HWND> HandlesOf(const std::vector<Window*>& windows);
/// The list that holds a window: its parent's children or the top-level windows.
std::vector<Window*>& SiblingsOf(const Window& window);
Window& RootOf(Window& window);
const Window& RootOf(const Window& window);
bool IsDescendant(const Window& window, const Window& ancestor);
/// Visible with all its parents.
bool IsShown(const Window& window);
/// Enabled with all its parents.
bool IsReachable(const Window& window);
/// Screen position of the client area's top-left corner.
POINT ClientOrigin(const Window& window);
RECT ScreenRect(const Window& window);
/// Puts a window into its sibling list as SetWindowPos's second argument says; true when the order changed.
bool PutInZOrder(Window& window, HWND insertAfter);
void RemoveFromZOrder(Window& window);
/// The deepest window at a screen point that mouse input may go to (disabled children are passed over). Asks the
/// windows (WM_NCHITTEST), each of which may then be gone, the result among them.
HWND WindowAtPoint(HWND root, POINT point);

// --- position (window_position.cpp)

/// Asks the window for its client area (WM_NCCALCSIZE). `why` is the message's wParam.
void CalculateClient(HWND window, BOOL why);
/// Gives a top-level window its native window, if it has none yet.
bool EnsureNativeWindow(Window& window);
/// Follows what the window manager has done to a managed window.
void FollowPlacement(const Window& window, const RECT& bounds);

// --- painting (painting.cpp, window_dc.cpp)

/// Everything of the window has to be painted, frame and children included.
void InvalidateWhole(Window& window);
/// A rectangle of the parent's (or nobody's) client area that a child no longer covers.
void InvalidateUncovered(Window& parent, const RECT& rect);
/// A window whose update region is not empty and that can be painted, the outermost first; null when there is none.
Window* NextWindowToPaint();
void PaintFrame(Window& window);
/// Sends all that has been drawn to the screen, and shows windows that wait for their first picture.
void PresentAll();
void PresentWindow(Window& root);
/// What of the window can be seen, in its root's surface; the client area or the whole window.
Region VisibleRegion(const Window& window, bool clientOnly);
/// Forgets a window's open contexts.
void CloseContextsOf(HWND window);

// --- leaving the stage (each forgets a window that goes or is hidden or disabled)
// Those about capture and focus send messages, after which the window may be gone.

void ForgetTimersOf(HWND window);
void ForgetMessagesOf(HWND window);
void ForgetCaptureOf(HWND window);
void ForgetTrackingOf(HWND window);
/// Moves focus and activation away from a window that is hidden or destroyed.
void LeaveFocusOf(HWND window);

} // namespace platform
