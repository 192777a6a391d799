// One step of decoding or encoding UTF-8 and UTF-16.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform
{

struct Utf8Step
{
    char32_t codePoint = 0;
    std::size_t length = 1; ///< bytes consumed: for an invalid sequence the longest part that could have begun one
    bool valid = false;
};

struct Utf16Step
{
    char32_t codePoint = 0;
    std::size_t length = 1; ///< units consumed
};

/// Decodes the first character of non-empty text. Overlong forms, surrogates and values above U+10FFFF are invalid.
Utf8Step DecodeUtf8(std::string_view text);
/// Decodes the first character of non-empty text; a lone surrogate gives U+FFFD.
Utf16Step DecodeUtf16(std::u16string_view text);

void AppendUtf8(std::string& text, char32_t codePoint);
void AppendUtf16(std::u16string& text, char32_t codePoint);

} // namespace platform
