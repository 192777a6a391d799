// Bitmaps: creation of sections and of context-compatible bitmaps.
#include "platform/drawing/device_context.h"
#include "platform/drawing/pixel_format.h"

#include <algorithm>
#include <cstdlib>

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
    bitmap->memory = PixelMemory(static_cast<std::size_t>(bitmap->stride) * static_cast<std::size_t>(height));
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
    if (info == nullptr || info->bmiHeader.biSize < sizeof(BITMAPINFOHEADER) || usage != DIB_RGB_COLORS ||
        section != nullptr || info->bmiHeader.biCompression != BI_RGB || info->bmiHeader.biHeight == INT32_MIN)
        return Fail(ERROR_INVALID_PARAMETER, kNone);
    const BITMAPINFOHEADER& header = info->bmiHeader;
    auto bitmap = MakeBitmap(header.biWidth, std::abs(header.biHeight), header.biBitCount, header.biHeight > 0);
    if (bitmap == nullptr)
        return Fail(ERROR_INVALID_PARAMETER, kNone);
    const std::size_t colors =
        header.biClrUsed == 0 ? bitmap->colors.size() : std::min<std::size_t>(header.biClrUsed, bitmap->colors.size());
    std::copy_n(info->bmiColors, colors, bitmap->colors.begin());
    void* const memory = bitmap->Bits();
    const HBITMAP handle = OpenHandle<HBITMAP>("CreateDIBSection", std::move(bitmap));
    if (bits != nullptr)
        *bits = handle != nullptr ? memory : nullptr;
    return handle;
}

// Always 32 bits: that is the screen's depth here. (GDI's special case, one bit for a fresh memory context, has no use
// in this program.)
HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height)
{
    using namespace platform;
    auto bitmap = FindContext(dc) != nullptr ? MakeBitmap(width, height, 32, false) : nullptr;
    return bitmap != nullptr ? OpenHandle<HBITMAP>("CreateCompatibleBitmap", std::move(bitmap))
                             : Fail(ERROR_INVALID_PARAMETER, static_cast<HBITMAP>(nullptr));
}
