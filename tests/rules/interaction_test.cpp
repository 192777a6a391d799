// Hovering, wheel, scrolling, keys and separator styles: what each leads to.
#include "app/options.h"
#include "commands/key_table.h"
#include "content/ordering.h"
#include "geometry/scrolling.h"
#include "menu/button_ids.h"
#include "menu/hover_rules.h"

#include <windows.h>
#include <commctrl.h>

#include <gtest/gtest.h>

#include <string>

using namespace CustomMenu;

namespace
{

/// Of five items, the mouse having moved unless said otherwise.
struct HoverCase
{
    const char* situation;
    HoverSituation
        level; ///< context menu's item, open item, items, whether the new one is a folder, places of the mouse
    int newIndex;
    HotCause cause;
    const char* outcome;
};

TEST(Hover, LeadsToWhatTheLevelsSituationAsksFor)
{
    constexpr auto kMouse = HotCause::Mouse;
    constexpr auto kLeaving = HotCause::Leaving;
    constexpr auto kOther = HotCause::Other;
    const HoverCase cases[] = {
        {"onto a folder", {-1, -1, 5, true, 2, 1}, 3, kMouse, "focus timer"},
        {"onto a plain item", {-1, -1, 5, false, 2, 1}, 3, kMouse, "focus"},
        {"onto a folder by key", {-1, -1, 5, true, 2, 1}, 3, kOther, ""},
        {"under a resting cursor", {-1, -1, 5, true, 2, 2}, 3, kMouse, "refuse"},
        {"by key beside a resting cursor", {-1, -1, 5, true, 2, 2}, 3, kOther, ""},
        {"onto a plain item beside an open sub-level", {-1, 1, 5, false, 2, 1}, 3, kMouse, "timer"},
        {"onto the opener", {-1, 1, 5, true, 2, 1}, 1, kMouse, ""},
        {"away from an open sub-level", {-1, 1, 5, false, 2, 1}, -1, kLeaving, "refuse restore"},
        {"away from all", {-1, -1, 5, false, 2, 1}, -1, kLeaving, ""},
        {"away, the opener gone", {-1, 5, 5, false, 2, 1}, -1, kLeaving, ""},
        {"beside a context menu by mouse", {2, -1, 5, false, 2, 1}, 3, kMouse, "refuse"},
        {"beside a context menu away", {2, -1, 5, false, 2, 1}, 3, kLeaving, "refuse"},
        {"beside a context menu by key", {2, -1, 5, false, 2, 1}, 3, kOther, "refuse"},
        {"onto the context menu's own item", {2, -1, 5, false, 2, 1}, 2, kOther, ""},
    };
    for (const HoverCase& c : cases)
    {
        const HoverDecision decision = DecideHover(c.level, c.newIndex, c.cause);
        const std::string found = std::string(decision.refuse ? " refuse" : "") +
                                  (decision.focusDeepest ? " focus" : "") + (decision.startTimer ? " timer" : "") +
                                  (decision.restoreOpener ? " restore" : "");
        EXPECT_EQ(found, *c.outcome != 0 ? std::string(" ") + c.outcome : "") << c.situation;
    }
}

TEST(Hover, FlagsSayWhereAChangeComesFrom)
{
    EXPECT_EQ(HotCauseOf(HICF_MOUSE), HotCause::Mouse);
    EXPECT_EQ(HotCauseOf(HICF_MOUSE | HICF_ENTERING), HotCause::Mouse);
    EXPECT_EQ(HotCauseOf(HICF_MOUSE | HICF_LEAVING), HotCause::Leaving);
    EXPECT_EQ(HotCauseOf(HICF_ARROWKEYS), HotCause::Other);
    EXPECT_EQ(HotCauseOf(0), HotCause::Other);
}

TEST(Hover, TheTimerOpensOnlyWhatIsStillThere)
{
    EXPECT_TRUE(HoverOpens(2, -1, 5, true));
    EXPECT_FALSE(HoverOpens(2, 2, 5, true)) << "opened meanwhile";
    EXPECT_FALSE(HoverOpens(2, -1, 5, false)) << "the mouse has moved on";
    EXPECT_FALSE(HoverOpens(5, -1, 5, true));
    EXPECT_FALSE(HoverOpens(-1, 0, 5, true));
}

TEST(Wheel, MovesOneButtonPerTurn)
{
    EXPECT_EQ(WheelPosition(100, 120, 36, 400), 64);
    EXPECT_EQ(WheelPosition(100, 1, 36, 400), 64) << "whatever the size of the turn";
    EXPECT_EQ(WheelPosition(36, 120, 36, 400), 0);
    EXPECT_EQ(WheelPosition(100, -120, 36, 400), 136);
    EXPECT_EQ(WheelPosition(350, -120, 36, 400), 364);
}

TEST(ScrollIntoView, MovesOnlyWhenItMust)
{
    EXPECT_EQ(PositionShowing(50, 40, 76, 200, 18), 40);
    EXPECT_EQ(PositionShowing(50, 60, 96, 200, 18), 50);
    EXPECT_EQ(PositionShowing(50, 220, 256, 200, 18), 74);
}

TEST(Commands, ButtonsAreCountedFrom1000)
{
    EXPECT_EQ(IndexOfCommand(1000), 0);
    EXPECT_EQ(IndexOfCommand(1999), 999);
    EXPECT_EQ(IndexOfCommand(0), -1);
    EXPECT_EQ(IndexOfCommand(static_cast<DWORD_PTR>(-1)), -1);
}

/// 'f' a file, 'D' a folder, '|' a separator, 'p' a protected folder, 'e' the placeholder.
MenuItems Level(const std::string& kinds)
{
    MenuItems items;
    for (const char kind : kinds)
    {
        MenuItem item = kind == '|' ? MakeSeparator(0) : kind == 'e' ? MakePlaceholder() : MenuItem{};
        if (kind == 'D' || kind == 'p')
            item.flags |= MIF_FOLDER;
        if (kind == 'p')
            item.flags |= MIF_PROTECTED;
        items.push_back(std::move(item));
    }
    return items;
}

struct KeyCase
{
    const char* level;
    int current;
    KeyPress key;
    KeyCommand command;
    int index;
    std::size_t levels = 2;
};

constexpr KeyPress Plain(unsigned key)
{
    return {key, false, false};
}
constexpr KeyPress Ctrl(unsigned key)
{
    return {key, false, true};
}
constexpr KeyPress Shift(unsigned key)
{
    return {key, true, false};
}

TEST(KeyTable, SaysWhatEachKeyDoes)
{
    const KeyCase cases[] = {
        {"f|f", 0, Plain(VK_DOWN), KeyCommand::Select, 2},
        {"f|f", 2, Plain(VK_UP), KeyCommand::Select, 0},
        {"f|f", 0, Plain(VK_UP), KeyCommand::Select, 0},
        {"f|f", 2, Plain(VK_DOWN), KeyCommand::Select, 2},
        {"f|f", -1, Plain(VK_DOWN), KeyCommand::Select, 0},
        {"f|f", -1, Plain(VK_UP), KeyCommand::Select, -1},
        {"fD", 1, Plain(VK_RIGHT), KeyCommand::OpenSubmenu, 1},
        {"fD", 0, Plain(VK_RIGHT), KeyCommand::None, -1},
        {"fD", 1, Plain(VK_RETURN), KeyCommand::OpenSubmenu, 1},
        {"fD", 0, Plain(VK_RETURN), KeyCommand::Launch, 0},
        {"fD", -1, Plain(VK_RETURN), KeyCommand::None, -1},
        {"ff", 1, Plain(VK_INSERT), KeyCommand::InsertShortcut, 1},
        {"ff", -1, Plain(VK_INSERT), KeyCommand::InsertShortcut, 2},
        {"fp", 0, Plain(VK_DELETE), KeyCommand::DeleteFiles, 0},
        {"fp", 1, Plain(VK_DELETE), KeyCommand::None, -1},
        {"ff", 1, Plain('S'), KeyCommand::InsertSeparator, 1},
        {"ff", 1, Ctrl('S'), KeyCommand::InsertSeparator, 1},
        {"fp", 1, Ctrl('C'), KeyCommand::Copy, 1},
        {"fp", 1, Ctrl('X'), KeyCommand::None, -1},
        {"fp", 0, Ctrl('X'), KeyCommand::Cut, 0},
        {"e", 0, Ctrl('C'), KeyCommand::None, -1},
        {"e", 0, Ctrl('V'), KeyCommand::Paste, 0},
        {"ff", 0, Plain('C'), KeyCommand::None, -1},
        {"ff", 0, Plain('Q'), KeyCommand::None, -1},
        {"ff", 0, Shift('S'), KeyCommand::None, -1},
        {"ff", 0, Shift(VK_ESCAPE), KeyCommand::None, -1},
        {"ff", 0, {'C', true, true}, KeyCommand::None, -1},
        {"f", 0, Plain(VK_ESCAPE), KeyCommand::CloseDeepest, -1, 1},
        {"f", 0, Plain(VK_ESCAPE), KeyCommand::None, -1, 0},
        {"f", 0, Plain(VK_LEFT), KeyCommand::CloseDeepest, -1, 2},
        {"f", 0, Plain(VK_LEFT), KeyCommand::None, -1, 1}, // Left never ends the program
    };
    for (const KeyCase& c : cases)
    {
        const KeyDecision decision = DecideKey(c.key, Level(c.level), c.current, c.levels);
        EXPECT_EQ(static_cast<int>(decision.command), static_cast<int>(c.command))
            << c.level << " key " << c.key.virtualKey << " at " << c.current;
        EXPECT_EQ(decision.index, c.index) << c.level << " key " << c.key.virtualKey << " at " << c.current;
    }
}

TEST(KeyTable, ShiftMovesTheItem)
{
    const auto move = [](const char* level, int current, unsigned key)
    { return DecideKey(Shift(key), Level(level), current, 1); };
    EXPECT_EQ(move("fff", 1, VK_UP).command, KeyCommand::MoveItem);
    EXPECT_EQ(move("fff", 1, VK_UP).index, 0);
    EXPECT_EQ(move("fff", 1, VK_UP).from, 1);
    EXPECT_EQ(move("fff", 1, VK_DOWN).highlight, 2);
    EXPECT_EQ(move("fff", 0, VK_UP).command, KeyCommand::None);
    EXPECT_EQ(move("fff", 2, VK_DOWN).command, KeyCommand::None);
    EXPECT_EQ(move("fff", -1, VK_DOWN).command, KeyCommand::None);
    EXPECT_EQ(move("f|f", 0, VK_DOWN).index, 1);
    EXPECT_EQ(move("f|f", 0, VK_DOWN).highlight, 0) << "the separator that has come first is dropped";
}

TEST(SeparatorStyle, CyclesAndLeavesOtherBitsToTheCaller)
{
    EXPECT_EQ(NextSeparatorStyle(0x3), 0x10000u);
    EXPECT_EQ(NextSeparatorStyle(0x10003), 0x20000u);
    EXPECT_EQ(NextSeparatorStyle(0x30003), 0x20000u);
    EXPECT_EQ(NextSeparatorStyle(0x20003), 0u);
    EXPECT_EQ(SeparatorBitmap(0x30000), 106u);
    EXPECT_EQ(SeparatorBitmap(0x20000), 107u);
    EXPECT_EQ(SeparatorBitmap(0x3), 108u);
}

} // namespace
