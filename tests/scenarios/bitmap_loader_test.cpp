// Pictures of the launcher's own: from a file and from the resources, with and without an alpha channel.
#include "app/bitmap_loader.h"
#include "platform/base/text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

namespace
{

/// A bitmap file of one pixel, 0x80204060 as far as its depth goes.
WString WritePixel(WORD bitsPerPixel)
{
    const std::string path = std::string(std::getenv("HOME")) + "/pixel.bmp";
    BITMAPINFOHEADER header{};
    header.biSize = sizeof(header);
    header.biWidth = header.biHeight = 1;
    header.biPlanes = 1;
    header.biBitCount = bitsPerPixel;
    const std::uint32_t offset = 14 + sizeof(header);
    const std::uint32_t size = offset + 4;
    const std::uint32_t pixel = bitsPerPixel == 32 ? 0x80204060 : 0x204060;
    std::string file = "BM";
    const auto append = [&](const auto& value) { file.append(reinterpret_cast<const char*>(&value), sizeof(value)); };
    append(size);
    append(std::uint32_t{0});
    append(offset);
    append(header);
    append(pixel);
    std::ofstream(path, std::ios::binary) << file;
    return platform::ShellPathFromPosix(path);
}

std::uint32_t OnlyPixelOf(const UniqueBitmap& image)
{
    BITMAP bitmap{};
    std::uint32_t pixel = 0;
    if (GetObjectW(image.Get(), sizeof(bitmap), &bitmap) != 0 && bitmap.bmBits != nullptr)
        std::memcpy(&pixel, bitmap.bmBits, bitmap.bmBitsPixel / 8);
    return pixel;
}

TEST(BitmapLoader, AFileWithAlphaIsPremultiplied)
{
    const UniqueBitmap image = LoadBitmapImage(WritePixel(32));
    ASSERT_TRUE(image);
    EXPECT_EQ(OnlyPixelOf(image), 0x80102030u);
    EXPECT_EQ(BitmapSize(image.Get()).cx, 1);
}

TEST(BitmapLoader, AFileWithoutAlphaIsLeftAsItIs)
{
    const UniqueBitmap image = LoadBitmapImage(WritePixel(24));
    ASSERT_TRUE(image);
    EXPECT_EQ(OnlyPixelOf(image), 0x204060u);
}

TEST(BitmapLoader, WhatIsNotThereIsNoPicture)
{
    EXPECT_FALSE(LoadBitmapImage(ResourceName(9999)));
    EXPECT_FALSE(LoadBitmapImage(TEXT("\\nowhere\\at all.bmp")));
    EXPECT_EQ(BitmapSize(nullptr).cx, 0);
}

} // namespace
