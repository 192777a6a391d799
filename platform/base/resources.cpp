// The resource calls, over two compiled resource files (cmake/Resources.cmake embeds them): the program's own, and the
// layer's, which all system modules share.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/base/modules.h"
#include "platform/base/resource_file.h"
#include "platform/base/text.h"

#include "windows.h"

#include <algorithm>
#include <vector>

// Weak: a program without resources has neither.
extern "C" __attribute__((weak)) const unsigned char orb_resources_begin[];
extern "C" __attribute__((weak)) const unsigned char orb_resources_end[];
extern "C" const unsigned char orb_layer_resources_begin[];
extern "C" const unsigned char orb_layer_resources_end[];

namespace platform
{
namespace
{

using Entries = std::vector<ResourceEntry>;

Entries ReadAll(const unsigned char* begin, const unsigned char* end)
{
    Entries entries;
    if (begin == nullptr)
        return entries;
    const ResourceBytes file(begin, end);
    std::size_t offset = 0;
    while (auto entry = NextResource(file, offset))
        entries.push_back(std::move(*entry));
    return entries;
}

const Entries& ProgramEntries()
{
    static const auto& entries = *new Entries(ReadAll(orb_resources_begin, orb_resources_end));
    return entries;
}

const Entries& LayerEntries()
{
    static const auto& entries = *new Entries(ReadAll(orb_layer_resources_begin, orb_layer_resources_end));
    return entries;
}

const Entries& EntriesOf(HMODULE module)
{
    static const auto& none = *new Entries;
    if (IsProgramModule(module))
        return ProgramEntries();
    return IsSystemModule(module) ? LayerEntries() : none;
}

ResourceId IdOf(LPCWSTR id)
{
    if (IS_INTRESOURCE(id))
        return {static_cast<std::uint16_t>(reinterpret_cast<ULONG_PTR>(id)), {}};
    return ResourceIdFromText(id);
}

const ResourceEntry* EntryOf(HRSRC resource)
{
    const auto* entry = reinterpret_cast<const ResourceEntry*>(resource);
    const auto isIn = [entry](const Entries& entries)
    { return entry >= entries.data() && entry < entries.data() + entries.size(); };
    return isIn(ProgramEntries()) || isIn(LayerEntries()) ? entry : nullptr;
}

/// Copies as much as fits, with a terminator; returns the number of units copied.
int CopyTruncated(std::u16string_view from, LPWSTR to, int capacity)
{
    const std::size_t count = std::min(from.size(), static_cast<std::size_t>(capacity) - 1);
    std::copy_n(from.begin(), count, to);
    to[count] = 0;
    return static_cast<int>(count);
}

std::u16string_view ResourceString(HINSTANCE instance, UINT id)
{
    const HRSRC block = FindResourceW(instance, MAKEINTRESOURCEW(id / 16 + 1), RT_STRING);
    return block != nullptr ? StringInBlock(EntryOf(block)->data, id).value_or(std::u16string_view()) : u"";
}

} // namespace
} // namespace platform

HRSRC FindResourceW(HMODULE module, LPCWSTR name, LPCWSTR type)
{
    using namespace platform;
    constexpr HRSRC kNone = nullptr;
    const Entries& entries = EntriesOf(module);
    if (FaultPoint("FindResourceW") || entries.empty())
        return Fail(ERROR_RESOURCE_DATA_NOT_FOUND, kNone);
    const ResourceId wantedType = IdOf(type);
    const ResourceId wantedName = IdOf(name);
    bool typeSeen = false;
    for (const ResourceEntry& entry : entries)
    {
        if (entry.type != wantedType)
            continue;
        typeSeen = true;
        if (entry.name == wantedName)
            return reinterpret_cast<HRSRC>(const_cast<ResourceEntry*>(&entry));
    }
    return Fail(typeSeen ? ERROR_RESOURCE_NAME_NOT_FOUND : ERROR_RESOURCE_TYPE_NOT_FOUND, kNone);
}

HGLOBAL LoadResource(HMODULE, HRSRC resource)
{
    const platform::ResourceEntry* entry = platform::FaultPoint("LoadResource") ? nullptr : platform::EntryOf(resource);
    if (entry == nullptr)
        return platform::Fail(ERROR_RESOURCE_DATA_NOT_FOUND, static_cast<HGLOBAL>(nullptr));
    return const_cast<unsigned char*>(entry->data.data());
}

LPVOID LockResource(HGLOBAL data)
{
    return data;
}

DWORD SizeofResource(HMODULE, HRSRC resource)
{
    const platform::ResourceEntry* entry = platform::EntryOf(resource);
    return entry != nullptr ? static_cast<DWORD>(entry->data.size()) : 0;
}

int LoadStringW(HINSTANCE instance, UINT id, LPWSTR text, int capacity)
{
    if (text == nullptr || capacity < 0 || platform::FaultPoint("LoadStringW"))
        return 0;
    const std::u16string_view string = platform::ResourceString(instance, id);
    if (capacity == 0)
    {
        // Documented: `text` then receives a pointer to the string itself, which is not terminated.
        *reinterpret_cast<LPCWSTR*>(text) = string.data();
        return static_cast<int>(string.size());
    }
    return platform::CopyTruncated(string, text, capacity);
}
