// Writing through a file descriptor.
#include "platform/base/unique_fd.h"

#include <cerrno>

namespace platform
{

bool WriteAll(int descriptor, std::string_view content)
{
    while (!content.empty())
    {
        const ssize_t written = write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace platform
