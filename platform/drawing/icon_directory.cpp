// The icon directory (GRPICONDIR of the Windows resource formats): WORD reserved, WORD type (1), WORD count, then
// entries of 14 bytes: BYTE width, height (0 is 256), colours, reserved, WORD planes, bits, DWORD size, WORD number.
#include "platform/drawing/icon_directory.h"

#include <cstdlib>
#include <cstring>
#include <tuple>

namespace platform
{
namespace
{

constexpr std::size_t kHeaderSize = 6;
constexpr std::size_t kEntrySize = 14;

struct Entry
{
    int width;
    int bits;
    int id;
};

std::uint16_t WordAt(Bytes bytes, std::size_t offset)
{
    return static_cast<std::uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

Entry ReadEntry(Bytes entry)
{
    const int width = entry[0] != 0 ? entry[0] : 256;
    return {width, WordAt(entry, 6), WordAt(entry, 12)};
}

} // namespace

int BestIconId(Bytes directory, int width, int)
{
    if (directory.size() < kHeaderSize || WordAt(directory, 2) != 1)
        return 0;
    const std::size_t fitting = (directory.size() - kHeaderSize) / kEntrySize;
    const std::size_t count = std::min<std::size_t>(WordAt(directory, 4), fitting);
    int best = 0;
    std::tuple<int, int, int> bestRank;
    for (std::size_t i = 0; i < count; ++i)
    {
        const Entry entry = ReadEntry(directory.subspan(kHeaderSize + i * kEntrySize, kEntrySize));
        const std::tuple rank{std::abs(entry.width - width), -entry.width, -entry.bits};
        if (best == 0 || rank < bestRank)
        {
            best = entry.id;
            bestRank = rank;
        }
    }
    return best;
}

} // namespace platform

int LookupIconIdFromDirectoryEx(BYTE* directory, BOOL icon, int width, int height, UINT)
{
    if (directory == nullptr || !icon)
        return 0;
    // The call has no size of the directory: its own count is all there is.
    const std::size_t count = directory[4] | static_cast<std::size_t>(directory[5]) << 8;
    constexpr int kUsual = 32;
    return platform::BestIconId({directory, platform::kHeaderSize + count * platform::kEntrySize},
                                width != 0 ? width : kUsual, height != 0 ? height : kUsual);
}
