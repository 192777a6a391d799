// Reading folders of unknown health: a second for each, and a second look at what came from a snapshot.
#pragma once

#include "platform/files/folder_listing.h"

namespace platform
{

/// Called with the folder's path, on any thread.
using FolderCallback = void (*)(const std::string& path);

/// ReadFolder, but a folder that is there and cannot be read now is listed as it was last seen, if it ever was: one
/// that may not be read, is damaged, does not answer within a second (else error ETIMEDOUT) or still owes an earlier
/// answer. Whoever keeps an order of its files would lose it otherwise. `answersLate` is called when it answers after
/// all.
std::shared_ptr<FolderListing> ReadFolderWithin(const std::string& path, FolderCallback answersLate);
/// ReadFile in the same way.
std::shared_ptr<FolderListing> ReadFileWithin(const std::string& folder, const std::string& name);
/// Reads again a folder whose listing came from its snapshot. False when it has another content by now; its snapshot is
/// renewed then.
bool StillHolds(const FolderListing& shown, FolderCallback answersLate);

} // namespace platform
