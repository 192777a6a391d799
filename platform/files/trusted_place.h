// Which files can be touched without fear of being left hanging.
//
// Trusted is what lies on the file system of "/", of "/usr" or of the user's data folder: should one of those stop
// answering, nothing works anyhow. A path is followed as the kernel does it, links and ".." included, but one step at a
// time and never beyond the first step onto any other file system.
#pragma once

#include <optional>
#include <string>
#include <sys/stat.h>
#include <unordered_map>

namespace platform
{

/// The status of a file whose folder is trusted, from what the kernel has in memory, a final link not followed;
/// nothing, with errno set, when there is none. A mount point answers even when what is mounted there does not.
std::optional<struct statx> KnownStatus(const std::string& path);

/// Where a path leads.
struct Whereabouts
{
    int error = 0;        ///< errno when there is no such file, or it is not to be seen
    bool foreign = false; ///< on another file system, or beyond it
    std::string path;     ///< without links; "" is the root; of a foreign file the place where foreign ground begins
    /// The file's, as KnownStatus has it; of a foreign file all zero, unless it is the mount point itself.
    struct statx status = {};
};

/// Follows paths, with a memory for the trusted folders on the way. For one thread.
class TrustedWalk
{
public:
    /// Where an absolute path leads.
    Whereabouts Follow(std::string path);

private:
    Whereabouts Folder(const std::string& path);

    std::unordered_map<std::string, Whereabouts> m_folders;
};

/// True when the kernel can follow the path from memory, without asking any file system, and without leaving the one
/// of "/": the short answer for most files. False means nothing.
bool IsAtHand(const std::string& path);

/// Whether a look at the path ends on trusted ground, be it with a failure.
bool InTrustedPlace(const std::string& path);

} // namespace platform
