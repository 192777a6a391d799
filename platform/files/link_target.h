// What symbolic links lead to, found out without hanging on a link into a mount that stopped answering.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unordered_map>
#include <vector>

namespace platform
{

/// The links of one folder whose targets can be looked at straight away. Used by one thread.
class SafeLinks
{
public:
    explicit SafeLinks(std::string folder) : m_folder(std::move(folder)) {}

    /// The target's status, with st_mode 0 when there is none. Nothing when only asking with patience will do: the
    /// target lies, or may lie, elsewhere, or is a link again.
    std::optional<struct stat> TargetOf(int directory, const char* name);

private:
    bool IsTrusted(const std::string& folder);

    std::string m_folder;
    std::unordered_map<std::string, bool> m_trusted; ///< folders asked about
};

/// The statuses of what the paths lead to, as TargetOf gives them; nothing for those that did not answer in time.
std::vector<std::optional<struct stat>> AskWithPatience(std::vector<std::string> paths);

} // namespace platform
