// The order of a level's items: merging the stored order with the items that exist. The store is in layout_store.
#pragma once

#include "content/menu_item.h"

#include <cstdint>
#include <vector>

/// The keys of a level's items, as they were last shown.
using StoredOrder = std::vector<std::uint32_t>;

/// Keys out of a stored value: 4 bytes each, little-endian; 1 to 3 trailing bytes are ignored.
StoredOrder DecodeOrder(const std::uint8_t* data, std::size_t size);
std::vector<std::uint8_t> EncodeOrder(const MenuItems& items);

/// Sorts the items as stored, with the stored separators among them. Items that are not stored follow by name (code
/// units: "Z" before "a", "10" before "9").
void MergeOrder(MenuItems& items, const StoredOrder& stored);

/// Drops separators that separate nothing; of a run the last one stays.
void CleanUpSeparators(MenuItems& items);

/// Moves the one item that has appeared since the last load from the end, where the merge has put it, to the pending
/// position. Where more than one has come, or one has gone, nobody can tell which one was meant.
void PlaceNewcomer(MenuItems& items, const MenuItems& before, int position);

void ProtectFolders(MenuItems& items);

MenuItem MakeSeparator(std::int32_t order);
MenuItem MakePlaceholder();

/// Index of the first item with the key, −1 when there is none.
int FindKey(const MenuItems& items, std::uint32_t key);
/// Where the item is now that had the key and was at `index` before something that may have replaced the items; −1 when
/// it is gone.
int FindAgain(const MenuItems& items, int index, std::uint32_t key);

enum class Where
{
    Above,
    Below,
};

/// Inserts a separator next to the item at `index` and returns that item's new index; −1, changing nothing, when there
/// is no neighbour on that side or the neighbour is a separator.
int InsertSeparatorBeside(MenuItems& items, Where where, int index);

/// After a file operation: puts the first, in the order of code units, of the names that have appeared at `position`.
/// The new item carries only its key into the stored order; the next load finds the file there. False, changing
/// nothing, when no name has appeared or the position lies outside the items and their end.
bool InsertNewItem(MenuItems& items, std::vector<WString> before, std::vector<WString> after, int position);
