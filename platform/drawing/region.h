// A set of pixels as an owned pixman region.
#pragma once

#include "windef.h"

#include <pixman.h>
#include <span>
#include <utility>

namespace platform
{

class Region
{
public:
    Region() { pixman_region32_init(&m_region); }
    explicit Region(const RECT& rect) : Region() { Add(rect); }
    Region(const Region& other) : Region() { pixman_region32_copy(&m_region, other.Raw()); }
    Region(Region&& other) noexcept : Region() { Swap(other); }
    Region& operator=(Region other) noexcept
    {
        Swap(other);
        return *this;
    }
    ~Region() { pixman_region32_fini(&m_region); }

    /// For pixman calls that only read.
    pixman_region32_t* Raw() const { return const_cast<pixman_region32_t*>(&m_region); }
    bool Empty() const { return !pixman_region32_not_empty(Raw()); }
    bool Contains(int x, int y) const { return pixman_region32_contains_point(Raw(), x, y, nullptr) != 0; }
    /// The smallest rectangle around it; all zero when empty.
    RECT Bounds() const
    {
        if (Empty())
            return {};
        const pixman_box32_t* box = pixman_region32_extents(Raw());
        return {box->x1, box->y1, box->x2, box->y2};
    }
    /// The rectangles, disjoint; valid until the region changes.
    std::span<const pixman_box32_t> Boxes() const
    {
        int count = 0;
        const pixman_box32_t* boxes = pixman_region32_rectangles(Raw(), &count);
        return {boxes, static_cast<std::size_t>(count)};
    }

    void Clear() { pixman_region32_clear(&m_region); }
    void Move(int dx, int dy) { pixman_region32_translate(&m_region, dx, dy); }
    void Add(const RECT& rect)
    {
        if (rect.left < rect.right && rect.top < rect.bottom)
        {
            pixman_region32_union_rect(&m_region, &m_region, rect.left, rect.top,
                                       static_cast<unsigned>(rect.right - rect.left),
                                       static_cast<unsigned>(rect.bottom - rect.top));
        }
    }
    void Add(const Region& other) { pixman_region32_union(&m_region, &m_region, other.Raw()); }
    void Remove(const Region& other) { pixman_region32_subtract(&m_region, &m_region, other.Raw()); }
    void Intersect(const Region& other) { pixman_region32_intersect(&m_region, &m_region, other.Raw()); }

private:
    void Swap(Region& other)
    {
        // Swapped whole: a region of one rectangle has no data of its own and keeps no pointer to itself.
        std::swap(m_region, other.m_region);
    }

    pixman_region32_t m_region{};
};

} // namespace platform
