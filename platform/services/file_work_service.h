// Changing files for the user: new folders, copies, moves, links, the trash. Done on a thread of the module, by GIO and
// the system's own calls.
//
// Paths are POSIX, absolute; texts are UTF-8, valid until the receiver returns.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform
{

enum class FileWork
{
    NewFolder, ///< "New folder", or the first of "New folder (2)" and so on that is free
    Copy,
    Move,
    Link, ///< a symbolic link to each
    Trash,
};

struct FileWorkRequest
{
    FileWork work;
    const char* const* sources; ///< none for NewFolder
    std::size_t count;
    const char* folder; ///< where to; not looked at for Trash
};

enum class FileQuestion
{
    NameTaken,   ///< a file of the name is there already
    FolderTaken, ///< a folder is to go where one of the name is: replacing puts one's content into the other
    KindsDiffer, ///< a file is to go where a folder is, or a folder where a file is
    NoTrash,     ///< there is no trash for the file; it can only be deleted for good
    Failed,
};

/// Bits, so that the ones that make sense can be told together.
enum class FileAnswer : unsigned
{
    Cancel = 1, ///< makes sense always
    Skip = 2,
    TryAgain = 4,
    Replace = 8,
    KeepBoth = 16,
    Delete = 32,
};

struct FileQuestionFacts
{
    FileQuestion question;
    const char* path;   ///< the file in question; where a name is taken, the one that has it
    const char* reason; ///< of a failure, a sentence; else ""
    unsigned answers;   ///< the FileAnswer bits that make sense
    bool more;          ///< other files follow, which the same answer may be meant for
};

struct FileReply
{
    FileAnswer answer = FileAnswer::Cancel;
    bool forAll = false; ///< for all further questions of the kind
};

struct FileProgress
{
    const char* name; ///< of the file that is being worked on
    std::uint64_t files;
    std::uint64_t allFiles;
    std::uint64_t bytes;
    std::uint64_t allBytes; ///< 0 when content is not copied
};

enum class FileWorkEnd
{
    Done,      ///< all of it, but for what the user has skipped where a name was taken
    Cancelled, ///< by the user
    Failed,    ///< some of it, as the user has been told
};

/// Whoever wants the work done. The functions are called on the working thread.
struct FileWorkClient
{
    void* context;
    void (*progress)(void* context, const FileProgress& progress);
    bool (*isCancelled)(void* context); ///< asked often
    FileReply (*ask)(void* context, const FileQuestionFacts& facts);
    /// The last call. `name` is the new folder's for NewFolder, else "".
    void (*finished)(void* context, FileWorkEnd end, const char* name);
};

struct FileWorkService
{
    /// Begins the work and returns at once. False when other work is still being done, or no thread is to be had; then
    /// the client is not called.
    ///
    /// Every file is at any moment whole in its old or its new place, also when the process is killed. Work that is
    /// cancelled, or given up after a failure, takes back what it has copied of the source at hand; sources that were
    /// done before stay done.
    bool (*start)(const FileWorkRequest& request, FileWorkClient client);
};

} // namespace platform

extern "C" const platform::FileWorkService orb_files_service;
