// The headless screen's other side: what a test does to it and reads from it.
//
// Input is what a person does; it is queued like a display's events and acted on when the program next looks. A test
// that also sets the clock by hand (clock.h) has every time under its control.
#pragma once

#include "platform/screen/drags.h"
#include "platform/screen/screen.h"
#include "platform/screen/selections.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace platform::headless
{

/// Monitors such as "1920x1080+0+0,1280x1024+1920+0", the primary one first. Work areas become the whole monitors.
/// False, with nothing changed, when the text is malformed.
bool SetMonitors(std::string_view text, UINT dpi = 96);
void SetWorkArea(std::size_t monitor, const RECT& workArea);
void SetDpi(std::size_t monitor, UINT dpi);
/// Settings that a desktop would publish; what GetDpi or the fonts have cached stays cached.
void SetDesktopSetting(std::string_view name, std::string_view value);
/// Another program's window, for ForeignWindowBounds; an empty rectangle takes it away.
void SetForeignWindow(std::uint32_t id, const RECT& bounds);
/// Back to one monitor of 1920 × 1080, no settings, no input, the pointer at (0, 0), no idle handler. Windows stay.
void Reset();

// --- what a person does
void MoveMouse(int x, int y);
void PressButton(screen::Button button = screen::Button::Left);
void ReleaseButton(screen::Button button = screen::Button::Left);
/// One notch is 120; positive turns away from the user.
void TurnWheel(int delta);
/// `text` is what the key types, if anything.
void PressKey(BYTE virtualKey, std::u16string_view text = {});
void ReleaseKey(BYTE virtualKey);
/// The input method shows this text at the caret, or has committed this.
void Compose(std::u16string_view text, std::size_t caret);
void CommitText(std::u16string_view text);
/// Where text is typed, in coordinates of the managed window; nothing when it is not.
std::optional<RECT> TextCaret();
/// A click on another program's window, or its taking the keyboard.
void ActivateOtherApplication();
/// The window manager moves or resizes a managed window.
void PlaceByManager(screen::NativeWindow window, const RECT& bounds);
/// The window manager's close button.
void RequestClose(screen::NativeWindow window);

/// Called whenever the program would wait with nothing queued; returns true when it has done something that ends the
/// wait (queued input, advanced the clock, woken the program). Null for none.
void SetIdleHandler(std::function<bool()> handler);

// --- what other programs do with selections
struct OtherOffer
{
    std::vector<std::pair<std::string, std::string>> forms; ///< target and content, the best first
    bool namesTargets = true;                               ///< else whoever asks waits in vain
    bool givesContent = true;                               ///< likewise
};
/// Another program takes the selection.
void OfferByOther(screen::Selection selection, OtherOffer offer);
/// It ends, and with it what it offered.
void EndOther(screen::Selection selection);
/// Whether another program still has the selection.
bool OtherOffers(screen::Selection selection);
/// What another program gets when it pastes.
std::optional<std::string> AskAsOther(screen::Selection selection, std::string_view target);
/// A clipboard manager runs, or none.
void SetClipboardManager(bool runs);

// --- what other programs drag here, and take
struct OtherDrag
{
    OtherOffer offer;
    screen::DragActions actions = 0;
};
/// Another program's drag comes over the screen at this point, and then moves. Modifiers as in screen::Event.
void StartOtherDrag(OtherDrag drag, int x, int y, unsigned modifiers = 0);
void MoveOtherDrag(int x, int y, unsigned modifiers = 0);
/// The drag leaves this program's windows, or its program ends.
void EndOtherDrag();
void DropOtherDrag();
/// What the program last answered for the point; nothing when it has not answered yet.
std::optional<screen::DragActions> AnswerToOther();
/// What it has done with the drop; nothing while it has not said.
std::optional<screen::DragActions> DoneForOther();

/// A window of another program that takes what is dragged onto it.
struct OtherTarget
{
    RECT bounds{};
    screen::DragActions takes =
        0;                ///< the first of move, copy, link among these that the drag allows; what is wanted first
    bool answers = true;  ///< while the drag is over it
    bool finishes = true; ///< after the drop
};
void SetOtherTarget(std::optional<OtherTarget> target);
/// What was dropped on it, in one form; nothing when nothing was.
std::optional<std::string> DroppedOnOther(std::string_view target);
/// What the pointer says a drop of this program's drag would do; nothing while it drags nothing.
std::optional<screen::DragActions> ShownDragAction();
/// The picture that follows the pointer meanwhile.
std::optional<screen::DragImage> ShownDragImage();
/// The display does not let the pointer be followed, or does again.
void RefuseDrags(bool refuse);

// --- what a person sees
struct WindowInfo
{
    screen::NativeWindow id = 0;
    RECT bounds{};
    bool visible = false;
    screen::WindowKind kind = screen::WindowKind::Popup;
    std::u16string title;
    screen::PointerShape pointer = screen::PointerShape::Arrow;
};

/// All native windows, the topmost first.
std::vector<WindowInfo> Windows();
/// Whether this program's windows have the keyboard.
bool HasKeyboard();
/// 0x00RRGGBB of a point of the screen; the empty desktop is 0x00404040.
std::uint32_t PixelAt(int x, int y);
/// How often the program has asked for another place of a window since the last call.
std::size_t TakePlaceRequests();
/// Pixels presented since the last call, counted as often as they were presented.
std::size_t TakePresentedPixels();

} // namespace platform::headless
