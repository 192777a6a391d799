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

BOOL UnionRect(LPRECT result, const RECT* a, const RECT* b)
{
    if (IsRectEmpty(a) || IsRectEmpty(b))
    {
        // An empty rectangle counts for nothing, wherever it lies.
        const RECT other = IsRectEmpty(a) ? *b : *a;
        *result = IsRectEmpty(&other) ? RECT{} : other;
        return !IsRectEmpty(result);
    }
    *result = {std::min(a->left, b->left), std::min(a->top, b->top), std::max(a->right, b->right),
               std::max(a->bottom, b->bottom)};
    return TRUE;
}

BOOL EqualRect(const RECT* a, const RECT* b)
{
    return a->left == b->left && a->top == b->top && a->right == b->right && a->bottom == b->bottom;
}
