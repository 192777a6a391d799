// Nine-slice stretching.
#include "menu/nine_slice.h"

namespace
{

bool HasArea(const RECT& rect)
{
    return rect.right > rect.left && rect.bottom > rect.top;
}

} // namespace

std::array<RECT, 9> SliceNine(const RECT& rect, const Margins& margins)
{
    const std::array<LONG, 4> x{rect.left, rect.left + margins.left, rect.right - margins.right, rect.right};
    const std::array<LONG, 4> y{rect.top, rect.top + margins.top, rect.bottom - margins.bottom, rect.bottom};
    std::array<RECT, 9> pieces{};
    for (std::size_t piece = 0; piece < pieces.size(); ++piece)
    {
        const std::size_t column = piece % 3;
        const std::size_t row = piece / 3;
        pieces[piece] = {x[column], y[row], x[column + 1], y[row + 1]};
    }
    return pieces;
}

void StretchNineSlice(HDC source, HDC destination, const RECT& to, const RECT& from, const Margins& margins)
{
    const BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    const std::array<RECT, 9> target = SliceNine(to, margins);
    const std::array<RECT, 9> pieces = SliceNine(from, margins);
    SetStretchBltMode(destination, COLORONCOLOR);
    for (std::size_t i = 0; i < pieces.size(); ++i)
    {
        const RECT& d = target[i];
        const RECT& s = pieces[i];
        if (HasArea(d) && HasArea(s))
        {
            AlphaBlend(destination, d.left, d.top, d.right - d.left, d.bottom - d.top, source, s.left, s.top,
                       s.right - s.left, s.bottom - s.top, blend);
        }
    }
}
