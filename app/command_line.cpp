// Parsing of the command line.
#include "app/command_line.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace
{

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

/// The fields of a line one after the other, read by the C library in its "C" locale: nobody sets another.
class FieldReader
{
public:
    explicit FieldReader(const char* line) : m_rest(line) {}

    double ReadDouble()
    {
        char* end = nullptr;
        const double value = std::strtod(m_rest, &end);
        m_rest = end;
        return value;
    }

    long ReadLong()
    {
        char* end = nullptr;
        const long value = std::strtol(m_rest, &end, 0);
        m_rest = end;
        return value;
    }

    std::uint32_t ReadHandle() { return static_cast<std::uint32_t>(std::strtoull(m_rest, nullptr, 0)); }

    bool SkipComma()
    {
        const bool found = *m_rest == ',';
        m_rest += found ? 1 : 0;
        return found;
    }

private:
    const char* m_rest;
};

int Alignment(long value)
{
    // A long is wider than an int on some systems.
    constexpr long kLowest = std::numeric_limits<int>::min();
    return value < kAlignmentCount ? static_cast<int>(std::max(value, kLowest)) : 0;
}

LONG TruncatedCoordinate(double value)
{
    return std::isnan(value) ? 0 : static_cast<LONG>(std::clamp(value, -kFarAway, kFarAway));
}

} // namespace

AnchorRequest ParseCommandLine(WStringView line)
{
    const std::string text = ToAscii(line);
    FieldReader fields(text.c_str());
    AnchorRequest request;
    request.fx = fields.ReadDouble();
    if (!fields.SkipComma())
        return request;
    request.fy = fields.ReadDouble();
    if (!fields.SkipComma())
        return request;
    request.align = Alignment(fields.ReadLong());
    if (!fields.SkipComma())
    {
        request.kind = AnchorRequest::Kind::Absolute;
        return request;
    }
    request.kind = AnchorRequest::Kind::Window;
    request.window = fields.ReadHandle();
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
