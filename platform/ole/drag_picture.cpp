// The drag helper: a picture on its way from who begins a drag to who carries it out.
#include "platform/ole/drag_picture.h"

#include "platform/base/fault_points.h"
#include "platform/drawing/gdi_objects.h"
#include "platform/ole/data_object.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace platform
{
namespace
{

constexpr LONG kLargestSide = 1024; // pixels
constexpr std::uint32_t kOpaque = 0xFF000000;

CLIPFORMAT PictureFormat()
{
    return static_cast<CLIPFORMAT>(RegisterClipboardFormatW(u"Drag Picture"));
}

struct Header
{
    SIZE size;
    POINT hotSpot;
};

/// Empty when it is no bitmap that a drag can have.
std::vector<std::uint32_t> PixelsOf(BitmapObject* bitmap)
{
    if (bitmap == nullptr || bitmap->bitsPerPixel != 32 || bitmap->width > kLargestSide ||
        bitmap->height > kLargestSide)
        return {};
    std::vector<std::uint32_t> pixels;
    const Surface surface = bitmap->Pixels();
    for (int y = 0; y < surface.height; ++y)
    {
        const std::uint32_t* row = surface.pixels + static_cast<std::ptrdiff_t>(y) * surface.stride;
        pixels.insert(pixels.end(), row, row + surface.width);
    }
    const auto isSeen = [](std::uint32_t pixel) { return (pixel & kOpaque) != 0; };
    if (std::ranges::none_of(pixels, isSeen)) // made without regard to transparency
        for (std::uint32_t& pixel : pixels)
            pixel |= kOpaque;
    return pixels;
}

HRESULT Keep(IDataObject& data, const Header& header, const std::vector<std::uint32_t>& pixels)
{
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof(header));
    bytes.append(reinterpret_cast<const char*>(pixels.data()), pixels.size() * sizeof(pixels[0]));
    STGMEDIUM medium{TYMED_HGLOBAL, GlobalFromBytes(bytes), nullptr};
    if (medium.hGlobal == nullptr)
        return E_OUTOFMEMORY;
    FORMATETC format = MemoryFormat(PictureFormat());
    const HRESULT kept = data.SetData(&format, &medium, TRUE);
    if (FAILED(kept))
        ReleaseStgMedium(&medium);
    return kept;
}

class DragDropHelper final : public ComObjectOf<ComInterface<IDropTargetHelper, IID_IDropTargetHelper>,
                                                ComInterface<IDragSourceHelper2, IID_IDragSourceHelper2>>
{
public:
    HRESULT STDMETHODCALLTYPE DragEnter(HWND, IDataObject*, POINT*, DWORD) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE DragLeave() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE DragOver(POINT*, DWORD) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Drop(IDataObject*, POINT*, DWORD) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Show(BOOL) override { return S_OK; }

    HRESULT STDMETHODCALLTYPE InitializeFromBitmap(SHDRAGIMAGE* image, IDataObject* data) override
    {
        if (image == nullptr || data == nullptr)
            return E_INVALIDARG;
        if (FaultPoint("InitializeFromBitmap"))
            return E_OUTOFMEMORY;
        auto* const bitmap = FindObject<BitmapObject>(image->hbmpDragImage);
        const std::vector<std::uint32_t> pixels = PixelsOf(bitmap);
        if (pixels.empty())
            return E_INVALIDARG;
        const HRESULT kept = Keep(*data, {{bitmap->width, bitmap->height}, image->ptOffset}, pixels);
        if (SUCCEEDED(kept))
            DeleteObject(image->hbmpDragImage);
        return kept;
    }
    HRESULT STDMETHODCALLTYPE InitializeFromWindow(HWND, POINT*, IDataObject*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetFlags(DWORD) override { return S_OK; }
};

} // namespace

IUnknown* MakeDragDropHelper()
{
    return static_cast<IDropTargetHelper*>(new DragDropHelper);
}

screen::DragImage DragPictureOf(IDataObject& data)
{
    screen::DragImage image;
    const auto bytes = DataAs(data, PictureFormat());
    Header header{};
    if (!bytes || bytes->size() < sizeof(header))
        return image;
    std::memcpy(&header, bytes->data(), sizeof(header));
    const bool fits =
        header.size.cx > 0 && header.size.cy > 0 && header.size.cx <= kLargestSide && header.size.cy <= kLargestSide;
    const std::size_t count =
        fits ? static_cast<std::size_t>(header.size.cx) * static_cast<std::size_t>(header.size.cy) : 0;
    if (count == 0 || bytes->size() != sizeof(header) + count * sizeof(std::uint32_t))
        return image;
    image.size = header.size;
    image.hotSpot = header.hotSpot;
    image.pixels.resize(count);
    std::memcpy(image.pixels.data(), bytes->data() + sizeof(header), count * sizeof(std::uint32_t));
    return image;
}

} // namespace platform
