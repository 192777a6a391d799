// Reading the applications menu: from the cache, or by the desktop module for as long as can be waited.
#pragma once

#include "platform/files/folder_reading.h"

namespace platform
{

/// One of the menu's folders. The menu is read again when it may have changed, a second at most; one that takes longer
/// is listed as it was last seen, or, never seen, with error ETIMEDOUT. `changed` is called whenever this folder has
/// another content later on, which is looked for once FollowMenu was called; null for nobody to be told.
std::shared_ptr<FolderListing> ReadMenuFolder(const std::string& path, FolderCallback changed);
/// From now on looks for changes of the menu, and whether what came from the cache is still right. Returns at once;
/// loads the desktop module.
void FollowMenu();

} // namespace platform
