// Reading data objects, those of other programs among them.
//
// The item identifier lists of a data object are the last choice: they mean nothing outside the process that made them.
#include "platform/shell/dropped_content.h"

#include "platform/ole/data_object.h"
#include "platform/ole/derived_format.h"
#include "platform/shell/item_array.h"

#include "windows.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace platform
{

namespace
{

constexpr std::string_view kTextFormats[] = {kUriList, kCopiedFiles, kMozillaUrl, kNetscapeUrl};

/// "" when it is not offered, or not given.
std::string ContentOf(IDataObject& data, std::string_view name)
{
    return DataAs(data, FormatNamed(name)).value_or("");
}

/// Adds titles to the addresses that are there; where there are none, these are the content.
void AddTitled(DroppedContent& content, std::vector<WebAddress> titled)
{
    if (content.IsEmpty())
    {
        content.addresses = std::move(titled);
        return;
    }
    std::unordered_map<std::string_view, std::string_view> titles;
    for (const WebAddress& address : titled)
        titles.emplace(address.url, address.title);
    for (WebAddress& address : content.addresses)
        if (const auto found = titles.find(address.url); address.title.empty() && found != titles.end())
            address.title = found->second;
}

DroppedContent ReadTexts(IDataObject& data)
{
    DroppedContent content;
    const std::string list = ContentOf(data, kUriList);
    content.paths = PathsInUriList(list);
    content.addresses = WebAddressesInUriList(list);
    if (content.IsEmpty())
        if (auto copied = ReadCopiedFiles(ContentOf(data, kCopiedFiles)))
            content.paths = std::move(copied->paths);
    const std::string titled = content.paths.empty() ? Utf8OfMozillaUrl(ContentOf(data, kMozillaUrl)) : "";
    AddTitled(content, ReadTitledAddresses(titled));
    if (content.paths.empty())
        AddTitled(content, ReadTitledAddresses(ContentOf(data, kNetscapeUrl)));
    if (content.IsEmpty())
        content.paths = PathsInUriList(titled); // some browsers give a local page's address in no other form
    KeepEachOnce(content.paths);
    KeepEachOnce(content.addresses, &WebAddress::url);
    return content;
}

bool HasTextFormat(IDataObject& data)
{
    const auto isOffered = [&](std::string_view name)
    {
        FORMATETC format = MemoryFormat(FormatNamed(name));
        return data.QueryGetData(&format) == S_OK;
    };
    return std::ranges::any_of(kTextFormats, isOffered);
}

// --- "Shell IDList Array" of what other programs drag

bool ArrayIsPossible(std::span<const std::string> targets)
{
    const auto isFormat = [](const std::string& target)
    { return std::ranges::find(kTextFormats, target) != std::end(kTextFormats); };
    return std::ranges::any_of(targets, isFormat);
}

/// Of the files alone: an address of the web is no item of the name space.
std::optional<std::string> MakeArray(IDataObject& data)
{
    std::string array = ItemArrayOfPaths(ReadTexts(data).paths);
    return !array.empty() ? std::optional(std::move(array)) : std::nullopt;
}

constexpr DerivedFormat kArrayFormat{CFSTR_SHELLIDLIST, ArrayIsPossible, MakeArray};

[[gnu::constructor]] void OfferArray()
{
    OfferDerivedFormat(kArrayFormat);
}

} // namespace

CLIPFORMAT FormatNamed(std::string_view name)
{
    const std::u16string wide(name.begin(), name.end());
    return static_cast<CLIPFORMAT>(RegisterClipboardFormatW(wide.c_str()));
}

DroppedContent ReadDropped(IDataObject& data)
{
    if (HasTextFormat(data))
        return ReadTexts(data);
    DroppedContent content;
    content.paths = PathsInItemArray(ContentOf(data, kItemArrayFormat));
    KeepEachOnce(content.paths);
    return content;
}

DWORD PreferredEffect(IDataObject& data)
{
    DWORD effect = DROPEFFECT_NONE;
    if (const std::string content = ContentOf(data, kPreferredEffectFormat); content.size() >= sizeof effect)
        std::memcpy(&effect, content.data(), sizeof effect);
    return effect;
}

} // namespace platform
