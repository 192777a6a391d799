// Icons of shell items, each distinct one copied once per size into the launcher's image lists.
#pragma once

#include <shlobj.h>
#include <commctrl.h>

#include <cstdint>
#include <map>

/// Icon key → index in the image list of one size. Grows only.
using IconCache = std::map<std::uint32_t, std::int32_t>;

/// Index of the item's icon in the large or the small image list; 0 when the shell gives no information or no icon
/// (nothing is then cached, and a later request tries again).
std::int32_t GetIconIndex(LPCITEMIDLIST pidl, bool large);
