// Decoding and encoding of single characters, by table 3-7 of the Unicode Standard ("well-formed UTF-8").
#include "platform/base/utf8_decoder.h"

namespace platform
{
namespace
{

unsigned char ByteAt(std::string_view text, std::size_t index)
{
    return static_cast<unsigned char>(text[index]);
}

/// What a lead byte promises: the number of bytes and the range of the second one.
struct Lead
{
    std::size_t length;
    unsigned char low;
    unsigned char high;
};

Lead LeadOf(unsigned char byte)
{
    if (byte >= 0xC2 && byte <= 0xDF)
        return {2, 0x80, 0xBF};
    if (byte >= 0xE0 && byte <= 0xEF)
    {
        // The narrower ranges exclude overlong forms and surrogates.
        return {3, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
    }
    if (byte >= 0xF0 && byte <= 0xF4)
    {
        return {4, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
    }
    return {0, 0, 0};
}

} // namespace

Utf8Step DecodeUtf8(std::string_view text)
{
    const unsigned char first = ByteAt(text, 0);
    if (first < 0x80)
        return {first, 1, true};
    const Lead lead = LeadOf(first);
    if (lead.length == 0)
        return {};
    char32_t codePoint = first & (0x7F >> lead.length);
    for (std::size_t i = 1; i < lead.length; ++i)
    {
        const bool second = i == 1;
        if (i >= text.size() || ByteAt(text, i) < (second ? lead.low : 0x80) ||
            ByteAt(text, i) > (second ? lead.high : 0xBF))
            return {0, i, false};
        codePoint = codePoint << 6 | (ByteAt(text, i) & 0x3F);
    }
    return {codePoint, lead.length, true};
}

Utf16Step DecodeUtf16(std::u16string_view text)
{
    const char32_t first = text[0];
    if (first < 0xD800 || first > 0xDFFF)
        return {first, 1};
    if (first > 0xDBFF || text.size() < 2 || text[1] < 0xDC00 || text[1] > 0xDFFF)
        return {U'\uFFFD', 1};
    return {0x10000 + ((first - 0xD800) << 10) + (static_cast<char32_t>(text[1]) - 0xDC00), 2};
}

void AppendUtf8(std::string& text, char32_t codePoint)
{
    const auto tail = [&](int shift) { text += static_cast<char>(0x80 | (codePoint >> shift & 0x3F)); };
    if (codePoint < 0x80)
    {
        text += static_cast<char>(codePoint);
    }
    else if (codePoint < 0x800)
    {
        text += static_cast<char>(0xC0 | codePoint >> 6);
        tail(0);
    }
    else if (codePoint < 0x10000)
    {
        text += static_cast<char>(0xE0 | codePoint >> 12);
        tail(6);
        tail(0);
    }
    else
    {
        text += static_cast<char>(0xF0 | codePoint >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

void AppendUtf16(std::u16string& text, char32_t codePoint)
{
    if (codePoint < 0x10000)
    {
        text += static_cast<char16_t>(codePoint);
        return;
    }
    text += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
}

} // namespace platform
