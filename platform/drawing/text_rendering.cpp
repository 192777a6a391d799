// The settings, and what they mean to FreeType.
#include "platform/drawing/text_rendering.h"

#include "platform/screen/desktop_settings.h"

#include <ft2build.h>
#include FT_FREETYPE_H

namespace platform
{
namespace
{

TextHinting HintingFrom(const std::string& style)
{
    return style == "hintnone"     ? TextHinting::None
           : style == "hintmedium" ? TextHinting::Medium
           : style == "hintfull"   ? TextHinting::Full
                                   : TextHinting::Slight;
}

} // namespace

TextRendering CurrentTextRendering()
{
    TextRendering rendering;
    rendering.antialias = DesktopSetting("Xft/Antialias") != "0";
    rendering.hinting = DesktopSetting("Xft/Hinting") == "0"
                            ? TextHinting::None
                            : HintingFrom(DesktopSetting("Xft/HintStyle").value_or("hintslight"));
    return rendering;
}

int GlyphLoadFlags(const TextRendering& rendering)
{
    if (rendering.hinting == TextHinting::None)
        return FT_LOAD_NO_HINTING | (rendering.antialias ? FT_LOAD_TARGET_NORMAL : FT_LOAD_TARGET_MONO);
    if (!rendering.antialias)
        return FT_LOAD_TARGET_MONO;
    return rendering.hinting == TextHinting::Slight ? FT_LOAD_TARGET_LIGHT : FT_LOAD_TARGET_NORMAL;
}

} // namespace platform
