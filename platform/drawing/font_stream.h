// A font file as FreeType reads it: piece by piece. Fonts may be as large as 20 MB, of which a menu needs little.
#pragma once

#include "platform/base/unique_fd.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <array>
#include <cstdint>
#include <string>

namespace platform
{

/// Must outlive the faces that are opened on it.
class FontStream
{
public:
    explicit FontStream(const std::string& path);
    FontStream(const FontStream&) = delete;
    FontStream& operator=(const FontStream&) = delete;

    /// Null when the file is missing or no font.
    FT_Face OpenFace(FT_Library library, int faceIndex);

private:
    static unsigned long Read(FT_Stream stream, unsigned long offset, unsigned char* buffer, unsigned long count);
    std::size_t ReadSmall(std::uint64_t offset, unsigned char* buffer, std::size_t count);

    struct Page
    {
        std::uint64_t number = ~std::uint64_t{0}; ///< in the file; none yet
        std::size_t filled = 0;
        std::array<unsigned char, 4096> bytes;
    };
    /// The page of that number, in memory.
    const Page& PageAt(std::uint64_t number);

    UniqueFd m_file;
    std::array<Page, 16> m_pages; ///< most reads are of a few bytes, by turns in a few tables
    FT_StreamRec m_stream{};
};

} // namespace platform
