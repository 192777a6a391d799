// Reading what a file or a property holds, in the machine's own byte order, without ever leaving its bytes.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace platform
{

/// Takes values off the front of a byte string; stays failed after a value that is not there whole.
class ByteReader
{
public:
    explicit ByteReader(std::string_view bytes) : m_bytes(bytes) {}

    /// A number or a plain struct, at any alignment; zero after a failure.
    template <typename T>
    T Value()
    {
        T value{};
        const std::string_view bytes = Bytes(sizeof value);
        if (!bytes.empty())
            std::memcpy(&value, bytes.data(), sizeof value);
        return value;
    }
    /// The bytes in place; none after a failure.
    std::string_view Bytes(std::size_t size)
    {
        m_failed |= size > m_bytes.size();
        const std::string_view taken = m_bytes.substr(0, m_failed ? 0 : size);
        m_bytes.remove_prefix(taken.size());
        return taken;
    }
    /// A text behind its length in bytes (4 bytes), as AppendText writes it.
    std::string_view Text() { return Bytes(Value<std::uint32_t>()); }
    bool Failed() const { return m_failed; }
    /// Bytes not taken yet.
    std::size_t Left() const { return m_bytes.size(); }

private:
    std::string_view m_bytes;
    bool m_failed = false;
};

/// Appends a number or a plain struct, byte for byte.
template <typename T>
void AppendValue(std::string& out, const T& value)
{
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

inline void AppendText(std::string& out, std::string_view text)
{
    AppendValue(out, static_cast<std::uint32_t>(text.size()));
    out += text;
}

} // namespace platform
