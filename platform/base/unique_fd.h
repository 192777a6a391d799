// Owner of a file descriptor, and writing through one.
#pragma once

#include <string_view>
#include <unistd.h>
#include <utility>

namespace platform
{

class UniqueFd
{
public:
    UniqueFd() = default;
    explicit UniqueFd(int descriptor) : m_descriptor(descriptor) {}
    ~UniqueFd() { Close(); }
    UniqueFd(UniqueFd&& other) noexcept : m_descriptor(other.Release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    explicit operator bool() const { return m_descriptor >= 0; }
    int Get() const { return m_descriptor; }
    int Release() { return std::exchange(m_descriptor, -1); }
    /// Closes now; false when the system reports that written data were lost.
    bool Close() { return m_descriptor < 0 || close(Release()) == 0; }

private:
    int m_descriptor = -1;
};

/// Writes all of it, however many calls that takes; false when the system does not take it.
bool WriteAll(int descriptor, std::string_view content);

} // namespace platform
