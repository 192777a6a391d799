// What the launcher relies on in item identifier lists.
#include "shell_desk.h"

#include <cstring>

using namespace conformance;

namespace
{

/// A list of identifiers of 4 bytes each, made by hand: lists are the same whatever is in them.
std::vector<USHORT> Handmade(std::initializer_list<USHORT> values)
{
    std::vector<USHORT> words;
    for (const USHORT value : values)
        words.insert(words.end(), {4, value});
    words.push_back(0);
    return words;
}

const ITEMIDLIST* AsList(const std::vector<USHORT>& words)
{
    return reinterpret_cast<const ITEMIDLIST*>(words.data());
}

bool SameBytes(const ITEMIDLIST* list, const std::vector<USHORT>& words)
{
    return std::memcmp(list, words.data(), words.size() * sizeof(USHORT)) == 0;
}

} // namespace

TEST(ItemList, CloneAndCombineCopy)
{
    const auto first = Handmade({1, 2});
    const auto second = Handmade({3});
    const auto both = Handmade({1, 2, 3});
    const auto empty = Handmade({});
    EXPECT_TRUE(SameBytes(List(ILClone(AsList(first))).get(), first));
    EXPECT_TRUE(SameBytes(List(ILClone(AsList(empty))).get(), empty));
    EXPECT_TRUE(SameBytes(List(ILCombine(AsList(first), AsList(second))).get(), both));
    EXPECT_TRUE(SameBytes(List(ILCombine(AsList(first), AsList(empty))).get(), first));
    EXPECT_TRUE(SameBytes(List(ILCombine(AsList(empty), AsList(second))).get(), second));
    EXPECT_TRUE(SameBytes(List(ILCombine(AsList(first), nullptr)).get(), first));
    EXPECT_TRUE(SameBytes(List(ILCombine(nullptr, AsList(second))).get(), second));
    EXPECT_EQ(ILClone(nullptr), nullptr);
    EXPECT_EQ(ILCombine(nullptr, nullptr), nullptr);
    ILFree(nullptr);
}

TEST(ItemList, TheLastIdentifierIsFound)
{
    auto words = Handmade({1, 2, 3});
    auto* list = reinterpret_cast<ITEMIDLIST*>(words.data());
    EXPECT_EQ(reinterpret_cast<USHORT*>(ILFindLastID(list)), words.data() + 4);
    EXPECT_EQ(ILFindLastID(nullptr), nullptr);
}
