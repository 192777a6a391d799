// Image lists: when pictures are made, and how they are scaled.
#include "platform/drawing/image_scaling.h"
#include "tests/layer/controls_desk.h"

namespace
{

platform::IconImage Checkerboard(int size)
{
    platform::IconImage image{size, size, {}};
    for (int i = 0; i < size * size; ++i)
        image.pixels.push_back((i / size + i % size) % 2 != 0 ? 0xFFFFFFFFu : 0xFF000000u);
    return image;
}

} // namespace

TEST(ImageScaling, ShrinkingAverages)
{
    const platform::IconImage half = platform::ScaleImage(Checkerboard(32), 16, 16);
    ASSERT_EQ(half.pixels.size(), 256u);
    for (const std::uint32_t pixel : half.pixels)
    {
        EXPECT_EQ(pixel >> 24, 0xFFu) << "opaque stays opaque, the edge too";
        EXPECT_NEAR(static_cast<double>(pixel & 0xFF), 127.5, 24) << "neither black nor white";
    }
}

TEST(ImageScaling, GrowingKeepsPlainAreasPlain)
{
    const platform::IconImage plain{2, 2, std::vector<std::uint32_t>(4, 0x80402010u)};
    for (const std::uint32_t pixel : platform::ScaleImage(plain, 7, 5).pixels)
        EXPECT_EQ(pixel, 0x80402010u);
}

TEST(ImageScaling, AnEmptyPictureIsTransparent)
{
    const platform::IconImage nothing;
    EXPECT_EQ(platform::ScaleImage(nothing, 2, 2).pixels, std::vector<std::uint32_t>(4, 0u));
}

TEST_F(ControlsDesk, PicturesAreMadeWhenTheyAreDrawn)
{
    const int small = AddIcon(8, 0xFF00FF00);
    AddIcon(16, 0xFF0000FF);
    EXPECT_EQ(PlainIcon::made, 0);
    Show();
    HDC dc = GetDC(level);
    EXPECT_TRUE(ImageList_Draw(images, small, dc, 10, 10, ILD_NORMAL));
    EXPECT_EQ(GetPixel(dc, 10, 10), RGB(0, 255, 0)) << "scaled up to the list's size";
    EXPECT_EQ(GetPixel(dc, 25, 25), RGB(0, 255, 0));
    EXPECT_NE(GetPixel(dc, 26, 26), RGB(0, 255, 0));
    ReleaseDC(level, dc);
    EXPECT_EQ(PlainIcon::made, 1);
}
