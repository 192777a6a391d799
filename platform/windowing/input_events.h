// The input queue, for those who put input of their own into it.
#pragma once

#include "platform/screen/screen.h"

namespace platform
{

/// In Event::modifiers: the event does not know the modifiers, the recorded state stands.
inline constexpr unsigned kOwnModifiers = ~0U;

/// Adds an event as if the screen had reported it.
void QueueInput(const screen::Event& event);

/// A native window goes or hides: no word of the pointer's leaving comes from it any more.
void PointerLosesWindow(screen::NativeWindow window);

} // namespace platform
