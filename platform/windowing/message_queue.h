// The user-interface thread's queue, as its parts see it.
//
// A message is looked for in Windows' order: posted messages, the quit message, input, paint messages, timers.
#pragma once

#include "windows.h"

#include <cstdint>
#include <optional>

namespace platform
{

struct MessageFilter
{
    HWND window = nullptr;
    UINT first = 0;
    UINT last = 0;

    bool AcceptsMessage(UINT message) const
    {
        return (first == 0 && last == 0) || (message >= first && message <= last);
    }
    bool AcceptsWindow(HWND candidate) const;
    bool Accepts(HWND candidate, UINT message) const { return AcceptsMessage(message) && AcceptsWindow(candidate); }
};

/// Takes the next input message (input.cpp).
bool TakeInput(MSG& message, const MessageFilter& filter, bool remove);
/// Takes the message of a timer that is due (timers.cpp).
bool TakeTimer(MSG& message, const MessageFilter& filter, bool remove);
/// When the next timer is due, on the clock.
std::optional<std::uint64_t> NextTimer();

/// Waits until there may be a new message. What has been drawn is presented first.
void WaitForMessage();
/// Ends the process's stay in `WaitForMessage`; from any thread.
void WakeQueue();

/// The pointer's place as far as messages know it.
POINT MessagePoint();
void SetMessagePoint(POINT point);
/// What is handled now counts as a message that was taken, for GetMessageTime and GetMessagePos.
void NoteMessage(DWORD time, POINT point);

/// Has the pointer's window looked at again: windows have moved under it.
void RequestMouseRefresh();

} // namespace platform
