// Shapes in a unit square, sampled 4 × 4 times per pixel.
#include "platform/icons/builtin_pictures.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace platform
{

namespace
{

/// Colour without alpha, 0xRRGGBB, or nothing.
constexpr std::uint32_t kNothing = 0xFF000000;

struct Box
{
    float left, top, right, bottom;

    bool Holds(float x, float y) const { return x >= left && x < right && y >= top && y < bottom; }
    Box Inset(float by) const { return {left + by, top + by, right - by, bottom - by}; }
};

using Sampler = std::uint32_t (*)(float x, float y);

std::uint32_t SampleFolder(float x, float y)
{
    constexpr Box kTab{0.06f, 0.16f, 0.44f, 0.32f};
    constexpr Box kBack{0.06f, 0.24f, 0.94f, 0.84f};
    constexpr Box kFront{0.06f, 0.36f, 0.94f, 0.84f};
    constexpr float kEdge = 0.035f;
    if (kFront.Holds(x, y))
        return kFront.Inset(kEdge).Holds(x, y) ? 0xF2C55C : 0xB98A2B;
    return kTab.Holds(x, y) || kBack.Holds(x, y) ? 0xD9A63F : kNothing;
}

std::uint32_t SampleDocument(float x, float y)
{
    constexpr Box kSheet{0.18f, 0.06f, 0.82f, 0.94f};
    constexpr float kFold = 0.22f;
    constexpr float kEdge = 0.035f;
    const float beyondFold = (x - (kSheet.right - kFold)) - (y - kSheet.top); // > 0 in the corner cut off
    if (!kSheet.Holds(x, y) || beyondFold > 0)
        return kNothing;
    if (!kSheet.Inset(kEdge).Holds(x, y) || beyondFold > -kEdge * 1.4f)
        return 0x8A8F96;
    if (x > kSheet.right - kFold && y < kSheet.top + kFold)
        return 0xC9CED6;
    const bool text = x > 0.28f && x < 0.72f && y > 0.38f && y < 0.84f && std::fmod(y - 0.38f, 0.12f) < 0.045f;
    return text ? 0xA9B4C2 : 0xFBFCFD;
}

std::uint32_t SampleProgram(float x, float y)
{
    constexpr float kPi = 3.14159265f;
    constexpr int kTeeth = 8;
    const float dx = x - 0.5f;
    const float dy = y - 0.5f;
    const float radius = std::sqrt(dx * dx + dy * dy);
    const float turn = std::fmod(std::atan2(dy, dx) + 2 * kPi, 2 * kPi) * kTeeth / (2 * kPi);
    const float rim = std::abs(turn - std::floor(turn) - 0.5f) < 0.27f ? 0.46f : 0.36f;
    if (radius > rim || radius < 0.13f)
        return kNothing;
    return radius > rim - 0.035f || radius < 0.165f ? 0x4D5A6B : 0x8C9BB0;
}

std::uint32_t SampleLinkMark(float x, float y)
{
    constexpr Box kSheet{0, 0, 1, 1};
    if (!kSheet.Inset(0.09f).Holds(x, y))
        return 0x6B7785;
    const bool head = x > 0.42f && y < 0.60f && x - y > 0.14f - 0.02f && x < 0.82f && y > 0.18f;
    const float alongShaft = std::abs((x - 0.24f) - (0.80f - y));
    const bool shaft = alongShaft < 0.17f && x > 0.2f && x < 0.66f && y > 0.34f && y < 0.84f;
    return head || shaft ? 0x2C6BC4 : 0xFFFFFF;
}

IconImage Rasterise(Sampler sample, int size)
{
    constexpr int kGrid = 4;
    IconImage image{size, size, std::vector<std::uint32_t>(static_cast<std::size_t>(size) * size)};
    for (int pixel = 0; pixel < size * size; ++pixel)
    {
        std::array<std::uint32_t, 4> sums{}; // blue, green, red, covered samples
        for (int point = 0; point < kGrid * kGrid; ++point)
        {
            const float x = static_cast<float>(pixel % size) + (static_cast<float>(point % kGrid) + 0.5f) / kGrid;
            const float y = static_cast<float>(pixel / size) + (static_cast<float>(point / kGrid) + 0.5f) / kGrid;
            const std::uint32_t colour = sample(x / static_cast<float>(size), y / static_cast<float>(size));
            if (colour != kNothing)
            {
                sums = {sums[0] + (colour & 0xFF), sums[1] + (colour >> 8 & 0xFF), sums[2] + (colour >> 16),
                        sums[3] + 255};
            }
        }
        constexpr std::uint32_t kSamples = kGrid * kGrid;
        image.pixels[static_cast<std::size_t>(pixel)] =
            sums[0] / kSamples | sums[1] / kSamples << 8 | sums[2] / kSamples << 16 | sums[3] / kSamples << 24;
    }
    return image;
}

/// One premultiplied pixel over another.
std::uint32_t Over(std::uint32_t source, std::uint32_t target)
{
    const std::uint32_t left = 255 - (source >> 24);
    std::uint32_t result = 0;
    for (int shift = 0; shift < 32; shift += 8)
    {
        const std::uint32_t scaled = (target >> shift & 0xFF) * left;
        result |= std::min(255u, (source >> shift & 0xFF) + (scaled + 127) / 255) << shift;
    }
    return result;
}

} // namespace

IconImage DrawBuiltinPicture(std::string_view name, int size)
{
    const Sampler sampler = name == "!folder" ? SampleFolder : name == "!program" ? SampleProgram : SampleDocument;
    return Rasterise(sampler, std::max(size, 1));
}

void Compose(IconImage& image, const IconImage& over, int x, int y)
{
    const int right = std::min(image.width, x + over.width);
    const int bottom = std::min(image.height, y + over.height);
    for (int row = y; row < bottom; ++row)
    {
        for (int column = x; column < right; ++column)
        {
            std::uint32_t& target = image.pixels[static_cast<std::size_t>(row) * image.width + column];
            target = Over(over.pixels[static_cast<std::size_t>(row - y) * over.width + (column - x)], target);
        }
    }
}

void DrawLinkMark(IconImage& image)
{
    const int size = std::max(image.height * 3 / 8, std::min(image.height, 7));
    Compose(image, Rasterise(SampleLinkMark, size), 0, image.height - size);
}

} // namespace platform
