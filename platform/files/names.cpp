// File names and their display form.
#include "platform/files/names.h"

#include "platform/base/text.h"

#include <algorithm>

namespace platform
{

std::vector<std::string> SplitPath(std::string_view path)
{
    std::vector<std::string> names;
    while (!path.empty())
    {
        const std::string_view name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        if (name == ".." && !names.empty())
            names.pop_back();
        else if (!name.empty() && name != "." && name != "..")
            names.emplace_back(name);
    }
    return names;
}

bool IsFileName(std::string_view name)
{
    const bool isDots = name.size() <= 2 && name.find_first_not_of('.') == name.npos; // or empty
    return !isDots && name.size() <= kMaxNameBytes && name.find('/') == name.npos && name.find('\0') == name.npos;
}

bool CopyPlainName(std::string_view name, char16_t* out)
{
    unsigned bits = 0;
    for (std::size_t i = 0; i < name.size(); ++i)
    {
        const auto byte = static_cast<unsigned char>(name[i]);
        out[i] = byte;
        bits |= byte;
    }
    return bits < 0x80 && name.find('\\') == name.npos;
}

std::string_view HiddenEnding(std::string_view name, ItemKind kind)
{
    for (const std::string_view ending : {kEntryEnding, kShortcutEnding})
        if (kind != ItemKind::Folder && name.size() > ending.size() && name.ends_with(ending))
            return ending;
    return {};
}

std::u16string DisplayNameOfFile(std::string_view name, ItemKind kind)
{
    name.remove_suffix(HiddenEnding(name, kind).size());
    std::u16string display(name.size(), u'\0');
    if (CopyPlainName(name, display.data()))
        return display;
    display.clear(); // a backslash shows as itself: only in a path would it separate
    for (std::size_t start = 0;;)
    {
        const std::size_t end = name.find('\\', start);
        display += ShellNameFromFileName(name.substr(start, end - start));
        if (end == name.npos)
            return display;
        display += u'\\';
        start = end + 1;
    }
}

} // namespace platform
