// Filling a listing: which files a folder has, and what a person sees of each.
#pragma once

#include "platform/files/folder_listing.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace platform
{

struct FileFacts;

/// Reads one folder's files into a listing, whose path and snapshot are set. Used once.
class FileLister
{
public:
    /// `directory` is the folder's descriptor; O_PATH will do for Add.
    FileLister(FolderListing& listing, int directory) : m_listing(listing), m_directory(directory) {}

    /// Adds every file of the folder; an errno value when it breaks off, else 0. The blocks read stay with the listing,
    /// since the names live there.
    int AddAll();
    /// Adds a file; `type` is the directory entry's, such as DT_UNKNOWN. The name must live as long as the listing.
    void Add(std::string_view name, unsigned char type);
    /// Completes every file added and drops those that are gone already. What cannot be looked at now is as the
    /// snapshot has it, or plain.
    void Complete();

private:
    /// A file to be examined and described.
    struct PendingFile
    {
        std::size_t index;      ///< in the listing
        std::uint32_t mode = 0; ///< of what the name leads to, once examined
        bool unseen = false;    ///< it cannot be looked at, or is a link into a mount that does not answer
    };

    void ExamineAll();
    void ExamineRange(std::size_t first, std::size_t last, std::vector<std::size_t>& links);
    void ExamineWithPatience(const std::vector<std::size_t>& links);
    void DescribeAll();
    bool DescribeWithoutHelp(const PendingFile& pending);
    void DescribePending();
    void DescribeUnseen(ListedFile& file);
    void DescribePlainly(ListedFile& file);
    void TakeFacts(ListedFile& file, const FileFacts& facts);
    std::string PathOf(const ListedFile& file) const { return m_listing.path + "/" + std::string(file.name); }
    std::u16string_view Keep(std::u16string text) { return m_listing.wide.emplace_back(std::move(text)); }

    FolderListing& m_listing;
    int m_directory;
    std::vector<PendingFile> m_pending;
};

} // namespace platform
