// From keys of a layout to virtual keys and text; knows no display.
#pragma once

#include "platform/services/keyboard_service.h"

#include <memory>
#include <string>
#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon.h>

namespace platform
{

template <auto unref>
struct XkbUnref
{
    template <typename T>
    void operator()(T* object) const
    {
        unref(object);
    }
};

using XkbContext = std::unique_ptr<xkb_context, XkbUnref<xkb_context_unref>>;
using XkbKeymap = std::unique_ptr<xkb_keymap, XkbUnref<xkb_keymap_unref>>;
using XkbState = std::unique_ptr<xkb_state, XkbUnref<xkb_state_unref>>;
using XkbComposeTable = std::unique_ptr<xkb_compose_table, XkbUnref<xkb_compose_table_unref>>;
using XkbComposeState = std::unique_ptr<xkb_compose_state, XkbUnref<xkb_compose_state_unref>>;

class KeyTranslator
{
public:
    /// Composes by the locale's sequences (the user's own are among them); a locale without any, such as C, has those
    /// that most have.
    KeyTranslator(xkb_context* context, const char* locale);

    /// Without a layout (null) no key means anything.
    void SetLayout(XkbKeymap layout);
    /// `state` as in a key event: modifiers in the lower eight bits, the layout's group in bits 13 and 14.
    KeyMeaning Translate(xkb_keycode_t keycode, std::uint16_t state, bool pressed);

private:
    struct Name
    {
        std::uint8_t code = 0;
        bool extended = false;
    };
    static Name NameOf(xkb_keysym_t keysym);
    Name NameOfKey(xkb_keycode_t keycode) const;
    xkb_keysym_t KeysymAt(xkb_keycode_t keycode, xkb_layout_index_t layout, xkb_level_index_t level) const;
    std::string Compose(xkb_keysym_t keysym);

    XkbKeymap m_layout;
    XkbState m_state;
    XkbComposeState m_compose;
};

} // namespace platform
