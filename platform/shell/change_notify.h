// Change notices: what the folder readers and the registrations tell each other.
#pragma once

#include "platform/files/folder_listing.h"

namespace platform
{

/// A folder has been read: notices posted before have served their purpose, and only changes after it matter.
void FolderWasRead(const FolderListing& listing);
/// A folder has another content than it was read with, or answers only now: notices are due. Called on any thread.
void FolderHasChanged(const std::string& path);

} // namespace platform
