// What losing the X focus means.
#include "platform/screen/x11/focus_policy.h"

#include <gtest/gtest.h>

namespace
{

using platform::x11::AnswerFocusLoss;
using platform::x11::FocusAnswer;
using platform::x11::FocusLoss;

/// Ten seconds after the focus was taken, the focus has gone to some window; nothing else has happened.
FocusLoss Plain()
{
    FocusLoss loss;
    loss.taken = 10000;
    loss.now = 20000;
    return loss;
}

TEST(FocusPolicy, WindowThatTakesTheFocusIsAnotherProgram)
{
    EXPECT_EQ(AnswerFocusLoss(Plain()), FocusAnswer::AnotherProgram);
    FocusLoss underThePointer = Plain();
    underThePointer.pointerOverNewFocus = true;
    EXPECT_EQ(AnswerFocusLoss(underThePointer), FocusAnswer::AnotherProgram) << "the pointer has not moved";
    underThePointer.pointerMove = underThePointer.now - 5000;
    EXPECT_EQ(AnswerFocusLoss(underThePointer), FocusAnswer::AnotherProgram) << "not for a long time";
}

TEST(FocusPolicy, FocusThatFollowsTheMouseIsTakenBack)
{
    FocusLoss loss = Plain();
    loss.pointerOverNewFocus = true;
    loss.pointerMove = loss.now - 50;
    EXPECT_EQ(AnswerFocusLoss(loss), FocusAnswer::TakeBack);
    loss.press = loss.now - 20;
    EXPECT_EQ(AnswerFocusLoss(loss), FocusAnswer::AnotherProgram) << "it was clicked on";
    loss.press.reset();
    loss.keyGrab = loss.now - 20;
    EXPECT_EQ(AnswerFocusLoss(loss), FocusAnswer::AnotherProgram) << "the window manager's switcher was used";
    loss.keyGrab = loss.now - 9000;
    EXPECT_EQ(AnswerFocusLoss(loss), FocusAnswer::TakeBack) << "a volume key, long ago";
    loss.pointerOverNewFocus = false;
    EXPECT_EQ(AnswerFocusLoss(loss), FocusAnswer::AnotherProgram) << "a window elsewhere was given the focus";
}

TEST(FocusPolicy, StartIsDefendedButNotForEver)
{
    FocusLoss loss = Plain();
    loss.now = loss.taken + 100;
    EXPECT_EQ(AnswerFocusLoss(loss), FocusAnswer::TakeBack);
    loss.retaken = loss.now - 10;
    loss.quickRetakes = 5;
    EXPECT_EQ(AnswerFocusLoss(loss), FocusAnswer::AnotherProgram) << "somebody insists";
    loss.retaken = loss.now - 1000;
    EXPECT_EQ(AnswerFocusLoss(loss), FocusAnswer::TakeBack) << "earlier rounds are forgotten";
}

TEST(FocusPolicy, AnotherMenuTakesOverEvenAtOnce)
{
    FocusLoss loss = Plain();
    loss.now = loss.taken + 10;
    loss.focusIsLaunchers = true;
    EXPECT_EQ(AnswerFocusLoss(loss), FocusAnswer::AnotherProgram);
}

TEST(FocusPolicy, FocusOnNothingIsNobodysTurn)
{
    FocusLoss loss = Plain();
    loss.focusIsNobodys = true;
    EXPECT_EQ(AnswerFocusLoss(loss), FocusAnswer::TakeBack);
    loss.press = loss.now;
    EXPECT_EQ(AnswerFocusLoss(loss), FocusAnswer::AnotherProgram) << "the bare desktop was clicked";
}

} // namespace
