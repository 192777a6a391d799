// What the shell tells of a folder's children.
#pragma once

#include "support/com_ptr.h"
#include "support/item_list.h"

/// Binds to a folder, absolute; empty for null and for what cannot be bound.
ComPtr<IShellFolder> BindToFolder(LPCITEMIDLIST list);

/// Every file and folder in it, one after the other; empty when it cannot be enumerated.
ComPtr<IEnumIDList> EnumerateChildren(IShellFolder& folder);

/// False when the folder has no such name; a name that converts to nothing counts as empty (null).
bool QueryName(IShellFolder& folder, LPCITEMIDLIST child, SHGDNF flags, ShellString& name);

/// A folder that is also a stream (an archive) or a link is an ordinary item.
bool IsPlainFolder(IShellFolder& folder, LPCITEMIDLIST child);
