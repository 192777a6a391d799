// Typing with the user's input method, for the control that has the focus.
//
// What is committed comes as characters (WM_CHAR). A change of what is being composed is told by WM_IME_COMPOSITION,
// whose parameters mean nothing here: screen::CurrentComposition says what it is now.
#pragma once

#include "windows.h"

namespace platform
{

/// Text is typed into this window, with the caret here (client coordinates). To be told again when the caret moves;
/// does nothing for a window without a place on the display.
void SetTextInput(HWND window, const RECT& caret);
/// No text is typed any more. What was being composed is forgotten.
void EndTextInput();

} // namespace platform
