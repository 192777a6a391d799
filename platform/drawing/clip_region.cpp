// ClipRegion arithmetic over pixman.
#include "platform/drawing/clip_region.h"

#include "wingdi.h"

namespace platform
{

ClipRegion::ClipRegion(const RECT& rect)
{
    const bool hasArea = rect.right > rect.left && rect.bottom > rect.top;
    pixman_region32_init_rect(&m_region, rect.left, rect.top,
                              hasArea ? static_cast<unsigned>(rect.right - rect.left) : 0,
                              hasArea ? static_cast<unsigned>(rect.bottom - rect.top) : 0);
}

ClipRegion& ClipRegion::operator=(const ClipRegion& other)
{
    pixman_region32_copy(&m_region, &other.m_region);
    return *this;
}

void ClipRegion::Intersect(const ClipRegion& other)
{
    pixman_region32_intersect(&m_region, &m_region, &other.m_region);
}

void ClipRegion::Unite(const ClipRegion& other)
{
    pixman_region32_union(&m_region, &m_region, &other.m_region);
}

void ClipRegion::Subtract(const ClipRegion& other)
{
    pixman_region32_subtract(&m_region, &m_region, &other.m_region);
}

RECT ClipRegion::Extents() const
{
    if (Empty())
        return {};
    const pixman_box32_t* box = pixman_region32_extents(&m_region);
    return {box->x1, box->y1, box->x2, box->y2};
}

int ClipRegion::Complexity() const
{
    const int count = pixman_region32_n_rects(&m_region);
    return count == 0 ? NULLREGION : count == 1 ? SIMPLEREGION : COMPLEXREGION;
}

std::span<const pixman_box32_t> ClipRegion::Boxes() const
{
    int count = 0;
    const pixman_box32_t* boxes = pixman_region32_rectangles(&m_region, &count);
    return {boxes, static_cast<std::size_t>(count)};
}

} // namespace platform
