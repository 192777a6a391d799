// What the entries of an item's context menu lead to.
#include "commands/command_table.h"
#include "content/menu_item.h"

#include <gtest/gtest.h>

using namespace CustomMenu;

namespace
{

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
