// The shell's verbs: what an item's context menu offers.
#pragma once

#include "windef.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

struct VerbItem
{
    std::string path; ///< POSIX
    std::u16string displayName;
};

/// What a verb acts on.
struct VerbTarget
{
    HWND owner;                         ///< of what the verb shows; null for none
    const std::vector<VerbItem>& items; ///< at least one
};

struct Verb
{
    std::string_view name;    ///< canonical, in lower case; independent of the language
    std::u16string_view text; ///< of the menu entry
    bool isDefault;           ///< run by a double click
    bool (*offered)(const VerbTarget& target, unsigned menuFlags);
    HRESULT (*run)(const VerbTarget& target);
};

/// Every verb, in menu order. A verb's place in the table is its command offset.
std::span<const Verb> ShellVerbs();

/// Opens each item as the desktop does. Tells the user what could not be opened; E_FAIL then.
HRESULT OpenItems(const VerbTarget& target);

} // namespace platform
