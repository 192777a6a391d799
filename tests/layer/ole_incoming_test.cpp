// Other programs' drags over windows with drop targets.
#include "tests/layer/ole_desk.h"

#include "platform/base/fault_points.h"
#include "platform/ole/derived_format.h"
#include "platform/ole/incoming_drag.h"

#include <algorithm>

namespace
{

using namespace platform;
using namespace ole_test;
using screen::kDragAsk;
using screen::kDragCopy;
using screen::kDragLink;
using screen::kDragMove;

struct IncomingDragTest : OleDesk
{
    IncomingDragTest()
    {
        m_window = ShownPopup(0, 0, 200, 100);
        m_child = Child(m_window, 100, 0, 100, 100);
    }
    static headless::OtherDrag Files(screen::DragActions actions = kDragCopy | kDragMove | kDragLink)
    {
        return {{{{"text/uri-list", "file:///a\r\n"}, {"UTF8_STRING", "a"}}}, actions};
    }
    static void Start(int x, int y, unsigned modifiers = 0, headless::OtherDrag drag = Files())
    {
        headless::StartOtherDrag(std::move(drag), x, y, modifiers);
        Pump();
    }
    static void Move(int x, int y)
    {
        headless::MoveOtherDrag(x, y);
        Pump();
    }
    static void Drop()
    {
        headless::DropOtherDrag();
        Pump();
    }
    static void End()
    {
        headless::EndOtherDrag();
        Pump();
    }

    HWND m_window;
    HWND m_child;
};

TEST_F(IncomingDragTest, AChildTakesADragBeforeItsParentAndADisabledWindowTakesNone)
{
    Register(m_window, "w").takes = DROPEFFECT_COPY;
    Target& inner = Register(m_child, "c");
    inner.takes = DROPEFFECT_LINK;
    Start(10, 10, screen::kControl);
    EXPECT_EQ(m_targets[0]->keys, DWORD{MK_LBUTTON | MK_CONTROL});
    EXPECT_EQ(headless::AnswerToOther(), kDragCopy);
    Move(150, 10);
    EXPECT_EQ(headless::AnswerToOther(), kDragLink);
    EXPECT_EQ(inner.at.x, 150);
    EXPECT_EQ(inner.messagePoint, DWORD(MAKELONG(150, 10)));
    EXPECT_EQ(Take(), (Log{"w.Enter", "w.Over", "w.Leave", "c.Enter", "c.Over"}));

    RevokeDragDrop(m_child);
    Move(150, 20);
    EXPECT_EQ(Take(), (Log{"c.Leave", "w.Enter", "w.Over"})) << "the parent stands in";
    EnableWindow(m_window, FALSE);
    Move(150, 30);
    EXPECT_EQ(Take(), Log{"w.Leave"});
    EXPECT_EQ(headless::AnswerToOther(), 0U);
    Drop();
    EXPECT_EQ(headless::DoneForOther(), 0U);
    EXPECT_EQ(Take(), Log{});
}

TEST_F(IncomingDragTest, RestingRepeatsTheCallWithItsOwnTimeAndAnswersWhatHasChanged)
{
    Target& target = Register(m_window, "w");
    Start(10, 10);
    const LONG first = target.time;
    EXPECT_EQ(headless::AnswerToOther(), kDragMove);
    Take();
    target.takes = DROPEFFECT_COPY;
    Rest(60);
    EXPECT_EQ(Take(), Log{"w.Over"});
    EXPECT_EQ(target.time, first + 60);
    EXPECT_EQ(target.messagePoint, DWORD(MAKELONG(10, 10)));
    EXPECT_EQ(headless::AnswerToOther(), kDragCopy);
    End();
    Rest(200);
    EXPECT_EQ(Take(), Log{"w.Leave"});
}

TEST_F(IncomingDragTest, ADropIsEnteredFirstAndSaysWhatWasDone)
{
    Target& target = Register(m_window, "w");
    headless::StartOtherDrag(Files(kDragCopy | kDragLink | kDragAsk), 10, 10);
    headless::DropOtherDrag(); // nobody has looked in between
    target.atDrop = [](DWORD* effect) { *effect = DROPEFFECT_LINK; };
    Pump();
    EXPECT_EQ(Take(), (Log{"w.Enter", "w.Over", "w.Over", "w.Drop"}));
    EXPECT_EQ(target.keys, DWORD{MK_RBUTTON});
    EXPECT_EQ(headless::AnswerToOther(), kDragAsk);
    EXPECT_EQ(headless::DoneForOther(), kDragLink);

    Start(10, 10);
    target.failing = "Drop";
    Drop();
    EXPECT_EQ(headless::DoneForOther(), 0U);
}

TEST_F(IncomingDragTest, ATargetThatRefusesToBeEnteredIsLeftAlone)
{
    Target& target = Register(m_window, "w");
    target.failing = "Enter";
    Start(10, 10);
    Move(20, 10);
    Drop();
    EXPECT_EQ(Take(), Log{"w.Enter"});
    EXPECT_EQ(headless::DoneForOther(), 0U);
}

TEST_F(IncomingDragTest, WindowsAndTargetsMayGoInAnyCall)
{
    for (const std::string call : {"Enter", "Over", "Drop"})
    {
        const HWND window = ShownPopup(300, 0, 100, 100);
        Target& target = Register(window, "t");
        target.during = [&](const std::string& now)
        {
            if (now == call)
                DestroyWindow(window);
        };
        Start(310, 10);
        Drop();
        const bool dropped = call == "Drop";
        EXPECT_EQ(headless::DoneForOther().value_or(0), dropped ? kDragCopy : 0U) << call;
        EXPECT_EQ(Take().back(), dropped ? "t.Drop" : "t.Leave") << call;
        target.during = nullptr;
        End();
    }
    Target& target = Register(m_window, "w");
    target.during = [&](const std::string&) { RevokeDragDrop(m_window); };
    Start(10, 10);
    EXPECT_EQ(Take(), (Log{"w.Enter", "w.Leave"}));
    EXPECT_EQ(headless::AnswerToOther(), 0U);
    target.during = nullptr;
}

TEST_F(IncomingDragTest, WhatComesInDuringACallWaitsForItsEnd)
{
    Target& target = Register(m_window, "w");
    int depth = 0;
    target.during = [&](const std::string& call)
    {
        EXPECT_EQ(depth++, 0) << call << " within another call";
        if (call == "Enter")
        {
            headless::MoveOtherDrag(20, 20);
            headless::MoveOtherDrag(30, 20);
            headless::DropOtherDrag();
            Pump();
        }
        --depth;
    };
    Start(10, 10);
    EXPECT_EQ(Take(), (Log{"w.Enter", "w.Over", "w.Over", "w.Over", "w.Drop"}));
    EXPECT_EQ(target.at.x, 30);
    EXPECT_TRUE(headless::DoneForOther());
    target.during = nullptr;
}

TEST_F(IncomingDragTest, AnotherDragIsRefusedWhileADropIsCarriedOut)
{
    Target& target = Register(m_window, "w");
    target.atDrop = [&](DWORD* effect)
    {
        *effect = DROPEFFECT_COPY;
        headless::EndOtherDrag(); // its program dies
        Rest(200);
        Start(20, 20);
        EXPECT_EQ(headless::AnswerToOther(), 0U);
        Rest(200);
    };
    Start(10, 10);
    Drop();
    EXPECT_EQ(Take(), (Log{"w.Enter", "w.Over", "w.Over", "w.Drop", "w.Enter", "w.Over"}));
    EXPECT_EQ(target.at.x, 20) << "and is welcome afterwards";
    EXPECT_EQ(headless::AnswerToOther(), kDragMove);
    target.atDrop = nullptr;
    End();
    EXPECT_EQ(Take(), Log{"w.Leave"});
}

// The first one was taken for the second.
TEST_F(IncomingDragTest, TwoDragsThatComeAtOnceAreEachTheirOwn)
{
    Target& target = Register(m_window, "w");
    const auto offers = [&](const char16_t* name)
    {
        FORMATETC format = MemoryFormat(Format(name));
        return target.data->QueryGetData(&format) == S_OK;
    };
    target.atDrop = [&](DWORD* effect)
    {
        EXPECT_EQ(*effect, DWORD{DROPEFFECT_COPY});
        EXPECT_TRUE(offers(u"text/uri-list"));
    };
    headless::StartOtherDrag(Files(kDragCopy), 10, 10);
    headless::DropOtherDrag();
    headless::StartOtherDrag({{{{"text/plain", "b"}}}, kDragLink}, 20, 10);
    Pump();
    EXPECT_EQ(Take(), (Log{"w.Enter", "w.Over", "w.Over", "w.Drop", "w.Enter", "w.Over"}));
    EXPECT_FALSE(offers(u"text/uri-list"));
    EXPECT_EQ(headless::AnswerToOther(), kDragLink);
    EXPECT_EQ(headless::DoneForOther(), std::nullopt);
}

struct NotedPort final : IncomingDragPort
{
    HWND WindowAt(screen::NativeWindow, POINT) override { return reinterpret_cast<HWND>(1); }
    Held<IDropTarget> TargetOf(HWND) override { return target; }
    Held<IDataObject> MakeData(const screen::DragOffer&) override
    {
        return Held<IDataObject>::Adopt(new MemoryDataObject);
    }
    void CloseData() override { log.push_back("close"); }
    void Answer(unsigned, screen::DragActions action) override { log.push_back("answer " + std::to_string(action)); }
    void Finish(unsigned, screen::DragActions action) override { log.push_back("finish " + std::to_string(action)); }

    Log log;
    Held<Target> held = Held<Target>::Adopt(new Target(log, "t"));
    Held<IDropTarget> target{held.Get()};
    screen::DragOffer offer{1, {"text/uri-list"}, kDragCopy};
};

TEST_F(IncomingDragTest, LostAndDoubledEventsAreAnsweredEach)
{
    NotedPort port;
    IncomingDrag drag(port);
    const auto tell = [&](screen::EventType type)
    {
        screen::Event event;
        event.type = type;
        event.offer = std::make_shared<screen::DragOffer>(port.offer);
        drag.OnEvent(event);
        drag.OnRest();
    };
    using enum screen::EventType;
    tell(DragLeave);
    tell(DragDrop); // what came before is lost
    EXPECT_EQ(port.log, (Log{"t.Enter", "t.Over", "t.Drop", "finish 1", "close"}));
    port.log.clear();
    tell(DragOver);
    port.offer.drag = 2; // the leaving of the one before is lost
    tell(DragOver);
    tell(DragLeave);
    tell(DragLeave);
    EXPECT_EQ(port.log, (Log{"t.Enter", "t.Over", "answer 1", "t.Over", "t.Leave", "close", "t.Enter", "t.Over",
                             "answer 1", "t.Over", "t.Leave", "close"}));
    EXPECT_FALSE(drag.IsOver());
}

// The first one's drop was forgotten: by the second one's leaving, or unfinished by what came during the drop. Nor is a
// drag refused before its target has been asked, and its drop with it.
TEST_F(IncomingDragTest, DropsThatWaitOutlastTheDragsAfterThem)
{
    NotedPort port;
    IncomingDrag drag(port);
    const auto tell = [&](unsigned number, screen::EventType type)
    {
        screen::Event event;
        event.type = type;
        event.offer = std::make_shared<screen::DragOffer>(screen::DragOffer{number, port.offer.targets, kDragCopy});
        drag.OnEvent(event);
    };
    using enum screen::EventType;
    port.held->during = [&](const std::string& call)
    {
        if (call != "Enter")
            return;
        port.held->during = nullptr;
        tell(1, DragOver);
        tell(1, DragOver);
        tell(1, DragDrop);
        tell(2, DragOver);
        tell(2, DragLeave);
        tell(3, DragOver);
        tell(3, DragDrop);
    };
    port.held->atDrop = [&](DWORD*)
    {
        port.held->atDrop = nullptr;
        tell(4, DragOver);
    };
    tell(1, DragOver);
    EXPECT_EQ(port.log, (Log{"t.Enter",  "t.Over",   "answer 1", "t.Over",  "answer 1", "t.Over",   "t.Drop",
                             "answer 0", "finish 1", "close",    "t.Enter", "t.Over",   "answer 1", "t.Over",
                             "t.Drop",   "finish 1", "close",    "t.Enter", "t.Over",   "answer 1"}));
}

TEST_F(IncomingDragTest, WhatADragOfferedCannotBeReadWhenItIsOver)
{
    Target& target = Register(m_window, "w");
    Start(10, 10);
    const Held<IDataObject> first(target.data);
    Start(20, 10, 0, {{{{"text/plain", "b"}, {"text/uri-list", "file:///b"}}}, kDragCopy});
    EXPECT_NE(target.data, first.Get());
    EXPECT_EQ(DataAs(*first.Get(), Format(u"text/uri-list")), std::nullopt);
    EXPECT_EQ(DataAs(*target.data, Format(u"text/uri-list")), "file:///b");
}

TEST_F(IncomingDragTest, ContentIsReadOnceWhenItIsAskedForAndNotAfterTheDrag)
{
    static constinit int made = 0;
    made = 0; // anew when the test is repeated
    static const DerivedFormat kDerived{u"Test Derived",
                                        [](std::span<const std::string> targets)
                                        { return std::ranges::find(targets, "text/uri-list") != targets.end(); },
                                        [](IDataObject& data)
                                        {
                                            ++made;
                                            return std::optional(*DataAs(data, Format(u"text/uri-list")) + "!");
                                        }};
    OfferDerivedFormat(kDerived);
    Target& target = Register(m_window, "w");
    target.atDrop = [&](DWORD*)
    {
        EXPECT_EQ(DataAs(*target.data, Format(u"Test Derived")), "file:///a\r\n!");
        headless::EndOther(screen::Selection::Drag);
        EXPECT_EQ(DataAs(*target.data, Format(u"Test Derived")), "file:///a\r\n!");
        EXPECT_EQ(DataAs(*target.data, Format(u"text/uri-list")), "file:///a\r\n") << "kept";
        EXPECT_EQ(DataAs(*target.data, Format(u"UTF8_STRING")), std::nullopt) << "too late";
        FORMATETC format = MemoryFormat(Format(u"UTF8_STRING"));
        EXPECT_EQ(target.data->QueryGetData(&format), S_OK) << "asks nobody";
    };
    Start(10, 10);
    EXPECT_EQ(made, 0);
    Drop();
    EXPECT_EQ(made, 1);
    EXPECT_TRUE(headless::DoneForOther());
}

TEST_F(IncomingDragTest, AProgramThatDoesNotGiveItsContentCostsOneSecond)
{
    headless::OtherDrag silent = Files();
    silent.offer.givesContent = false;
    Target& target = Register(m_window, "w");
    Start(10, 10, 0, silent);
    const std::uint64_t begin = NowMs();
    EXPECT_EQ(DataAs(*target.data, Format(u"text/uri-list")), std::nullopt);
    EXPECT_EQ(DataAs(*target.data, Format(u"UTF8_STRING")), std::nullopt);
    EXPECT_EQ(NowMs() - begin, 1000U);
}

} // namespace
