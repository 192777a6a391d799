// Both ends of a drag by invented messages: in order, lost, doubled, and from partners that go.
#include "platform/screen/x11/drag_source.h"
#include "platform/screen/x11/drag_target.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace
{

using namespace platform::x11;
using platform::screen::DragActions;
using platform::screen::EventType;
using platform::screen::kDragAsk;
using platform::screen::kDragCopy;
using platform::screen::kDragLink;
using platform::screen::kDragMove;

constexpr xcb_window_t kOurs = 10, kTheirs = 20, kOthers = 30, kProxy = 40;

XdndAtoms SomeAtoms()
{
    XdndAtoms atoms;
    for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(Xdnd::Count); ++i)
        atoms[static_cast<Xdnd>(i)] = 100 + i;
    return atoms;
}
const XdndAtoms kAtoms = SomeAtoms();

/// "Status to 20: copy", one a line.
std::string Describe(xcb_window_t to, const XdndMessage& message)
{
    std::string text = std::string(kXdndNames[static_cast<std::size_t>(message.type)]).substr(4) + " to " +
                       std::to_string(to) + (to != message.window ? " for " + std::to_string(message.window) : "");
    const auto action = [](xcb_atom_t atom)
    {
        std::string name(" ");
        name += atom == XCB_ATOM_NONE ? "none" : kXdndNames[atom - 100] + std::string_view("XdndAction").size();
        return name;
    };
    if (message.type == Xdnd::Status)
        text += ((message.data[1] & 1) != 0 ? " takes" : " refuses") + action(message.data[4]);
    if (message.type == Xdnd::Finished)
        text += ((message.data[1] & 1) != 0 ? " done" : " not done") + action(message.data[2]);
    if (message.type == Xdnd::Position)
    {
        const POINT point = UnpackXdnd(message.data[2]);
        text += " " + std::to_string(point.x) + "," + std::to_string(point.y) + " at " +
                std::to_string(message.data[3]) + action(message.data[4]);
    }
    if (message.type == Xdnd::Enter)
        text += " version " + std::to_string(message.data[1] >> 24) + ((message.data[1] & 1) != 0 ? " list" : "");
    if (message.type == Xdnd::Drop)
        text += " at " + std::to_string(message.data[2]);
    return text;
}

struct Journal
{
    std::vector<std::string> lines;
    /// What has been noted since the last call.
    std::string Take()
    {
        std::string all;
        for (const std::string& line : std::exchange(lines, {}))
            all += (all.empty() ? "" : "; ") + line;
        return all;
    }
};

// --- the target's end

class TargetDisplay : public DragTargetPort, public Journal
{
public:
    void Send(xcb_window_t to, const XdndMessage& message) override { lines.push_back(Describe(to, message)); }
    std::vector<xcb_atom_t> AtomsIn(xcb_window_t, xcb_atom_t property) override { return properties[property]; }
    std::vector<std::string> NamesOf(const std::vector<xcb_atom_t>& atoms) override
    {
        std::vector<std::string> names;
        for (const xcb_atom_t atom : atoms)
            names.push_back("type" + std::to_string(atom));
        return names;
    }
    void Watch(xcb_window_t window, bool on) override { watched[window] = on; }
    Look LookAround(xcb_window_t) override { return look; }
    void Tell(const Report& report) override
    {
        lines.push_back((report.type == EventType::DragOver    ? "over "
                         : report.type == EventType::DragLeave ? "leave "
                                                               : "drop ") +
                        std::to_string(report.window));
        last = report;
    }

    std::map<xcb_atom_t, std::vector<xcb_atom_t>> properties;
    std::map<xcb_window_t, bool> watched;
    Look look;
    Report last;
};

struct Target : testing::Test
{
    void Enter(xcb_window_t from = kTheirs, std::uint32_t version = 5, xcb_window_t window = kOurs)
    {
        target.OnMessage({window, Xdnd::Enter, {from, version << 24, 7, 8, 0}});
    }
    void Position(xcb_window_t from = kTheirs, DragActions action = kDragCopy, POINT at = {3, 4})
    {
        target.OnMessage({kOurs, Xdnd::Position, {from, 0, PackXdnd(at), 1000, kAtoms.AtomOf(action)}});
    }
    void Leave(xcb_window_t from = kTheirs) { target.OnMessage({kOurs, Xdnd::Leave, {from}}); }
    void Drop(xcb_window_t from = kTheirs) { target.OnMessage({kOurs, Xdnd::Drop, {from, 0, 2000}}); }
    void Over()
    {
        Enter();
        Position();
        target.Answer(display.last.offer.drag, kDragCopy);
        display.Take();
    }

    TargetDisplay display;
    DragTarget target{display, kAtoms};
};

TEST_F(Target, TellsOfADragAnswersItAndSaysWhatWasDone)
{
    Enter();
    EXPECT_EQ(display.Take(), "");
    Position(kTheirs, kDragCopy, {-3, 700});
    EXPECT_EQ(display.Take(), "over 10");
    EXPECT_EQ(display.last.position.x, -3);
    EXPECT_EQ(display.last.position.y, 700);
    EXPECT_EQ(display.last.offer.targets, (std::vector<std::string>{"type7", "type8"}));
    EXPECT_EQ(target.Time(), 1000U);
    const unsigned drag = display.last.offer.drag;
    target.Answer(drag, kDragLink);
    EXPECT_EQ(display.Take(), "Status to 20 takes Link");
    target.Answer(drag, kDragLink);
    EXPECT_EQ(display.Take(), "") << "the same again is no news";
    target.Answer(drag, 0);
    target.Answer(drag, kDragMove);
    EXPECT_EQ(display.Take(), "Status to 20 refuses none; Status to 20 takes Move") << "what changes while it rests is";
    Drop();
    EXPECT_EQ(display.Take(), "drop 10");
    EXPECT_EQ(target.Time(), 2000U);
    target.Finish(drag, kDragMove);
    EXPECT_EQ(display.Take(), "Finished to 20 done Move");
    EXPECT_FALSE(display.watched[kTheirs]);
    target.Finish(drag, kDragMove);
    target.Answer(drag, kDragCopy);
    EXPECT_EQ(display.Take(), "");
}

TEST_F(Target, KnowsWhatMayBeDone)
{
    Enter();
    Position(kTheirs, kDragMove);
    EXPECT_EQ(display.last.offer.actions, kDragMove);
    display.look.actions = {kAtoms.AtomOf(kDragCopy), kAtoms.AtomOf(kDragLink), kAtoms.AtomOf(kDragAsk)};
    Position();
    EXPECT_EQ(display.last.offer.actions, kDragCopy | kDragLink) << "being able to ask is no wish to";
    display.look.rightButton = true;
    Position();
    EXPECT_EQ(display.last.offer.actions, kDragCopy | kDragLink | kDragAsk);
    display.look.rightButton = false;
    Position();
    EXPECT_EQ(display.last.offer.actions, kDragCopy | kDragLink | kDragAsk) << "looked at after it has been let go";
    display.look = {};
    Enter();
    Position(kTheirs, kDragAsk);
    EXPECT_EQ(display.last.offer.actions, kDragAsk);
    target.OnMessage({kOurs, Xdnd::Position, {kTheirs, 0, 0, 0, 9999}});
    EXPECT_EQ(display.last.offer.actions, kDragCopy) << "of an action nobody knows";
}

TEST_F(Target, ReadsTheListOfMoreThanThreeTypes)
{
    display.properties[kAtoms[Xdnd::TypeList]] = {1, 0, 2, 3, 4};
    target.OnMessage({kOurs, Xdnd::Enter, {kTheirs, 5U << 24 | 1, 9, 9, 9}});
    Position();
    EXPECT_EQ(display.last.offer.targets, (std::vector<std::string>{"type1", "type2", "type3", "type4"}));
}

TEST_F(Target, SpeaksVersionsThreeToFive)
{
    for (const std::uint32_t version : {0U, 2U, 6U})
    {
        Enter(kTheirs, version);
        Position();
        EXPECT_EQ(display.Take(), "Status to 20 refuses none") << version;
    }
    Enter(kTheirs, 3);
    Position();
    target.Answer(display.last.offer.drag, kDragCopy);
    Drop();
    display.Take();
    target.Finish(display.last.offer.drag, kDragCopy);
    EXPECT_EQ(display.Take(), "Finished to 20 not done none") << "version 3 has no word for it";
}

TEST_F(Target, RefusesWhoHasNotEntered)
{
    Position();
    Leave();
    Drop();
    EXPECT_EQ(display.Take(), "Status to 20 refuses none; Finished to 20 not done none");
    Enter();
    Drop();
    EXPECT_EQ(display.Take(), "Finished to 20 not done none") << "without a position";
    Over();
    Position(kOthers);
    Leave(kOthers);
    Drop(kOthers);
    EXPECT_EQ(display.Take(), "Status to 30 refuses none; Finished to 30 not done none");
    Drop();
    EXPECT_EQ(display.Take(), "drop 10") << "the drag that has entered goes on";
}

TEST_F(Target, ARefusedDropIsALeave)
{
    Enter();
    Position();
    target.Answer(display.last.offer.drag, 0);
    display.Take();
    Drop();
    EXPECT_EQ(display.Take(), "leave 10; Finished to 20 not done none");
    Leave();
    EXPECT_EQ(display.Take(), "");
    Enter();
    Position();
    display.Take();
    Drop();
    EXPECT_EQ(display.Take(), "drop 10") << "what has not been answered yet may be taken";
}

TEST_F(Target, AnEnterEndsWhatWasBefore)
{
    Over();
    const unsigned first = display.last.offer.drag;
    Enter();
    EXPECT_EQ(display.Take(), "leave 10");
    Enter(kOthers);
    EXPECT_EQ(display.Take(), "");
    EXPECT_FALSE(display.watched[kTheirs]);
    Position(kOthers);
    display.Take();
    target.Answer(first, kDragCopy);
    EXPECT_EQ(display.Take(), "") << "an answer for a drag that is over is nobody's";
}

TEST_F(Target, PositionsWithoutWaitingAreAnsweredOnce)
{
    Enter();
    for (LONG i = 0; i < 5; ++i)
        Position(kTheirs, kDragCopy, {i, i});
    display.Take();
    target.Answer(display.last.offer.drag, kDragCopy);
    target.Answer(display.last.offer.drag, kDragCopy);
    EXPECT_EQ(display.Take(), "Status to 20 takes Copy");
    EXPECT_EQ(display.last.position.x, 4);
}

TEST_F(Target, ASourceThatEndsTakesItsDragAlong)
{
    Over();
    target.OnWindowGone(kOthers);
    EXPECT_EQ(display.Take(), "");
    target.OnWindowGone(kTheirs);
    EXPECT_EQ(display.Take(), "leave 10");
    Over();
    Drop();
    display.Take();
    target.OnWindowGone(kTheirs);
    target.Finish(display.last.offer.drag, kDragCopy);
    EXPECT_EQ(display.Take(), "") << "nobody is there to hear of it";
}

TEST_F(Target, AWindowThatClosesUnderADragLosesIt)
{
    Over();
    target.OnWindowGone(kOurs);
    EXPECT_EQ(display.Take(), "leave 10");
    Position();
    EXPECT_EQ(display.Take(), "Status to 20 refuses none");
}

TEST_F(Target, ADropIsFinishedWhileTheNextDragIsOver)
{
    Over();
    const unsigned dropped = display.last.offer.drag;
    Drop();
    Drop();
    EXPECT_EQ(display.Take(), "drop 10") << "the second one has nothing to end";
    Over();
    target.Finish(dropped, kDragCopy);
    EXPECT_EQ(display.Take(), "Finished to 20 done Copy");
    EXPECT_TRUE(display.watched[kTheirs]) << "it has the next drag too";
}

// Its source was never told what became of it.
TEST_F(Target, ADropThatIsBeingDealtWithGivesWayToNobodyElses)
{
    Over();
    const unsigned dropped = display.last.offer.drag;
    Drop();
    Enter(kOthers);
    Position(kOthers);
    display.Take();
    Drop(kOthers);
    EXPECT_EQ(display.Take(), "leave 10; Finished to 30 not done none") << "without having waited for an answer";
    target.Finish(dropped, kDragCopy);
    EXPECT_EQ(display.Take(), "Finished to 20 done Copy");
}

// --- the source's end

class SourceDisplay : public DragSourcePort, public Journal
{
public:
    void Send(xcb_window_t to, const XdndMessage& message) override { lines.push_back(Describe(to, message)); }
    void Watch(xcb_window_t window, bool on) override { watched[window] = on; }
    void Tell(EventType type) override { lines.push_back(type == EventType::DragEnded ? "ended" : "answered"); }

    std::map<xcb_window_t, bool> watched;
};

constexpr DropSite kSite{kTheirs, kTheirs, 5}, kOtherSite{kOthers, kOthers, 4}, kProxied{kTheirs, kProxy, 5};

struct Source : testing::Test
{
    void Move(LONG x, DragActions wanted = kDragCopy, const DropSite& site = kSite)
    {
        source.Move(site, {{x, 7}, 500, wanted}, now);
    }
    void Status(DragActions action, xcb_window_t from = kTheirs, RECT spared = {}, bool wantsAll = true)
    {
        XdndMessage status{kOurs, Xdnd::Status, {from, (action != 0 ? 1U : 0U) | (wantsAll ? 2U : 0U)}};
        status.data[2] = PackXdnd({spared.left, spared.top});
        status.data[3] = PackXdnd({spared.right - spared.left, spared.bottom - spared.top});
        status.data[4] = kAtoms.AtomOf(action);
        source.OnMessage(status, now);
    }
    void Finished(bool done, DragActions action, xcb_window_t from = kTheirs)
    {
        source.OnMessage({kOurs, Xdnd::Finished, {from, done ? 1U : 0U, kAtoms.AtomOf(action)}}, now);
    }
    void Over(DragActions action = kDragCopy)
    {
        Move(1);
        Status(action);
        display.Take();
    }
    /// Lets the partner's patience run out.
    void Expire()
    {
        ASSERT_TRUE(source.Deadline().has_value());
        EXPECT_EQ(*source.Deadline(), now + DragSource::kPatience);
        source.OnTime(*source.Deadline() - 1);
        EXPECT_EQ(display.Take(), "");
        now = *source.Deadline();
        source.OnTime(now);
    }

    SourceDisplay display;
    DragSource source{display, kAtoms, {kOurs, {1, 2, 3, 4}, kDragCopy | kDragMove}};
    std::uint64_t now = 10000;
};

TEST_F(Source, EntersAsksDropsAndHearsWhatWasDone)
{
    Move(1, kDragMove);
    EXPECT_EQ(display.Take(), "Enter to 20 version 5 list; Position to 20 1,7 at 500 Move");
    EXPECT_FALSE(source.IsAnswered());
    Status(kDragMove);
    EXPECT_EQ(display.Take(), "answered");
    EXPECT_EQ(source.Answer(), kDragMove);
    EXPECT_TRUE(source.Drop(600, now));
    EXPECT_EQ(display.Take(), "Drop to 20 at 600");
    Finished(true, kDragCopy);
    EXPECT_EQ(display.Take(), "ended");
    EXPECT_EQ(source.Answer(), kDragCopy) << "what it says it has done";
    EXPECT_TRUE(source.IsFinished());
    EXPECT_FALSE(display.watched[kTheirs]);
    Finished(true, kDragMove);
    Status(kDragMove);
    source.Cancel();
    EXPECT_EQ(display.Take(), "");
    EXPECT_EQ(source.Answer(), kDragCopy);
}

TEST_F(Source, OnePositionIsOutstandingAndTheLastOneFollows)
{
    Move(1);
    display.Take();
    Move(2);
    Move(3);
    EXPECT_EQ(display.Take(), "");
    Status(kDragCopy);
    EXPECT_EQ(display.Take(), "Position to 20 3,7 at 500 Copy; answered");
    Status(kDragCopy);
    EXPECT_EQ(display.Take(), "");
    Move(3);
    EXPECT_EQ(display.Take(), "") << "the same point";
    Move(3, kDragMove);
    EXPECT_EQ(display.Take(), "Position to 20 3,7 at 500 Move") << "another wish";
    Status(kDragMove);
    Status(kDragMove);
    EXPECT_EQ(display.Take(), "answered") << "and not twice";
    Status(0);
    EXPECT_EQ(display.Take(), "answered") << "it may change its mind unasked";
    EXPECT_EQ(source.Answer(), 0U);
}

TEST_F(Source, AsksForWhatIsAllowedOnly)
{
    Move(1, kDragLink);
    EXPECT_EQ(display.Take(), "Enter to 20 version 5 list; Position to 20 1,7 at 500 Copy");
    Status(kDragLink);
    EXPECT_EQ(source.Answer(), 0U) << "which the drag does not allow";
    Move(2, kDragAsk);
    Status(kDragAsk);
    EXPECT_EQ(source.Answer(), kDragAsk);
}

TEST_F(Source, SparesTheRectangleThatThePartnerNames)
{
    Move(1);
    Status(kDragCopy, kTheirs, {0, 0, 100, 100}, false);
    display.Take();
    Move(50);
    EXPECT_EQ(display.Take(), "");
    Move(50, kDragMove);
    EXPECT_EQ(display.Take(), "Position to 20 50,7 at 500 Move");
    Status(kDragMove, kTheirs, {0, 0, 100, 100}, false);
    display.Take();
    Move(100, kDragMove);
    EXPECT_EQ(display.Take(), "Position to 20 100,7 at 500 Move");
    Status(kDragMove, kTheirs, {0, 0, 200, 100}, true);
    display.Take();
    Move(60, kDragMove);
    EXPECT_EQ(display.Take(), "Position to 20 60,7 at 500 Move") << "it wants to hear of all";
}

TEST_F(Source, GoesFromWindowToWindow)
{
    Move(1);
    display.Take();
    Move(2, kDragCopy, kOtherSite);
    EXPECT_EQ(display.Take(), "Leave to 20; Enter to 30 version 4 list; Position to 30 2,7 at 500 Copy");
    Status(kDragCopy, kTheirs);
    EXPECT_EQ(display.Take(), "") << "an answer that comes late is nobody's";
    Move(3, kDragCopy, {});
    EXPECT_EQ(display.Take(), "Leave to 30");
    EXPECT_TRUE(source.IsAnswered() && source.Answer() == 0) << "nobody takes it: the pointer has to show that";
    EXPECT_FALSE(source.Drop(600, now));
    EXPECT_EQ(display.Take(), "");
    EXPECT_FALSE(source.Deadline().has_value());
}

TEST_F(Source, AProxyHearsWhatItsWindowIsTold)
{
    Move(1, kDragCopy, kProxied);
    EXPECT_EQ(display.Take(), "Enter to 40 for 20 version 5 list; Position to 40 for 20 1,7 at 500 Copy");
    Status(kDragCopy, kProxy);
    EXPECT_EQ(display.Take(), "answered");
    source.OnWindowGone(kProxy);
    EXPECT_EQ(display.Take(), "answered");
    EXPECT_EQ(source.Answer(), 0u);
}

TEST_F(Source, ADropWaitsForTheOutstandingAnswer)
{
    Move(1);
    Move(2);
    EXPECT_TRUE(source.Drop(600, now));
    display.Take();
    Status(0);
    EXPECT_EQ(display.Take(), "Position to 20 2,7 at 500 Copy") << "the point that it was let go at";
    Status(kDragCopy);
    EXPECT_EQ(display.Take(), "Drop to 20 at 600");
}

TEST_F(Source, ADropThatIsRefusedWhileItWaitsEndsWithNothingDone)
{
    Move(1);
    EXPECT_TRUE(source.Drop(600, now));
    display.Take();
    Status(0);
    EXPECT_EQ(display.Take(), "Leave to 20; ended");
    EXPECT_EQ(source.Answer(), 0U);
}

TEST_F(Source, ARefusedDropIsALeave)
{
    Over(0);
    EXPECT_FALSE(source.Drop(600, now));
    EXPECT_EQ(display.Take(), "Leave to 20");
    EXPECT_FALSE(source.Drop(600, now));
}

TEST_F(Source, ASilentPartnerIsGivenUp)
{
    Move(1);
    display.Take();
    Expire();
    EXPECT_EQ(display.Take(), "answered");
    EXPECT_EQ(source.Answer(), 0U);
    EXPECT_FALSE(source.Drop(600, now)) << "it has had its time";
    EXPECT_EQ(display.Take(), "Leave to 20");
}

TEST_F(Source, ASilentPartnerIsGivenUpWhileTheDropWaits)
{
    Move(1);
    EXPECT_TRUE(source.Drop(600, now));
    display.Take();
    Expire();
    EXPECT_EQ(display.Take(), "Leave to 20; ended");
}

TEST_F(Source, ASilentPartnerIsGivenUpAfterTheDrop)
{
    Over();
    EXPECT_TRUE(source.Drop(600, now));
    display.Take();
    now += 1500;
    source.OnRead(now);
    Expire(); // anew from the reading on
    EXPECT_EQ(display.Take(), "ended");
    EXPECT_EQ(source.Answer(), 0U);
    EXPECT_FALSE(source.IsFinished()) << "it may read on";
}

// A partner that showed its menu was given up, and the menu of this program came up over it.
TEST_F(Source, APartnerThatAsksItsUserHasTheTimeThatPeopleNeed)
{
    Over(kDragAsk);
    EXPECT_TRUE(source.Drop(600, now));
    display.Take();
    source.OnRead(now);
    source.OnTime(now + 30 * DragSource::kPatience - 1);
    EXPECT_EQ(display.Take(), "");
    now = *source.Deadline();
    source.OnTime(now);
    EXPECT_EQ(display.Take(), "ended") << "it hangs";

    DragSource other(display, kAtoms, {kOurs, {1}, kDragMove});
    other.Move(kSite, {{1, 1}, 1, kDragAsk}, now);
    other.OnMessage({kOurs, Xdnd::Status, {kTheirs, 3, 0, 0, kAtoms.AtomOf(kDragAsk)}}, now);
    EXPECT_TRUE(other.Drop(600, now));
    display.Take();
    other.OnWindowGone(kTheirs);
    EXPECT_EQ(display.Take(), "ended");
}

TEST_F(Source, APartnerThatGoesEndsTheDropAtOnce)
{
    Over();
    source.OnWindowGone(kOthers);
    EXPECT_EQ(display.Take(), "");
    source.OnWindowGone(kTheirs);
    EXPECT_EQ(display.Take(), "answered");
    Move(1);
    EXPECT_EQ(display.Take(), "Enter to 20 version 5 list; Position to 20 1,7 at 500 Copy");
    Status(kDragCopy);
    EXPECT_TRUE(source.Drop(600, now));
    display.Take();
    source.OnWindowGone(kTheirs);
    EXPECT_EQ(display.Take(), "ended");
    EXPECT_EQ(source.Answer(), 0U);
}

TEST_F(Source, OldPartnersDoNotSayWhatTheyHaveDone)
{
    Move(1, kDragMove, kOtherSite);
    Status(kDragMove, kOthers);
    EXPECT_TRUE(source.Drop(600, now));
    Finished(false, 0, kOthers);
    EXPECT_EQ(source.Answer(), kDragMove) << "they do what they have promised";
    DragSource newer(display, kAtoms, {kOurs, {1}, kDragMove});
    newer.Move(kSite, {{1, 1}, 1, kDragMove}, now);
    newer.OnMessage({kOurs, Xdnd::Status, {kTheirs, 3, 0, 0, kAtoms.AtomOf(kDragMove)}}, now);
    EXPECT_TRUE(newer.Drop(600, now));
    newer.OnMessage({kOurs, Xdnd::Finished, {kTheirs, 0, kAtoms.AtomOf(kDragMove)}}, now);
    EXPECT_EQ(newer.Answer(), 0U) << "it says that it has failed";
}

TEST_F(Source, CancellingLeaves)
{
    Over();
    source.Cancel();
    EXPECT_EQ(display.Take(), "Leave to 20");
    EXPECT_FALSE(display.watched[kTheirs]);
    Move(5);
    Status(kDragCopy);
    EXPECT_FALSE(source.Drop(600, now));
    EXPECT_EQ(display.Take(), "");
}

} // namespace
