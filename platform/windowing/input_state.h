// What the files of input share: keys, capture, tracking, the pointer.
#pragma once

#include "platform/screen/screen.h"
#include "windows.h"

namespace platform
{

// --- keyboard.cpp

/// Records a key or mouse button as pressed or released; `modifiers` bring Shift, Control and Alt up to date first.
void NoteModifiers(unsigned modifiers);
void NoteKey(BYTE virtualKey, bool down);
/// Another program has the keyboard: nobody hears of what is let go there. Modifiers are noted with every event.
void NoteKeyboardLost();
/// MK_ flags of the present key state.
WPARAM MouseKeys();
inline constexpr DWORD kMouseButtons = MK_LBUTTON | MK_RBUTTON | MK_MBUTTON;
/// Fills in the key message that an event makes, without recording anything.
void MakeKeyMessage(const screen::Event& event, MSG& message);
/// Records the event as the one whose text TranslateMessage gives.
void CommitKey(const screen::Event& event);

// --- mouse_messages.cpp

inline constexpr int kHitError = -2; ///< HTERROR: a disabled window

struct MouseTarget
{
    HWND window = nullptr;
    LRESULT hit = HTCLIENT;
};

/// Where a mouse message at this point goes, and the answer to WM_NCHITTEST there; asks the windows.
MouseTarget FindMouseTarget(POINT position);
/// The virtual key of a mouse button.
BYTE ButtonKey(screen::Button button);
/// Window, message and parameters.
void FillMouseMessage(const screen::Event& event, const MouseTarget& target, MSG& message);
/// Does what taking the message does besides giving it: cursor, activation, word to the parents. False when a press is
/// eaten, or the window gone.
bool CommitMouse(const screen::Event& event, const MSG& message, const MouseTarget& target);

// --- cursors.cpp

/// What the pointer is to look like by the last SetCursor.
screen::PointerShape CursorShape();

// --- capture.cpp

/// Ends the capture because the program lost the foreground.
void CancelCapture();

// --- mouse_tracking.cpp

/// Tells TrackMouseEvent's user that the pointer is now over `under` (null: over none of this program's windows).
void TrackPointer(HWND under);

} // namespace platform
