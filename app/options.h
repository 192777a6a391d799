// The options word: what its bits mean, and what a click on an empty part of a level makes of it.
#pragma once

#include "resources/resource.h"

#include <cstdint>

enum OptionBits : std::uint32_t
{
    OPTION_START_MENU = 0x1, ///< the root level also shows the Start Menu
    OPTION_DESKTOP = 0x2,    ///< the root level also shows the Desktop
    OPTION_LONG_DASHES = 0x10000,
    OPTION_SHORT_DASHES = 0x20000,
    OPTION_SEPARATOR_STYLE = OPTION_LONG_DASHES | OPTION_SHORT_DASHES,
};

/// Number of the bitmap resource that the style bits choose.
constexpr unsigned SeparatorBitmap(std::uint32_t bits)
{
    if (bits & OPTION_LONG_DASHES)
        return BITMAP_SEPARATOR_LONG_DASHES;
    return bits & OPTION_SHORT_DASHES ? BITMAP_SEPARATOR_SHORT_DASHES : BITMAP_SEPARATOR_SOLID;
}

/// Style bits after the present ones: solid, long dashes, short dashes, solid.
constexpr std::uint32_t NextSeparatorStyle(std::uint32_t options)
{
    if (options & OPTION_LONG_DASHES)
        return OPTION_SHORT_DASHES;
    if (options & OPTION_SHORT_DASHES)
        return 0;
    return OPTION_LONG_DASHES;
}

/// Reads the value "options" beside the root's order into m_options, whatever its type; 0 when it is missing.
void LoadOptions();
/// Writes m_options; failures are ignored. Does nothing without a layout root.
void SaveOptions();

/// Loads the separator image that the style bits choose and makes `bits` part of m_options. False when the image cannot
/// be loaded: both style bits are then clear and there is no separator image.
bool SetSeparatorStyle(std::uint32_t bits);
