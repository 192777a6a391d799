// Reaching the text services.
#include "platform/services/text_service_access.h"

#include "platform/services/desktop_module.h"

const platform::TextService* platform::GetTextService()
{
    static const auto* const service = static_cast<const TextService*>(DesktopModuleSymbol(kTextServiceSymbol));
    return service;
}

const platform::TextLineService* platform::GetTextLineService()
{
    static const auto* const service =
        static_cast<const TextLineService*>(DesktopModuleSymbol("orb_text_line_service"));
    return service;
}
