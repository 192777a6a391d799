// Where drags go that the screen reports: to whoever deals in them, which stands above windowing.
#pragma once

#include "platform/screen/screen.h"
#include "windows.h"

namespace platform
{

/// Called while the program takes messages, as COM's calls come in; either may take messages itself.
struct DragHandler
{
    /// One of the drag events. What is taken now has the event's time and point (GetMessageTime, GetMessagePos), and
    /// the keys are as the event says.
    void (*onEvent)(const screen::Event& event);
    /// The window has had its last message.
    void (*onWindowGone)(HWND window);
};

/// Kept by reference, for the rest of the process. Until then drags are answered for none and windows not told of.
void SetDragHandler(const DragHandler& handler);
/// For windowing itself: null while there is none.
const DragHandler* TheDragHandler();

} // namespace platform
