// Where levels go and how large they are. Rectangles are screen pixels, right and bottom exclusive.
#pragma once

#include "geometry/dpi_scale.h"

#include <windows.h>

#include <optional>

/// What the buttons of a level's toolbar measure after the toolbar has sized them to their contents.
struct ButtonExtents
{
    int maxRight = 0;   ///< largest right edge among the buttons that are not separators
    int maxBottom = 0;  ///< largest bottom edge
    int itemHeight = 0; ///< largest height

    void Add(const RECT& button, bool separator);
};

struct LevelMeasure
{
    ButtonExtents buttons;
    int previousWidth = 0;          ///< the width this level had after its previous sizing
    bool deeperLevelsOpen = false;  ///< such a level never becomes narrower
    int workHeight = 0;             ///< height of the primary monitor's work area
    std::optional<SIZE> bannerText; ///< extent of the title, for a level with a banner
};

/// Sizes of a level with a banner, from its title's extent and the size of the items beside it.
struct BannerSize
{
    int bannerWidth; ///< of the strip at the left
    int totalWidth;
    int totalHeight;
    int stripLength; ///< how far the title reaches up from the bottom
};
BannerSize ComputeBannerSize(SIZE title, int levelWidth, int visibleHeight);

struct LevelSize
{
    int width = 0;         ///< of every button
    int height = 0;        ///< of all items
    int visibleHeight = 0; ///< of the items that fit on the work area
    int itemHeight = 0;
    RECT content{}; ///< where the toolbar or the pager sits, in client coordinates
    SIZE client{};
    bool needsPager = false;
    int pagerButtonSize = 0;
    std::optional<BannerSize> banner;
};

LevelSize ComputeLevelSize(const LevelMeasure& measure, const DpiScale& dpi);

/// Moves the rectangle onto the work area, keeping its size; when it does not fit, the left or top edge wins.
RECT ClampToWorkArea(const RECT& rect, const RECT& workArea);

/// Window rectangle of a level that has just been built, before the clamp. `frame` is what AdjustWindowRect makes of an
/// empty rectangle; `current` is the window's present rectangle, of zero size at the anchor for the root's first build.
/// A rebuild keeps the bottom-left corner whatever the alignment.
RECT PlaceLevel(SIZE client, const RECT& frame, const RECT& current, bool firstBuild, int alignment);

/// Window rectangle of a sub-level of the given size beside the item that opens it, before the clamp.
RECT PlaceSubLevel(SIZE window, const RECT& opener, const RECT& workArea, bool openerIsRoot);
