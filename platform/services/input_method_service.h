// The user's input method: text that is composed from many keys, such as Chinese. Answered over XIM by xcb-imdkit.
//
// The module keeps a connection of its own to the display, whose errors and events concern nobody else. Text is UTF-8,
// valid until the receiver returns.
#pragma once

#include <cstddef>
#include <cstdint>

struct xcb_key_press_event_t;

namespace platform
{

/// Whoever types; called from within the service's functions only.
struct InputMethodReceiver
{
    /// What is being composed, empty when nothing is; `caret` counts code points.
    void (*composing)(const char* utf8, std::size_t length, std::size_t caret);
    void (*committed)(const char* utf8, std::size_t length);
    /// A key event that the input method has left alone, or one of its own making.
    void (*key)(const xcb_key_press_event_t& event);
    /// The input method has dealt with the event of this number and all before it.
    void (*dealtWith)(std::uint32_t number);
    /// There is no input method any more.
    void (*lost)();
};

struct InputMethodService
{
    /// Begins to look for the input method that the environment names (XMODIFIERS). False when there is none.
    bool (*open)(const InputMethodReceiver* receiver);
    void (*close)();
    /// Becomes readable when `handle` is to be called; −1 when closed.
    int (*fd)();
    /// Handles what has arrived. Never waits.
    void (*handle)();
    /// Text goes into a window of the display at this point, where candidates are to be shown (window coordinates).
    void (*focus)(std::uint32_t window, int x, int y);
    /// No text is typed; what is being composed is dropped.
    void (*unfocus)();
    /// Hands over a key press or release, which is dealt with later. False when the input method is not ready: the key
    /// means what it always means.
    bool (*forward)(const xcb_key_press_event_t& event, std::uint32_t number);
};

} // namespace platform

extern "C" const platform::InputMethodService orb_input_method_service;
