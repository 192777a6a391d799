// The keyboard service: the layout of the X server, and compositions of the user's locale.
#include "platform/keyboard/key_translator.h"

#include <cstdlib>
#include <utility>
#include <xkbcommon/xkbcommon-x11.h>

namespace platform
{
namespace
{

const char* Locale()
{
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (const char* value = std::getenv(variable); value != nullptr && *value != '\0')
            return value;
    return "C";
}

/// The layout of the core keyboard; the usual one where the server has no XKB.
XkbKeymap ReadLayout(xkb_context* context, xcb_connection_t* connection)
{
    XkbKeymap layout;
    if (xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr) != 0)
        layout.reset(xkb_x11_keymap_new_from_device(
            context, connection, xkb_x11_get_core_keyboard_device_id(connection), XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (layout == nullptr)
        layout.reset(xkb_keymap_new_from_names(context, nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS));
    return layout;
}

XkbContext MakeContext()
{
    // The server's layout needs no files: their absence must not cost the context.
    XkbContext context(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    xkb_context_include_path_append_default(context.get());
    xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
    return context;
}

KeyMeaning Translate(const KeyEvent& event)
{
    static auto& context = *new XkbContext(MakeContext());
    static auto& translator = *new KeyTranslator(context.get(), Locale());
    static unsigned known = event.layoutSerial - 1;
    if (std::exchange(known, event.layoutSerial) != event.layoutSerial)
        translator.SetLayout(ReadLayout(context.get(), event.connection));
    return translator.Translate(event.keycode, event.state, event.pressed);
}

} // namespace
} // namespace platform

extern "C" __attribute__((visibility("default")))
const platform::KeyboardService orb_keyboard_service = {platform::Translate};
