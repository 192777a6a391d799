// Which separator image the options choose, and which comes next.
#include "app/options.h"

#include "resources/resource.h"

unsigned SeparatorBitmap(std::uint32_t bits)
{
    if (bits & OPTION_LONG_DASHES)
        return BITMAP_SEPARATOR_LONG_DASHES;
    return bits & OPTION_SHORT_DASHES ? BITMAP_SEPARATOR_SHORT_DASHES : BITMAP_SEPARATOR_SOLID;
}

std::uint32_t NextSeparatorStyle(std::uint32_t options)
{
    if (options & OPTION_LONG_DASHES)
        return OPTION_SHORT_DASHES;
    if (options & OPTION_SHORT_DASHES)
        return 0;
    return OPTION_LONG_DASHES;
}
