// Casing: CharUpperW for every UTF-16 code unit.
#include <windows.h>

#include <gtest/gtest.h>
#include <map>
#include <string>

namespace
{

struct CasePair
{
    WCHAR unit;
    WCHAR upper;
};

// What CharUpperW does under Wine, for the units that it changes; see docs/casing.md.
constexpr CasePair kChanged[] = {
#include "casing_expectation.inc"
};

std::map<unsigned, unsigned> Expected()
{
    std::map<unsigned, unsigned> expected;
    for (const CasePair& pair : kChanged)
        expected[static_cast<unsigned>(pair.unit)] = static_cast<unsigned>(pair.upper);
    return expected;
}

/// CharUpperW's form for one character: a pointer whose high bits are zero.
unsigned UpperOfCharacter(unsigned unit)
{
    return static_cast<unsigned>(
        reinterpret_cast<ULONG_PTR>(CharUpperW(reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(unit)))));
}

} // namespace

TEST(Casing, EveryCodeUnitIsUpperCasedAsOnWindows)
{
    const std::map<unsigned, unsigned> expected = Expected();
    ASSERT_GT(expected.size(), 1000u);
    for (unsigned unit = 1; unit < 0x10000; ++unit)
    {
        const auto entry = expected.find(unit);
        const unsigned upper = entry != expected.end() ? entry->second : unit;
        WCHAR text[] = {static_cast<WCHAR>(unit), 0};
        EXPECT_EQ(CharUpperW(text), text);
        ASSERT_EQ(static_cast<unsigned>(text[0]), upper) << std::hex << "in a string, unit " << unit;
        ASSERT_EQ(UpperOfCharacter(unit), upper) << std::hex << "alone, unit " << unit;
    }
}

TEST(Casing, AStringIsCasedInPlace)
{
    WCHAR text[] = TEXT("stra\x00DF"
                        "e \x0131\x017F \xD801\xDC28 \xDC28 end");
    CharUpperW(text);
    const std::basic_string<WCHAR> expected = TEXT("STRA\x00DF"
                                                   "E \x0131\x017F \xD801\xDC00 \xDC28 END");
    EXPECT_EQ(std::basic_string<WCHAR>(text), expected)
        << "nothing grows, what has no way back stays, a surrogate pair is one character, half a pair is none";
}

// Beyond the first plane nothing but the low surrogate changes; the ranges are those of Wine's CharUpperW.
TEST(Casing, CharactersOfTwoUnitsAreUpperCasedToo)
{
    struct Range
    {
        unsigned first;
        unsigned last;
        unsigned distance;
    };
    constexpr Range kRanges[] = {
#include "casing_pairs_expectation.inc"
    };
    unsigned changed = 0;
    for (unsigned character = 0x10000; character < 0x110000; ++character)
    {
        unsigned expected = character;
        for (const Range& range : kRanges)
            expected -= character >= range.first && character <= range.last ? range.distance : 0;
        const auto high = static_cast<WCHAR>(0xD800 + ((character - 0x10000) >> 10));
        WCHAR text[] = {high, static_cast<WCHAR>(0xDC00 + (character & 0x3FF)), 0};
        CharUpperW(text);
        ASSERT_EQ(text[0], high) << std::hex << character;
        ASSERT_EQ(static_cast<unsigned>(text[1]), 0xDC00 + (expected & 0x3FF)) << std::hex << character;
        changed += expected != character;
    }
    EXPECT_GT(changed, 200u);
}

TEST(Casing, ComparisonIgnoresLetterCase)
{
    EXPECT_EQ(lstrcmpiW(TEXT("Gr\x00FC\x00DF"
                             "e"),
                        TEXT("GR\x00DC\x00DF"
                             "E")),
              0);
    EXPECT_LT(lstrcmpiW(TEXT("apple"), TEXT("Banana")), 0);
    EXPECT_GT(lstrcmpiW(TEXT("cherry"), TEXT("Banana")), 0);
    EXPECT_LT(lstrcmpiW(TEXT("app"), TEXT("apple")), 0);
}
