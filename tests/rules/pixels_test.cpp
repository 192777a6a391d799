// Arithmetic on pixels: premultiplication, the title on the banner, nine-slice pieces.
#include "menu/banner.h"
#include "menu/nine_slice.h"
#include "support/premultiply.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

TEST(Premultiply, TruncatesAndKeepsAlpha)
{
    std::uint8_t pixels[] = {200, 100, 50, 0, 200, 100, 50, 255, 255, 1, 3, 128};
    PremultiplyPixels(pixels, 3);
    const std::uint8_t expected[] = {0, 0, 0, 0, 200, 100, 50, 255, 128, 0, 1, 128};
    EXPECT_EQ(std::vector<int>(std::begin(pixels), std::end(pixels)),
              std::vector<int>(std::begin(expected), std::end(expected)));
}

TEST(Title, ReadsFromBottomToTop)
{
    // A mask of 3 × 2: the title's first column must land at the banner's bottom.
    const std::uint32_t mask[] = {0xFF, 0x80, 0x00, 0x00, 0x00, 0x10};
    std::vector<std::uint32_t> banner(4 * 5, 0xFF102030);
    CompositeTitle(banner.data(), {4, 5}, mask, {3, 2}, 0x00FFFFFF);
    const auto at = [&](int x, int y) { return banner[static_cast<std::size_t>(y * 4 + x)]; };
    EXPECT_EQ(at(0, 4), 0xFFFFFFFFu);
    EXPECT_EQ(at(0, 3), 0xFF000000u | (0x10 * 127 + 128 * 255) / 255 << 16 | (0x20 * 127 + 128 * 255) / 255 << 8 |
                            (0x30 * 127 + 128 * 255) / 255);
    EXPECT_EQ(at(0, 2), 0xFF102030u);
    EXPECT_EQ(at(1, 2) & 0xFF, static_cast<std::uint32_t>((0x30 * (255 - 16) + 16 * 255) / 255));
    EXPECT_EQ(at(2, 4), 0xFF102030u) << "beside the mask nothing changes";
}

TEST(Title, RaisesAlphaFromTransparent)
{
    EXPECT_EQ(BlendAlpha(0, 200), 200);
    EXPECT_EQ(BlendAlpha(255, 200), 255);
    EXPECT_EQ(BlendAlpha(100, 0), 100);
}

TEST(NineSlice, KeepsTheMargins)
{
    const auto pieces = SliceNine({10, 20, 110, 220}, {2, 3, 4, 5});
    const RECT& middle = pieces[4];
    EXPECT_EQ(middle.left, 12);
    EXPECT_EQ(middle.top, 23);
    EXPECT_EQ(middle.right, 106);
    EXPECT_EQ(middle.bottom, 215);
    EXPECT_EQ(pieces[2].left, 106);
    EXPECT_EQ(pieces[6].bottom, 220);
    const auto separator = SliceNine({0, 0, 100, 8}, {0, 8, 0, 0});
    EXPECT_EQ(separator[1].bottom - separator[1].top, 8);
    EXPECT_EQ(separator[4].bottom, separator[4].top) << "nothing below the image's own height";
}

} // namespace
