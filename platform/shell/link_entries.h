// Desktop entries that lead to addresses of the web.
#pragma once

#include "windef.h"

#include "platform/shell/file_formats.h"

namespace platform
{

/// Makes an entry for each in the folder, named after the address' title, or where it leads when it has none. Messages
/// are dispatched meanwhile. False when one could not be made, which the user has been told.
bool MakeLinkEntries(const std::vector<WebAddress>& addresses, const std::string& folder, HWND owner);

} // namespace platform
