// Device contexts: what is drawn on, with which objects, colours and clip.
//
// Three coordinate spaces: the caller's (logical) coordinates; plus the viewport origin they are device coordinates,
// ; plus the context's own origin they are surface coordinates, in which everything
// inside this library works.
#pragma once

#include "platform/drawing/gdi_objects.h"
#include "platform/drawing/region.h"

#include <optional>

namespace platform
{

/// What SaveDC keeps.
struct ContextState
{
    HBITMAP bitmap = nullptr;
    HFONT font = nullptr;
    HBRUSH brush = nullptr;
    HPEN pen = nullptr;
    POINT viewport{};
    COLORREF textColor = 0;
    int backMode = OPAQUE;
    int stretchMode = BLACKONWHITE;
    std::optional<Region> clip; ///< the caller's own clip, surface coordinates
};

class DeviceContext : public HandleObject
{
public:
    static constexpr HandleKind kHandleKind = HandleKind::DeviceContext;
    /// A memory context, with the one-pixel default bitmap selected.
    DeviceContext();
    DeviceContext(const Surface& surface, POINT origin, Region visible);
    /// Lets all selected objects go.
    ~DeviceContext() override;

    bool OnSurface() const { return m_surface.has_value(); }
    const std::optional<Surface>& FixedSurface() const { return m_surface; }
    BitmapObject* Bitmap() const { return FindObject<BitmapObject>(state.bitmap); }
    FontObject& Font() const { return *FindObject<FontObject>(state.font); }
    BrushObject& Brush() const { return *FindObject<BrushObject>(state.brush); }

    /// Surface coordinates of the caller's point (0, 0).
    POINT Offset() const { return {m_origin.x + state.viewport.x, m_origin.y + state.viewport.y}; }
    RECT ToSurface(const RECT& logical) const;
    POINT ToSurface(POINT logical) const { return {logical.x + Offset().x, logical.y + Offset().y}; }

    /// The pixels that drawing may touch, surface coordinates.
    const Region& Clip();
    /// The same without the caller's own clip.
    Region Visible() const;
    /// Replaces the caller's own clip.
    void SetClip(std::optional<Region> clip);

    /// Selects; the previous handle comes back, null when the object cannot be selected.
    HGDIOBJ Select(HGDIOBJ object);
    int Save();
    bool Restore(int saved);

    ContextState state;

private:
    template <typename T, typename H>
    HGDIOBJ Exchange(H& slot, HGDIOBJ object);
    void RestoreObjects(const ContextState& saved);

    std::optional<Surface> m_surface;
    POINT m_origin{};
    Region m_visible;
    std::optional<Region> m_effectiveClip; ///< computed when first asked for
    std::vector<ContextState> m_saved;
};

inline DeviceContext* FindContext(HDC dc)
{
    return FindObject<DeviceContext>(dc);
}

/// The 32-bit pixels to draw on during one call. A bitmap of another depth is only a source: nothing reaches it.
class Canvas
{
public:
    explicit Canvas(DeviceContext& context);

    const Surface& Pixels() const { return m_pixels; }
    const Region& Clip() const { return m_clip; }
    /// Fills the part of a region that the clip leaves. `pixel` is 0xAARRGGBB.
    void Fill(const Region& region, std::uint32_t pixel) const;
    void Fill(const RECT& rect, std::uint32_t pixel) const;

private:
    Surface m_pixels;
    const Region& m_clip;
};

/// A context's pixels with 32 bits each, for reading; alpha is 0 where the bitmap has none.
struct SourcePixels
{
    explicit SourcePixels(DeviceContext& context);

private:
    std::vector<std::uint32_t> m_copy;

public:
    Surface pixels; ///< of the context, or of the copy
};

/// 0x00BBGGRR to the 0x00RRGGBB of a pixel and back; alpha is 0 both ways, as GDI writes it.
constexpr std::uint32_t PixelFromColor(COLORREF color)
{
    return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}
constexpr COLORREF ColorFromPixel(std::uint32_t pixel)
{
    return PixelFromColor(pixel);
}

inline std::uint32_t* PixelAt(const Surface& surface, int x, int y)
{
    return surface.pixels + static_cast<std::ptrdiff_t>(y) * surface.stride + x;
}

} // namespace platform
