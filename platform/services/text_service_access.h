// The text services of the desktop module, once they are needed.
#pragma once

#include "platform/services/text_line_service.h"
#include "platform/services/text_service.h"

namespace platform
{

/// Each loads the desktop module by the first call; null when it is missing.
const TextService* GetTextService();
const TextLineService* GetTextLineService();

} // namespace platform
