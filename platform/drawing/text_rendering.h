// How glyphs are rendered: the user's settings for antialiasing and hinting.
#pragma once

#include "platform/services/text_service.h"

namespace platform
{

struct TextRendering
{
    bool antialias = true;
    TextHinting hinting = TextHinting::Slight;
};

/// What the desktop publishes as Xft/Antialias, Xft/Hinting and Xft/HintStyle; grey levels and slight hinting where it
/// says nothing. (Sub-pixel colours, Xft/RGBA, are not used: menus are blended and scrolled as pictures.)
TextRendering CurrentTextRendering();

/// FreeType's load flags for it.
int GlyphLoadFlags(const TextRendering& rendering);

} // namespace platform
