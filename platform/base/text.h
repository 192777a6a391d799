// UTF-8 and UTF-16, file names and shell paths.
//
// A shell path is the POSIX path with '\' for '/'. Three things that this would confuse map reversibly into the private
// use area, so that every file name there is survives the round trip: a backslash in a name, a byte that is not part of
// valid UTF-8, and a private-use character that this mapping itself produces.
#pragma once

#include <string>
#include <string_view>

namespace platform
{

/// Invalid sequences become U+FFFD.
std::u16string Utf16FromUtf8(std::string_view text);
/// Lone surrogates become U+FFFD.
std::string Utf8FromUtf16(std::u16string_view text);

/// One component of a path, reversibly, in both directions.
std::u16string ShellNameFromFileName(std::string_view fileName);
std::string FileNameFromShellName(std::u16string_view shellName);

/// A whole path. Relative paths stay relative.
std::u16string ShellPathFromPosix(std::string_view path);
std::string PosixFromShellPath(std::u16string_view path);

/// The text without the blanks, tabs and carriage returns around it.
std::string_view Trimmed(std::string_view text);

/// As much of UTF-8 text as fits into `size` bytes, cut between characters.
std::string_view Cut(std::string_view text, std::size_t size);

/// CharUpperW's mapping of one code unit.
char16_t UpperCase(char16_t unit);
/// The upper-cased text, as CharUpperW does it: character by character, a surrogate pair being one character.
std::u16string UpperCase(std::u16string_view text);

} // namespace platform
