// One line of text: its width, and drawing it on a canvas. The two paths, glyphs and service, meet here.
#pragma once

#include "platform/drawing/device_context.h"
#include "platform/services/text_service.h"

#include <functional>
#include <string_view>

namespace platform
{

/// Width in pixels of one line in a font.
int TextWidth(FontObject& font, std::u16string_view text);

/// Draws one line, its cell's top left corner at `position` (surface coordinates), within `clip` and the canvas's clip.
void DrawTextLine(const Canvas& canvas, FontObject& font, std::u16string_view text, POINT position, COLORREF color,
                  const RECT* clip);

/// Draws units that the font has, one by one.
void DrawPlainLine(const Canvas& canvas, GlyphFont& font, std::u16string_view text, POINT position, COLORREF color,
                   const RECT* clip);
/// Draws with the text service: `draw` gets a transparent picture of what can be seen of a line `width` pixels wide,
/// and where in it the line's baseline begins.
void DrawShaped(const Canvas& canvas, GlyphFont& font, int width, POINT position, const RECT* clip,
                const std::function<void(const TextTarget& picture, POINT start)>& draw);

} // namespace platform
