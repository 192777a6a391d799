// Reading regular files only.
#include "platform/files/regular_file.h"

#include "platform/base/unique_fd.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace platform
{

std::optional<std::string> ReadRegularFile(const std::string& path, std::size_t limit)
{
    struct stat status;
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    // It can have been replaced by a pipe since.
    const UniqueFd file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        static_cast<std::size_t>(status.st_size) > limit)
        return std::nullopt;
    std::string content(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t size = 0;
    while (size < content.size())
    {
        const ssize_t count = read(file.Get(), content.data() + size, content.size() - size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break; // it has shrunk
        size += static_cast<std::size_t>(count);
    }
    content.resize(size);
    return content;
}

} // namespace platform
