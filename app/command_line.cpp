// Parsing of the command line.
#include "app/command_line.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace
{

/// A coordinate beyond this is outside every screen, and leaves room for adding a window's size to it.
constexpr double kFarAway = 1 << 28;
constexpr int kAlignmentCount = 4;

/// The line as ASCII; every other code unit becomes a character that is part of no number.
std::string ToAscii(WStringView line)
{
    std::string text(line.size(), '\0');
    std::transform(line.begin(), line.end(), text.begin(),
                   [](WCHAR unit) { return unit < 0x80 ? static_cast<char>(unit) : '?'; });
    return text;
}

bool IsSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Reads numbers from the start of a text, moving over what it has read.
class NumberReader
{
public:
    explicit NumberReader(std::string_view text) : m_rest(text) {}

    double ReadDouble()
    {
        const std::string_view start = m_rest;
        const bool negative = SkipSpaceAndSign();
        double value = 0;
        if (!ReadHexDouble(value) && !ReadWith(value, std::chars_format::general))
        {
            m_rest = start;
            return 0;
        }
        return negative ? -value : value;
    }

    /// Base 0: "0x" is hexadecimal, a leading zero octal. Out of range is the largest value.
    std::uint64_t ReadInteger(bool& negative)
    {
        const std::string_view start = m_rest;
        negative = SkipSpaceAndSign();
        const int base = SkipBasePrefix();
        std::uint64_t value = 0;
        const auto [end, error] = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), value, base);
        if (end == m_rest.data())
        {
            m_rest = start;
            return 0;
        }
        MoveTo(end);
        return error == std::errc::result_out_of_range ? std::numeric_limits<std::uint64_t>::max() : value;
    }

    bool SkipComma()
    {
        if (m_rest.empty() || m_rest.front() != ',')
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

private:
    void MoveTo(const char* end) { m_rest.remove_prefix(static_cast<std::size_t>(end - m_rest.data())); }

    bool SkipSpaceAndSign()
    {
        while (!m_rest.empty() && IsSpace(m_rest.front()))
            m_rest.remove_prefix(1);
        if (m_rest.empty() || (m_rest.front() != '-' && m_rest.front() != '+'))
            return false;
        const bool negative = m_rest.front() == '-';
        m_rest.remove_prefix(1);
        // from_chars would take a second minus sign.
        if (!m_rest.empty() && m_rest.front() == '-')
            m_rest = {};
        return negative;
    }

    bool HasHexPrefix() const
    {
        const bool prefix = m_rest.size() > 2 && m_rest[0] == '0' && Lower(m_rest[1]) == 'x';
        return prefix && std::string_view("0123456789abcdef.").find(Lower(m_rest[2])) != std::string_view::npos;
    }

    int SkipBasePrefix()
    {
        if (HasHexPrefix() && m_rest[2] != '.')
        {
            m_rest.remove_prefix(2);
            return 16;
        }
        return !m_rest.empty() && m_rest.front() == '0' ? 8 : 10;
    }

    bool ReadHexDouble(double& value)
    {
        if (!HasHexPrefix())
            return false;
        const std::string_view start = m_rest;
        m_rest.remove_prefix(2);
        if (ReadWith(value, std::chars_format::hex))
            return true;
        m_rest = start;
        return false;
    }

    bool ReadWith(double& value, std::chars_format format)
    {
        const auto [end, error] = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), value, format);
        if (error == std::errc::invalid_argument)
            return false;
        // Too large and too small are reported alike; no coordinate can tell a tiny number from 0.
        if (error == std::errc::result_out_of_range)
            value = std::string_view(m_rest.data(), end).find("e-") == std::string_view::npos ? HUGE_VAL : 0;
        MoveTo(end);
        return true;
    }

    std::string_view m_rest;
};

int ReadAlignment(NumberReader& reader)
{
    bool negative = false;
    const std::uint64_t magnitude = reader.ReadInteger(negative);
    if (!negative)
        return magnitude < kAlignmentCount ? static_cast<int>(magnitude) : 0;
    constexpr std::uint64_t kLimit = std::numeric_limits<int>::max();
    return -static_cast<int>(std::min(magnitude, kLimit));
}

std::uint32_t ReadHandle(NumberReader& reader)
{
    bool negative = false;
    const std::uint64_t value = reader.ReadInteger(negative);
    return static_cast<std::uint32_t>(negative ? std::uint64_t{0} - value : value);
}

LONG TruncatedCoordinate(double value)
{
    return std::isnan(value) ? 0 : static_cast<LONG>(std::clamp(value, -kFarAway, kFarAway));
}

} // namespace

AnchorRequest ParseCommandLine(WStringView line)
{
    const std::string text = ToAscii(line);
    NumberReader reader(text);
    AnchorRequest request;
    request.fx = reader.ReadDouble();
    if (!reader.SkipComma())
        return request;
    request.fy = reader.ReadDouble();
    if (!reader.SkipComma())
        return request;
    request.align = ReadAlignment(reader);
    if (!reader.SkipComma())
    {
        request.kind = AnchorRequest::Kind::Absolute;
        return request;
    }
    request.kind = AnchorRequest::Kind::Window;
    request.window = ReadHandle(reader);
    return request;
}

POINT AbsoluteAnchor(const AnchorRequest& request)
{
    return {TruncatedCoordinate(request.fx), TruncatedCoordinate(request.fy)};
}

POINT WindowAnchor(const AnchorRequest& request, const RECT& window)
{
    const double width = static_cast<double>(window.right) - window.left;
    const double height = static_cast<double>(window.bottom) - window.top;
    return {TruncatedCoordinate(width * request.fx + window.left),
            TruncatedCoordinate(height * request.fy + window.top)};
}
