// A window on the real X11 screen that takes what is dragged onto it, and lets itself be dragged; says on standard
// output what happens.
//
// Command line: x y. A press of the left or right button begins a drag of two addresses; its release drops, Escape
// gives it up. What comes in is copied, as is what goes out unless the other side wants something else.
#include "platform/base/clock.h"
#include "platform/screen/drags.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{

using namespace platform::screen;

constexpr std::size_t kLargest = 64U << 20;

struct State
{
    NativeWindow window = 0;
    bool dragging = false;
    bool dropped = false;
    DragActions wanted = kDragCopy;
};

void Say(const char* what, unsigned long value)
{
    std::printf("%s %lu\n", what, value);
    std::fflush(stdout);
}

class Source final : public SelectionSource
{
public:
    std::vector<std::string> Targets() const override { return {"text/uri-list", "text/plain", "UTF8_STRING", "TEXT"}; }
    std::optional<std::string> Content(std::string_view target) const override
    {
        return target == "text/uri-list" ? std::optional<std::string>("file:///a\r\nfile:///b\r\n") : "a b";
    }
};

DragImage Picture()
{
    DragImage image{{64, 64}, {32, 60}, std::vector<std::uint32_t>(64 * 64, 0)};
    for (std::size_t i = 64 * 16; i < 64 * 48; ++i)
        image.pixels[i] = 0xFFFF0000; // the middle is red, the rest clear
    return image;
}

void Show(const DragPlace& place)
{
    static DragPlace last{1, true, 99};
    if (place.own != last.own)
        Say("own", place.own != 0);
    if (place.answered != last.answered || place.answer != last.answer)
        std::printf("place %d %u\n", place.answered, place.answer), std::fflush(stdout);
    last = place;
    ShowDragAction(place.own != 0 ? kDragCopy : place.answer);
}

void End(State& state)
{
    EndDrag();
    state.dragging = state.dropped = false;
    Say("ended", 0);
}

void OnIncoming(const Event& event)
{
    switch (event.type)
    {
    case EventType::DragOver:
        std::printf("over %ld %ld targets %zu actions %u\n", static_cast<long>(event.position.x),
                    static_cast<long>(event.position.y), event.offer->targets.size(), event.offer->actions);
        std::fflush(stdout);
        AnswerDrag(event.offer->drag, event.offer->targets.empty() ? 0 : kDragCopy);
        break;
    case EventType::DragLeave:
        Say("leave", 0);
        break;
    case EventType::DragDrop:
    {
        const auto content = ReadSelection(Selection::Drag, "text/uri-list", platform::NowMs() + 2000, kLargest);
        Say("dropped", content ? content->size() : 0);
        FinishDrop(event.offer->drag, content ? kDragCopy : 0);
        break;
    }
    default:
        break;
    }
}

void OnOutgoing(State& state, const Event& event)
{
    switch (event.type)
    {
    case EventType::ButtonDown:
        if (state.dragging)
            return;
        state.wanted = event.button == Button::Right ? kDragAsk : kDragCopy;
        state.dragging = BeginDrag(std::make_shared<Source>(), kDragCopy | kDragMove | kDragLink, Picture());
        Say("begun", state.dragging);
        break;
    case EventType::MouseMove:
        if (state.dragging && !state.dropped)
            Show(MoveDrag(event.position, state.wanted));
        break;
    case EventType::ButtonUp:
        if (!state.dragging)
            return;
        state.dropped = DropDrag();
        Say("drop", state.dropped);
        if (!state.dropped)
            End(state);
        break;
    case EventType::KeyDown:
        Say("key", event.virtualKey);
        if (event.virtualKey == 0x1B && state.dragging)
            End(state);
        break;
    case EventType::DragAnswered:
        Show(CurrentDragPlace());
        break;
    case EventType::DragEnded:
        Say("done", CurrentDragPlace().answer);
        End(state);
        break;
    default:
        break;
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3 || !Open())
        return 2;
    const int x = std::atoi(argv[1]);
    const int y = std::atoi(argv[2]);
    State state;
    WindowOptions options;
    options.bounds = {x, y, x + 200, y + 200};
    state.window = CreateNativeWindow(options);
    const platform::Surface& surface = WindowSurface(state.window);
    for (int row = 0; row < surface.height; ++row)
        std::fill_n(surface.pixels + row * surface.stride, surface.width, 0x0000FFU);
    ShowNativeWindow(state.window, true);
    const RECT all{0, 0, 200, 200};
    Present(state.window, {&all, 1});
    TakeKeyboard(state.window);
    Finish();
    Say("window", state.window);
    for (Event event;;)
    {
        if (!NextEvent(event))
        {
            Wait(std::nullopt);
            continue;
        }
        OnIncoming(event);
        OnOutgoing(state, event);
    }
}
