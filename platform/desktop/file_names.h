// Names for what would otherwise take a name that is in use.
#pragma once

#include <string>
#include <string_view>

namespace platform
{

struct NameParts
{
    std::string stem;
    std::string ending; ///< with its dot; "" for none
};

/// Where the ending of a file name begins: at the last dot, with a ".tar" before it. A dot in front makes a hidden
/// file, not an ending, and neither do digits ("Version 1.2") or what has blanks in it.
NameParts SplitFileName(std::string_view name);

/// The n-th name of a copy, counted from 1: "Notes (copy).txt", "Notes (copy 2).txt". A copy's own copy counts on. With
/// `word` "link" the same for links. Longer names than a file system takes lose the end of their stem.
std::string NumberedCopyName(const NameParts& parts, std::string_view word, int n);
/// The n-th name beside one that is taken, counted from 2: "Notes (2).txt".
std::string NumberedName(const NameParts& parts, int n);

} // namespace platform
