// Reading font files for FreeType.
#include "platform/drawing/font_stream.h"

#include "platform/base/file_content.h"

#include <algorithm>
#include <sys/stat.h>

namespace platform
{

FontStream::FontStream(const std::string& path) : m_file(OpenFile(path))
{
    struct stat status = {};
    if (m_file && fstat(m_file.Get(), &status) == 0)
        m_stream.size = static_cast<unsigned long>(status.st_size);
    m_stream.descriptor.pointer = this;
    m_stream.read = &FontStream::Read;
}

FT_Face FontStream::OpenFace(FT_Library library, int faceIndex)
{
    FT_Open_Args arguments{};
    arguments.flags = FT_OPEN_STREAM;
    arguments.stream = &m_stream;
    FT_Face face = nullptr;
    return m_stream.size != 0 && FT_Open_Face(library, &arguments, faceIndex, &face) == 0 ? face : nullptr;
}

/// As FreeType asks for it: the number of bytes read; for none, whether there is no such place.
unsigned long FontStream::Read(FT_Stream stream, unsigned long offset, unsigned char* buffer, unsigned long count)
{
    auto* self = static_cast<FontStream*>(stream->descriptor.pointer);
    if (count == 0)
        return offset > stream->size;
    return count > sizeof(Page::bytes) ? ReadAt(self->m_file.Get(), buffer, count, offset)
                                       : self->ReadSmall(offset, buffer, count);
}

std::size_t FontStream::ReadSmall(std::uint64_t offset, unsigned char* buffer, std::size_t count)
{
    std::size_t done = 0;
    while (done < count)
    {
        const std::uint64_t position = offset + done;
        const Page& page = PageAt(position / sizeof(Page::bytes));
        const std::size_t skipped = position % sizeof(Page::bytes);
        if (skipped >= page.filled)
            break;
        const std::size_t part = std::min(count - done, page.filled - skipped);
        std::copy_n(page.bytes.data() + skipped, part, buffer + done);
        done += part;
    }
    return done;
}

const FontStream::Page& FontStream::PageAt(std::uint64_t number)
{
    Page& page = m_pages[number % m_pages.size()];
    if (page.number != number)
    {
        page.filled = ReadAt(m_file.Get(), page.bytes.data(), page.bytes.size(), number * page.bytes.size());
        page.number = number;
    }
    return page;
}

} // namespace platform
