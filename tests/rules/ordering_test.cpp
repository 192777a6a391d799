// Keys, stored orders, and what a level makes of them.
#include "content/icon_cache.h"
#include "content/item_key.h"
#include "content/ordering.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace
{

WString Wide(const std::string& text)
{
    return WString(text.begin(), text.end());
}

/// One item a letter; '|' is a separator, an upper-case letter a folder.
MenuItems Items(const std::string& letters)
{
    MenuItems items;
    for (const char c : letters)
    {
        if (c == '|')
        {
            items.push_back(MakeSeparator(0));
            continue;
        }
        MenuItem item;
        item.name = ShellText(Wide({c}).c_str());
        item.key = ItemKey(item.name.Get());
        if (c >= 'A' && c <= 'Z')
            item.flags = MIF_FOLDER;
        items.push_back(std::move(item));
    }
    return items;
}

std::string Letters(const MenuItems& items)
{
    std::string letters;
    for (const MenuItem& item : items)
        letters += item.Is(MIF_SEPARATOR) ? '|' : static_cast<char>(item.name.Get()[0]);
    return letters;
}

StoredOrder Keys(const std::string& letters)
{
    StoredOrder keys;
    for (const MenuItem& item : Items(letters))
        keys.push_back(item.key);
    return keys;
}

std::string Merged(const std::string& present, const StoredOrder& stored)
{
    MenuItems items = Items(present);
    MergeOrder(items, stored);
    return Letters(items);
}

std::string CleanedUp(const std::string& letters)
{
    MenuItems items = Items(letters);
    CleanUpSeparators(items);
    return Letters(items);
}

TEST(ItemKey, HashesTheUpperCasedName)
{
    EXPECT_EQ(ItemKey({}), 0x811C9DC5u);
    EXPECT_EQ(ItemKey(TEXT("abc")), 0x726ABF1Du);
    EXPECT_EQ(ItemKey(TEXT("caf\u00E9")), ItemKey(TEXT("CAF\u00C9")));
    EXPECT_NE(ItemKey(TEXT(".separator.")), SeparatorKey) << "no name may pass for a separator";
}

TEST(IconKey, TellsOverlayTypeNameAndListApart)
{
    SHFILEINFOW info{};
    info.iIcon = 7;
    const std::uint32_t plain = IconKey(info, 0x10);
    EXPECT_EQ(plain, 7 + HashText(TEXT("")) + 0x10);
    info.iIcon = 0x01000007; // the overlay's number is in the highest byte
    EXPECT_EQ(IconKey(info, 0x10), plain + 0x01000000);
    info.iIcon = 7;
    EXPECT_NE(IconKey(info, 0x20), plain);
    std::copy_n(TEXT("Text"), 5, info.szTypeName);
    EXPECT_EQ(IconKey(info, 0x10), 7 + HashText(TEXT("Text")) + 0x10) << "as it is written, not in upper case";
}

TEST(StoredOrder, IsRawLittleEndianKeys)
{
    const std::uint8_t bytes[] = {0xD0, 0x2C, 0x93, 0xE7, 1, 2, 3, 4, 9, 9};
    EXPECT_EQ(DecodeOrder(bytes, sizeof(bytes)), (StoredOrder{SeparatorKey, 0x04030201}));
    EXPECT_TRUE(DecodeOrder(bytes, 3).empty());
    EXPECT_EQ(EncodeOrder(Items("|")), (std::vector<std::uint8_t>{0xD0, 0x2C, 0x93, 0xE7}));
    MenuItems empty;
    empty.push_back(MakePlaceholder());
    EXPECT_EQ(EncodeOrder(empty), std::vector<std::uint8_t>(4));
}

TEST(MergeOrder, StoredItemsFirstThenTheOthersByName)
{
    EXPECT_EQ(Merged("aBZ", {}), "BZa") << "code units, not dictionary order";
    EXPECT_EQ(Merged("abc", Keys("b|a")), "b|ac");
    EXPECT_EQ(Merged("zyx", Keys("q|xq")), "|xyz") << "stale keys leave no trace";
    EXPECT_EQ(Merged("ab", Keys("bab")), "ba") << "of a key stored twice the first counts";
    EXPECT_EQ(Merged("", Keys("a||")), "||");
}

TEST(CleanUpSeparators, KeepsOnlyThoseThatSeparate)
{
    EXPECT_EQ(CleanedUp("||a|||b|"), "a|b");
    EXPECT_EQ(CleanedUp("|||"), "");
    EXPECT_EQ(CleanedUp(""), "");
    EXPECT_EQ(CleanedUp("a|b|c"), "a|b|c");
}

TEST(CleanUpSeparators, KeepsTheLastOfARun)
{
    MenuItems items = Items("a||b");
    items[1].order = 1;
    items[2].order = 2;
    CleanUpSeparators(items);
    ASSERT_EQ(Letters(items), "a|b");
    EXPECT_EQ(items[1].order, 2);
}

TEST(PlaceNewcomer, MovesExactlyOneNewItemToThePendingPosition)
{
    const auto placed = [](const std::string& now, const std::string& before, int position)
    {
        MenuItems items = Items(now);
        PlaceNewcomer(items, Items(before), position);
        return Letters(items);
    };
    EXPECT_EQ(placed("abcn", "abc", 1), "anbc");
    EXPECT_EQ(placed("abcn", "abc", 0), "nabc");
    EXPECT_EQ(placed("abcn", "abc", 2), "abnc");
    EXPECT_EQ(placed("abcn", "abc", 3), "abcn") << "the last position needs no move";
    EXPECT_EQ(placed("abcn", "abc", -1), "abcn");
    EXPECT_EQ(placed("abno", "ab", 0), "abno") << "two newcomers";
    EXPECT_EQ(placed("abn", "abc", 0), "abn") << "one came, one went";
    EXPECT_EQ(placed("n", "", 0), "n") << "the first load";
    EXPECT_EQ(placed("abca", "abc", 0), "abca") << "the last item is not new";
}

TEST(InsertSeparator, NeedsANeighbourThatIsNone)
{
    const auto inserted = [](const std::string& letters, Where where, int index, int expected)
    {
        MenuItems items = Items(letters);
        EXPECT_EQ(InsertSeparatorBeside(items, where, index), expected) << letters << ' ' << index;
        return Letters(items);
    };
    EXPECT_EQ(inserted("abc", Where::Above, 1, 2), "a|bc");
    EXPECT_EQ(inserted("abc", Where::Below, 1, 1), "ab|c");
    EXPECT_EQ(inserted("abc", Where::Above, 0, -1), "abc");
    EXPECT_EQ(inserted("abc", Where::Below, 2, -1), "abc");
    EXPECT_EQ(inserted("a|b", Where::Above, 2, -1), "a|b");
    EXPECT_EQ(inserted("a|b", Where::Below, 0, -1), "a|b");
    EXPECT_EQ(inserted("abc", Where::Above, -1, -1), "abc");
}

TEST(FindAgain, FollowsTheItemByItsKey)
{
    const MenuItems items = Items("a|b|a");
    EXPECT_EQ(FindAgain(items, 4, items[0].key), 4) << "of two with one key the one in its place";
    EXPECT_EQ(FindAgain(items, 1, items[2].key), 2);
    EXPECT_EQ(FindAgain(items, 7, items[2].key), 2);
    EXPECT_EQ(FindAgain(items, 2, ItemKey(TEXT("gone"))), -1);
}

TEST(InsertNewItem, TakesTheFirstNameThatHasAppeared)
{
    using Names = std::vector<WString>;
    const auto inserted = [](const std::string& letters, const Names& before, const Names& after, int position)
    {
        MenuItems items = Items(letters);
        InsertNewItem(items, before, after, position);
        return Letters(items);
    };
    const Names before{TEXT("b"), TEXT("a")};
    EXPECT_EQ(inserted("ab", before, {TEXT("b"), TEXT("n"), TEXT("a")}, 1), "anb");
    EXPECT_EQ(inserted("ab", before, {TEXT("a"), TEXT("b"), TEXT("n")}, 2), "abn") << "the end is a position";
    EXPECT_EQ(inserted("ab", before, {TEXT("o"), TEXT("n"), TEXT("Z"), TEXT("a")}, 0), "Zab") << "code units";
    EXPECT_EQ(inserted("", {}, {TEXT("n")}, 0), "n");
    EXPECT_EQ(inserted("ab", before, before, 0), "ab") << "a replaced file";
    EXPECT_EQ(inserted("ab", before, {TEXT("a")}, 0), "ab");
    EXPECT_EQ(inserted("ab", before, {TEXT("a"), TEXT("a"), TEXT("b")}, 0), "ab") << "two folders may share a name";
    EXPECT_EQ(inserted("ab", before, {TEXT("n")}, -1), "ab");
    EXPECT_EQ(inserted("ab", before, {TEXT("n")}, 3), "ab");

    EXPECT_EQ(inserted("abn", before, {TEXT("a"), TEXT("b"), TEXT("n")}, 1), "anb") << "a refresh came first";
    EXPECT_EQ(inserted("nab", before, {TEXT("a"), TEXT("b"), TEXT("n")}, 2), "anb");

    MenuItems items = Items("a");
    ASSERT_TRUE(InsertNewItem(items, {}, {TEXT("new")}, 0));
    EXPECT_EQ(items[0].key, ItemKey(TEXT("NEW")));
    EXPECT_EQ(items[0].flags, 0u);
    EXPECT_EQ(items[0].image, 0);
    EXPECT_FALSE(items[0].pidl);
}

} // namespace
