// Copying and moving files and folders into a folder.
#pragma once

#include "platform/desktop/file_copy.h"

#include <string>
#include <string_view>
#include <vector>

namespace platform
{

class FileTransfer
{
public:
    FileTransfer(FileWorkTalk& talk, bool move) : m_talk(talk), m_move(move) {}

    void Run(const std::vector<std::string>& sources, const std::string& folder);

private:
    struct Item
    {
        std::string path;
        bool counted = false; ///< its files are in the expected total
    };
    void RunItem(Item& item);
    int CheckItem(const FilePlace& from, struct stat& status);
    /// What `Settle` and below return: 0, ECANCELED, or kErrorPartly.
    int Settle(const FilePlace& from, const OpenFolder& folder, std::string name);
    /// 0, an errno or a FileWorkError. EEXIST asks what is to be done about a name that is taken.
    int Attempt(const FilePlace& from, const FilePlace& to, bool replace);
    int Rename(const FilePlace& from, const FilePlace& to, const struct stat& status, bool replace);
    int CopyOne(const FilePlace& from, const FilePlace& to, bool replace);
    int Fill(const FilePlace& from, const FilePlace& to, bool replace);
    int FillFrom(const OpenFolder& source, const OpenFolder& target);
    /// Adds the files of a folder to what is expected; kErrorIntoItself when the target lies in it.
    int Count(const FilePlace& from);
    /// Removes from the old place what is whole in the new one.
    void CommitMove(const FilePlace& from);
    void Undo();

    FileWorkTalk& m_talk;
    bool m_move;
    bool m_sameFolder = false; ///< a copy that needs a name of its own
    OpenFolder m_folder;
    struct stat m_folderStatus
    {
    };
    Item* m_item = nullptr;
    FileSet m_copied; ///< of the item at hand, where they were
    FileSet m_made;   ///< and where they are now
    std::vector<std::string> m_madeNames;
    bool m_hasCopied = false;
};

/// The first name that is free in a folder. `word` as for NumberedCopyName; "" numbers alone.
std::string FreeName(const OpenFolder& folder, const std::string& name, bool isFolder, std::string_view word);

} // namespace platform
