// Copying one file.
#pragma once

#include "platform/desktop/file_place.h"
#include "platform/desktop/file_work_talk.h"

namespace platform
{

enum class CopyKeeps
{
    Likeness, ///< mode, times, extended attributes
    Identity, ///< the owner too, where that is allowed: what is moved is to be the same
};

struct CopyOptions
{
    bool replace = false; ///< else a name that is taken is EEXIST
    CopyKeeps keeps = CopyKeeps::Likeness;
};

/// Copies a regular file, its holes staying holes, or a symbolic link as a link. The copy gets its name in one step
/// when all of it is there; a file that it replaces is whole until then. 0, an errno or a FileWorkError; ECANCELED when
/// cancelled. On success `source` is the source's status as it was copied, `made` the copy's.
int CopyFile(const FilePlace& from, const FilePlace& to, CopyOptions options, FileWorkTalk& talk, struct stat& source,
             struct stat& made);

/// What the file or folder has besides its content. Failures are passed over: many file systems keep less.
void CopyAttributes(int source, int target, CopyKeeps keeps);

/// Deletes what copies of processes that were killed have left in a folder.
void RemoveLeftovers(const OpenFolder& folder);

} // namespace platform
