// The native windows of this program.
#pragma once

#include "platform/screen/x11/connection.h"
#include "platform/screen/x11/pixel_buffer.h"

namespace platform::x11
{

struct NativeWindowState
{
    xcb_window_t id = 0;
    screen::WindowKind kind = screen::WindowKind::Popup;
    RECT bounds{};  ///< as windowing knows them; the pixels have this size
    POINT placed{}; ///< managed windows: where the window manager has it, as last told
    screen::PointerShape pointer = screen::PointerShape::Arrow;
    bool shown = false;            ///< asked for
    bool mapPending = false;       ///< waits for Commit, so that window and picture come together
    bool viewable = false;         ///< managed windows: the window manager has mapped it
    xcb_window_t frame = 0;        ///< managed windows: the window manager's window around it
    bool keyboardWanted = false;   ///< managed windows: take the keyboard when viewable
    std::vector<RECT> waiting;     ///< presented before it was mapped
    std::uint16_t mapSequence = 0; ///< of the request that mapped it; the picture followed right behind
    std::shared_ptr<PixelBuffer> pixels;
};

/// null when the id is none of this program's windows.
NativeWindowState* FindNative(xcb_window_t id);
bool AnyShown();
bool PointIsInPopup(POINT point);
/// Shows a part of a window's picture again.
void Repaint(NativeWindowState& window, const RECT& rect);
void RepaintAll();
/// Gives a managed window the keyboard, by way of the window manager where one runs.
void FocusManaged(NativeWindowState& window);
/// Stacks this program's pop-ups below a child of the root: the frame of a window that is there to be answered.
void PutPopupsBelow(xcb_window_t frame);
/// On top of all again.
void RaisePopups();

// --- what the window manager is told (window_properties.cpp)

void SetTitle(xcb_window_t window, std::u16string_view title);
/// The program's own place, and one size: the window's.
void SetFixedSize(const NativeWindowState& window);
/// All that is told before the window is first mapped.
void SetProperties(const NativeWindowState& window, const screen::WindowOptions& options);

} // namespace platform::x11
