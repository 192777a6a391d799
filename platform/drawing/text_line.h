// One line of text: its width, and drawing it on a canvas. The two paths, glyphs and service, meet here.
#pragma once

#include "platform/drawing/device_context.h"

#include <string_view>

namespace platform
{

/// Width in pixels of one line in a font.
int TextWidth(FontObject& font, std::u16string_view text);

/// Draws one line, its cell's top left corner at `position` (surface coordinates), within `clip` and the canvas's clip.
void DrawTextLine(const Canvas& canvas, FontObject& font, std::u16string_view text, POINT position, COLORREF color,
                  const RECT* clip);

} // namespace platform
