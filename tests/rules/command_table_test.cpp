// The entries of an item's context menu, and what they lead to.
#include "app/options.h"
#include "commands/command_table.h"
#include "content/menu_item.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace CustomMenu;

namespace
{

/// One item a letter, '|' for a separator.
MenuItems Items(const std::string& letters)
{
    MenuItems items;
    for (const char letter : letters)
    {
        items.emplace_back();
        if (letter == '|')
            items.back() = MakeSeparator(0);
    }
    return items;
}

/// Identifiers as they are offered, 0 for a line.
std::vector<int> Offered(const MenuItems& items, int index, bool isRoot = false)
{
    std::vector<int> identifiers;
    for (const MenuEntry& entry : OwnEntries(items, index, isRoot, 0))
        identifiers.push_back(entry.identifier);
    return identifiers;
}

TEST(OwnEntries, FollowTheItemsNeighbours)
{
    using List = std::vector<int>;
    EXPECT_EQ(Offered(Items("abc"), 0), (List{0, 1, 2, 3, 4, 7})) << "nothing is above the first";
    EXPECT_EQ(Offered(Items("abc"), 1), (List{0, 1, 2, 3, 4, 5, 7}));
    EXPECT_EQ(Offered(Items("abc"), 2), (List{0, 1, 2, 3, 4, 5})) << "nothing is below the last";
    EXPECT_EQ(Offered(Items("a|b|c"), 2), (List{0, 1, 2, 3, 4, 6, 8}));
    EXPECT_EQ(Offered(Items("a|b"), 0), (List{0, 1, 2, 3, 4, 8}));
    EXPECT_EQ(Offered(Items("a"), 0, true), (List{0, 1, 2, 3, 4, 0, 9, 10}));
    MenuItems linked = Items("ab");
    linked[1].flags = MIF_LINKED | MIF_PROTECTED;
    EXPECT_EQ(Offered(linked, 1, true), (List{0, 5, 0, 9, 10})) << "nothing is made beside a link";
    linked[0].flags = MIF_PLACEHOLDER;
    EXPECT_EQ(Offered(linked, 0), (List{0, 1, 2, 3, 4, 7}));
}

TEST(OwnEntries, SayWhatTheyDoWithAPictureOfIt)
{
    struct Case
    {
        int identifier;
        WString text;
        int picture;
    };
    // Between a separator and none, then between none and a separator: every entry occurs.
    std::vector<MenuEntry> entries = OwnEntries(Items("a|bc"), 2, true, 0);
    const std::vector<MenuEntry> others = OwnEntries(Items("ab|c"), 1, true, 0);
    entries.insert(entries.end(), others.begin(), others.end());
    for (const Case& c : {Case{1, TEXT("Insert folder above"), 118}, Case{2, TEXT("Insert folder below"), 119},
                          Case{3, TEXT("Insert shortcut above"), 116}, Case{4, TEXT("Insert shortcut below"), 117},
                          Case{5, TEXT("Insert separator above"), 120}, Case{6, TEXT("Delete separator above"), 114},
                          Case{7, TEXT("Insert separator below"), 121}, Case{8, TEXT("Delete separator below"), 115},
                          Case{9, TEXT("Add Start Menu"), 0}, Case{10, TEXT("Add Desktop"), 0}})
    {
        const auto entry = std::find_if(entries.begin(), entries.end(),
                                        [&](const MenuEntry& e) { return e.identifier == c.identifier; });
        ASSERT_NE(entry, entries.end()) << c.identifier;
        EXPECT_EQ(WString(entry->text), c.text) << c.identifier;
        EXPECT_EQ(entry->picture, c.picture) << c.identifier;
    }
}

TEST(MenuCommand, IsDoneBesideTheItem)
{
    struct Case
    {
        int identifier;
        MenuAction action;
        int position;
        int highlight;
    };
    const MenuItems items = Items("a|b|cde");
    const auto expect = [&](const Case& c, int index)
    {
        const MenuDecision decision = DecideMenuCommand(c.identifier, items, index);
        EXPECT_EQ(static_cast<int>(decision.action), static_cast<int>(c.action)) << c.identifier << " on " << index;
        EXPECT_EQ(decision.position, c.position) << c.identifier << " on " << index;
        EXPECT_EQ(decision.highlight, c.highlight) << c.identifier << " on " << index;
    };
    for (const Case& c : {Case{1, MenuAction::InsertFolder, 2, -1}, Case{2, MenuAction::InsertFolder, 3, -1},
                          Case{3, MenuAction::InsertShortcut, 2, -1}, Case{4, MenuAction::InsertShortcut, 3, -1},
                          Case{6, MenuAction::DeleteSeparator, 1, 1}, Case{8, MenuAction::DeleteSeparator, 3, 2},
                          Case{11, MenuAction::ShellCommand, -1, -1}, Case{0x7FFF, MenuAction::ShellCommand, -1, -1},
                          Case{0, MenuAction::None, -1, -1}})
        expect(c, 2);
    // Meanwhile the neighbours may be others.
    for (const Case& c : {Case{6, MenuAction::None, -1, -1}, Case{8, MenuAction::None, -1, -1}})
    {
        expect(c, 5);
        expect(c, 6);
    }
    expect({6, MenuAction::None, -1, -1}, 0);
    EXPECT_EQ(static_cast<int>(DecideMenuCommand(5, items, 2).where), static_cast<int>(Where::Above));
    EXPECT_EQ(static_cast<int>(DecideMenuCommand(7, items, 2).where), static_cast<int>(Where::Below));
}

TEST(MenuCommand, OfAnItemThatIsGoneIsDoneOnlyWhereItNeedsNone)
{
    const MenuItems items = Items("abc");
    for (int identifier = 1; identifier <= 8; ++identifier)
        EXPECT_EQ(static_cast<int>(DecideMenuCommand(identifier, items, -1).action), static_cast<int>(MenuAction::None))
            << identifier;
    EXPECT_EQ(static_cast<int>(DecideMenuCommand(9, items, -1).action), static_cast<int>(MenuAction::ToggleStartMenu));
    EXPECT_EQ(static_cast<int>(DecideMenuCommand(10, items, -1).action), static_cast<int>(MenuAction::ToggleDesktop));
    EXPECT_EQ(static_cast<int>(DecideMenuCommand(11, items, -1).action), static_cast<int>(MenuAction::ShellCommand));
}

TEST(ShellCommand, LeadsWhereTheItemAllows)
{
    struct Case
    {
        const char* verb;
        std::uint32_t flags;
        ShellCommandAction action;
    };
    constexpr Case kCases[] = {
        {"", 0, ShellCommandAction::Invoke},
        {"open", MIF_PROTECTED, ShellCommandAction::Invoke},
        {"paste", 0, ShellCommandAction::Paste},
        {"Paste", MIF_PLACEHOLDER, ShellCommandAction::Paste},
        {"paste", MIF_FOLDER, ShellCommandAction::Invoke},
        {"paste", MIF_SEPARATOR, ShellCommandAction::Invoke},
        {"pastelink", 0, ShellCommandAction::Invoke},
        {"RENAME", 0, ShellCommandAction::Rename},
        {"rename", MIF_FOLDER | MIF_PROTECTED, ShellCommandAction::None},
        {"delete", 0, ShellCommandAction::Invoke},
        {"Delete", MIF_PROTECTED, ShellCommandAction::None},
        {"cut", MIF_FOLDER, ShellCommandAction::Invoke},
        {"cut", MIF_PROTECTED, ShellCommandAction::None},
        {"copy", MIF_PROTECTED, ShellCommandAction::Invoke},
        {"Properties", MIF_PROTECTED, ShellCommandAction::ShowProperties},
        {"propertie", 0, ShellCommandAction::Invoke},
    };
    for (const Case& c : kCases)
        EXPECT_EQ(static_cast<int>(DecideShellCommand(c.verb, c.flags)), static_cast<int>(c.action))
            << c.verb << " on " << c.flags;
}

TEST(ShellCommand, HighlightsTheItemAndAfterDeletingTheLastTheOneBefore)
{
    EXPECT_EQ(HighlightAfter("open", 2, 3), 2);
    EXPECT_EQ(HighlightAfter("DELETE", 2, 3), 1);
    EXPECT_EQ(HighlightAfter("delete", 1, 3), 1);
    EXPECT_EQ(HighlightAfter("delete", 0, 1), -1);
}

} // namespace
