// The root's banner: a strip at the left with the title reading upward.
#pragma once

#include "geometry/placement.h"

#include <cstdint>

/// Extent of the title in the banner font, as one line.
SIZE MeasureTitle();

/// Draws the rendered strip and beside it the level's body, which is not kept as a bitmap: on a large screen that would
/// be several megabytes. Client coordinates.
void DrawBanner(HDC dc, HBITMAP banner, const RECT& body);

/// One colour or alpha channel of the title composited onto the banner: `mask` is the title's coverage, 0 to 255.
constexpr std::uint8_t BlendChannel(std::uint8_t under, std::uint8_t over, std::uint8_t mask)
{
    return static_cast<std::uint8_t>((under * (255 - mask) + mask * over) / 255);
}
constexpr std::uint8_t BlendAlpha(std::uint8_t alpha, std::uint8_t mask)
{
    return static_cast<std::uint8_t>(alpha - alpha * mask / 255 + mask);
}

/// Composites the mask onto the banner turned a quarter turn anticlockwise, starting at the banner's bottom-left
/// corner: mask row x, column i falls on the banner's column x, row height − 1 − i. The mask's lowest byte counts;
/// `color` is 0x00RRGGBB.
void CompositeTitle(std::uint32_t* banner, SIZE bannerSize, const std::uint32_t* mask, SIZE maskSize,
                    std::uint32_t color);
