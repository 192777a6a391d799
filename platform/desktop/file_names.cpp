// Making names that are free.
#include "platform/desktop/file_names.h"

#include "platform/base/text.h"

#include <algorithm>
#include <charconv>
#include <climits>

namespace platform
{

namespace
{

bool IsEnding(std::string_view text)
{
    return text.size() > 1 && text.find_first_of(" \t") == text.npos &&
           text.find_first_not_of("0123456789", 1) != text.npos;
}

/// The name within the length that Linux's file systems take, cut before a whole UTF-8 character.
std::string Joined(std::string_view stem, std::string_view addition, std::string_view ending)
{
    const std::size_t rest = addition.size() + ending.size();
    const std::size_t room = NAME_MAX - std::min<std::size_t>(rest, NAME_MAX);
    return std::string(Cut(stem, room)).append(addition).append(ending);
}

/// The count of a stem that ends with " (copy)" or " (copy 3)", which is cut off; 0 for any other.
int TakeCount(std::string& stem, std::string_view word)
{
    const std::string mark = std::string(" (").append(word);
    const std::size_t found = stem.rfind(mark);
    if (found == stem.npos || found == 0 || !stem.ends_with(')'))
        return 0;
    const std::string_view inner = std::string_view(stem).substr(found + mark.size());
    int count = 1;
    if (inner != ")")
    {
        const char* const end = inner.data() + inner.size() - 1;
        const auto [stopped, error] = std::from_chars(inner.data() + 1, end, count);
        if (inner[0] != ' ' || error != std::errc() || stopped != end || count < 2 || count > 1'000'000)
            return 0;
    }
    stem.resize(found);
    return count;
}

} // namespace

NameParts SplitFileName(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    if (dot == name.npos || dot == 0 || !IsEnding(name.substr(dot)))
        return {std::string(name), ""};
    const std::string_view stem = name.substr(0, dot);
    const std::size_t start = stem.size() > 4 && stem.ends_with(".tar") ? dot - 4 : dot;
    return {std::string(name.substr(0, start)), std::string(name.substr(start))};
}

std::string NumberedCopyName(const NameParts& parts, std::string_view word, int n)
{
    std::string stem = parts.stem;
    n += TakeCount(stem, word);
    std::string addition = std::string(" (").append(word);
    if (n > 1)
        addition.append(" ").append(std::to_string(n));
    return Joined(stem, addition + ")", parts.ending);
}

std::string NumberedName(const NameParts& parts, int n)
{
    return Joined(parts.stem, " (" + std::to_string(n) + ")", parts.ending);
}

} // namespace platform
