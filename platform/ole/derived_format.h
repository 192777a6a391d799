// Formats that what another program drags does not have itself, but that can be made from it.
#pragma once

#include "ole2.h"

#include <optional>
#include <span>
#include <string>

namespace platform
{

struct DerivedFormat
{
    const char16_t* name; ///< as registered
    /// By what the other program names; nothing is read.
    bool (*possible)(std::span<const std::string> targets);
    /// Nothing when the content is not what it was said to be.
    std::optional<std::string> (*make)(IDataObject& data);
};

/// The format is one of every foreign data object's from now on. Kept by reference; callable before main.
void OfferDerivedFormat(const DerivedFormat& format);

} // namespace platform
