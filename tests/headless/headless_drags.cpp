// Drag and drop without a display: what other programs drag here, and where this program drags to.
#include "tests/headless/headless_state.h"

#include "platform/base/clock.h"

#include <algorithm>
#include <utility>

namespace platform::headless
{
namespace
{

using screen::DragActions;
using screen::DragPlace;
using screen::EventType;
using screen::Selection;

constexpr std::uint64_t kPatience = 2000; // milliseconds, with a target that never says it has finished

struct Incoming
{
    screen::DragOffer offer;
    screen::NativeWindow over = 0; ///< of this program
    unsigned modifiers = 0;
    bool dropped = false; ///< its program waits for FinishDrop
    std::optional<DragActions> answer;
    std::optional<DragActions> done;
};

struct Outgoing
{
    DragActions allowed = 0;
    screen::DragImage image;
    DragPlace place;
    DragActions shown = 0;
    bool onTarget = false;
    bool dropped = false;
};

struct Drags
{
    Incoming in;
    unsigned count = 0; ///< of other programs' drags
    std::optional<Outgoing> out;
    std::optional<OtherTarget> target;
    bool refused = false;
    bool taken = false; ///< what was dragged last was dropped on the target
};

Drags& TheDrags()
{
    static Drags& drags = *new Drags;
    return drags;
}

void Queue(EventType type, screen::NativeWindow window)
{
    screen::Event event;
    event.type = type;
    event.window = window;
    event.position = TheState().pointer;
    event.time = NowMs();
    event.modifiers = TheDrags().in.modifiers;
    event.offer = std::make_shared<screen::DragOffer>(TheDrags().in.offer);
    TheState().events.push_back(event);
}

void LeaveOver()
{
    Incoming& in = TheDrags().in;
    if (const screen::NativeWindow over = std::exchange(in.over, 0))
        Queue(EventType::DragLeave, over);
}

/// What is wanted first, then the first of move, copy and link.
DragActions ActionOf(const OtherTarget& target, DragActions allowed, DragActions wanted)
{
    const DragActions possible = target.takes & (allowed | screen::kDragAsk);
    for (const DragActions action :
         {possible & wanted, screen::kDragAsk & wanted, screen::kDragMove, screen::kDragCopy, screen::kDragLink})
        if ((possible & action) != 0)
            return possible & action;
    return 0;
}

} // namespace

bool IsDragging()
{
    return TheDrags().out.has_value();
}

void ForgetDrags()
{
    TheDrags() = {};
}

void StartOtherDrag(OtherDrag drag, int x, int y, unsigned modifiers)
{
    Drags& drags = TheDrags();
    LeaveOver();
    drags.in = {};
    drags.in.offer.drag = ++drags.count;
    for (const auto& [target, content] : drag.offer.forms)
        drags.in.offer.targets.push_back(target);
    drags.in.offer.actions = drag.actions;
    OfferByOther(Selection::Drag, std::move(drag.offer));
    MoveOtherDrag(x, y, modifiers);
}

void MoveOtherDrag(int x, int y, unsigned modifiers)
{
    Incoming& in = TheDrags().in;
    TheState().pointer = {x, y};
    in.modifiers = modifiers;
    const screen::NativeWindow window = WindowAt({x, y});
    if (window != in.over)
        LeaveOver();
    in.over = window;
    in.answer.reset();
    if (window != 0)
        Queue(EventType::DragOver, window);
}

void EndOtherDrag()
{
    LeaveOver();
    EndOther(Selection::Drag);
}

void DropOtherDrag()
{
    Incoming& in = TheDrags().in;
    if (in.over == 0)
        return;
    in.dropped = true;
    Queue(EventType::DragDrop, std::exchange(in.over, 0));
}

std::optional<DragActions> AnswerToOther()
{
    return TheDrags().in.answer;
}

std::optional<DragActions> DoneForOther()
{
    return TheDrags().in.done;
}

void SetOtherTarget(std::optional<OtherTarget> target)
{
    TheDrags().target = target;
}

std::optional<std::string> DroppedOnOther(std::string_view target)
{
    return TheDrags().taken ? AskAsOther(Selection::Drag, target) : std::nullopt;
}

std::optional<DragActions> ShownDragAction()
{
    const auto& out = TheDrags().out;
    return out ? std::optional(out->shown) : std::nullopt;
}

std::optional<screen::DragImage> ShownDragImage()
{
    const auto& out = TheDrags().out;
    return out ? std::optional(out->image) : std::nullopt;
}

void RefuseDrags(bool refuse)
{
    TheDrags().refused = refuse;
}

} // namespace platform::headless

namespace platform::screen
{

using headless::Outgoing;
using headless::TheDrags;
using headless::TheState;

void AnswerDrag(unsigned drag, DragActions action)
{
    headless::Incoming& in = TheDrags().in;
    if (drag == in.offer.drag)
        in.answer = action;
}

void FinishDrop(unsigned drag, DragActions action)
{
    headless::Incoming& in = TheDrags().in;
    if (drag != in.offer.drag || !std::exchange(in.dropped, false))
        return;
    in.done = action;
    headless::EndOther(Selection::Drag);
}

bool BeginDrag(std::shared_ptr<const SelectionSource> source, DragActions allowed, const DragImage& image)
{
    headless::Drags& drags = TheDrags();
    if (drags.refused || drags.out || !OfferSelection(Selection::Drag, std::move(source)))
        return false;
    drags.taken = false;
    drags.out = Outgoing{allowed, image, {}, 0, false, false};
    return true;
}

DragPlace MoveDrag(POINT position, DragActions wanted)
{
    const auto& target = TheDrags().target;
    if (!TheDrags().out)
        return {};
    Outgoing& out = *TheDrags().out;
    const RECT bounds = target ? target->bounds : RECT{};
    out.place = {headless::WindowAt(position), true, 0};
    out.onTarget = out.place.own == 0 && PtInRect(&bounds, position);
    if (!out.onTarget)
        return out.place;
    const DragPlace before{0, false, 0};
    if (target->answers)
    {
        out.place.answer = headless::ActionOf(*target, out.allowed, wanted);
        headless::Queue(EventType::DragAnswered, 0);
    }
    else
    {
        out.place = before;
    }
    return before;
}

DragPlace CurrentDragPlace()
{
    return TheDrags().out ? TheDrags().out->place : DragPlace{};
}

void ShowDragAction(DragActions action)
{
    if (TheDrags().out)
        TheDrags().out->shown = action;
}

bool DropDrag()
{
    headless::Drags& drags = TheDrags();
    if (!drags.out || !drags.out->onTarget || drags.out->place.answer == 0)
        return false;
    Outgoing& out = *drags.out;
    out.dropped = true;
    drags.taken = true;
    if (!drags.target || !drags.target->finishes)
    {
        out.place.answer = 0;
        if (ClockIsManual())
            AdvanceManualClock(headless::kPatience);
    }
    headless::Queue(EventType::DragEnded, 0);
    return true;
}

void EndDrag()
{
    headless::Drags& drags = TheDrags();
    if (!drags.out)
        return;
    const bool dropped = drags.out->dropped;
    drags.out.reset();
    if (!dropped)
        WithdrawSelection(Selection::Drag);
    headless::PointerMayHaveChangedWindow();
}

} // namespace platform::screen
