// Icons: images that are rasterised when they are first drawn.
//
// A level of hundreds of items shows a screenful at a time. An icon handle therefore names a source, and everything
// that copies an icon (an image list, most of all) shares the source; its pixels are made when somebody draws them.
#pragma once

#include "windows.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace platform
{

/// Premultiplied B G R A pixels, rows from the top.
struct IconImage
{
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};

class IconSource
{
public:
    virtual ~IconSource() = default;
    /// The picture at the source's own size; made by the first call, the same object ever after.
    virtual const IconImage& Image() = 0;
};

/// A new icon handle on a shared source; null when out of handles. DestroyIcon closes it.
HICON CreateIconFromSource(std::shared_ptr<IconSource> source);
/// The source of an icon, null for a handle that is none.
std::shared_ptr<IconSource> IconSourceOf(HICON icon);
/// An icon of the system's resources (platform/resources/layer.rc), `size` pixels square; empty when there is none.
IconImage SystemPicture(LPCWSTR name, int size);
/// Draws the picture with its top-left corner at (x, y) of the context.
bool DrawIconImage(HDC dc, int x, int y, const IconImage& image);

} // namespace platform
