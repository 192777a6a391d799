// Stretching an image so that its margins keep their size.
#pragma once

#include <windows.h>

#include <array>

struct Margins
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

/// The nine pieces of a rectangle, row by row; pieces may be empty or have a negative size.
std::array<RECT, 9> SliceNine(const RECT& rect, const Margins& margins);

/// Blends each piece of the source rectangle (premultiplied alpha) onto the same piece of the destination rectangle.
void StretchNineSlice(HDC source, HDC destination, const RECT& to, const RECT& from, const Margins& margins);
