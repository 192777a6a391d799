// The picture that says what kind of message a box holds.
#pragma once

#include "windows.h"

namespace platform
{

enum class MessageBoxPicture
{
    None,
    Error,       ///< a red disc with a cross
    Question,    ///< a blue disc with a question mark
    Warning,     ///< a yellow triangle with an exclamation mark
    Information, ///< a blue disc with an i
};

MessageBoxPicture PictureOfMessageBox(UINT type);

/// Draws the picture into a square; its mark is set in the context's font face.
void DrawMessageBoxPicture(HDC dc, const RECT& rect, MessageBoxPicture picture);

} // namespace platform
