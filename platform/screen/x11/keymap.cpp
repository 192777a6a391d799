// Asking the keyboard service.
#include "platform/screen/x11/keymap.h"

#include "platform/screen/x11/connection.h"
#include "platform/services/desktop_module.h"

namespace platform::x11
{
namespace
{

unsigned g_layoutSerial = 0;

} // namespace

KeyMeaning TranslateKey(std::uint8_t keycode, std::uint16_t state, bool pressed)
{
    static const auto* const service =
        static_cast<const KeyboardService*>(KeyboardModuleSymbol("orb_keyboard_service"));
    if (service == nullptr)
        return {};
    return service->translate({Xcb(), g_layoutSerial, keycode, state, pressed});
}

void ForgetKeymap()
{
    ++g_layoutSerial;
}

} // namespace platform::x11
