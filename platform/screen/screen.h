// The screen: what windowing needs of a display.
//
// There are two back ends, of which a program links exactly one: platform_x11 and platform_headless. All functions
// belong to the user-interface thread unless they say otherwise, and answer from the first static initialiser on, with
// or without a display. Coordinates are screen pixels.
//
// Requests are collected: nothing is sure to have reached the display before Commit.
//
// Copy and paste have a header of their own beside this one (selections.h), and so have drags (drags.h).
#pragma once

#include "platform/screen/surface.h"
#include "windows.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform::screen
{

/// A top-level window of the display; 0 is none.
using NativeWindow = std::uint32_t;

struct Monitor
{
    RECT bounds{};
    RECT workArea{};
    UINT dpi = 96;
};

enum class WindowKind : std::uint8_t
{
    Popup,   ///< placed, stacked and focused by this program alone
    Managed, ///< decorated and focused by the window manager
};

struct WindowOptions
{
    RECT bounds{};
    WindowKind kind = WindowKind::Popup;
    std::u16string_view title{};
    NativeWindow transientFor = 0;
};

enum class EventType : std::uint8_t
{
    MouseMove,
    MouseLeave, ///< the pointer has left all of this program's windows, or is about to enter another of them
    ButtonDown,
    ButtonUp, ///< only for a button whose press was reported
    Wheel,
    KeyDown,
    KeyUp,
    Activated,   ///< this program has the keyboard; `window` is the managed window that got it, 0 for the pop-ups
    Deactivated, ///< the user has turned to another program
    CloseRequest,
    Composition,  ///< what an input method composes has changed (CurrentComposition)
    Placed,       ///< the window manager has moved or resized a managed window to `bounds`
    DragOver,     ///< another program drags something over `window`, at `position`; see drags.h
    DragLeave,    ///< and no longer
    DragDrop,     ///< and drops it there
    DragAnswered, ///< what this program drags: the other side has answered, or another answer
    DragEnded,    ///< likewise: what was dropped has been dealt with, or the other side has failed to
};

/// Buttons by their Windows names: left, right, middle.
enum class Button : std::uint8_t
{
    Left,
    Right,
    Middle,
};

/// Modifier bits of Event::modifiers.
inline constexpr unsigned kShift = 1;
inline constexpr unsigned kControl = 2;
inline constexpr unsigned kAlt = 4;
inline constexpr unsigned kCapsLock = 8;
inline constexpr unsigned kNumLock = 16;

struct DragOffer;

struct Event
{
    EventType type = EventType::MouseMove;
    NativeWindow window = 0;
    POINT position{};       ///< of the pointer; mouse and drag events only
    RECT bounds{};          ///< Placed only
    std::uint64_t time = 0; ///< milliseconds of the layer's clock
    unsigned modifiers = 0; ///< as they were before the event
    Button button = Button::Left;
    int wheel = 0; ///< 120 per notch, positive away from the user
    BYTE virtualKey = 0;
    BYTE scanCode = 0;
    bool extended = false;
    bool repeat = false;
    char16_t text[16] = {};                 ///< what the key types, UTF-16, ended by 0; KeyDown only
    std::shared_ptr<const DragOffer> offer; ///< DragOver, DragLeave and DragDrop: what is dragged
};

/// Connects if that has not happened yet. False when there is no display to connect to.
bool Open();
/// The display's name as the user gave it, for messages.
std::string DisplayName();

/// At least one, the primary monitor first. Without a display: one of 1024 × 768 at 96 DPI.
const std::vector<Monitor>& Monitors();
/// What the desktop publishes (see desktop_settings.h); empty when nothing does.
const std::map<std::string, std::string, std::less<>>& PublishedSettings();

/// A hidden window with an undefined picture; 0 when it cannot be made.
NativeWindow CreateNativeWindow(const WindowOptions& options);
void DestroyNativeWindow(NativeWindow window);
/// A window that is shown comes up with what has been presented by the next Commit.
void ShowNativeWindow(NativeWindow window, bool show);
/// Moves and resizes, asking for nothing where the window is there already. A new size gives the window a new surface
/// with undefined content.
void PlaceNativeWindow(NativeWindow window, const RECT& bounds);
/// Takes over the bounds that a Placed event has told, with a new surface where the size is new. Asks for nothing: what
/// the window manager has decided must not come back to it as a wish.
void NotePlacement(NativeWindow window, const RECT& bounds);
/// Puts a window directly below `above`, or on top of all for 0.
void StackNativeWindow(NativeWindow window, NativeWindow above);
void SetNativeTitle(NativeWindow window, std::u16string_view title);

/// The display's bell, as the user has set it.
void RingBell();

/// The window's pixels, to draw on. Valid until the window is resized or destroyed; whoever draws longer holds
/// KeepSurface's result.
const Surface& WindowSurface(NativeWindow window);
std::shared_ptr<void> KeepSurface(NativeWindow window);
/// Shows these parts of the surface (window coordinates, inside the surface).
void Present(NativeWindow window, std::span<const RECT> damage);
/// Sends everything asked for since the last time, without waiting for an answer.
void Commit();
/// Commit, and waits until the display has dealt with everything. For the end of the process: an X server drops what it
/// has not read yet of a connection that closes, the request among it that gives the keyboard back.
void Finish();

/// Directs the keyboard to this program's pop-ups, or to a managed window. What held the keyboard before gets it back
/// when the last window is hidden, unless the user has turned to another program in the meantime.
void TakeKeyboard(NativeWindow window);

/// Another program is to show a dialog for this one, or that is over: the window that comes to be the active one of the
/// desktop gets the keyboard, and the pop-ups stay below it.
void YieldToForeignDialog(bool yields);

/// Text is typed into a managed window from now on, its caret here (window coordinates): the user's input method may
/// take part. To be told again when the caret moves. What the method commits comes as the text of keys. 0 ends it, and
/// what was being composed is forgotten.
void SetTextInput(NativeWindow window, const RECT& caret);
/// What an input method has composed but not committed yet; shown at the caret.
struct Composition
{
    std::u16string text;
    std::size_t caret = 0; ///< UTF-16 units
};
const Composition& CurrentComposition();

/// The next event that has already arrived; false when there is none. Never waits.
bool NextEvent(Event& event);
/// Waits for an event, a Wake, or the deadline (milliseconds of the clock); may return early.
void Wait(std::optional<std::uint64_t> deadline);
/// Ends a Wait, present or next. From any thread.
void Wake();

/// Where the pointer is; nothing without a display.
std::optional<POINT> PointerPosition();
void WarpPointer(POINT position);
/// What the pointer looks like over a window.
enum class PointerShape : std::uint8_t
{
    Arrow, ///< or whatever the desktop shows there
    Text,
};
void SetPointerShape(NativeWindow window, PointerShape shape);

/// Bounds of another program's window, nothing when no window has that id.
std::optional<RECT> ForeignWindowBounds(std::uint32_t id);

} // namespace platform::screen
