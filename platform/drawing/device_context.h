// Device contexts: what is drawn on, with which objects, colours and clip.
//
// Three coordinate spaces: the caller's (logical) coordinates; plus the viewport origin they are device coordinates,
// in which clip regions are given; plus the context's own origin they are surface coordinates, in which everything
// inside this library works.
#pragma once

#include "platform/drawing/gdi_objects.h"

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
    POINT position{}; ///< of MoveToEx, logical
    COLORREF textColor = 0;
    COLORREF backColor = 0x00FFFFFF;
    int backMode = OPAQUE;
    int stretchMode = BLACKONWHITE;
    std::optional<ClipRegion> clip; ///< the caller's own clip, surface coordinates
};

class DeviceContext : public HandleObject
{
public:
    static constexpr HandleKind kHandleKind = HandleKind::DeviceContext;
    /// A memory context, with the one-pixel default bitmap selected.
    DeviceContext();
    DeviceContext(const Surface& surface, POINT origin, ClipRegion visible);
    /// Lets all selected objects go.
    ~DeviceContext() override;

    bool OnSurface() const { return m_surface.has_value(); }
    const std::optional<Surface>& FixedSurface() const { return m_surface; }
    BitmapObject* Bitmap() const { return FindObject<BitmapObject>(state.bitmap); }
    FontObject& Font() const { return *FindObject<FontObject>(state.font); }
    BrushObject& Brush() const { return *FindObject<BrushObject>(state.brush); }
    PenObject& Pen() const { return *FindObject<PenObject>(state.pen); }

    /// Surface coordinates of the caller's point (0, 0).
    POINT Offset() const { return {m_origin.x + state.viewport.x, m_origin.y + state.viewport.y}; }
    POINT Origin() const { return m_origin; }
    RECT ToSurface(const RECT& logical) const;
    POINT ToSurface(POINT logical) const { return {logical.x + Offset().x, logical.y + Offset().y}; }

    /// The pixels that drawing may touch, surface coordinates.
    const ClipRegion& Clip();
    /// The same without the caller's own clip.
    ClipRegion Visible() const;
    /// Replaces the caller's own clip.
    void SetClip(std::optional<ClipRegion> clip);

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
    ClipRegion m_visible;
    std::optional<ClipRegion> m_effectiveClip; ///< computed when first asked for
    std::vector<ContextState> m_saved;
};

inline DeviceContext* FindContext(HDC dc)
{
    return FindObject<DeviceContext>(dc);
}

/// The 32-bit pixels to draw on during one call. For a bitmap of another depth these are a copy, which is written back
/// at the end, each pixel as the nearest colour of the bitmap.
class Canvas
{
public:
    explicit Canvas(DeviceContext& context);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    const Surface& Pixels() const { return m_pixels; }
    const ClipRegion& Clip() const { return m_clip; }
    /// Fills the part of a region that the clip leaves. `pixel` is 0xAARRGGBB.
    void Fill(const ClipRegion& region, std::uint32_t pixel) const;
    void Fill(const RECT& rect, std::uint32_t pixel) const;

private:
    Surface m_pixels;
    const ClipRegion& m_clip;
    BitmapObject* m_converted = nullptr;
    std::vector<std::uint32_t> m_copy;
};

/// A copy of a context's pixels with 32 bits each, for reading; alpha is 0 where the bitmap has none.
struct SourcePixels
{
    explicit SourcePixels(DeviceContext& context);
    Surface pixels;

private:
    std::vector<std::uint32_t> m_copy;
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
