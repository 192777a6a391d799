// Reading files. Never by mapping them: a file that another program shortens would end this one with SIGBUS.
#pragma once

#include "platform/base/unique_fd.h"

#include <memory>
#include <string>
#include <string_view>

namespace platform
{

/// Opens a regular file for reading; invalid for anything else. Pipes and devices, which may block or do things when
/// opened, are left alone. Links are followed; a mount that does not answer blocks.
UniqueFd OpenFile(const std::string& path);

/// The content of a whole file as it was when it was read. Move-only; empty when the file is missing, no regular one or
/// larger than 64 MiB.
class FileContent
{
public:
    FileContent() = default;
    explicit FileContent(const std::string& path) : FileContent(OpenFile(path)) {}
    explicit FileContent(const UniqueFd& file);
    std::string_view Content() const { return {m_bytes.get(), m_size}; }

private:
    std::unique_ptr<char[]> m_bytes; ///< aligned for any type
    std::size_t m_size = 0;
};

/// Reads at most `size` bytes from `offset` on; the number read, less than `size` only at the file's end or on failure.
std::size_t ReadAt(int descriptor, void* buffer, std::size_t size, std::uint64_t offset);

} // namespace platform
