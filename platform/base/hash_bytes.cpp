// A hash that takes eight bytes at a time.
#include "platform/base/hash_bytes.h"

#include <algorithm>
#include <cstring>

namespace platform
{

std::uint64_t HashBytes(std::string_view bytes, std::uint64_t seed)
{
    constexpr std::uint64_t kMultiplier = 0x9E37'79B9'7F4A'7C15;
    const auto mix = [](std::uint64_t& hash, std::uint64_t word)
    {
        hash = (hash ^ word) * kMultiplier;
        hash ^= hash >> 29;
    };
    std::uint64_t hash = (seed ^ bytes.size()) * kMultiplier;
    const char* at = bytes.data();
    std::size_t left = bytes.size();
    if (left >= 64)
    {
        // Four at a time, each of which would have to wait for the one before.
        std::uint64_t lanes[4] = {hash, hash + 1, hash + 2, hash + 3};
        for (; left >= 32; at += 32, left -= 32)
        {
            std::uint64_t words[4];
            std::memcpy(words, at, sizeof words);
            for (int i = 0; i < 4; ++i)
                mix(lanes[i], words[i]);
        }
        for (const std::uint64_t lane : lanes)
            mix(hash, lane);
    }
    while (left > 0)
    {
        const std::size_t step = std::min<std::size_t>(left, 8);
        std::uint64_t word = 0;
        std::memcpy(&word, at, step);
        mix(hash, word);
        at += step;
        left -= step;
    }
    mix(hash, 0);
    return hash;
}

} // namespace platform
