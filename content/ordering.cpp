// Merge and clean-up of a level's order.
#include "content/ordering.h"

#include "content/item_key.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace
{

/// First position of every key in the stored order, by open addressing: every item of a level asks.
class FirstPositions
{
public:
    explicit FirstPositions(const StoredOrder& stored)
        : m_stored(stored), m_slots(std::bit_ceil(stored.size() * 2 + 2), kFree)
    {
        for (std::size_t i = 0; i < stored.size(); ++i)
        {
            std::int32_t& slot = m_slots[SlotOf(stored[i])];
            if (slot == kFree)
                slot = static_cast<std::int32_t>(i);
        }
    }

    /// The length of the stored order for a key that it does not hold.
    std::int32_t Of(std::uint32_t key) const
    {
        const std::int32_t slot = m_slots[SlotOf(key)];
        return slot != kFree ? slot : static_cast<std::int32_t>(m_stored.size());
    }

private:
    static constexpr std::int32_t kFree = -1;

    /// The slot that holds the key, or the free one that it would go into. Half of the slots stay free.
    std::size_t SlotOf(std::uint32_t key) const
    {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t slot = (key * std::uint64_t{0x9E3779B97F4A7C15}) >> std::countl_zero(mask);
        while (m_slots[slot] != kFree && m_stored[static_cast<std::size_t>(m_slots[slot])] != key)
            slot = (slot + 1) & mask;
        return slot;
    }

    const StoredOrder& m_stored;
    std::vector<std::int32_t> m_slots; ///< positions in the stored order
};

/// Sorts by position, of which there are `positions`, then by name. Nearly every position has one item, so that
/// counting puts most of them in place.
void SortByPosition(MenuItems& items, std::size_t positions)
{
    std::vector<std::size_t> starts(positions + 1);
    for (const MenuItem& item : items)
        ++starts[static_cast<std::size_t>(item.order)];
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    std::vector<std::size_t> places(items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        places[i] = --starts[static_cast<std::size_t>(items[i].order)];
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        while (places[i] != i) // each swap puts one item where it belongs
        {
            const std::size_t place = places[i];
            std::swap(items[i], items[place]);
            std::swap(places[i], places[place]);
        }
    }
    for (std::size_t i = 0; i < positions; ++i)
    {
        if (starts[i + 1] - starts[i] > 1)
            std::sort(
                items.begin() + static_cast<std::ptrdiff_t>(starts[i]),
                items.begin() + static_cast<std::ptrdiff_t>(starts[i + 1]),
                [](const MenuItem& a, const MenuItem& b) { return a.name < b.name; });
    }
}

} // namespace

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
    const FirstPositions positions(stored);
    for (MenuItem& item : items)
        item.order = positions.Of(item.key);
    for (std::size_t i = 0; i < stored.size(); ++i)
        if (stored[i] == SeparatorKey)
            items.push_back(MakeSeparator(static_cast<std::int32_t>(i)));
    const auto notBefore = [](const MenuItem& a, const MenuItem& b) { return a.order >= b.order; };
    if (std::adjacent_find(items.begin(), items.end(), notBefore) != items.end())
        SortByPosition(items, stored.size() + 1);
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

int InsertSeparatorBeside(MenuItems& items, Where where, int index)
{
    const int neighbour = where == Where::Above ? index - 1 : index + 1;
    if (neighbour < 0 || neighbour >= static_cast<int>(items.size()) || items[neighbour].Is(MIF_SEPARATOR))
        return -1;
    items.insert(items.begin() + (where == Where::Above ? index : index + 1), MakeSeparator(0));
    return where == Where::Above ? index + 1 : index;
}
