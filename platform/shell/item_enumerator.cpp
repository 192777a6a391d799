// Handing out a folder's items one after the other.
#include "platform/shell/item_enumerator.h"

#include "platform/base/fault_points.h"

#include <algorithm>

namespace platform
{

HRESULT ItemEnumerator::Next(ULONG count, LPITEMIDLIST* items, ULONG* fetched)
{
    if (items == nullptr || (fetched == nullptr && count != 1))
    {
        return E_INVALIDARG;
    }
    ULONG done = 0;
    for (; done < count && Left() != 0; ++done, ++m_position)
    {
        const std::uint32_t start = m_items->offsets[m_position];
        const BYTE* bytes = m_items->identifiers.data() + start;
        const std::size_t size = reinterpret_cast<LPCITEMIDLIST>(bytes)->mkid.cb;
        items[done] = FaultPoint("IEnumIDList::Next") ? nullptr : MakeItemList(bytes, size);
        if (items[done] == nullptr)
        {
            break;
        }
    }
    if (fetched != nullptr)
    {
        *fetched = done;
    }
    // Nothing although there is more: that is not the end.
    const bool failed = done == 0 && count != 0 && Left() != 0;
    return failed ? E_OUTOFMEMORY : done == count ? S_OK : S_FALSE;
}

HRESULT ItemEnumerator::Skip(ULONG count)
{
    const std::size_t skipped = std::min<std::size_t>(count, Left());
    m_position += skipped;
    return skipped == count ? S_OK : S_FALSE;
}

HRESULT ItemEnumerator::Reset()
{
    m_position = 0;
    return S_OK;
}

HRESULT ItemEnumerator::Clone(IEnumIDList** clone)
{
    if (clone == nullptr)
    {
        return E_POINTER;
    }
    *clone = new ItemEnumerator(m_items, m_position);
    return S_OK;
}

} // namespace platform
