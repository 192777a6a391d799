// Device-independent bitmaps in memory. Format: BITMAPINFOHEADER and BITMAPFILEHEADER of the Windows API documentation;
// every size is checked against the data before it is used.
#include "platform/drawing/dib_file.h"

#include "platform/drawing/device_context.h"
#include "platform/drawing/pixel_format.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <png.h>

namespace platform
{
namespace
{

constexpr std::size_t kFileHeaderSize = 14;
constexpr std::size_t kBitsOffsetInFileHeader = 10;

template <typename T>
T ReadAt(Bytes bytes, std::size_t offset)
{
    T value{};
    std::memcpy(&value, bytes.data() + offset, sizeof(T));
    return value;
}

/// A DIB's parts, all inside the bytes given.
struct Dib
{
    BITMAPINFOHEADER header{};
    int height = 0; ///< rows, always positive
    Bytes colors;
    std::size_t bitsOffset = 0; ///< where the rows start in a packed DIB
};

std::optional<Dib> ReadHeader(Bytes bytes)
{
    if (bytes.size() < sizeof(BITMAPINFOHEADER))
        return std::nullopt;
    Dib dib;
    dib.header = ReadAt<BITMAPINFOHEADER>(bytes, 0);
    const BITMAPINFOHEADER& header = dib.header;
    if (header.biSize < sizeof(BITMAPINFOHEADER) || header.biSize > bytes.size() || header.biCompression != BI_RGB ||
        header.biHeight == INT32_MIN || header.biHeight == 0)
        return std::nullopt;
    dib.height = std::abs(header.biHeight);
    const std::size_t most = header.biBitCount <= 8 ? std::size_t{1} << header.biBitCount : 0;
    const std::size_t count = header.biClrUsed != 0 ? header.biClrUsed : most;
    if (count > (bytes.size() - header.biSize) / sizeof(RGBQUAD))
        return std::nullopt;
    dib.colors = bytes.subspan(header.biSize, std::min(count, most) * sizeof(RGBQUAD));
    dib.bitsOffset = header.biSize + count * sizeof(RGBQUAD);
    return dib;
}

/// The bitmap with rows [firstRow, firstRow + rows) of memory taken from `bits`.
std::unique_ptr<BitmapObject> MakeFrom(const Dib& dib, Bytes bits, int rows)
{
    // Before a bitmap is made: a damaged header may ask for a gigabyte.
    constexpr int kLargestSide = 0x7FFF;
    if (dib.header.biWidth < 1 || dib.header.biWidth > kLargestSide || dib.header.biBitCount < 1 ||
        dib.header.biBitCount > 32 ||
        bits.size() / static_cast<std::size_t>(RowBytes(dib.header.biWidth, dib.header.biBitCount)) <
            static_cast<std::size_t>(rows))
        return nullptr;
    auto bitmap = MakeBitmap(dib.header.biWidth, rows, dib.header.biBitCount, dib.header.biHeight > 0);
    if (bitmap == nullptr)
        return nullptr;
    const std::size_t size = static_cast<std::size_t>(bitmap->stride) * static_cast<std::size_t>(rows);
    std::memcpy(bitmap->Bits(), bits.data(), size);
    if (!dib.colors.empty())
        std::memcpy(bitmap->colors.data(), dib.colors.data(), dib.colors.size());
    return bitmap;
}

std::uint32_t Premultiply(std::uint32_t pixel)
{
    const std::uint32_t alpha = pixel >> 24;
    const auto scale = [alpha](std::uint32_t channel) { return (channel * alpha + 127) / 255; };
    return alpha << 24 | scale(pixel >> 16 & 0xFF) << 16 | scale(pixel >> 8 & 0xFF) << 8 | scale(pixel & 0xFF);
}

/// The icon's colours; a picture of 32 bits without any alpha is an old one whose transparency is all in the mask.
IconImage Colors(BitmapObject& bitmap, bool& hasAlpha)
{
    std::vector<std::uint32_t> copy;
    const Surface from = bitmap.bitsPerPixel == 32 ? bitmap.Pixels() : ReadPixels(bitmap, copy);
    IconImage image{bitmap.width, bitmap.height, {}};
    for (int y = 0; y < bitmap.height; ++y)
        image.pixels.insert(image.pixels.end(), PixelAt(from, 0, y), PixelAt(from, 0, y) + bitmap.width);
    hasAlpha = std::any_of(image.pixels.begin(), image.pixels.end(), [](std::uint32_t pixel) { return pixel >> 24; });
    return image;
}

/// Sets alpha from the mask (one bit a pixel, bottom-up, 1 is transparent); without a mask all is opaque.
void ApplyMask(IconImage& image, Bytes mask)
{
    const int stride = RowBytes(image.width, 1);
    const bool whole = mask.size() >= static_cast<std::size_t>(stride) * static_cast<std::size_t>(image.height);
    for (int y = 0; y < image.height; ++y)
    {
        const unsigned char* row = mask.data() + static_cast<std::ptrdiff_t>(image.height - 1 - y) * stride;
        for (int x = 0; x < image.width; ++x)
        {
            std::uint32_t& pixel = image.pixels[static_cast<std::size_t>(y * image.width + x)];
            const bool transparent = whole && (row[x / 8] >> (7 - x % 8) & 1) != 0;
            pixel = transparent ? 0 : pixel | 0xFF000000;
        }
    }
}

std::optional<IconImage> ReadIconDib(Bytes bytes)
{
    const std::optional<Dib> dib = ReadHeader(bytes);
    if (!dib || dib->header.biHeight < 2 || dib->bitsOffset > bytes.size())
        return std::nullopt;
    const Bytes bits = bytes.subspan(dib->bitsOffset);
    const auto bitmap = MakeFrom(*dib, bits, dib->height / 2);
    if (bitmap == nullptr)
        return std::nullopt;
    bool hasAlpha = false;
    IconImage image = Colors(*bitmap, hasAlpha);
    if (hasAlpha)
    {
        std::transform(image.pixels.begin(), image.pixels.end(), image.pixels.begin(), Premultiply);
    }
    else
    {
        ApplyMask(image,
                  bits.subspan(static_cast<std::size_t>(bitmap->stride) * static_cast<std::size_t>(bitmap->height)));
    }
    return image;
}

std::optional<IconImage> ReadPng(Bytes bytes)
{
    constexpr png_uint_32 kLargestSide = 1024;
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&png, bytes.data(), bytes.size()) == 0 || png.width > kLargestSide ||
        png.height > kLargestSide)
    {
        png_image_free(&png);
        return std::nullopt;
    }
    png.format = PNG_FORMAT_BGRA;
    IconImage image{static_cast<int>(png.width), static_cast<int>(png.height), {}};
    image.pixels.resize(static_cast<std::size_t>(png.width) * png.height);
    if (png_image_finish_read(&png, nullptr, image.pixels.data(), 0, nullptr) == 0)
        return std::nullopt;
    std::transform(image.pixels.begin(), image.pixels.end(), image.pixels.begin(), Premultiply);
    return image;
}

} // namespace

std::unique_ptr<BitmapObject> ReadPackedDib(Bytes bytes)
{
    const std::optional<Dib> dib = ReadHeader(bytes);
    return dib && dib->bitsOffset <= bytes.size() ? MakeFrom(*dib, bytes.subspan(dib->bitsOffset), dib->height)
                                                  : nullptr;
}

std::unique_ptr<BitmapObject> ReadBitmapFile(Bytes bytes)
{
    if (bytes.size() < kFileHeaderSize || bytes[0] != 'B' || bytes[1] != 'M')
        return nullptr;
    const std::optional<Dib> dib = ReadHeader(bytes.subspan(kFileHeaderSize));
    const auto bitsOffset = ReadAt<std::uint32_t>(bytes, kBitsOffsetInFileHeader);
    return dib && bitsOffset <= bytes.size() ? MakeFrom(*dib, bytes.subspan(bitsOffset), dib->height) : nullptr;
}

std::optional<IconImage> ReadIconImage(Bytes bytes)
{
    constexpr unsigned char kPngSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    const bool isPng = bytes.size() > sizeof(kPngSignature) &&
                       std::equal(std::begin(kPngSignature), std::end(kPngSignature), bytes.begin());
    return isPng ? ReadPng(bytes) : ReadIconDib(bytes);
}

} // namespace platform
