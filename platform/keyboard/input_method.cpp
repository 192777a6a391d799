// The input method service: a client of the X input method protocol, by xcb-imdkit.
#include "platform/services/input_method_service.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
#include <xcb-imdkit/encoding.h>
#include <xcb-imdkit/imclient.h>

namespace platform
{
namespace
{

struct Spot
{
    xcb_window_t window = 0;
    xcb_point_t point{};
};

struct WaitingKey
{
    xcb_key_press_event_t event;
    std::uint32_t number;
};

struct InputMethod
{
    const InputMethodReceiver* receiver = nullptr;
    xcb_connection_t* connection = nullptr;
    xcb_xim_t* im = nullptr;
    std::uint32_t style = 0;
    bool opened = false;
    xcb_xic_t context = 0;
    xcb_window_t contextWindow = 0; ///< that the context is for; 0 when there is none, or it is still being made
    bool making = false;
    Spot spot; ///< where text is typed; no window when it is not
    bool spotMoved = false;
    std::vector<std::string> preedit; ///< code points
    std::deque<WaitingKey> waiting;   ///< keys to be handed over
    bool asked = false;               ///< an answer is still to come
};

InputMethod& State()
{
    static auto& state = *new InputMethod;
    return state;
}

bool IsReady()
{
    const InputMethod& state = State();
    return state.contextWindow != 0 && state.contextWindow == state.spot.window;
}

std::string Decode(const char* bytes, std::size_t length)
{
    if (xcb_xim_get_encoding(State().im) == XCB_XIM_UTF8_STRING)
        return {bytes, length};
    std::size_t decodedLength = 0;
    char* decoded = xcb_compound_text_to_utf8(bytes, length, &decodedLength);
    const std::string text(decoded != nullptr ? decoded : "", decoded != nullptr ? decodedLength : 0);
    std::free(decoded);
    return text;
}

std::vector<std::string> CodePoints(const std::string& utf8)
{
    std::vector<std::string> points;
    for (const char byte : utf8)
    {
        const bool continues = (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
        if (!continues || points.empty())
            points.emplace_back();
        points.back() += byte;
    }
    return points;
}

void TellPreedit(std::size_t caret)
{
    std::string text;
    for (const std::string& point : State().preedit)
        text += point;
    State().receiver->composing(text.data(), text.size(), std::min(caret, State().preedit.size()));
}

// --- the context of one window

struct NestedList
{
    explicit NestedList(xcb_point_t point)
        : list(xcb_xim_create_nested_list(State().im, XCB_XIM_XNSpotLocation, &point, nullptr))
    {
    }
    NestedList(const NestedList&) = delete;
    NestedList& operator=(const NestedList&) = delete;
    ~NestedList() { std::free(list.data); }
    xcb_xim_nested_list list;
};

void SetFocus()
{
    xcb_xim_set_ic_focus(State().im, State().context);
}

void OnContext(xcb_xim_t*, xcb_xic_t context, void*);

void MakeContext()
{
    InputMethod& state = State();
    if (!state.opened || state.making || state.spot.window == 0)
        return;
    if (state.contextWindow != 0)
        xcb_xim_destroy_ic(state.im, state.context, nullptr, nullptr);
    state.contextWindow = 0;
    state.asked = false;
    for (const WaitingKey& key : std::exchange(state.waiting, {}))
        state.receiver->key(key.event);
    const NestedList preedit(state.spot.point);
    state.spotMoved = false;
    state.making = xcb_xim_create_ic(state.im, OnContext, reinterpret_cast<void*>(std::uintptr_t{state.spot.window}),
                                     XCB_XIM_XNInputStyle, &state.style, XCB_XIM_XNClientWindow, &state.spot.window,
                                     XCB_XIM_XNFocusWindow, &state.spot.window, XCB_XIM_XNPreeditAttributes,
                                     &preedit.list, nullptr);
}

void OnContext(xcb_xim_t*, xcb_xic_t context, void* window)
{
    InputMethod& state = State();
    state.making = false;
    if (context == 0)
        return;
    state.context = context;
    state.contextWindow = static_cast<xcb_window_t>(reinterpret_cast<std::uintptr_t>(window));
    if (IsReady())
        SetFocus();
    else
        MakeContext(); // the text goes into another window by now
}

void OnStyles(xcb_xim_t*, xcb_im_get_im_values_reply_fr_t* reply, void*)
{
    // Text shown at the caret by ourselves is best, then a window of the input method's at that place, then any.
    constexpr std::uint32_t kWanted[] = {XCB_IM_PreeditCallbacks | XCB_IM_StatusNothing,
                                         XCB_IM_PreeditPosition | XCB_IM_StatusNothing,
                                         XCB_IM_PreeditNothing | XCB_IM_StatusNothing};
    InputMethod& state = State();
    std::vector<std::uint32_t> offered;
    if (reply != nullptr && reply->im_attribute_returned.size > 0)
    {
        // XIMStyles: how many (two bytes, two more unused), then each.
        const xcb_im_ximattribute_fr_t& styles = reply->im_attribute_returned.items[0];
        for (std::size_t at = 4; at + 4 <= styles.value_length; at += 4)
            std::memcpy(&offered.emplace_back(), styles.value + at, 4);
    }
    const auto* best = std::ranges::find_if(kWanted, [&](std::uint32_t style)
                                            { return std::ranges::find(offered, style) != offered.end(); });
    state.style = best != std::end(kWanted) ? *best : kWanted[2];
    state.opened = true;
    MakeContext();
}

void OnOpened(xcb_xim_t* im, void*)
{
    xcb_xim_get_im_values(im, OnStyles, nullptr, XCB_XIM_XNQueryInputStyle, nullptr);
}

// --- what the input method says

void OnKey(xcb_xim_t*, xcb_xic_t, xcb_key_press_event_t* event, void*)
{
    State().receiver->key(*event);
}

void OnCommit(xcb_xim_t*, xcb_xic_t, std::uint32_t flag, char* text, std::uint32_t length, std::uint32_t*, std::size_t,
              void*)
{
    if ((flag & XCB_XIM_LOOKUP_CHARS) == 0)
        return;
    const std::string utf8 = Decode(text, length);
    State().receiver->committed(utf8.data(), utf8.size());
}

void OnPreedit(xcb_xim_t*, xcb_xic_t, xcb_im_preedit_draw_fr_t* frame, void*)
{
    constexpr std::uint32_t kNoString = 1;
    std::vector<std::string>& preedit = State().preedit;
    const std::size_t first = std::min<std::size_t>(frame->chg_first, preedit.size());
    const std::size_t length = std::min<std::size_t>(frame->chg_length, preedit.size() - first);
    const auto at = preedit.begin() + static_cast<std::ptrdiff_t>(first);
    const auto behind = preedit.erase(at, at + static_cast<std::ptrdiff_t>(length));
    if ((frame->status & kNoString) == 0)
    {
        const auto text =
            CodePoints(Decode(reinterpret_cast<const char*>(frame->preedit_string), frame->length_of_preedit_string));
        preedit.insert(behind, text.begin(), text.end());
    }
    TellPreedit(frame->caret);
}

void OnPreeditDone(xcb_xim_t*, xcb_xic_t, void*)
{
    State().preedit.clear();
    TellPreedit(0);
}

void Close()
{
    InputMethod& state = State();
    if (state.connection == nullptr)
        return;
    if (state.im != nullptr)
    {
        xcb_xim_close(state.im);
        xcb_xim_destroy(state.im);
    }
    xcb_disconnect(state.connection);
    state = {};
}

void OnLost(xcb_xim_t*, void*)
{
    State().opened = false;
    State().contextWindow = 0;
    State().receiver->lost();
}

constexpr xcb_xim_im_callback kCallbacks = {.set_event_mask = nullptr,
                                            .forward_event = OnKey,
                                            .commit_string = OnCommit,
                                            .geometry = nullptr,
                                            .preedit_start = nullptr,
                                            .preedit_draw = OnPreedit,
                                            .preedit_caret = nullptr,
                                            .preedit_done = OnPreeditDone,
                                            .status_start = nullptr,
                                            .status_draw_text = nullptr,
                                            .status_draw_bitmap = nullptr,
                                            .status_done = nullptr,
                                            .sync = nullptr,
                                            .disconnected = OnLost};

/// An input method of another process; "none" and "local" are what the keyboard itself composes.
bool EnvironmentNamesOne()
{
    const char* modifiers = std::getenv("XMODIFIERS");
    const std::string_view text(modifiers != nullptr ? modifiers : "");
    const std::size_t at = text.find("@im=");
    const std::string_view name = at != text.npos ? text.substr(at + 4, text.find('@', at + 4) - at - 4) : "";
    return !name.empty() && name != "none" && name != "local";
}

bool Open(const InputMethodReceiver* receiver)
{
    int screen = 0;
    InputMethod& state = State();
    if (!EnvironmentNamesOne())
        return false;
    state.receiver = receiver;
    state.connection = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(state.connection) == 0)
    {
        xcb_compound_text_init();
        state.im = xcb_xim_create(state.connection, screen, nullptr);
        xcb_xim_set_use_compound_text(state.im, true);
        xcb_xim_set_use_utf8_string(state.im, true);
        xcb_xim_set_im_callback(state.im, &kCallbacks, nullptr);
    }
    if (state.im != nullptr && xcb_xim_open(state.im, OnOpened, false, nullptr))
    {
        xcb_flush(state.connection);
        return true;
    }
    Close();
    return false;
}

int Fd()
{
    return State().connection != nullptr ? xcb_get_file_descriptor(State().connection) : -1;
}

void Handle()
{
    InputMethod& state = State();
    while (state.connection != nullptr)
    {
        xcb_generic_event_t* event = xcb_poll_for_event(state.connection);
        if (event == nullptr)
            break;
        xcb_xim_filter_event(state.im, event);
        std::free(event);
        xcb_flush(state.connection); // an answer lets the next request go
    }
    if (state.connection != nullptr && xcb_connection_has_error(state.connection) != 0)
        OnLost(state.im, nullptr);
}

// --- one thing after the other: of several requests at once, xcb-imdkit may leave some unsent

void GoOn();

void OnSpotKnown(xcb_xim_t*, xcb_xic_t, void*)
{
    State().asked = false;
    GoOn();
}

void OnDealtWith(xcb_xim_t*, xcb_xic_t, xcb_im_get_ic_values_reply_fr_t*, void* number)
{
    State().asked = false;
    State().receiver->dealtWith(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(number)));
    GoOn();
}

void TellSpot()
{
    InputMethod& state = State();
    const NestedList preedit(state.spot.point);
    state.spotMoved = false;
    state.asked = xcb_xim_set_ic_values(state.im, state.context, OnSpotKnown, nullptr, XCB_XIM_XNPreeditAttributes,
                                        &preedit.list, nullptr);
}

void HandOver(WaitingKey key)
{
    InputMethod& state = State();
    if (!xcb_xim_forward_event(state.im, state.context, &key.event))
        return;
    // The protocol says nothing of keys that are used up; a question asked behind one is answered after it.
    state.asked =
        xcb_xim_get_ic_values(state.im, state.context, OnDealtWith, reinterpret_cast<void*>(std::uintptr_t{key.number}),
                              XCB_XIM_XNFilterEvents, nullptr);
}

void GoOn()
{
    InputMethod& state = State();
    if (state.contextWindow == 0 || state.asked)
        return;
    if (state.spotMoved && IsReady())
    {
        TellSpot();
    }
    else if (!state.waiting.empty())
    {
        const WaitingKey key = state.waiting.front();
        state.waiting.pop_front();
        HandOver(key);
    }
    xcb_flush(state.connection);
}

void Focus(std::uint32_t window, int x, int y)
{
    InputMethod& state = State();
    const bool same = state.spot.window == window;
    state.spot = {window, {static_cast<std::int16_t>(x), static_cast<std::int16_t>(y)}};
    state.spotMoved = true;
    if (!IsReady())
        MakeContext();
    else if (!same)
        SetFocus();
    GoOn();
    xcb_flush(state.connection);
}

void Unfocus()
{
    InputMethod& state = State();
    if (IsReady())
    {
        xcb_xim_reset_ic(state.im, state.context, nullptr, nullptr);
        xcb_xim_unset_ic_focus(state.im, state.context);
        xcb_flush(state.connection);
    }
    state.spot = {};
    state.preedit.clear();
}

bool Forward(const xcb_key_press_event_t& event, std::uint32_t number)
{
    if (!IsReady())
        return false;
    State().waiting.push_back({event, number});
    GoOn();
    return true;
}

} // namespace
} // namespace platform

extern "C" __attribute__((visibility("default"))) const platform::InputMethodService orb_input_method_service;
const platform::InputMethodService orb_input_method_service = {platform::Open,   platform::Close, platform::Fd,
                                                               platform::Handle, platform::Focus, platform::Unfocus,
                                                               platform::Forward};
