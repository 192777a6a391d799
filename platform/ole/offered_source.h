// What this program drags, as other programs see it.
#pragma once

#include "platform/screen/selections.h"

#include "ole2.h"

#include <memory>

namespace platform
{

/// Holds the data object for as long as the screen may be asked for what was dragged. Offered are the formats whose
/// names are kinds of content: media types ("text/uri-list") and the display's own ("UTF8_STRING").
std::shared_ptr<const screen::SelectionSource> OfferToOthers(IDataObject& data);

} // namespace platform
