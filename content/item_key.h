// Layout keys: 32-bit FNV-1a hashes of names (offset basis 0x811C9DC5, prime 0x01000193).
#pragma once

#include "support/wstring.h"

#include <cstdint>

/// The hash over the bytes of a terminated text in UTF-16 little-endian order, without the terminator.
constexpr std::uint32_t HashText(LPCWSTR text)
{
    constexpr std::uint32_t kPrime = 0x01000193;
    std::uint32_t hash = 0x811C9DC5;
    for (; *text != 0; ++text)
    {
        const WCHAR unit = *text;
        hash ^= unit & 0xFFu;
        // Where the high byte is zero its two steps are one multiplication.
        hash = unit <= 0xFF ? hash * (kPrime * kPrime) : ((hash * kPrime) ^ (unit >> 8)) * kPrime;
    }
    return hash;
}

/// Key of every separator. Item names are upper-cased first, so no name yields it but by a collision.
constexpr std::uint32_t SeparatorKey = HashText(TEXT(".separator."));
static_assert(SeparatorKey == 0xE7932CD0 && HashText(TEXT("ABC")) == 0x726ABF1D);

/// Key of an item: the hash of its in-folder parsing name, upper-cased by the platform. Names that differ only in
/// letter case have one key.
std::uint32_t ItemKey(WStringView parsingName);
/// The same for a name that the caller has no further use for: upper-cases it in place.
std::uint32_t ItemKeyInPlace(LPWSTR parsingName);
