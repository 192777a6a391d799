// Icons of shell items, each distinct one copied once per size into the launcher's image lists.
#pragma once

#include <shlobj.h>
#include <commctrl.h>

#include <cstdint>
#include <map>

/// Icon key → index in the image list of one size.
using IconCache = std::map<std::uint32_t, std::int32_t>;

/// Items with the same key share an image: icon with its overlay, type name and system image list go into it.
std::uint32_t IconKey(const SHFILEINFOW& info, DWORD_PTR systemImageList);

/// Index of the item's icon in the large or the small image list; 0 when the shell gives no information or no icon
/// (nothing is then cached, and a later request tries again).
std::int32_t GetIconIndex(LPCITEMIDLIST pidl, bool large);
