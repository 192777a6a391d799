// Reading a folder: its files, each with what a person sees of it.
//
// A listing is read anew each time, one directory scan and one status call per file that is no folder. What the status
// cannot tell (the name, icon and type of a desktop entry, the type of a document) comes from the folder's snapshot of
// an earlier run, and only for files that are new or changed from the desktop module.
#pragma once

#include "platform/base/file_content.h"
#include "platform/files/folder_snapshot.h"
#include "platform/files/listed_file.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform
{

/// Everything one reading of a folder yields. Immutable once made.
struct FolderListing
{
    int error = 0; ///< errno of the failure to read the folder, 0 on success
    std::string path;
    std::vector<ListedFile> files; ///< none when fromSnapshot: they are where the snapshot has them
    /// The folder's modification time before it was read, in nanoseconds; −1 when so recent that a change right after
    /// the reading might not show in it.
    std::int64_t modified = -1;
    std::uint64_t folderStamp = 0; ///< of the folder's own state before it was read; 0 when `modified` is −1
    bool worthSaving = false;      ///< the snapshot does not say the same
    bool lastSeen = false;         ///< from the snapshot since the folder cannot be read now
    bool fromSnapshot = false;     ///< taken from the snapshot as it was; StillHolds looks whether it still holds

    // What the views point into.
    std::vector<std::unique_ptr<char[]>> directoryBlocks;
    FileContent snapshot;
    SnapshotReader snapshotReader;
    std::deque<std::string> narrow;
    std::deque<std::u16string> wide;

    std::size_t Size() const { return fromSnapshot ? snapshotReader.Size() : files.size(); }
};

/// Goes through the files of a listing, which must outlive it.
class ListingCursor
{
public:
    explicit ListingCursor(const FolderListing& listing);
    /// The file at the cursor, valid until the next Advance; null at the end.
    const ListedFile* Current() const;
    void Advance();

private:
    void ReadFromSnapshot();

    const FolderListing* m_listing;
    std::size_t m_index = 0;
    std::size_t m_offset = 0; ///< of the file after the current one, in the snapshot
    std::optional<ListedFile> m_read;
};

/// Whether a failure with that errno means that there is no such folder, not only that it cannot be read now.
bool IsGone(int error);
/// The folder as its snapshot has it, of whatever age; null when there is none.
std::shared_ptr<FolderListing> FolderAsLastSeen(const std::string& path);
/// The file of the folder in the same way; one of which only the files inside were seen is a folder.
std::shared_ptr<FolderListing> FileAsLastSeen(const std::string& folder, const std::string& name);

/// Reads the folder at `path` ("" is the root); the first time in a run, its snapshot will do. From any thread.
std::shared_ptr<FolderListing> ReadFolder(const std::string& path);
/// Like ReadFolder for one file of a folder; `files` is empty and `error` set when there is none of that name.
std::shared_ptr<FolderListing> ReadFile(const std::string& folder, const std::string& name);
/// Whether both list the same, in whatever order.
bool SameFiles(const FolderListing& a, const FolderListing& b);

} // namespace platform
