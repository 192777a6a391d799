// Files that only save time: what they hold can be lost at any moment.
#pragma once

#include <string>
#include <string_view>

namespace platform
{

/// $XDG_CACHE_HOME/orb-launcher, created when missing; empty when it cannot be.
const std::string& CacheFolder();

/// Replaces the file in one step (temporary file and rename, no fsync). False on failure, which is never an error.
bool ReplaceCacheFile(const std::string& path, std::string_view content);

/// A read-only view of a whole file, mapped into memory. Move-only; empty when the file is missing or empty.
class MappedFile
{
public:
    MappedFile() = default;
    explicit MappedFile(const std::string& path);
    ~MappedFile();
    MappedFile(MappedFile&& other) noexcept;
    MappedFile& operator=(MappedFile&& other) noexcept;
    std::string_view Content() const { return {m_data, m_size}; }

private:
    const char* m_data = nullptr;
    std::size_t m_size = 0;
};

} // namespace platform
