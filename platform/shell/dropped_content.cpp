// Reading data objects, those of other programs among them.
//
// The item identifier lists of a data object are the last choice: they mean nothing outside the process that made them.
#include "platform/shell/dropped_content.h"

#include "platform/shell/item_array.h"

#include "windows.h"

#include <algorithm>
#include <unordered_map>

namespace platform
{

namespace
{

constexpr std::string_view kFormats[] = {kUriList, kCopiedFiles, kMozillaUrl, kNetscapeUrl};

FORMATETC FormatOf(std::string_view name)
{
    const std::u16string wide(name.begin(), name.end());
    const UINT format = RegisterClipboardFormatW(wide.c_str());
    return {static_cast<CLIPFORMAT>(format), nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

FORMATETC ArrayFormat()
{
    return FormatOf("Shell IDList Array");
}

bool Offers(IDataObject& data, FORMATETC format)
{
    return data.QueryGetData(&format) == S_OK;
}

/// "" when it is not offered, or not given.
std::string ContentOf(IDataObject& data, FORMATETC format)
{
    STGMEDIUM medium{};
    if (!Offers(data, format) || FAILED(data.GetData(&format, &medium)))
        return {};
    std::string content;
    const void* bytes = medium.tymed == TYMED_HGLOBAL ? GlobalLock(medium.hGlobal) : nullptr;
    if (bytes != nullptr)
    {
        content.assign(static_cast<const char*>(bytes), GlobalSize(medium.hGlobal));
        GlobalUnlock(medium.hGlobal);
    }
    ReleaseStgMedium(&medium);
    return content;
}

std::string ContentOf(IDataObject& data, std::string_view name)
{
    return ContentOf(data, FormatOf(name));
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

void KeepEachAddressOnce(std::vector<WebAddress>& addresses)
{
    std::unordered_map<std::string, bool> seen;
    std::erase_if(addresses, [&](const WebAddress& address) { return !seen.emplace(address.url, true).second; });
}

DroppedContent ReadForeign(IDataObject& data)
{
    DroppedContent content;
    const std::string list = ContentOf(data, kUriList);
    content.paths = PathsInUriList(list);
    content.addresses = WebAddressesInUriList(list);
    if (content.IsEmpty())
        if (auto copied = ReadCopiedFiles(ContentOf(data, kCopiedFiles)))
            content.paths = std::move(copied->paths);
    if (content.paths.empty())
        AddTitled(content, ReadTitledAddresses(Utf8OfMozillaUrl(ContentOf(data, kMozillaUrl))));
    if (content.paths.empty())
        AddTitled(content, ReadTitledAddresses(ContentOf(data, kNetscapeUrl)));
    KeepEachOnce(content.paths);
    KeepEachAddressOnce(content.addresses);
    return content;
}

bool HasTextFormat(IDataObject& data)
{
    return std::ranges::any_of(
        kFormats, [&](std::string_view name) { return Offers(data, FormatOf(name)); });
}

} // namespace

bool MayHoldFiles(IDataObject& data)
{
    return HasTextFormat(data) || Offers(data, ArrayFormat());
}

DroppedContent ReadDropped(IDataObject& data)
{
    if (HasTextFormat(data))
        return ReadForeign(data);
    DroppedContent content;
    content.paths = PathsInItemArray(ContentOf(data, ArrayFormat()));
    KeepEachOnce(content.paths);
    return content;
}

} // namespace platform
