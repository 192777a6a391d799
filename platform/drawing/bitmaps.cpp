// Bitmaps: creation of sections, which have 32 bits here; what is loaded keeps its depth and is only read.
#include "platform/drawing/device_context.h"
#include "platform/drawing/pixel_format.h"

#include <cstdlib>
#include <cstring>

namespace platform
{
namespace
{

// Far above any screen; keeps every product of sizes in range.
constexpr int kLargestSide = 0x7FFF;
constexpr std::int64_t kLargestBytes = std::int64_t{1} << 30;

bool IsDepth(int bitsPerPixel)
{
    return bitsPerPixel == 1 || bitsPerPixel == 4 || bitsPerPixel == 8 || bitsPerPixel == 24 || bitsPerPixel == 32;
}

} // namespace

std::unique_ptr<BitmapObject> MakeBitmap(int width, int height, int bitsPerPixel, bool bottomUp)
{
    if (width < 1 || height < 1 || width > kLargestSide || height > kLargestSide || !IsDepth(bitsPerPixel) ||
        static_cast<std::int64_t>(RowBytes(width, bitsPerPixel)) * height > kLargestBytes)
        return nullptr;
    auto bitmap = std::make_unique<BitmapObject>();
    bitmap->width = width;
    bitmap->height = height;
    bitmap->bitsPerPixel = bitsPerPixel;
    bitmap->stride = RowBytes(width, bitsPerPixel);
    bitmap->bottomUp = bottomUp;
    bitmap->memory.reset(static_cast<unsigned char*>(
        std::calloc(static_cast<std::size_t>(bitmap->stride), static_cast<std::size_t>(height))));
    if (bitmap->Bits() == nullptr)
        return nullptr;
    if (bitsPerPixel <= 8)
        bitmap->colors.resize(std::size_t{1} << bitsPerPixel);
    return bitmap;
}

} // namespace platform

HBITMAP CreateDIBSection(HDC, const BITMAPINFO* info, UINT usage, LPVOID* bits, HANDLE section, DWORD)
{
    using namespace platform;
    constexpr HBITMAP kNone = nullptr;
    if (info == nullptr || info->bmiHeader.biSize < sizeof(BITMAPINFOHEADER) || info->bmiHeader.biBitCount != 32 ||
        usage != DIB_RGB_COLORS || section != nullptr || info->bmiHeader.biCompression != BI_RGB ||
        info->bmiHeader.biHeight == INT32_MIN)
        return Fail(ERROR_INVALID_PARAMETER, kNone);
    const BITMAPINFOHEADER& header = info->bmiHeader;
    auto bitmap = MakeBitmap(header.biWidth, std::abs(header.biHeight), 32, header.biHeight > 0);
    if (bitmap == nullptr)
        return Fail(ERROR_INVALID_PARAMETER, kNone);
    void* const memory = bitmap->Bits();
    const HBITMAP handle = OpenHandle<HBITMAP>("CreateDIBSection", std::move(bitmap));
    if (bits != nullptr)
        *bits = handle != nullptr ? memory : nullptr;
    return handle;
}

HANDLE CopyImage(HANDLE image, UINT type, int width, int height, UINT flags)
{
    using namespace platform;
    constexpr HANDLE kNone = nullptr;
    BitmapObject* source = type == IMAGE_BITMAP ? FindObject<BitmapObject>(image) : nullptr;
    if (source == nullptr || width != 0 || height != 0 || flags != 0)
        return Fail(ERROR_INVALID_PARAMETER, kNone);
    auto copy = MakeBitmap(source->width, source->height, source->bitsPerPixel, source->bottomUp);
    if (copy == nullptr)
        return Fail(ERROR_NOT_ENOUGH_MEMORY, kNone);
    std::memcpy(copy->Bits(), source->Bits(),
                static_cast<std::size_t>(source->stride) * static_cast<std::size_t>(source->height));
    copy->colors = source->colors;
    return OpenHandle<HANDLE>("CopyImage", std::move(copy));
}
