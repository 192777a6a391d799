// What is dragged: the files and web addresses that a data object holds.
#pragma once

#include "ole2.h"

#include "platform/shell/file_formats.h"

namespace platform
{

constexpr std::string_view kItemArrayFormat = "Shell IDList Array";
/// A DWORD with the effects that the data's owner would like.
constexpr std::string_view kPreferredEffectFormat = "Preferred DropEffect";

/// A registered format's number.
CLIPFORMAT FormatNamed(std::string_view name);

struct DroppedContent
{
    std::vector<std::string> paths;    ///< POSIX, absolute; each once
    std::vector<WebAddress> addresses; ///< each once

    bool IsEmpty() const { return paths.empty() && addresses.empty(); }
};

/// Nothing for content that is malformed, or does not come.
DroppedContent ReadDropped(IDataObject& data);
/// DROPEFFECT_NONE when its owner does not say.
DWORD PreferredEffect(IDataObject& data);

} // namespace platform
