// Input: from what the screen reports to messages in the right window.
//
// As on Windows, an event becomes a message only when the program takes it: which window it goes to depends on capture
// and focus at that moment, and taking a button press is what activates the window under it.
#include "platform/screen/drags.h"
#include "platform/windowing/drag_events.h"
#include "platform/windowing/focus.h"
#include "platform/windowing/input_events.h"
#include "platform/windowing/input_state.h"
#include "platform/windowing/message_queue.h"
#include "platform/windowing/window.h"

#include <algorithm>
#include <cstdint>
#include <deque>

namespace platform
{
namespace
{

using screen::Event;
using screen::EventType;

/// Events are told apart by ascending numbers: whoever is asked about one may take messages, and with them others.
struct QueuedEvent
{
    Event event;
    std::uint64_t number;
};

struct InputQueue
{
    std::deque<QueuedEvent> events;
    std::uint64_t lastNumber = 0;
    bool refresh = false;                   ///< windows have moved under the pointer
    screen::NativeWindow pointerWindow = 0; ///< where the pointer was last seen; 0 outside of this program's windows
};

InputQueue& Input()
{
    static InputQueue& input = *new InputQueue;
    return input;
}

Window* WindowOfNative(screen::NativeWindow native)
{
    for (Window* window : TopLevels())
        if (window->native == native && native != 0)
            return window;
    return nullptr;
}

enum class Outcome
{
    Message,  ///< taken (or left, when it was only looked at)
    Consumed, ///< handled or dropped; look at the queue anew
    Skipped,  ///< not what the filter wants; stays
};

void Drop(const QueuedEvent& queued)
{
    std::erase_if(
        Input().events, [&](const QueuedEvent& other) { return other.number == queued.number; });
}

/// The first event with a higher number; null when there is none.
const QueuedEvent* FirstAfter(std::uint64_t number)
{
    const auto& events = Input().events;
    const auto first = std::ranges::upper_bound(events, number, {}, &QueuedEvent::number);
    return first != events.end() ? &*first : nullptr;
}

bool IsQueued(const QueuedEvent& queued)
{
    return std::ranges::binary_search(Input().events, queued.number, {}, &QueuedEvent::number);
}

Outcome TakeMouse(const QueuedEvent& queued, MSG& message, const MessageFilter& filter, bool remove)
{
    const Event& event = queued.event;
    if (event.modifiers != kOwnModifiers)
        NoteModifiers(event.modifiers);
    const MouseTarget target = FindMouseTarget(event.position);
    if (!IsQueued(queued))
        return Outcome::Consumed; // taken, or moved on, while the windows were asked
    if (target.window == nullptr || target.hit == kHitError || target.hit == HTNOWHERE)
    {
        Drop(queued);
        SetMessagePoint(event.position);
        TrackPointer(nullptr);
        if (event.type != EventType::MouseMove)
            NoteKey(ButtonKey(event.button), event.type == EventType::ButtonDown);
        return Outcome::Consumed;
    }
    FillMouseMessage(event, target, message);
    message.time = static_cast<DWORD>(event.time);
    message.pt = event.position;
    if (!filter.Accepts(message.hwnd, message.message))
        return Outcome::Skipped;
    if (!remove)
        return Outcome::Message;
    Drop(queued);
    if (event.window != 0)
        Input().pointerWindow = event.window;
    return CommitMouse(event, message, target) ? Outcome::Message : Outcome::Consumed;
}

/// A message that goes to the focus window, or to the active window when nothing has the focus. A key that is meant for
/// a disabled one is nobody's: it comes without a window, for loops that look at keys themselves.
Outcome TakeForFocus(const QueuedEvent& queued, MSG& message, const MessageFilter& filter, bool remove)
{
    const Event& event = queued.event;
    if (event.modifiers != kOwnModifiers)
        NoteModifiers(event.modifiers);
    const Window* target = FindObject<Window>(GetFocus() != nullptr ? GetFocus() : GetActiveWindow());
    const bool disabled = target != nullptr && (RootOf(*target).style & WS_DISABLED) != 0;
    if (target == nullptr || (disabled && event.type == EventType::Wheel))
    {
        Drop(queued);
        if (event.type != EventType::Wheel)
            CommitKey(event);
        return Outcome::Consumed;
    }
    message.hwnd = disabled ? nullptr : target->handle;
    message.time = static_cast<DWORD>(event.time);
    message.pt = event.type == EventType::Wheel ? event.position : MessagePoint();
    if (event.type == EventType::Wheel)
    {
        message.message = WM_MOUSEWHEEL;
        message.wParam = MAKEWPARAM(MouseKeys(), event.wheel);
        message.lParam = MAKELPARAM(event.position.x, event.position.y);
    }
    else
    {
        MakeKeyMessage(event, message);
    }
    if (!filter.Accepts(message.hwnd, message.message))
        return Outcome::Skipped;
    if (remove)
    {
        Drop(queued);
        if (event.type == EventType::Wheel)
            SetMessagePoint(event.position);
        else
            CommitKey(event);
    }
    return Outcome::Message;
}

/// Whoever has captured the mouse is told of the pointer's leaving as of any other movement.
void HandlePointerLeft(const QueuedEvent& queued)
{
    Input().pointerWindow = 0;
    if (GetCapture() == nullptr)
    {
        Drop(queued);
        TrackPointer(nullptr);
        return;
    }
    for (QueuedEvent& other : Input().events)
    {
        if (other.number == queued.number)
        {
            other.event.type = EventType::MouseMove;
            other.event.window = 0;
        }
    }
}

/// Where nobody deals in drags, none may wait for an answer.
void HandleDrag(const Event& event)
{
    const DragHandler* handler = TheDragHandler();
    const bool comesIn = event.type == EventType::DragOver || event.type == EventType::DragDrop;
    if (comesIn)
    {
        NoteModifiers(event.modifiers);
        SetMessagePoint(event.position);
        NoteMessage(static_cast<DWORD>(event.time), event.position);
    }
    if (handler != nullptr)
        handler->onEvent(event);
    else if (event.type == EventType::DragOver)
        screen::AnswerDrag(event.offer->drag, 0);
    else if (event.type == EventType::DragDrop)
        screen::FinishDrop(event.offer->drag, 0);
}

/// Events that are no messages of their own.
void HandleScreenEvent(const Event& event)
{
    Window* window = WindowOfNative(event.window);
    switch (event.type)
    {
    case EventType::Activated:
        OnActivated(HandleOf(window));
        break;
    case EventType::Deactivated:
        NoteKeyboardLost();
        OnDeactivated();
        break;
    case EventType::CloseRequest:
        if (window != nullptr && (window->style & WS_DISABLED) == 0)
            PostMessageW(window->handle, WM_CLOSE, 0, 0);
        break;
    case EventType::Composition:
        SendMessageW(GetFocus(), WM_IME_COMPOSITION, 0, 0);
        break;
    case EventType::Placed:
        if (window != nullptr)
            FollowPlacement(*window, event.bounds);
        break;
    case EventType::DragOver:
    case EventType::DragLeave:
    case EventType::DragDrop:
    case EventType::DragAnswered:
    case EventType::DragEnded:
        HandleDrag(event);
        break;
    default:
        break;
    }
}

Outcome TakeEvent(const QueuedEvent& queued, MSG& message, const MessageFilter& filter, bool remove)
{
    switch (queued.event.type)
    {
    case EventType::MouseMove:
    case EventType::ButtonDown:
    case EventType::ButtonUp:
        return TakeMouse(queued, message, filter, remove);
    case EventType::Wheel:
    case EventType::KeyDown:
    case EventType::KeyUp:
        return TakeForFocus(queued, message, filter, remove);
    case EventType::MouseLeave:
        HandlePointerLeft(queued);
        return Outcome::Consumed;
    default:
        Drop(queued);
        HandleScreenEvent(queued.event);
        return Outcome::Consumed;
    }
}

void CollectEvents()
{
    InputQueue& input = Input();
    for (Event event; screen::NextEvent(event); event = Event())
        QueueInput(event);
    if (std::exchange(input.refresh, false) && input.pointerWindow != 0 && input.events.empty())
    {
        Event event;
        event.type = EventType::MouseMove;
        event.position = MessagePoint();
        event.time = GetTickCount();
        event.modifiers = kOwnModifiers;
        QueueInput(event);
    }
}

} // namespace

void QueueInput(const Event& event)
{
    InputQueue& input = Input();
    // A program that is slow sees where the pointer is, not everywhere it has been.
    const bool onlyMoved = event.type == EventType::MouseMove && !input.events.empty() &&
                           input.events.back().event.type == EventType::MouseMove &&
                           input.events.back().event.window == event.window;
    if (onlyMoved)
        input.events.pop_back();
    input.events.push_back({event, ++input.lastNumber});
}

void PointerLosesWindow(screen::NativeWindow window)
{
    if (Input().pointerWindow == window)
        Input().pointerWindow = 0;
}

void RequestMouseRefresh()
{
    Input().refresh = true;
}

bool TakeInput(MSG& message, const MessageFilter& filter, bool remove)
{
    CollectEvents();
    std::uint64_t skipped = 0;
    while (const QueuedEvent* first = FirstAfter(skipped))
    {
        const QueuedEvent queued = *first;
        switch (TakeEvent(queued, message, filter, remove))
        {
        case Outcome::Message:
            return true;
        case Outcome::Consumed:
            skipped = 0;
            break;
        case Outcome::Skipped:
            skipped = queued.number;
            break;
        }
    }
    return false;
}

} // namespace platform
