// Item identifiers: the bytes that name one file and answer the usual questions about it.
//
// An identifier holds the file's name, as bytes, and what was known of the file when the identifier was made: its kind,
// the name shown, its icon and its type. Asking for those costs no system call. Only the name makes the identity: two
// identifiers of the same name are equal whatever else they hold. Icon, type and a plain folder's name are numbers of
// this process (system_images.h), so an identifier means nothing to another process.
//
// Identifiers come from callers as plain memory, so everything here takes any bytes and recognises only what it made.
#pragma once

#include "shlobj.h"

#include "platform/files/listed_file.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

/// What an identifier holds; the views point into whatever the item was read from.
struct ItemId
{
    ItemKind kind = ItemKind::File;
    std::uint32_t icon = 0; ///< system image index
    std::uint32_t type = 0; ///< type name index
    /// The file's name, as the file system has it; of a program in the applications menu see applications_menu.h.
    std::string_view name;
    const BYTE* display = nullptr;
    /// `display` is this many units, of UTF-16 at any alignment or of one byte each; none for an item that is shown as
    /// its name says.
    std::size_t displayUnits = 0;
    bool displayIsNarrow = false;

    /// Writes displayUnits units.
    void CopyDisplay(char16_t* out) const;
    std::u16string DisplayName() const;
};

/// The first identifier of `list` when it is one of ours and well formed. Whether its name can be a file's,
/// AppendListPath looks.
std::optional<ItemId> ReadItemId(LPCITEMIDLIST list);
/// Appends an identifier (no terminator). Ignores item.display: `display` is what is stored. False, with nothing
/// appended, for a name too long for an identifier, which no file has.
bool AppendItemId(std::vector<BYTE>& bytes, const ItemId& item, std::u16string_view display);
/// Room for a list of that many bytes of identifiers, its terminator in place; null when out of memory. Freed with
/// ILFree.
BYTE* AllocateList(std::size_t identifierBytes);
/// A list of one identifier, as AppendItemId makes it; null when that fails or out of memory. Freed with ILFree.
LPITEMIDLIST MakeItemList(const ItemId& item, std::u16string_view display);
/// A list from identifiers in a row (the terminator is added); null when out of memory. Freed with ILFree.
LPITEMIDLIST MakeItemList(const BYTE* identifiers, std::size_t size);

struct ItemListFree
{
    void operator()(ITEMIDLIST* list) const { ILFree(list); }
};
using ItemListPtr = std::unique_ptr<ITEMIDLIST, ItemListFree>;

/// True for a list without identifiers, which names the root of the name space.
inline bool IsEmptyList(LPCITEMIDLIST list)
{
    return list->mkid.cb < sizeof(USHORT);
}
/// The identifier after the first one of a list that is not empty.
inline LPCITEMIDLIST NextItemId(LPCITEMIDLIST list)
{
    return reinterpret_cast<LPCITEMIDLIST>(reinterpret_cast<const BYTE*>(list) + list->mkid.cb);
}

/// Appends the path that `list` describes to `path`, a '/' before each name; false when an identifier is not ours or
/// names no file. With `end`, only the identifiers before that one. A category of the applications menu has the path
/// that applications_menu.h describes, a program in it that of its entry, wherever that is.
bool AppendListPath(std::string& path, LPCITEMIDLIST list, LPCITEMIDLIST end = nullptr);

} // namespace platform
