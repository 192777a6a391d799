// Effects, insertion points, moves within a level, and when a press becomes a drag.
#include "dragdrop/drag_rules.h"

#include <gtest/gtest.h>

#include <string>

using namespace CustomMenu;

namespace
{

constexpr DWORD kCopy = DROPEFFECT_COPY;
constexpr DWORD kMove = DROPEFFECT_MOVE;
constexpr DWORD kLink = DROPEFFECT_LINK;

/// One item per letter, which is its key; "|" is a separator, "-" the placeholder.
MenuItems Items(const std::string& letters)
{
    MenuItems items;
    for (const char letter : letters)
    {
        items.emplace_back();
        items.back().key = static_cast<std::uint32_t>(letter);
        if (letter == '|')
            items.back().flags = MIF_SEPARATOR;
        else if (letter == '-')
            items.back().flags = MIF_PLACEHOLDER;
        else
            items.back().pidl.Reset(static_cast<LPITEMIDLIST>(CoTaskMemAlloc(2)));
    }
    return items;
}

std::string Letters(const MenuItems& items)
{
    std::string letters;
    for (const MenuItem& item : items)
        letters.push_back(static_cast<char>(item.key));
    return letters;
}

TEST(Effect, WhatComesFromOutsideIsLinkedRatherThanCopied)
{
    EXPECT_EQ(NarrowEffect(kAllEffects, MK_LBUTTON, false), kLink);
    EXPECT_EQ(NarrowEffect(kCopy | kLink, 0, false), kLink);
    EXPECT_EQ(NarrowEffect(kCopy | kMove, 0, false), kCopy);
    EXPECT_EQ(NarrowEffect(kMove, 0, false), kMove);
    EXPECT_EQ(NarrowEffect(0x80000000, 0, false), 0x80000000) << "unchanged where there is neither";
    EXPECT_EQ(NarrowEffect(DROPEFFECT_NONE, 0, false), static_cast<DWORD>(DROPEFFECT_NONE));
}

TEST(Effect, WhatTheLauncherDragsKeepsAllThatItsSourceOffers)
{
    EXPECT_EQ(NarrowEffect(kAllEffects, 0, true), kAllEffects);
    EXPECT_EQ(NarrowEffect(kMove | kLink, MK_RBUTTON, true), kMove | kLink);
}

TEST(Effect, KeysDecideWhereverItComesFrom)
{
    for (const bool own : {false, true})
    {
        EXPECT_EQ(NarrowEffect(kAllEffects, MK_CONTROL | MK_LBUTTON, own), kCopy);
        EXPECT_EQ(NarrowEffect(kAllEffects, MK_SHIFT, own), kMove);
        EXPECT_EQ(NarrowEffect(kAllEffects, MK_CONTROL | MK_SHIFT | MK_RBUTTON, own), kLink);
        EXPECT_EQ(NarrowEffect(kCopy | kLink, MK_SHIFT, own), 0u) << "what the source does not offer is nothing";
    }
}

TEST(Effect, OnlyTheRightButtonHasTheFolderAsk)
{
    EXPECT_EQ(KeyStateForFolder(true, false), 14u);
    EXPECT_EQ(KeyStateForFolder(true, true), 10u);
    EXPECT_EQ(KeyStateForFolder(false, false), 0u);
    EXPECT_EQ(KeyStateForFolder(false, true), 0u);
}

TEST(InsertionMark, ShowsAfterTheButtonOnlyBelowItsMiddle)
{
    EXPECT_EQ(MarkSide({0, 20, 100, 41}, 30), 0u) << "on the middle line, rounded down";
    EXPECT_EQ(MarkSide({0, 20, 100, 41}, 31), static_cast<DWORD>(TBIMHT_AFTER));
    EXPECT_EQ(MarkSide({0, 20, 100, 41}, 20), 0u);
}

TEST(InsertPosition, IsBesideTheMarkedItem)
{
    const MenuItems items = Items("ABCDE");
    EXPECT_EQ(InsertPosition({0, 0}, items), 0);
    EXPECT_EQ(InsertPosition({0, TBIMHT_AFTER}, items), 1);
    EXPECT_EQ(InsertPosition({3, TBIMHT_AFTER}, items), 4);
    EXPECT_EQ(InsertPosition({4, TBIMHT_AFTER}, items), 5) << "the end";
    EXPECT_EQ(InsertPosition({4, 0}, items), 4);
    EXPECT_EQ(InsertPosition({-1, 0}, items), -1) << "no mark";
}

TEST(InsertPosition, OnEitherHalfOfThePlaceholderIsTheBeginning)
{
    EXPECT_EQ(InsertPosition({0, 0}, Items("-")), 0);
    EXPECT_EQ(InsertPosition({0, TBIMHT_AFTER}, Items("-")), 0);
    EXPECT_EQ(InsertPosition({0, TBIMHT_AFTER}, {}), 0);
    EXPECT_EQ(InsertPosition({0, TBIMHT_AFTER}, Items("A")), 1);
}

TEST(MoveWithinLevel, TakesTheItemOutAndPutsItAtTheMark)
{
    struct Case
    {
        int from;
        int position;
        int to;
        std::string order;
    };
    const Case cases[] = {
        {1, 4, 3, "ACDBE"}, // onto the lower half of D
        {3, 0, 0, "DABCE"}, // onto the upper half of A
        {0, 5, 4, "BCDEA"}, {4, 0, 0, "EABCD"},
        {2, 2, 2, "ABCDE"}, // the lower half of the item above, or the upper of itself
        {2, 3, 2, "ABCDE"}, // the lower half of itself, or the upper of the item below
    };
    for (const auto& [from, position, to, order] : cases)
    {
        MenuItems items = Items("ABCDE");
        EXPECT_EQ(MoveItem(items, from, position), to) << order;
        EXPECT_EQ(Letters(items), order);
    }
}

TEST(Resting, LastsLongerThanTheDelay)
{
    EXPECT_FALSE(HasRested(1000, 1400, 400));
    EXPECT_TRUE(HasRested(1000, 1401, 400));
    EXPECT_TRUE(HasRested(0xFFFFFF00, 0x100, 400)) << "message times wrap around";
    EXPECT_FALSE(HasRested(0xFFFFFF00, 0x10, 400));
}

TEST(PressAndMove, IsADragBeyondTheThresholdInEitherDirection)
{
    const SIZE threshold{4, 6};
    EXPECT_FALSE(IsDrag({10, 10}, {14, 16}, threshold)) << "exactly the threshold";
    EXPECT_FALSE(IsDrag({10, 10}, {6, 4}, threshold));
    EXPECT_TRUE(IsDrag({10, 10}, {15, 10}, threshold));
    EXPECT_TRUE(IsDrag({10, 10}, {5, 10}, threshold));
    EXPECT_TRUE(IsDrag({10, 10}, {10, 17}, threshold));
    EXPECT_TRUE(IsDrag({10, 40000}, {10, 39990}, threshold)) << "in a level taller than 16 bits reach";
}

TEST(CanDrag, OnlyWhatTheShellKnows)
{
    const MenuItems items = Items("A|-");
    EXPECT_TRUE(CanDrag(items[0]));
    EXPECT_FALSE(CanDrag(items[1]));
    EXPECT_FALSE(CanDrag(items[2]));
}

TEST(DragImage, HasThePointerBelowItsMiddle)
{
    EXPECT_EQ(DragImageOffset(96).x, 48);
    EXPECT_EQ(DragImageOffset(96).y, 89);
}

} // namespace
