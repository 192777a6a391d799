// Formats that what another program drags does not have itself, but that can be made from it.
#pragma once

#include "ole2.h"

#include <span>
#include <string>

namespace platform
{

struct DerivedFormat
{
    const char16_t* name; ///< as registered
    /// By what the other program names; nothing is read.
    bool (*possible)(std::span<const std::string> targets);
    /// Memory of the caller's; null when the content is not what it was said to be.
    HGLOBAL (*make)(IDataObject& data);
};

/// The format is one of every foreign data object's from now on. Kept by reference; callable before main.
void OfferDerivedFormat(const DerivedFormat& format);

} // namespace platform
