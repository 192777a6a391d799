// File names: taking paths apart, and what a file is shown as.
#pragma once

#include "platform/files/listed_file.h"

#include <string>
#include <vector>

namespace platform
{

/// The names of a POSIX path, with "." and ".." worked out by name.
std::vector<std::string> SplitPath(std::string_view path);

/// Whether a file can have that name.
bool IsFileName(std::string_view name);

constexpr std::string_view kEntryEnding = ".desktop";
constexpr std::string_view kShortcutEnding = ".lnk";

/// The ending of a file's name that is not shown: ".lnk", ".desktop" or "".
std::string_view HiddenEnding(std::string_view name, ItemKind kind);

/// What a file of that name is shown as when nothing better is known: the name itself without ".lnk" or ".desktop".
/// Bytes that are no text keep their private-use characters, so that two names never look the same.
std::u16string DisplayNameOfFile(std::string_view name, ItemKind kind);

/// Copies a name of ASCII without backslashes, which stands for itself in every form of it, without a terminator; false
/// for any other.
bool CopyPlainName(std::string_view name, char16_t* out);

} // namespace platform
