// Reading whole files and pieces of files.
#include "platform/base/file_content.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace platform
{
namespace
{

constexpr off_t kLargestFile = off_t{64} << 20;

} // namespace

UniqueFd OpenFile(const std::string& path)
{
    struct stat status;
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    // It can have been replaced by a pipe since.
    UniqueFd file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    const bool regular = file && fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode);
    return regular ? std::move(file) : UniqueFd();
}

FileContent::FileContent(const UniqueFd& file)
{
    struct stat status;
    if (!file || fstat(file.Get(), &status) != 0 || status.st_size <= 0 || status.st_size > kLargestFile)
        return;
    const auto size = static_cast<std::size_t>(status.st_size);
    m_bytes = std::make_unique_for_overwrite<char[]>(size);
    m_size = ReadAt(file.Get(), m_bytes.get(), size, 0);
}

std::size_t ReadAt(int descriptor, void* buffer, std::size_t size, std::uint64_t offset)
{
    std::size_t done = 0;
    while (done < size)
    {
        const ssize_t count =
            pread(descriptor, static_cast<char*>(buffer) + done, size - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

} // namespace platform
