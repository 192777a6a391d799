// A set of pixels: the arithmetic of clipping and of HRGN.
#pragma once

#include "windef.h"

#include <pixman.h>
#include <span>

namespace platform
{

/// Copyable set of whole pixels, kept as disjoint rectangles (pixman's).
class ClipRegion
{
public:
    ClipRegion() { pixman_region32_init(&m_region); }
    explicit ClipRegion(const RECT& rect);
    ClipRegion(const ClipRegion& other) : ClipRegion() { pixman_region32_copy(&m_region, &other.m_region); }
    ClipRegion& operator=(const ClipRegion& other);
    ~ClipRegion() { pixman_region32_fini(&m_region); }

    void Intersect(const ClipRegion& other);
    void Unite(const ClipRegion& other);
    void Subtract(const ClipRegion& other);
    void Translate(int dx, int dy) { pixman_region32_translate(&m_region, dx, dy); }

    bool Empty() const { return pixman_region32_not_empty(&m_region) == 0; }
    bool Contains(int x, int y) const { return pixman_region32_contains_point(&m_region, x, y, nullptr) != 0; }
    /// The smallest rectangle around it; all zero when empty.
    RECT Extents() const;
    /// NULLREGION, SIMPLEREGION or COMPLEXREGION.
    int Complexity() const;
    /// Disjoint rectangles, in order of their top, then left.
    std::span<const pixman_box32_t> Boxes() const;
    /// For pixman calls that only read.
    pixman_region32_t* Raw() const { return &m_region; }

private:
    // pixman takes non-const pointers throughout.
    mutable pixman_region32_t m_region;
};

} // namespace platform
