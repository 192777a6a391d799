// What a person sees of one file of a folder.
#pragma once

#include "platform/shell/item_id.h"

#include <cstdint>
#include <string_view>

namespace platform
{

/// One file; the views live as long as its listing.
struct ListedFile
{
    std::string_view name;
    ItemKind kind = ItemKind::File;
    bool hidden = false;
    bool described = false;  ///< icon, type and display name are the desktop's own, worth remembering
    std::uint64_t stamp = 0; ///< changes with everything that the description was made from
    std::u16string_view display;
    std::string_view icon; ///< icon identity (system_images.h)
    std::u16string_view typeName;
};

} // namespace platform
