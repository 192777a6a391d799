// The options word: which bits it has, and what is done with it.
#pragma once

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
unsigned SeparatorBitmap(std::uint32_t bits);

/// Style bits after the present ones: solid, long dashes, short dashes, solid.
std::uint32_t NextSeparatorStyle(std::uint32_t options);

/// Reads the value "options" beside the root's order into m_options, whatever its type; a missing one leaves 0.
void LoadOptions();
/// Writes m_options; failures are ignored. Does nothing without a layout root.
void SaveOptions();

/// Loads the separator image that the style bits choose and makes `bits` part of m_options. False when the image cannot
/// be loaded: both style bits are then clear and there is no separator image.
bool SetSeparatorStyle(std::uint32_t bits);
