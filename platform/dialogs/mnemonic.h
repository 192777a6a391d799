// The letter by which an item or a control is chosen: marked by '&' in its text.
#pragma once

#include "windows.h"

#include <string_view>

namespace platform
{

WCHAR UpperCaseOf(WCHAR letter);
/// The letter behind the last single ampersand, which is the one that is underlined ("&&" is the character itself); 0
/// for none.
WCHAR MarkedLetter(std::u16string_view text);

} // namespace platform
