// Level sizing and placement.
#include "geometry/placement.h"

#include <algorithm>

namespace
{

constexpr int kWidthMargin = 16;
constexpr int kHeightMargin = 2;
constexpr int kMinimumExtent = 4;
constexpr int kBannerPadding = 6;
constexpr int kStripPadding = 15;

LONG Width(const RECT& rect)
{
    return rect.right - rect.left;
}

LONG Height(const RECT& rect)
{
    return rect.bottom - rect.top;
}

RECT MovedTo(const RECT& rect, LONG left, LONG top)
{
    return {left, top, left + Width(rect), top + Height(rect)};
}

LONG SubLevelLeft(LONG width, const RECT& opener, const RECT& workArea, bool openerIsRoot)
{
    if (opener.right + width <= workArea.right)
        return opener.right;
    if (opener.left - width >= workArea.left)
        return opener.left - width;
    return std::max(workArea.right - width, openerIsRoot ? opener.right : workArea.left);
}

LONG SubLevelTop(LONG height, const RECT& opener, const RECT& workArea)
{
    if (opener.top + height <= workArea.bottom)
        return opener.top;
    if (opener.bottom - height >= workArea.top)
        return opener.bottom - height;
    return workArea.bottom - height;
}

} // namespace

void ButtonExtents::Add(const RECT& button, bool separator)
{
    if (!separator)
        maxRight = std::max<int>(maxRight, button.right);
    maxBottom = std::max<int>(maxBottom, button.bottom);
    itemHeight = std::max<int>(itemHeight, Height(button));
}

BannerSize ComputeBannerSize(SIZE title, int levelWidth, int visibleHeight)
{
    BannerSize size;
    size.bannerWidth = std::max<int>(title.cy + kBannerPadding, kMinimumExtent);
    size.totalWidth = size.bannerWidth + std::max(levelWidth, kMinimumExtent);
    size.totalHeight = std::max(visibleHeight, kMinimumExtent);
    size.stripLength = std::min<int>(size.totalHeight, title.cx + kStripPadding);
    return size;
}

LevelSize ComputeLevelSize(const LevelMeasure& measure, const DpiScale& dpi)
{
    LevelSize size;
    size.itemHeight = measure.buttons.itemHeight;
    size.width = measure.buttons.maxRight + dpi.Scaled(kWidthMargin);
    size.height = measure.buttons.maxBottom + dpi.Scaled(kHeightMargin);
    if (measure.deeperLevelsOpen)
        size.width = std::max(size.width, measure.previousWidth);
    size.visibleHeight = std::min(size.height, measure.workHeight);
    if (measure.bannerText)
    {
        const BannerSize& banner =
            size.banner.emplace(ComputeBannerSize(*measure.bannerText, size.width, size.visibleHeight));
        size.client = {banner.totalWidth, banner.totalHeight};
        size.content = {banner.bannerWidth, 0, banner.totalWidth, banner.totalHeight};
    }
    else
    {
        size.client = {size.width, size.visibleHeight};
        size.content = {0, 0, size.width, size.visibleHeight};
    }
    size.needsPager = size.height > measure.workHeight;
    size.pagerButtonSize = size.itemHeight / 2;
    return size;
}

RECT ClampToWorkArea(const RECT& rect, const RECT& workArea)
{
    const LONG left = std::max(workArea.left, std::min(rect.left, workArea.right - Width(rect)));
    const LONG top = std::max(workArea.top, std::min(rect.top, workArea.bottom - Height(rect)));
    return MovedTo(rect, left, top);
}

RECT PlaceLevel(SIZE client, const RECT& frame, const RECT& current, bool firstBuild, int alignment)
{
    const RECT window{frame.left, frame.top, client.cx + frame.right, client.cy + frame.bottom};
    const LONG below = current.bottom - Height(window);
    const LONG before = current.left - Width(window);
    if (!firstBuild)
        return MovedTo(window, current.left, below);
    switch (alignment)
    {
    case 0:
        return MovedTo(window, current.left, below);
    case 1:
        return MovedTo(window, before, below);
    case 2:
        return MovedTo(window, current.left, current.top);
    case 3:
        return MovedTo(window, before, current.top);
    default:
        return window;
    }
}

RECT PlaceSubLevel(SIZE window, const RECT& opener, const RECT& workArea, bool openerIsRoot)
{
    const LONG left = SubLevelLeft(window.cx, opener, workArea, openerIsRoot);
    const LONG top = SubLevelTop(window.cy, opener, workArea);
    return {left, top, left + window.cx, top + window.cy};
}
