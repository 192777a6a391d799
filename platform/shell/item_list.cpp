// The functions on item identifier lists.
//
// A list is a chain of identifiers, each headed by its size in bytes, up to one of size 0. A size of 1 cannot hold
// itself and ends the chain as well.
#include "platform/shell/item_id.h"

#include "platform/base/fault_points.h"

#include <cstring>

using platform::IsEmptyList;
using platform::ItemId;
using platform::NextItemId;
using platform::ReadItemId;

namespace
{

constexpr std::size_t kTerminatorSize = sizeof(USHORT);

/// Bytes of the identifiers, without the terminator.
std::size_t IdentifierBytes(LPCITEMIDLIST list)
{
    LPCITEMIDLIST end = list;
    while (!IsEmptyList(end))
        end = NextItemId(end);
    return static_cast<std::size_t>(reinterpret_cast<const BYTE*>(end) - reinterpret_cast<const BYTE*>(list));
}

/// Of two identifiers that are not ours, the bytes decide.
bool SameItem(LPCITEMIDLIST a, LPCITEMIDLIST b)
{
    const std::optional<ItemId> itemA = ReadItemId(a);
    const std::optional<ItemId> itemB = ReadItemId(b);
    if (itemA && itemB)
        return itemA->name == itemB->name;
    return !itemA && !itemB && a->mkid.cb == b->mkid.cb && std::memcmp(a, b, a->mkid.cb) == 0;
}

} // namespace

namespace platform
{

BYTE* AllocateList(std::size_t identifierBytes)
{
    auto* bytes = static_cast<BYTE*>(CoTaskMemAlloc(identifierBytes + kTerminatorSize));
    if (bytes != nullptr)
        std::memset(bytes + identifierBytes, 0, kTerminatorSize);
    return bytes;
}

LPITEMIDLIST MakeItemList(const BYTE* identifiers, std::size_t size)
{
    BYTE* bytes = AllocateList(size);
    if (bytes != nullptr && size != 0)
        std::memcpy(bytes, identifiers, size);
    return reinterpret_cast<LPITEMIDLIST>(bytes);
}

} // namespace platform

LPITEMIDLIST ILClone(LPCITEMIDLIST list)
{
    if (list == nullptr || platform::FaultPoint("ILClone"))
        return nullptr;
    return platform::MakeItemList(reinterpret_cast<const BYTE*>(list), IdentifierBytes(list));
}

LPITEMIDLIST ILCombine(LPCITEMIDLIST first, LPCITEMIDLIST second)
{
    if (first == nullptr || second == nullptr)
        return ILClone(first != nullptr ? first : second);
    if (platform::FaultPoint("ILCombine"))
        return nullptr;
    const std::size_t firstBytes = IdentifierBytes(first);
    const std::size_t secondBytes = IdentifierBytes(second);
    BYTE* bytes = platform::AllocateList(firstBytes + secondBytes);
    if (bytes != nullptr)
    {
        std::memcpy(bytes, first, firstBytes);
        std::memcpy(bytes + firstBytes, second, secondBytes);
    }
    return reinterpret_cast<LPITEMIDLIST>(bytes);
}

void ILFree(LPITEMIDLIST list)
{
    CoTaskMemFree(list);
}

UINT ILGetSize(LPCITEMIDLIST list)
{
    return list != nullptr ? static_cast<UINT>(IdentifierBytes(list) + kTerminatorSize) : 0;
}

LPITEMIDLIST ILFindLastID(LPCITEMIDLIST list)
{
    if (list == nullptr)
        return nullptr;
    LPCITEMIDLIST last = list;
    for (LPCITEMIDLIST item = list; !IsEmptyList(item); item = NextItemId(item))
        last = item;
    return const_cast<LPITEMIDLIST>(last);
}

BOOL ILIsEqual(LPCITEMIDLIST a, LPCITEMIDLIST b)
{
    if (a == nullptr || b == nullptr)
        return a == b;
    for (; !IsEmptyList(a) && !IsEmptyList(b); a = NextItemId(a), b = NextItemId(b))
        if (!SameItem(a, b))
            return FALSE;
    return IsEmptyList(a) && IsEmptyList(b);
}

BOOL ILRemoveLastID(LPITEMIDLIST list)
{
    if (list == nullptr || IsEmptyList(list))
        return FALSE;
    ILFindLastID(list)->mkid.cb = 0;
    return TRUE;
}
