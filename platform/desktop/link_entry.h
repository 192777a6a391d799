// Making desktop entries that lead to addresses of the web.
#pragma once

namespace platform
{

/// As EntryService::makeLink.
int MakeLinkEntry(const char* folder, const char* url, const char* title);

} // namespace platform
