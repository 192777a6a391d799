// What this program drags: the grabs, the picture, and the requests behind the source's state machine.
#include "platform/screen/x11/drags.h"

#include "platform/base/clock.h"
#include "platform/screen/x11/atoms.h"
#include "platform/screen/x11/connection.h"
#include "platform/screen/x11/cursors.h"
#include "platform/screen/x11/drag_image.h"
#include "platform/screen/x11/drag_sites.h"
#include "platform/screen/x11/drag_source.h"
#include "platform/screen/x11/focus.h"
#include "platform/screen/x11/input.h"
#include "platform/screen/x11/selections.h"
#include "platform/screen/x11/watches.h"
#include "platform/screen/x11/windows.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <utility>

namespace platform::x11
{
namespace
{

using screen::DragActions;
using screen::DragPlace;
using screen::EventType;

constexpr std::uint16_t kPointerEvents =
    XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;

class Port final : public DragSourcePort
{
public:
    void Send(xcb_window_t to, const XdndMessage& message) override { SendXdnd(to, message); }
    void Watch(xcb_window_t window, bool on) override { WatchForeign(window, Watcher::DragOut, on); }
    void Tell(EventType type) override
    {
        screen::Event event;
        event.type = type;
        event.time = NowMs();
        AddEvent(event);
    }
};

/// Where the pointer is, as of one of the server's events.
struct Pointer
{
    POINT position{};
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    unsigned modifiers = 0;
    xcb_window_t topLevel = 0; ///< under it; 0 for the bare root
};

struct Outgoing
{
    Outgoing(xcb_window_t window, std::vector<xcb_atom_t> types, DragActions actions)
        : allowed(actions), listed(actions), source(port, TheXdndAtoms(), {window, std::move(types), actions})
    {
    }

    const DragActions allowed;
    DragActions listed; ///< for the other side to choose from
    Port port;
    DragSource source;
    DragSites sites;
    Pointer pointer;           ///< what the program knows of
    std::deque<Pointer> ahead; ///< read from the server since then
    bool grabbed = false;
    bool dropped = false;
    DragActions shown = 0;
    std::unique_ptr<DragPicture> picture;
};

std::unique_ptr<Outgoing>& TheDrag()
{
    static auto& drag = *new std::unique_ptr<Outgoing>;
    return drag;
}

/// The pointer's events say what is under it: those of this program's own windows are theirs, all others come to the
/// root window with the child of it that the pointer is in.
bool Grab()
{
    const xcb_window_t keys = FocusedWindow() != 0 ? FocusedWindow() : TheConnection().Root();
    const auto pointerCookie = xcb_grab_pointer(Xcb(), 1, TheConnection().Root(), kPointerEvents, XCB_GRAB_MODE_ASYNC,
                                                XCB_GRAB_MODE_ASYNC, XCB_NONE, DragCursor(0), XCB_CURRENT_TIME);
    const auto keysCookie =
        xcb_grab_keyboard(Xcb(), 1, keys, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto pointer = Collect(xcb_grab_pointer_reply, pointerCookie);
    const auto keyboard = Collect(xcb_grab_keyboard_reply, keysCookie);
    const bool hasPointer = pointer != nullptr && pointer->status == XCB_GRAB_STATUS_SUCCESS;
    const bool hasKeyboard = keyboard != nullptr && keyboard->status == XCB_GRAB_STATUS_SUCCESS;
    if (hasPointer && !hasKeyboard)
        xcb_ungrab_pointer(Xcb(), XCB_CURRENT_TIME);
    if (hasKeyboard && !hasPointer)
        xcb_ungrab_keyboard(Xcb(), XCB_CURRENT_TIME);
    return hasPointer && hasKeyboard;
}

void AddPointerEvent(EventType type, const Pointer& pointer)
{
    screen::Event event;
    event.type = type;
    event.window = FindNative(pointer.topLevel) != nullptr ? pointer.topLevel : 0;
    event.position = pointer.position;
    event.modifiers = pointer.modifiers;
    event.time = NowMs();
    AddEvent(event);
}

/// The pointer moves on to that place, past all that came before it. An event's position is looked for rather than
/// the last one taken: by the time a release is dealt with the pointer may be elsewhere.
void AdvanceTo(Outgoing& drag, POINT position)
{
    const auto there = [&](const Pointer& pointer)
    { return pointer.position.x == position.x && pointer.position.y == position.y; };
    const auto found = std::find_if(drag.ahead.begin(), drag.ahead.end(), there);
    if (found == drag.ahead.end())
        return;
    drag.pointer = *found;
    drag.ahead.erase(drag.ahead.begin(), found + 1);
}

/// And takes the picture away. The partner may want the pointer itself, for a menu that asks.
void Ungrab(Outgoing& drag)
{
    if (!std::exchange(drag.grabbed, false))
        return;
    drag.picture.reset();
    xcb_ungrab_keyboard(Xcb(), XCB_CURRENT_TIME);
    xcb_ungrab_pointer(Xcb(), XCB_CURRENT_TIME);
    xcb_flush(Xcb());
    const Pointer& now = drag.ahead.empty() ? drag.pointer : drag.ahead.back();
    if (FindNative(now.topLevel) != nullptr)
        return;
    ReleaseButtons(now.position, now.modifiers);
    AddPointerEvent(EventType::MouseLeave, now);
    OnPointerInside(false);
}

void ListActions(xcb_window_t window, DragActions listed)
{
    std::vector<xcb_atom_t> actions;
    for (const DragActions action : {screen::kDragCopy, screen::kDragMove, screen::kDragLink, screen::kDragAsk})
        if ((listed & action) != 0)
            actions.push_back(TheXdndAtoms().AtomOf(action));
    SetAtoms(window, TheXdndAtoms()[Xdnd::ActionList], actions);
}

/// Only what the keys ask for: file managers take a move instead of a copy where one is listed too. Nor do they ask
/// where asking is not listed.
void NarrowActions(Outgoing& drag, DragActions wanted)
{
    const DragActions possible = wanted & drag.allowed;
    const DragActions listed = (possible != 0 ? possible : drag.allowed) | (wanted & screen::kDragAsk);
    if (std::exchange(drag.listed, listed) != listed)
        ListActions(SelectionWindow(), listed);
}

/// What a target reads from the source's window: all kinds, and what may be done, with words for a target that asks.
void Describe(xcb_window_t window, const std::vector<xcb_atom_t>& types, DragActions allowed)
{
    SetAtoms(window, TheXdndAtoms()[Xdnd::TypeList], types);
    ListActions(window, allowed);
    std::string words;
    constexpr std::pair<DragActions, std::string_view> kWords[] = {
        {screen::kDragCopy, "Copy"}, {screen::kDragMove, "Move"}, {screen::kDragLink, "Link"}};
    for (const auto& [action, word] : kWords)
        if ((allowed & action) != 0)
            words.append(word).push_back('\0');
    xcb_change_property(Xcb(), XCB_PROP_MODE_REPLACE, window, AtomNamed("XdndActionDescription"), XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(words.size()), words.data());
}

Pointer AskPointer()
{
    const auto reply = Collect(xcb_query_pointer_reply, xcb_query_pointer(Xcb(), TheConnection().Root()));
    return reply != nullptr
               ? Pointer{{reply->root_x, reply->root_y}, LastInputTime(), ModifiersOf(reply->mask), reply->child}
               : Pointer{};
}

DragPlace PlaceOf(const Outgoing& drag)
{
    DragPlace place;
    const bool own = !drag.dropped && FindNative(drag.pointer.topLevel) != nullptr;
    place.own = own ? drag.pointer.topLevel : 0;
    place.answered = !own && drag.source.IsAnswered();
    place.answer = own ? 0 : drag.source.Answer();
    return place;
}

} // namespace

bool IsDragging()
{
    return TheDrag() != nullptr && TheDrag()->grabbed;
}

void NoteDragPointer(const xcb_motion_notify_event_t& event)
{
    const xcb_window_t topLevel = FindNative(event.event) != nullptr ? event.event : event.child;
    if (IsDragging())
        TheDrag()->ahead.push_back({{event.root_x, event.root_y}, event.time, ModifiersOf(event.state), topLevel});
}

/// No movement tells that the pointer is over something else now.
void HandleOwnWindowHidden(xcb_window_t window)
{
    if (!IsDragging() || TheDrag()->pointer.topLevel != window)
        return;
    TheDrag()->pointer = AskPointer();
    TheDrag()->ahead.clear();
    AddPointerEvent(EventType::MouseMove, TheDrag()->pointer);
}

void HandleDragAnswer(const XdndMessage& message)
{
    if (TheDrag() != nullptr)
        TheDrag()->source.OnMessage(message, NowMs());
}

void HandlePartnerGone(xcb_window_t window)
{
    if (TheDrag() == nullptr)
        return;
    TheDrag()->sites.OnWindowGone(window);
    TheDrag()->source.OnWindowGone(window);
}

void NoteDragRead()
{
    if (TheDrag() != nullptr)
        TheDrag()->source.OnRead(NowMs());
}

std::optional<std::uint64_t> DragDeadline()
{
    return TheDrag() != nullptr ? TheDrag()->source.Deadline() : std::nullopt;
}

void CheckDragTime()
{
    if (TheDrag() != nullptr)
        TheDrag()->source.OnTime(NowMs());
}

} // namespace platform::x11

namespace platform::screen
{

using namespace x11;

bool BeginDrag(std::shared_ptr<const SelectionSource> source, DragActions allowed, const DragImage& image)
{
    if (!TheConnection().IsOpen() || TheDrag() != nullptr || source == nullptr)
        return false;
    const std::vector<xcb_atom_t> types = AtomsNamed(source->Targets());
    if (!OfferSelection(Selection::Drag, std::move(source)))
        return false;
    if (!Grab())
    {
        WithdrawSelection(Selection::Drag);
        return false;
    }
    auto drag = std::make_unique<Outgoing>(SelectionWindow(), types, allowed);
    drag->grabbed = true;
    drag->pointer = AskPointer();
    drag->picture = std::make_unique<DragPicture>(image, drag->pointer.position);
    Describe(SelectionWindow(), types, allowed);
    Commit();
    drag->sites.LookIntoAll();
    TheDrag() = std::move(drag);
    return true;
}

DragPlace MoveDrag(POINT position, DragActions wanted)
{
    if (!IsDragging())
        return CurrentDragPlace();
    Outgoing& drag = *TheDrag();
    AdvanceTo(drag, position);
    drag.picture->Follow(drag.pointer.position);
    NarrowActions(drag, wanted);
    const bool own = FindNative(drag.pointer.topLevel) != nullptr;
    const DropSite site = own ? DropSite{} : drag.sites.SiteOf(drag.pointer.topLevel);
    drag.source.Move(site, {drag.pointer.position, drag.pointer.time, wanted}, NowMs());
    xcb_flush(Xcb());
    return PlaceOf(drag);
}

DragPlace CurrentDragPlace()
{
    return TheDrag() != nullptr ? PlaceOf(*TheDrag()) : DragPlace{};
}

void ShowDragAction(DragActions action)
{
    if (!IsDragging() || std::exchange(TheDrag()->shown, action) == action)
        return;
    xcb_change_active_pointer_grab(Xcb(), DragCursor(action), XCB_CURRENT_TIME, kPointerEvents);
    xcb_flush(Xcb());
}

bool DropDrag()
{
    if (!IsDragging())
        return false;
    Outgoing& drag = *TheDrag();
    const bool own = FindNative(drag.pointer.topLevel) != nullptr;
    Ungrab(drag);
    drag.dropped = !own && drag.source.Drop(drag.pointer.time, NowMs());
    return drag.dropped;
}

void EndDrag()
{
    if (TheDrag() == nullptr)
        return;
    const std::unique_ptr<Outgoing> drag = std::exchange(TheDrag(), nullptr);
    Ungrab(*drag);
    const bool mayStillRead = drag->dropped && !drag->source.IsFinished();
    drag->source.Cancel();
    if (!mayStillRead)
        WithdrawSelection(Selection::Drag);
    xcb_flush(Xcb());
}

} // namespace platform::screen
