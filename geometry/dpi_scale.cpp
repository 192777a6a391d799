// Arithmetic of the DPI record.
#include "geometry/dpi_scale.h"

#include <cstdint>
#include <limits>

int RoundedRatio(int number, int numerator, int denominator)
{
    if (denominator == 0)
        return -1;
    const std::int64_t product = static_cast<std::int64_t>(number) * numerator;
    const std::int64_t divisor = denominator;
    const std::int64_t half = (divisor < 0 ? -divisor : divisor) / 2;
    const std::int64_t result = (product < 0 ? product - half : product + half) / divisor;
    if (result > std::numeric_limits<int>::max() || result < std::numeric_limits<int>::min())
        return -1;
    return static_cast<int>(result);
}

DpiScale DpiScale::FromDpi(int dpi)
{
    return {RoundedRatio(dpi, 100, 96), RoundedRatio(dpi, 100, dpi), dpi};
}
