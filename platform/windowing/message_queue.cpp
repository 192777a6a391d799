// Posted messages, and getting the next message of any kind.
#include "platform/windowing/message_queue.h"

#include "platform/base/clock.h"
#include "platform/base/deferred.h"
#include "platform/base/fault_points.h"
#include "platform/windowing/window.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <mutex>

namespace platform
{
namespace
{

// Windows' own limit of posted messages.
constexpr std::size_t kMaxPosted = 10000;
const HWND kThreadMessages = reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1));

struct Queue
{
    std::mutex mutex; ///< guards posted
    std::deque<MSG> posted;
    std::atomic<DWORD> thread{GetCurrentThreadId()}; ///< the user-interface thread
    bool quit = false;
    int exitCode = 0;
    std::optional<POINT> point;
    DWORD lastTime = 0;
    POINT lastPoint{};
    bool anyMessage = false;
    std::optional<std::uint64_t> deferredDue; ///< when waiting work may begin; nothing when none has been seen waiting
};

Queue& TheQueue()
{
    static Queue& queue = *new Queue;
    return queue;
}

bool OnUserInterfaceThread()
{
    return TheQueue().thread == GetCurrentThreadId();
}

bool Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Queue& queue = TheQueue();
    {
        const std::lock_guard lock(queue.mutex);
        if (queue.posted.size() >= kMaxPosted)
            return Fail(ERROR_NOT_ENOUGH_QUOTA, false);
        queue.posted.push_back({window, message, wParam, lParam, static_cast<DWORD>(NowMs()), {}});
    }
    if (!OnUserInterfaceThread())
        WakeQueue();
    return true;
}

bool TakePosted(MSG& message, const MessageFilter& filter, bool remove)
{
    Queue& queue = TheQueue();
    const std::lock_guard lock(queue.mutex);
    const auto accepted = [&](const MSG& m) { return filter.Accepts(m.hwnd, m.message); };
    auto found = std::find_if(queue.posted.begin(), queue.posted.end(), accepted);
    while (found != queue.posted.end() && found->hwnd != nullptr && !IsWindow(found->hwnd))
    {
        // Posted from another thread to a window that was already gone.
        found = std::find_if(queue.posted.erase(found), queue.posted.end(), accepted);
    }
    if (found == queue.posted.end())
        return false;
    message = *found;
    message.pt = MessagePoint();
    if (remove)
        queue.posted.erase(found);
    return true;
}

bool TakeQuit(MSG& message, bool remove)
{
    Queue& queue = TheQueue();
    if (!queue.quit)
        return false;
    message = {nullptr, WM_QUIT, static_cast<WPARAM>(queue.exitCode), 0, static_cast<DWORD>(NowMs()), MessagePoint()};
    queue.quit = !remove;
    return true;
}

bool TakePaint(MSG& message, const MessageFilter& filter)
{
    if (!filter.AcceptsMessage(WM_PAINT))
        return false;
    Window* window = NextWindowToPaint();
    while (window != nullptr && window->update.Empty())
    {
        PaintFrame(*window);
        window = NextWindowToPaint();
    }
    if (window == nullptr || !filter.AcceptsWindow(window->handle))
        return false;
    message = {window->handle, WM_PAINT, 0, 0, static_cast<DWORD>(NowMs()), MessagePoint()};
    return true;
}

bool FindMessage(MSG& message, const MessageFilter& filter, bool remove)
{
    if (TakePosted(message, filter, remove) || TakeQuit(message, remove) || TakeInput(message, filter, remove))
        return true;
    if (TakePosted(message, filter, remove) || TakePaint(message, filter))
        return true;
    // Nothing is left to paint: one picture of all that has changed goes out.
    PresentAll();
    return TakeTimer(message, filter, remove);
}

bool Retrieve(MSG& message, const MessageFilter& filter, bool remove)
{
    Queue& queue = TheQueue();
    queue.thread = GetCurrentThreadId();
    if (!FindMessage(message, filter, remove))
        return false;
    if (remove)
        NoteMessage(message.time, message.pt);
    return true;
}

/// When deferred work may begin; nothing when there is none. Right behind a frame the display, a window manager and a
/// compositor are busy putting it on the screen, and with few processors they would have to wait for this work.
std::optional<std::uint64_t> DeferredDue()
{
    constexpr std::uint64_t kPatience = 20; // milliseconds: longer than a frame at 60 Hz
    std::optional<std::uint64_t>& due = TheQueue().deferredDue;
    if (!HasDeferredWork())
        due.reset();
    else if (!due)
        due = NowMs() + kPatience;
    return due;
}

std::optional<std::uint64_t> Earlier(std::optional<std::uint64_t> a, std::optional<std::uint64_t> b)
{
    return a && b ? std::min(*a, *b) : a ? a : b;
}

} // namespace

bool MessageFilter::AcceptsWindow(HWND candidate) const
{
    if (window == nullptr)
        return true;
    return window == kThreadMessages ? candidate == nullptr : window == candidate || IsChild(window, candidate);
}

void WaitForMessage()
{
    PresentAll();
    const std::optional<std::uint64_t> deferredDue = DeferredDue();
    if (deferredDue && *deferredDue <= NowMs())
    {
        RunOneDeferred();
        return; // a message may have come meanwhile
    }
    screen::Wait(Earlier(deferredDue, NextTimer()));
}

void WakeQueue()
{
    screen::Wake();
}

POINT MessagePoint()
{
    Queue& queue = TheQueue();
    if (!queue.point)
        queue.point = screen::PointerPosition().value_or(POINT{});
    return *queue.point;
}

void SetMessagePoint(POINT point)
{
    TheQueue().point = point;
}

void NoteMessage(DWORD time, POINT point)
{
    Queue& queue = TheQueue();
    queue.anyMessage = true;
    queue.lastTime = time;
    queue.lastPoint = point;
}

void ForgetMessagesOf(HWND window)
{
    Queue& queue = TheQueue();
    const std::lock_guard lock(queue.mutex);
    std::erase_if(queue.posted, [&](const MSG& message) { return message.hwnd == window; });
}

} // namespace platform

using namespace platform;

BOOL GetMessageW(LPMSG message, HWND window, UINT first, UINT last)
{
    if (message == nullptr || (window != nullptr && window != kThreadMessages && RequireWindow(window) == nullptr))
        return -1;
    while (!Retrieve(*message, {window, first, last}, true))
        WaitForMessage();
    return message->message != WM_QUIT;
}

BOOL PeekMessageW(LPMSG message, HWND window, UINT first, UINT last, UINT remove)
{
    return message != nullptr && Retrieve(*message, {window, first, last}, (remove & PM_REMOVE) != 0);
}

LRESULT SendMessageW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam)
{
    const Window* window = RequireWindow(handle);
    return window != nullptr ? window->procedure(handle, message, wParam, lParam) : 0;
}

LRESULT CallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return procedure != nullptr ? procedure(window, message, wParam, lParam) : 0;
}

LRESULT DispatchMessageW(const MSG* message)
{
    if (message == nullptr)
        return 0;
    if (message->message == WM_TIMER && message->lParam != 0)
    {
        const auto procedure = reinterpret_cast<TIMERPROC>(message->lParam);
        procedure(message->hwnd, WM_TIMER, message->wParam, GetTickCount());
        return 0;
    }
    return message->hwnd != nullptr ? SendMessageW(message->hwnd, message->message, message->wParam, message->lParam)
                                    : 0;
}

BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (FaultPoint("PostMessageW"))
        return Fail(ERROR_NOT_ENOUGH_QUOTA, FALSE);
    // The handle table belongs to the user-interface thread; for others the check is made when the message is taken.
    if (window != nullptr && OnUserInterfaceThread() && RequireWindow(window) == nullptr)
        return FALSE;
    return Post(window, message, wParam, lParam);
}

BOOL PostThreadMessageW(DWORD thread, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (thread != TheQueue().thread)
        return Fail(ERROR_INVALID_THREAD_ID, FALSE);
    return Post(nullptr, message, wParam, lParam);
}

void PostQuitMessage(int exitCode)
{
    TheQueue().quit = true;
    TheQueue().exitCode = exitCode;
}

DWORD GetMessagePos()
{
    const Queue& queue = TheQueue();
    const POINT point = queue.anyMessage ? queue.lastPoint : MessagePoint();
    return static_cast<DWORD>(MAKELONG(point.x, point.y));
}

LONG GetMessageTime()
{
    return static_cast<LONG>(TheQueue().lastTime);
}
