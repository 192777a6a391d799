// The snapshot of a folder: the descriptions of its files, kept across runs in the cache folder.
//
// One file per folder, looked up by name. It holds for the locale, the desktop and the MIME data base it was
// written under, and each entry for the file state that its stamp was made from. A snapshot that is damaged or made for
// something else is as good as none.
//
// A snapshot also is the whole list of the folder's files in the state that its folder stamp was made from. The first
// reading of a folder in a run is content with that list while the folder's stamp stays (no file has come, gone or
// changed its name); what a file was changed to in place is looked for after the first frame.
#pragma once

#include "platform/files/listed_file.h"

#include <optional>
#include <string>

namespace platform
{

struct FolderListing;

/// Looks descriptions up in a snapshot's content.
class SnapshotReader
{
public:
    SnapshotReader() = default;
    /// `content` must outlive the reader. Finds nothing when it is no valid snapshot of the folder.
    SnapshotReader(std::string_view content, std::string_view folder);

    /// Completes `file` (name, kind and stamp are set) from the snapshot; false when it has nothing on that state.
    bool Describe(ListedFile& file) const;
    /// Completes `file` (its name is set) as it was when the snapshot was made, whatever has become of it and of its
    /// descriptions' language since; false when it was not there.
    bool DescribeAsLastSeen(ListedFile& file) const;

    /// True when the snapshot lists the folder in the state that the stamp was made from (0 is none).
    bool Covers(std::uint64_t folderStamp) const
    {
        return m_current && folderStamp != 0 && m_folderStamp == folderStamp;
    }
    /// Whether every file that it announces is there and has a name that files can have. The checksum vouches for what
    /// was written; whether its writer was sane, it cannot.
    bool ListsWhole() const;

    // Going through the files of a snapshot that lists whole.
    std::uint32_t Size() const { return m_entries; }
    /// Where the first file is.
    std::size_t Start() const;
    /// Reads the file at `offset` and moves the offset on to the next one; false when what is there makes no sense. The
    /// views point into the content.
    bool Read(std::size_t& offset, ListedFile& file) const;

private:
    struct Located;
    bool Locate(std::size_t offset, Located& located) const;
    bool LocateName(std::string_view name, Located& located) const;
    std::optional<std::string_view> TextAt(std::uint32_t offset) const;

    std::string_view m_content;
    std::string_view m_texts;
    std::uint32_t m_bucketMask = 0;
    std::uint32_t m_entries = 0;
    std::uint64_t m_folderStamp = 0;
    bool m_sound = false;   ///< undamaged, and of the folder
    bool m_current = false; ///< and made under the same locale, desktop and MIME data base
};

/// The cache file of a folder; empty when there is no cache.
std::string SnapshotPath(std::string_view folder);
/// Writes a listing as the folder's snapshot, in the order of the files' display names, unless it says that already.
void SaveSnapshot(const FolderListing& listing);

} // namespace platform
