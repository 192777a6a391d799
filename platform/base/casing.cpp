// Upper-casing and case-insensitive comparison, character by character, as CharUpperW does it.
#include "platform/base/text.h"

#include "winbase.h"

#include <algorithm>
#include <iterator>

namespace platform
{
namespace
{

struct CaseRun
{
    std::uint32_t first;
    std::uint32_t last;
    std::uint16_t step;
    std::int32_t distance;
};

constexpr CaseRun kCaseRuns[] = {
#include "platform/base/case_table.inc"
};

std::uint32_t UpperCaseByTable(std::uint32_t character)
{
    const CaseRun* run =
        std::upper_bound(std::begin(kCaseRuns), std::end(kCaseRuns), character,
                         [](std::uint32_t value, const CaseRun& entry) { return value < entry.first; });
    if (run == std::begin(kCaseRuns))
        return character;
    --run;
    const bool inRun = character <= run->last && (character - run->first) % run->step == 0;
    return inRun ? character + static_cast<std::uint32_t>(run->distance) : character;
}

constexpr char16_t UpperCaseAscii(char16_t unit)
{
    const bool isLower = static_cast<unsigned>(unit - u'a') <= u'z' - u'a';
    return static_cast<char16_t>(unit - (isLower ? 0x20 : 0));
}

bool IsHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

bool IsLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

/// The unit after `previous`. The upper case of a pair has the same high surrogate (the table's maker checks that), so
/// the low one is all that changes.
char16_t UpperCaseAfter(char16_t previous, char16_t unit)
{
    if (!IsLowSurrogate(unit) || !IsHighSurrogate(previous))
        return UpperCase(unit);
    const std::uint32_t character = 0x10000 + ((previous & 0x3FFu) << 10) + (unit & 0x3FFu);
    return static_cast<char16_t>(0xDC00 | (UpperCaseByTable(character) & 0x3FF));
}

} // namespace

char16_t UpperCase(char16_t unit)
{
    return unit < 0x80 ? UpperCaseAscii(unit) : static_cast<char16_t>(UpperCaseByTable(unit));
}

std::u16string UpperCase(std::u16string_view text)
{
    std::u16string result(text);
    char16_t previous = 0;
    for (char16_t& unit : result)
        previous = unit = UpperCaseAfter(previous, unit);
    return result;
}

} // namespace platform

LPWSTR CharUpperW(LPWSTR text)
{
    if (IS_INTRESOURCE(text))
    {
        const auto unit = static_cast<char16_t>(reinterpret_cast<ULONG_PTR>(text));
        return reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(platform::UpperCase(unit)));
    }
    WCHAR* unit = text;
    while (*unit != 0 && *unit < 0x80)
        ++unit;
    std::transform(text, unit, text, platform::UpperCaseAscii);
    for (WCHAR previous = 0; *unit != 0; ++unit)
        previous = *unit = platform::UpperCaseAfter(previous, *unit);
    return text;
}

// Ordinal on the upper-cased units: the order does not depend on a locale, so that it is the same on every machine.
int lstrcmpiW(LPCWSTR a, LPCWSTR b)
{
    if (a == nullptr || b == nullptr)
        return a == b ? 0 : a == nullptr ? -1 : 1;
    char16_t unitA = 0;
    char16_t unitB = 0;
    for (;; ++a, ++b)
    {
        unitA = platform::UpperCaseAfter(unitA, *a);
        unitB = platform::UpperCaseAfter(unitB, *b);
        if (unitA != unitB)
            return unitA < unitB ? -1 : 1;
        if (unitA == 0)
            return 0;
    }
}
