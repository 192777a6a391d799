// The functions on item identifier lists.
//
// A list is a chain of identifiers, each headed by its size in bytes, up to one of size 0. A size of 1 cannot hold
// itself and ends the chain as well.
#include "platform/shell/item_id.h"

#include "platform/base/fault_points.h"

#include <cstring>

using platform::IsEmptyList;
using platform::NextItemId;

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

LPITEMIDLIST ILFindLastID(LPCITEMIDLIST list)
{
    if (list == nullptr)
        return nullptr;
    LPCITEMIDLIST last = list;
    for (LPCITEMIDLIST item = list; !IsEmptyList(item); item = NextItemId(item))
        last = item;
    return const_cast<LPITEMIDLIST>(last);
}
