// The data object of items: what is dragged out of a folder.
#pragma once

#include "shlobj.h"

#include <string>
#include <vector>

namespace platform
{

struct DataItem
{
    LPCITEMIDLIST list; ///< relative to the folder; not kept
    std::string path;   ///< POSIX, absolute
};

/// For items of the folder at `folder`, with one reference. What is made from menu files is linked to where the keys do
/// not say otherwise, and never moved: it is not the folder's.
IDataObject* MakeItemData(const std::string& folder, const std::vector<DataItem>& items);

} // namespace platform
