// Reading folders of unknown health: a second for each, and a second look at what came from a snapshot.
#pragma once

#include "platform/files/folder_listing.h"

namespace platform
{

/// Called with the folder's path, on any thread.
using FolderCallback = void (*)(const std::string& path);

/// ReadFolder, but with error ETIMEDOUT when the folder does not answer within a second or still owes an earlier
/// answer; `answersLate` is called when it answers after all.
std::shared_ptr<FolderListing> ReadFolderWithin(const std::string& path, FolderCallback answersLate);
/// Reads again a folder whose listing came from its snapshot. False when it has another content by now; its snapshot is
/// renewed then.
bool StillHolds(const FolderListing& shown, FolderCallback answersLate);

} // namespace platform
