// Merge and clean-up of a level's order.
#include "content/ordering.h"

#include "content/item_key.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>

StoredOrder DecodeOrder(const std::uint8_t* data, std::size_t size)
{
    StoredOrder keys(size / 4);
    for (std::uint32_t& key : keys)
    {
        key = data[0] | data[1] << 8 | data[2] << 16 | static_cast<std::uint32_t>(data[3]) << 24;
        data += 4;
    }
    return keys;
}

std::vector<std::uint8_t> EncodeOrder(const MenuItems& items)
{
    std::vector<std::uint8_t> bytes(items.size() * 4);
    std::uint8_t* out = bytes.data();
    for (const MenuItem& item : items)
        for (int shift = 0; shift < 32; shift += 8)
            *out++ = static_cast<std::uint8_t>(item.key >> shift);
    return bytes;
}

void MergeOrder(MenuItems& items, const StoredOrder& stored)
{
    const auto count = static_cast<std::int32_t>(stored.size());
    std::unordered_map<std::uint32_t, std::int32_t> positions; // of a key stored twice the first counts
    positions.reserve(stored.size());
    for (std::int32_t i = 0; i < count; ++i)
        positions.try_emplace(stored[i], i);
    for (MenuItem& item : items)
    {
        const auto found = positions.find(item.key);
        item.order = found != positions.end() ? found->second : count;
    }
    for (std::int32_t i = 0; i < count; ++i)
        if (stored[i] == SeparatorKey)
            items.push_back(MakeSeparator(i));
    std::sort(items.begin(), items.end(),
              [](const MenuItem& a, const MenuItem& b)
              { return std::tie(a.order, a.name) < std::tie(b.order, b.name); });
}

void CleanUpSeparators(MenuItems& items)
{
    const auto isSeparator = [](const MenuItem& item) { return item.Is(MIF_SEPARATOR); };
    items.erase(std::find_if_not(items.rbegin(), items.rend(), isSeparator).base(), items.end());
    items.erase(items.begin(), std::find_if_not(items.begin(), items.end(), isSeparator));
    const auto firstKept =
        std::unique(items.rbegin(), items.rend(),
                    [&](const MenuItem& a, const MenuItem& b) { return isSeparator(a) && isSeparator(b); })
            .base();
    items.erase(items.begin(), firstKept);
}

void PlaceNewcomer(MenuItems& items, const MenuItems& before, int position)
{
    const int last = static_cast<int>(items.size()) - 1;
    if (position < 0 || position >= last || before.empty() || items.size() != before.size() + 1)
        return;
    const auto sameName = [&](const MenuItem& item) { return item.name == items.back().name; };
    if (std::any_of(before.begin(), before.end(), sameName))
        return;
    std::rotate(items.begin() + position, items.end() - 1, items.end());
}

void ProtectFolders(MenuItems& items)
{
    for (MenuItem& item : items)
        if (item.Is(MIF_FOLDER))
            item.flags |= MIF_PROTECTED;
}

MenuItem MakeSeparator(std::int32_t order)
{
    MenuItem item;
    item.key = SeparatorKey;
    item.flags = MIF_SEPARATOR;
    item.order = order;
    return item;
}

MenuItem MakePlaceholder()
{
    MenuItem item;
    item.name = ShellText(TEXT("(Empty)"));
    item.flags = MIF_PLACEHOLDER;
    item.image = kNoImage;
    return item;
}

int FindKey(const MenuItems& items, std::uint32_t key)
{
    const auto found = std::find_if(items.begin(), items.end(), [&](const MenuItem& item) { return item.key == key; });
    return found != items.end() ? static_cast<int>(found - items.begin()) : -1;
}

int FindAgain(const MenuItems& items, int index, std::uint32_t key)
{
    const bool isThere = index >= 0 && index < static_cast<int>(items.size()) && items[index].key == key;
    return isThere ? index : FindKey(items, key);
}

int InsertSeparatorBeside(MenuItems& items, Where where, int index)
{
    const int neighbour = where == Where::Above ? index - 1 : index + 1;
    if (neighbour < 0 || neighbour >= static_cast<int>(items.size()) || items[neighbour].Is(MIF_SEPARATOR))
        return -1;
    items.insert(items.begin() + (where == Where::Above ? index : index + 1), MakeSeparator(0));
    return where == Where::Above ? index + 1 : index;
}

bool InsertNewItem(MenuItems& items, std::vector<WString> before, std::vector<WString> after, int position)
{
    if (position < 0 || position > static_cast<int>(items.size()))
        return false;
    std::sort(before.begin(), before.end());
    std::sort(after.begin(), after.end());
    const auto isNew = [&](const WString& name) { return !std::binary_search(before.begin(), before.end(), name); };
    const auto name = std::find_if(after.begin(), after.end(), isNew);
    if (name == after.end())
        return false;
    MenuItem item;
    item.name = ShellText(name->c_str());
    item.key = ItemKey(*name);
    // A refresh within the operation may have brought it already, to another place.
    if (const int known = FindKey(items, item.key); known >= 0)
    {
        items.erase(items.begin() + known);
        position -= known < position ? 1 : 0;
    }
    items.insert(items.begin() + position, std::move(item));
    return true;
}
