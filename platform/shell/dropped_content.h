// What is dragged: the files and web addresses that a data object holds.
#pragma once

#include "ole2.h"

#include "platform/shell/file_formats.h"

namespace platform
{

struct DroppedContent
{
    std::vector<std::string> paths;    ///< POSIX, absolute; each once
    std::vector<WebAddress> addresses; ///< each once

    bool IsEmpty() const { return paths.empty() && addresses.empty(); }
};

/// Whether there may be any, by the formats alone.
bool MayHoldFiles(IDataObject& data);
/// Nothing for content that is malformed, or does not come.
DroppedContent ReadDropped(IDataObject& data);

} // namespace platform
