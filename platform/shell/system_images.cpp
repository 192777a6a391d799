// The tables behind the numbers in item identifiers.
#include "platform/shell/system_images.h"

#include "platform/files/listed_file.h"

#include <deque>
#include <unordered_map>

namespace platform
{

namespace
{

/// Numbers distinct strings from 0.
template <typename C>
class NumberedStrings
{
public:
    std::uint32_t IndexOf(std::basic_string_view<C> text)
    {
        const auto found = m_indexes.find(text);
        if (found != m_indexes.end())
            return found->second;
        const auto index = static_cast<std::uint32_t>(m_strings.size());
        m_indexes.emplace(m_strings.emplace_back(text), index); // a deque's elements do not move
        return index;
    }

    const std::basic_string<C>* At(std::uint32_t index) const
    {
        return index < m_strings.size() ? &m_strings[index] : nullptr;
    }

private:
    std::deque<std::basic_string<C>> m_strings;
    std::unordered_map<std::basic_string_view<C>, std::uint32_t> m_indexes;
};

NumberedStrings<char>& Identities()
{
    static auto& identities = *new NumberedStrings<char>;
    return identities;
}

NumberedStrings<char>& FolderNames()
{
    static auto& names = *new NumberedStrings<char>;
    return names;
}

NumberedStrings<char16_t>& TypeNames()
{
    static auto& names = *new NumberedStrings<char16_t>;
    return names;
}

} // namespace

std::uint32_t SystemImageIndex(std::string_view identity)
{
    return Identities().IndexOf(identity);
}

const std::string& SystemImageIdentity(std::uint32_t index)
{
    static const auto& document = *new std::string(kDocumentIcon);
    const std::string* identity = Identities().At(index);
    return identity != nullptr ? *identity : document;
}

std::uint32_t TypeNameIndex(std::u16string_view name)
{
    return TypeNames().IndexOf(name);
}

const std::u16string& TypeName(std::uint32_t index)
{
    static const auto& none = *new std::u16string;
    const std::u16string* name = TypeNames().At(index);
    return name != nullptr ? *name : none;
}

std::uint32_t FolderNameIndex(std::string_view name)
{
    return FolderNames().IndexOf(name);
}

const std::string* FolderName(std::uint32_t index)
{
    return FolderNames().At(index);
}

} // namespace platform
