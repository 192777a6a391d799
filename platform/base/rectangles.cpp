// Arithmetic on rectangles.
#include "windows.h"

#include <algorithm>

BOOL IsRectEmpty(const RECT* rect)
{
    return rect->left >= rect->right || rect->top >= rect->bottom;
}

BOOL PtInRect(const RECT* rect, POINT point)
{
    return point.x >= rect->left && point.x < rect->right && point.y >= rect->top && point.y < rect->bottom;
}

BOOL OffsetRect(LPRECT rect, int dx, int dy)
{
    *rect = {rect->left + dx, rect->top + dy, rect->right + dx, rect->bottom + dy};
    return TRUE;
}

BOOL InflateRect(LPRECT rect, int dx, int dy)
{
    *rect = {rect->left - dx, rect->top - dy, rect->right + dx, rect->bottom + dy};
    return TRUE;
}

BOOL IntersectRect(LPRECT result, const RECT* a, const RECT* b)
{
    const RECT common{std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
                      std::min(a->bottom, b->bottom)};
    const bool empty = IsRectEmpty(a) || IsRectEmpty(b) || IsRectEmpty(&common);
    *result = empty ? RECT{} : common;
    return !empty;
}

BOOL EqualRect(const RECT* a, const RECT* b)
{
    return a->left == b->left && a->top == b->top && a->right == b->right && a->bottom == b->bottom;
}
