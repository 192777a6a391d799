// Rendered icons, kept across runs: one file per size in the cache folder, of which only the pictures that show are
// read.
//
// A pack holds for one icon theme as it was found: its directories' times are compared when the pack is opened. Each
// icon names the files that it was made from, or that were looked for, and is good for as long as they are unchanged.
#pragma once

#include "platform/base/unique_fd.h"
#include "platform/drawing/icon.h"
#include "platform/icons/icon_file.h"
#include "platform/icons/icon_theme.h"

#include <deque>
#include <optional>
#include <unordered_map>

namespace platform
{

class IconPack
{
public:
    /// The pack of icons of `size` pixels for the theme, empty when there is none that still holds.
    IconPack(std::string themeName, int size);

    /// The picture kept under `key`, nothing when there is none that still holds.
    std::optional<IconImage> Find(const std::string& key);
    /// Adds a picture, which must be of the pack's size.
    void Add(const std::string& key, std::vector<FileWitness> witnesses, const IconImage& image);
    /// Writes the pack with what was added, for a theme found with these dependencies.
    void Save(const std::vector<DirectoryStamp>& dependencies) const;

private:
    struct Entry
    {
        std::vector<FileWitness> witnesses;
        const std::uint32_t* added; ///< the picture in m_added, null for one in the file
        std::uint64_t offset;       ///< of the picture in the file
        std::uint64_t checksum;
    };

    void Load();
    bool ReadPixels(const Entry& entry, void* pixels) const;
    std::size_t PixelBytes() const { return static_cast<std::size_t>(m_size) * m_size * 4; }

    std::string m_themeName;
    int m_size;
    UniqueFd m_file;
    std::deque<std::vector<std::uint32_t>> m_added;
    std::unordered_map<std::string, Entry> m_entries;
};

} // namespace platform
