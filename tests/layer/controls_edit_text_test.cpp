// The edit control's rules with invented lines.
#include "platform/controls/edit_text.h"

#include <gtest/gtest.h>

using namespace platform;

namespace
{

/// Places of a line: | is a caret stop, < a word's start, > its end, x a stop whose character goes part by part, and
/// anything else no stop.
std::vector<std::uint8_t> Line(std::string_view marks)
{
    std::vector<std::uint8_t> places;
    for (const char mark : marks)
        places.push_back(mark == '|'   ? kCaretStop
                         : mark == '<' ? kCaretStop | kWordStart
                         : mark == '>' ? kCaretStop | kWordEnd
                         : mark == 'x' ? kCaretStop | kErasesPart
                                       : 0);
    return places;
}

} // namespace

TEST(EditText, StopsAndWords)
{
    // "ab, cd" with b in two units
    const auto line = Line("<|.>|<|>");
    EXPECT_EQ(NextStop(line, 1), 3u);
    EXPECT_EQ(PreviousStop(line, 3), 1u);
    EXPECT_EQ(PreviousStop(line, 0), 0u);
    EXPECT_EQ(NextStop(line, 7), 7u);
    EXPECT_EQ(NextWord(line, 0), 5u);
    EXPECT_EQ(NextWord(line, 5), 7u);
    EXPECT_EQ(PreviousWord(line, 7), 5u);
    EXPECT_EQ(PreviousWord(line, 5), 0u);
    EXPECT_EQ(WordAround(line, 1), (TextSpan{0, 3}));
    EXPECT_EQ(WordAround(line, 3), (TextSpan{0, 3})) << "right behind a word it is still meant";
    EXPECT_EQ(WordAround(line, 4), (TextSpan{3, 5}));
    EXPECT_EQ(WordAround(line, 7), (TextSpan{5, 7}));
    EXPECT_EQ(WordAround(Line("|"), 0), (TextSpan{0, 0}));
    EXPECT_EQ(NextWord(Line("|"), 0), 0u);
}

TEST(EditText, BackspaceTakesPartsWhereThePlaceSaysSo)
{
    EXPECT_EQ(BackspaceFrom(Line("|..|"), u"abc", 3), 0u);
    EXPECT_EQ(BackspaceFrom(Line("|..x"), u"abc", 3), 2u);
    EXPECT_EQ(BackspaceFrom(Line("|..x"), u"a\U0001E000", 3), 1u) << "both halves of a pair";
    EXPECT_EQ(BackspaceFrom(Line("x"), u"", 0), 0u);
}

TEST(EditText, UndoAndRedoKeepTheSelection)
{
    EditText edit;
    edit.SetText(u"one two");
    edit.Select(7, 4);
    edit.Replace(edit.Selection(), u"x", EditKind::Typing);
    edit.Replace({5, 5}, u"y", EditKind::Typing);
    EXPECT_EQ(edit.Text(), u"one xy");
    EXPECT_TRUE(edit.Undo());
    EXPECT_EQ(edit.Text(), u"one two");
    EXPECT_EQ(edit.Anchor(), 7u);
    EXPECT_EQ(edit.Caret(), 4u);
    EXPECT_TRUE(edit.Redo());
    EXPECT_EQ(edit.Text(), u"one xy");
    EXPECT_TRUE(edit.Undo());
    edit.Replace({0, 1}, u"", EditKind::Erasing);
    EXPECT_FALSE(edit.Redo()) << "what was undone is past with the next change";
    edit.Replace({0, 0}, u"z", EditKind::Other, false);
    EXPECT_FALSE(edit.CanUndo());
}

TEST(EditText, ErasingIsUndoneAsOneInEitherDirection)
{
    EditText edit;
    edit.SetText(u"abcdef");
    edit.Replace({2, 3}, u"", EditKind::Erasing); // Backspace
    edit.Replace({1, 2}, u"", EditKind::Erasing);
    edit.Replace({1, 2}, u"", EditKind::Erasing); // Delete
    EXPECT_EQ(edit.Text(), u"aef");
    EXPECT_TRUE(edit.Undo());
    EXPECT_EQ(edit.Text(), u"abcdef");
    EXPECT_FALSE(edit.Undo());
}

TEST(EditText, OneLineEndsWhereTheFirstEnds)
{
    EXPECT_EQ(FirstLine(u"a\r\nb"), u"a");
    EXPECT_EQ(FirstLine(u"a\tb\nc"), u"a\tb");
    EXPECT_EQ(FirstLine(u"\nb"), u"");
}
