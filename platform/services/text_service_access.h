// The text service of the desktop module, once it is needed.
#pragma once

#include "platform/services/text_service.h"

namespace platform
{

/// Loads the desktop module by the first call; null when it is missing.
const TextService* GetTextService();

} // namespace platform
