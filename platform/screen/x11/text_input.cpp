// Keys on their way through the input method.
//
// Keys that have been handed over come back one by one, or not at all when they have been used up. An input method that
// leaves any without an answer for a second is given up, and those keys are typed as usual.
#include "platform/screen/x11/text_input.h"

#include "platform/base/clock.h"
#include "platform/base/text.h"
#include "platform/screen/screen.h"
#include "platform/screen/x11/input.h"
#include "platform/services/desktop_module.h"
#include "platform/services/input_method_service.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <utility>

namespace platform::x11
{
namespace
{

using screen::Event;
using screen::EventType;

constexpr std::uint64_t kPatience = 1000;      // milliseconds
constexpr std::uint8_t kTextWithoutKey = 0xE7; // VK_PACKET

struct OfferedKey
{
    xcb_key_press_event_t event;
    std::uint32_t number;
    std::uint64_t due;
};

struct TextInput
{
    const InputMethodService* service = nullptr;
    bool tried = false; ///< the input method has been looked for, and may have been given up since
    bool lost = false;  ///< to be given up, once its service has returned
    bool heard = false;
    screen::NativeWindow window = 0;
    RECT caret{};
    screen::Composition composition;
    std::deque<OfferedKey> offered;
    std::uint32_t lastNumber = 0;
};

TextInput& State()
{
    static auto& state = *new TextInput;
    return state;
}

void Compose(std::u16string text, std::size_t caret)
{
    TextInput& state = State();
    state.heard = true;
    if (state.window == 0 || (text.empty() && state.composition.text.empty()))
        return;
    state.composition = {std::move(text), caret};
    Event event;
    event.type = EventType::Composition;
    event.time = NowMs();
    AddEvent(event);
}

// --- what the service tells

void OnComposing(const char* utf8, std::size_t length, std::size_t caret)
{
    const std::u16string text = Utf16FromUtf8({utf8, length});
    std::size_t units = 0;
    for (; caret > 0 && units < text.size(); --caret)
        units += (text[units] & 0xFC00) == 0xD800 ? 2 : 1;
    Compose(text, std::min(units, text.size()));
}

void OnCommitted(const char* utf8, std::size_t length)
{
    State().heard = true;
    const std::u16string whole = Utf16FromUtf8({utf8, length});
    // A commit that comes late has nowhere to go: what was being composed has been typed by then.
    for (std::u16string_view rest = State().window != 0 ? whole : std::u16string_view(); !rest.empty();)
    {
        Event event;
        event.type = EventType::KeyDown;
        event.virtualKey = kTextWithoutKey;
        event.time = NowMs();
        std::size_t units = std::min(rest.size(), std::size(event.text) - 1);
        units -= units < rest.size() && (rest[units - 1] & 0xFC00) == 0xD800 ? 1 : 0;
        std::copy_n(rest.begin(), units, event.text);
        rest.remove_prefix(units);
        AddEvent(event);
    }
}

void OnKeyLeftAlone(const xcb_key_press_event_t& event)
{
    TextInput& state = State();
    state.heard = true;
    const auto same = [&](const OfferedKey& key)
    {
        return key.event.response_type == (event.response_type & 0x7F) && key.event.detail == event.detail &&
               key.event.time == event.time;
    };
    if (const auto found = std::ranges::find_if(state.offered, same); found != state.offered.end())
        state.offered.erase(found);
    HandleKey(event);
}

void OnDealtWith(std::uint32_t number)
{
    State().heard = true;
    std::erase_if(State().offered, [&](const OfferedKey& key) { return key.number <= number; });
}

void OnLost()
{
    State().lost = true;
}

constexpr InputMethodReceiver kReceiver = {OnComposing, OnCommitted, OnKeyLeftAlone, OnDealtWith, OnLost};

void GiveUp()
{
    TextInput& state = State();
    state.service->close();
    state.service = nullptr;
    for (const OfferedKey& key : std::exchange(state.offered, {}))
        HandleKey(key.event);
    Compose({}, 0);
}

void Start()
{
    TextInput& state = State();
    if (std::exchange(state.tried, true))
        return;
    const auto* service = static_cast<const InputMethodService*>(InputMethodModuleSymbol("orb_input_method_service"));
    if (service != nullptr && service->open(&kReceiver))
        state.service = service;
}

} // namespace

bool OfferKey(const xcb_key_press_event_t& event)
{
    TextInput& state = State();
    if (state.service == nullptr || state.window == 0 || !state.service->forward(event, state.lastNumber + 1))
        return false;
    xcb_key_press_event_t copy = event;
    copy.response_type &= 0x7F;
    state.offered.push_back({copy, ++state.lastNumber, NowMs() + kPatience});
    return true;
}

bool HandleTextInput()
{
    TextInput& state = State();
    if (state.service == nullptr)
        return false;
    state.heard = false;
    state.service->handle();
    const bool late = !state.offered.empty() && state.offered.front().due <= NowMs();
    if (!state.lost && !late)
        return state.heard;
    GiveUp();
    return true;
}

int TextInputFd()
{
    const TextInput& state = State();
    return state.service != nullptr ? state.service->fd() : -1;
}

std::optional<std::uint64_t> TextInputDeadline()
{
    const auto& offered = State().offered;
    return offered.empty() ? std::nullopt : std::optional(offered.front().due);
}

} // namespace platform::x11

namespace platform::screen
{

void SetTextInput(NativeWindow window, const RECT& caret)
{
    x11::TextInput& state = x11::State();
    if (window == state.window && EqualRect(&caret, &state.caret))
        return;
    if (window != state.window)
        state.composition = {};
    state.window = window;
    state.caret = caret;
    if (window != 0)
        x11::Start();
    if (state.service == nullptr)
        return;
    if (window != 0)
        state.service->focus(window, caret.left, caret.bottom);
    else
        state.service->unfocus();
}

const Composition& CurrentComposition()
{
    return x11::State().composition;
}

} // namespace platform::screen
