// Scripted input, and waiting for it.
#include "tests/headless/headless_state.h"

#include "platform/base/clock.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace platform::headless
{
namespace
{

using screen::Event;
using screen::EventType;

// How long a program may wait for another thread before the test is declared stuck.
constexpr auto kStuck = std::chrono::seconds(30);

struct WakeSignal
{
    std::mutex mutex;
    std::condition_variable condition;
};

WakeSignal& TheWakeSignal()
{
    static WakeSignal& signal = *new WakeSignal;
    return signal;
}

Event& Queue(EventType type, screen::NativeWindow window)
{
    State& state = TheState();
    Event event;
    event.type = type;
    event.window = window;
    event.position = state.pointer;
    event.time = NowMs();
    event.modifiers = state.modifiers;
    return state.events.emplace_back(event);
}

unsigned ModifierOf(BYTE virtualKey)
{
    switch (virtualKey)
    {
    case VK_SHIFT:
        return screen::kShift;
    case VK_CONTROL:
        return screen::kControl;
    case VK_MENU:
        return screen::kAlt;
    default:
        return 0;
    }
}

bool IsExtended(BYTE virtualKey)
{
    return (virtualKey >= VK_PRIOR && virtualKey <= VK_DOWN) || virtualKey == VK_INSERT || virtualKey == VK_DELETE ||
           virtualKey == VK_APPS;
}

screen::NativeWindow MouseTarget()
{
    const State& state = TheState();
    return state.pressedWindow != 0 ? state.pressedWindow : WindowAt(state.pointer);
}

void EnterTarget(screen::NativeWindow target)
{
    State& state = TheState();
    if (state.pointerWindow != 0 && state.pointerWindow != target)
        Queue(EventType::MouseLeave, state.pointerWindow);
    state.pointerWindow = target;
}

void WaitForWake(std::optional<std::uint64_t> deadline)
{
    WakeSignal& signal = TheWakeSignal();
    std::unique_lock lock(signal.mutex);
    const auto isWoken = [] { return TheState().woken.load(); };
    if (deadline)
    {
        const std::uint64_t now = NowMs();
        signal.condition.wait_for(lock, std::chrono::milliseconds(*deadline > now ? *deadline - now : 0), isWoken);
        return;
    }
    if (!signal.condition.wait_for(lock, kStuck, isWoken))
    {
        std::fprintf(stderr, "headless screen: the program waits, and nothing will ever come\n");
        std::abort();
    }
}

} // namespace

void MoveMouse(int x, int y)
{
    State& state = TheState();
    state.pointer = {x, y};
    const screen::NativeWindow target = MouseTarget();
    EnterTarget(target);
    if (target != 0 || IsDragging())
        Queue(EventType::MouseMove, target);
}

void PointerMayHaveChangedWindow()
{
    State& state = TheState();
    const screen::NativeWindow target = MouseTarget();
    if (target == state.pointerWindow)
        return;
    EnterTarget(target);
    if (target != 0)
        Queue(EventType::MouseMove, target);
}

void PressButton(screen::Button button)
{
    State& state = TheState();
    const screen::NativeWindow target = MouseTarget();
    if (target == 0 && !IsDragging())
    {
        ActivateOtherApplication();
        return;
    }
    state.pressedButtons |= 1U << static_cast<unsigned>(button);
    state.pressedWindow = target;
    Queue(EventType::ButtonDown, target).button = button;
}

void ReleaseButton(screen::Button button)
{
    State& state = TheState();
    const unsigned bit = 1U << static_cast<unsigned>(button);
    if ((state.pressedButtons & bit) == 0)
        return;
    state.pressedButtons &= ~bit;
    Queue(EventType::ButtonUp, state.pressedWindow).button = button;
    if (state.pressedButtons == 0)
    {
        state.pressedWindow = 0;
        PointerMayHaveChangedWindow();
    }
}

void TurnWheel(int delta)
{
    const screen::NativeWindow target = MouseTarget();
    if (target != 0)
        Queue(EventType::Wheel, target).wheel = delta;
}

void PressKey(BYTE virtualKey, std::u16string_view text)
{
    if (!HasKeyboard() && !IsDragging())
        return;
    Event& event = Queue(EventType::KeyDown, 0);
    event.virtualKey = virtualKey;
    event.extended = IsExtended(virtualKey);
    text.substr(0, std::size(event.text) - 1).copy(event.text, std::size(event.text) - 1);
    TheState().modifiers |= ModifierOf(virtualKey);
}

void ReleaseKey(BYTE virtualKey)
{
    if (HasKeyboard() || IsDragging())
    {
        Event& event = Queue(EventType::KeyUp, 0);
        event.virtualKey = virtualKey;
        event.extended = IsExtended(virtualKey);
    }
    TheState().modifiers &= ~ModifierOf(virtualKey);
}

void Compose(std::u16string_view text, std::size_t caret)
{
    TheState().composition = {std::u16string(text), caret};
    Queue(EventType::Composition, 0);
}

void CommitText(std::u16string_view text)
{
    Event& event = Queue(EventType::KeyDown, 0);
    event.virtualKey = 0xE7; // VK_PACKET
    text.copy(event.text, std::size(event.text) - 1);
}

std::optional<RECT> TextCaret()
{
    return TheState().textCaret;
}

void ActivateOtherApplication()
{
    TheState().hasKeyboard = false;
    Queue(EventType::Deactivated, 0);
}

void PlaceByManager(screen::NativeWindow window, const RECT& bounds)
{
    Queue(EventType::Placed, window).bounds = bounds;
}

void RequestClose(screen::NativeWindow window)
{
    Queue(EventType::CloseRequest, window);
}

void SetIdleHandler(std::function<bool()> handler)
{
    TheState().idleHandler = std::move(handler);
}

} // namespace platform::headless

namespace platform::screen
{

using headless::State;
using headless::TheState;

void SetTextInput(NativeWindow window, const RECT& caret)
{
    State& state = TheState();
    state.textCaret = window != 0 ? std::optional(caret) : std::nullopt;
    if (window == 0)
        state.composition = {};
}

const Composition& CurrentComposition()
{
    return TheState().composition;
}

bool NextEvent(Event& event)
{
    State& state = TheState();
    if (state.events.empty())
        return false;
    event = state.events.front();
    state.events.pop_front();
    return true;
}

void Wait(std::optional<std::uint64_t> deadline)
{
    State& state = TheState();
    const bool nothingToDo = state.events.empty() && !state.woken;
    if (nothingToDo && (!state.idleHandler || !state.idleHandler()))
    {
        if (deadline && ClockIsManual())
        {
            const std::uint64_t now = NowMs();
            AdvanceManualClock(*deadline > now ? *deadline - now : 0);
        }
        else
        {
            headless::WaitForWake(deadline);
        }
    }
    state.woken = false;
}

void Wake()
{
    auto& signal = headless::TheWakeSignal();
    {
        const std::lock_guard lock(signal.mutex);
        TheState().woken = true;
    }
    signal.condition.notify_all();
}

std::optional<POINT> PointerPosition()
{
    return TheState().pointer;
}

void WarpPointer(POINT position)
{
    headless::MoveMouse(position.x, position.y);
}

void SetPointerShape(NativeWindow window, PointerShape shape)
{
    if (headless::HeadlessWindow* found = headless::FindWindow(window))
        found->info.pointer = shape;
}

} // namespace platform::screen
