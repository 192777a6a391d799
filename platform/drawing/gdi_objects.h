// What GDI handles name: bitmaps, fonts, brushes, pens.
#pragma once

#include "platform/base/fault_points.h"
#include "platform/base/handle_table.h"
#include "platform/base/last_error.h"
#include "platform/screen/surface.h"

#include "windows.h"

#include <cstdlib>
#include <memory>
#include <vector>

namespace platform
{

class GlyphFont;

/// An object that contexts select. Deleting one that is selected waits until the last context has let it go.
class SelectableObject : public HandleObject
{
public:
    using HandleObject::HandleObject;
    int selections = 0;
    bool deleteWhenFree = false;
};

struct FreeMemory
{
    void operator()(unsigned char* memory) const { std::free(memory); }
};

class BitmapObject : public SelectableObject
{
public:
    static constexpr HandleKind kHandleKind = HandleKind::Bitmap;
    BitmapObject() : SelectableObject(kHandleKind) {}

    int width = 0;
    int height = 0;
    int bitsPerPixel = 32; ///< 1, 4, 8, 24 or 32
    int stride = 0;        ///< bytes from one row in memory to the next; a multiple of 4
    bool bottomUp = false; ///< the first row in memory is the lowest one
    std::unique_ptr<unsigned char, FreeMemory> memory;
    std::vector<RGBQUAD> colors; ///< 2^bitsPerPixel entries up to 8 bits

    unsigned char* Bits() { return memory.get(); }
    /// First byte of row y counted from the top of the picture.
    unsigned char* Row(int y) { return Bits() + static_cast<std::ptrdiff_t>(bottomUp ? height - 1 - y : y) * stride; }
    /// The pixels in place; only for 32 bits per pixel. The stride is negative for a bottom-up bitmap.
    Surface Pixels();
};

class BrushObject : public SelectableObject
{
public:
    static constexpr HandleKind kHandleKind = HandleKind::Brush;
    explicit BrushObject(COLORREF c) : SelectableObject(kHandleKind), color(c) {}
    COLORREF color;
};

/// Only stock pens are there, and nothing is outlined.
class PenObject : public SelectableObject
{
public:
    static constexpr HandleKind kHandleKind = HandleKind::Pen;
    PenObject() : SelectableObject(kHandleKind) {}
};

class FontObject : public SelectableObject
{
public:
    static constexpr HandleKind kHandleKind = HandleKind::Font;
    explicit FontObject(const LOGFONTW& font) : SelectableObject(kHandleKind), logFont(font) {}
    LOGFONTW logFont;
    /// The realised font; looked up when text is first measured or drawn.
    GlyphFont& Glyphs();

private:
    GlyphFont* m_glyphs = nullptr;
};

/// A new bitmap with zeroed pixels (and, up to 8 bits, a zeroed colour table); null when the sizes are out of range.
std::unique_ptr<BitmapObject> MakeBitmap(int width, int height, int bitsPerPixel, bool bottomUp);

/// Hands an object to the handle table; null (and ERROR_NOT_ENOUGH_MEMORY) when that is full or the call's fault point
/// is hit.
template <typename Handle>
Handle OpenHandle(const char* call, std::unique_ptr<HandleObject> object)
{
    const std::uintptr_t value = FaultPoint(call) ? 0 : InsertHandle(std::move(object));
    return value != 0 ? reinterpret_cast<Handle>(value) : Fail(ERROR_NOT_ENOUGH_MEMORY, static_cast<Handle>(nullptr));
}

} // namespace platform
