// Which names the launcher lets a person give.
//
// Rules only; rename_dialog.cpp asks.
#pragma once

#include "support/wstring.h"

namespace CustomMenu
{

/// 1 to 255 characters, none of \ / : > < ? * | and the double quote, no full stop at the end. The file system may
/// still refuse it.
bool IsValidFileName(WStringView name);

} // namespace CustomMenu
