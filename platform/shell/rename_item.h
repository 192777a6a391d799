// Renaming items: desktop entries by the name that they show, everything else by its file name.
#pragma once

#include "platform/shell/item_id.h"

#include <string>

namespace platform
{

/// The name offered for editing: the one that is shown, as far as a file can have it.
std::u16string EditingName(const ItemId& item);

/// Gives an item of the folder another name; the user is told when it cannot be. With `wholeName`, `text` is the whole
/// file name, else a name as EditingName has them, of which blanks around it do not count. The new identifier goes to
/// `result` unless that is null; it is freed with ILFree.
HRESULT RenameItem(HWND owner, const std::string& folder, const ItemId& item, std::u16string_view text, bool wholeName,
                   LPITEMIDLIST* result);

} // namespace platform
