// Handing out a folder's items one after the other.
#include "platform/shell/item_enumerator.h"

#include "platform/base/fault_points.h"
#include "platform/shell/system_images.h"

#include <cstring>

namespace platform
{

namespace
{

bool IsWanted(const ListedFile& file, SHCONTF flags)
{
    const bool folder = file.kind == ItemKind::Folder || file.kind == ItemKind::Category;
    const SHCONTF kind = folder ? SHCONTF_FOLDERS : SHCONTF_NONFOLDERS;
    return (flags & kind) != 0 && (!file.hidden || (flags & SHCONTF_INCLUDEHIDDEN) != 0);
}

/// Compares bytes, which for UTF-16 the view's own comparison does not. One text of a snapshot has one place there.
template <typename C>
bool SameText(std::basic_string_view<C> a, std::basic_string_view<C> b)
{
    return a.size() == b.size() &&
           (a.data() == b.data() || a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(C)) == 0);
}

} // namespace

const ListedFile* ItemEnumerator::Current()
{
    while (m_cursor.Current() != nullptr && !IsWanted(*m_cursor.Current(), m_flags))
        m_cursor.Advance();
    return m_cursor.Current();
}

LPITEMIDLIST ItemEnumerator::MakeItem(const ListedFile& file)
{
    if (!m_iconText || !SameText(file.icon, *m_iconText))
    {
        m_iconText = file.icon;
        m_icon = SystemImageIndex(file.icon);
    }
    if (!m_typeText || !SameText(file.typeName, *m_typeText))
    {
        m_typeText = file.typeName;
        m_type = TypeNameIndex(file.typeName);
    }
    return MakeItemList({file.kind, m_icon, m_type, file.name}, file.display);
}

HRESULT ItemEnumerator::Next(ULONG count, LPITEMIDLIST* items, ULONG* fetched)
{
    if (items == nullptr || (fetched == nullptr && count != 1))
        return E_INVALIDARG;
    ULONG done = 0;
    const ListedFile* file = Current();
    for (; done < count && file != nullptr; file = Current())
    {
        items[done] = FaultPoint("IEnumIDList::Next") ? nullptr : MakeItem(*file);
        if (items[done] == nullptr)
            break;
        ++done;
        m_cursor.Advance();
    }
    if (fetched != nullptr)
        *fetched = done;
    // Nothing although there is more: that is not the end.
    const bool failed = done == 0 && count != 0 && file != nullptr;
    return failed ? E_OUTOFMEMORY : done == count ? S_OK : S_FALSE;
}

HRESULT ItemEnumerator::Skip(ULONG count)
{
    for (; count > 0 && Current() != nullptr; --count)
        m_cursor.Advance();
    return count == 0 ? S_OK : S_FALSE;
}

HRESULT ItemEnumerator::Reset()
{
    m_cursor = ListingCursor(*m_listing);
    return S_OK;
}

HRESULT ItemEnumerator::Clone(IEnumIDList** clone)
{
    if (clone == nullptr)
        return E_POINTER;
    auto* copy = new ItemEnumerator(m_listing, m_flags);
    copy->m_cursor = m_cursor;
    *clone = copy;
    return S_OK;
}

} // namespace platform
