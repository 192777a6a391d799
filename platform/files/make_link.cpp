// Making links under a name that is free.
#include "platform/files/make_link.h"

#include "platform/base/text.h"
#include "platform/base/unique_fd.h"
#include "platform/files/names.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace platform
{

namespace
{

constexpr int kLastNumber = 9999;

/// A name taken apart where a number is put in: "Notes", ".txt.lnk".
struct NameParts
{
    std::string_view stem;
    std::string_view endings;
};

NameParts TakeApart(std::string_view name, std::size_t longest)
{
    const std::size_t hidden = HiddenEnding(name, ItemKind::Link).size();
    const std::string_view shown = name.substr(0, name.size() - hidden);
    const std::size_t dot = shown.rfind('.');
    const bool hasEnding = dot != shown.npos && dot != 0 && name.size() - dot < longest / 2;
    const std::size_t stem = hasEnding ? dot : shown.size();
    return {name.substr(0, stem), name.substr(stem)};
}

std::string NumberedName(const NameParts& parts, int number, std::size_t longest)
{
    const std::string mark = number > 1 ? " (" + std::to_string(number) + ")" : "";
    const std::size_t rest = mark.size() + parts.endings.size();
    return std::string(Cut(parts.stem, longest - std::min(longest, rest))) + mark + std::string(parts.endings);
}

} // namespace

int MakeLink(const std::string& folder, const std::string& name, const std::string& target)
{
    const UniqueFd directory(open(folder.empty() ? "/" : folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!directory)
        return errno;
    const long limit = fpathconf(directory.Get(), _PC_NAME_MAX);
    const std::size_t longest = limit > 0 ? static_cast<std::size_t>(limit) : NAME_MAX;
    const NameParts parts = TakeApart(name, longest);
    if (parts.stem.empty())
        return EINVAL;
    int error = EEXIST;
    for (int number = 1; error == EEXIST && number <= kLastNumber; ++number)
    {
        const std::string free = NumberedName(parts, number, longest);
        error = symlinkat(target.c_str(), directory.Get(), free.c_str()) == 0 ? 0 : errno;
    }
    return error;
}

} // namespace platform
