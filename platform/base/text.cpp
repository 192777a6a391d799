// Conversion between UTF-8 and UTF-16.
#include "platform/base/text.h"

#include "platform/base/utf8_decoder.h"

namespace platform
{

std::u16string Utf16FromUtf8(std::string_view text)
{
    std::u16string result;
    result.reserve(text.size());
    while (!text.empty())
    {
        const Utf8Step step = DecodeUtf8(text);
        AppendUtf16(result, step.valid ? step.codePoint : U'\uFFFD');
        text.remove_prefix(step.length);
    }
    return result;
}

std::string Utf8FromUtf16(std::u16string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty())
    {
        const Utf16Step step = DecodeUtf16(text);
        AppendUtf8(result, step.codePoint);
        text.remove_prefix(step.length);
    }
    return result;
}

std::string_view Trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t\r");
    return first == text.npos ? std::string_view{} : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string_view Cut(std::string_view text, std::size_t size)
{
    const auto continues = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80; };
    while (size > 0 && size < text.size() && continues(size))
        --size;
    return text.substr(0, size);
}

} // namespace platform
