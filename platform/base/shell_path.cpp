// Shell names and paths: the reversible mapping of every POSIX file name onto UTF-16.
//
//   '/'  between components               '\'
//   '\'  inside a name                    U+F05C
//   byte 0x80-0xFF of no valid sequence   U+F080-U+F0FF
//   U+F05C, U+F080-U+F0FF themselves      each byte of their UTF-8 form as if it were invalid
//
// The way back turns each of these code units into its low byte, so that file name → shell name → file name gives the
// same bytes for every name there is. (Not every string of code units comes back unchanged; names typed by a person
// hold none of these characters.)
#include "platform/base/text.h"

#include "platform/base/utf8_decoder.h"

#include <algorithm>

namespace platform
{
namespace
{

constexpr char32_t kEscapeBase = 0xF000;
constexpr char16_t kEscapedBackslash = kEscapeBase + '\\';

bool IsEscape(char32_t codePoint)
{
    return codePoint == kEscapedBackslash || (codePoint >= kEscapeBase + 0x80 && codePoint <= kEscapeBase + 0xFF);
}

void AppendEscaped(std::u16string& result, std::string_view bytes)
{
    for (const char byte : bytes)
        result += static_cast<char16_t>(kEscapeBase + static_cast<unsigned char>(byte));
}

/// Length of the characters at the start that stand for themselves: ASCII other than the two slashes.
std::size_t PlainLength(std::string_view text)
{
    const auto plain = [](char c) { return static_cast<signed char>(c) >= 0 && c != '/' && c != '\\'; };
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), plain) - text.begin());
}

std::u16string ToShell(std::string_view text, char16_t slash)
{
    std::u16string result;
    result.reserve(text.size());
    while (!text.empty())
    {
        // Nearly every name is plain, and a menu asks for thousands.
        if (const std::size_t plain = PlainLength(text); plain > 0)
        {
            result.resize(result.size() + plain);
            std::copy_n(text.begin(), plain, result.end() - static_cast<std::ptrdiff_t>(plain));
            text.remove_prefix(plain);
            continue;
        }
        const Utf8Step step = DecodeUtf8(text);
        if (!step.valid || step.codePoint == U'\\' || IsEscape(step.codePoint))
            AppendEscaped(result, text.substr(0, step.length));
        else
            AppendUtf16(result, step.codePoint == U'/' ? slash : step.codePoint);
        text.remove_prefix(step.length);
    }
    return result;
}

std::string FromShell(std::u16string_view text, char backslash)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty())
    {
        const Utf16Step step = DecodeUtf16(text);
        if (IsEscape(step.codePoint))
            result += static_cast<char>(step.codePoint & 0xFF);
        else if (step.codePoint == U'\\')
            result += backslash;
        else
            AppendUtf8(result, step.codePoint);
        text.remove_prefix(step.length);
    }
    return result;
}

} // namespace

std::u16string ShellNameFromFileName(std::string_view fileName)
{
    return ToShell(fileName, u'/');
}

std::string FileNameFromShellName(std::u16string_view shellName)
{
    return FromShell(shellName, '\\');
}

std::u16string ShellPathFromPosix(std::string_view path)
{
    return ToShell(path, u'\\');
}

std::string PosixFromShellPath(std::u16string_view path)
{
    return FromShell(path, '/');
}

} // namespace platform
