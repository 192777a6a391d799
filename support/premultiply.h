// Alpha as the blits take it.
#pragma once

#include <cstddef>
#include <cstdint>

/// Multiplies every colour byte of B G R A pixels by the pixel's alpha and divides by 255, truncating.
inline void PremultiplyPixels(std::uint8_t* pixels, std::size_t count)
{
    for (; count > 0; --count, pixels += 4)
        for (int channel = 0; channel < 3; ++channel)
            pixels[channel] = static_cast<std::uint8_t>(pixels[channel] * pixels[3] / 255);
}
