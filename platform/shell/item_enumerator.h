// The enumerator of a folder's items.
#pragma once

#include "platform/shell/com_object.h"
#include "platform/shell/item_id.h"

#include <memory>

namespace platform
{

class ItemEnumerator final : public ComObject<IEnumIDList, IID_IEnumIDList>
{
public:
    /// `identifiers` holds one identifier after the other, without terminators, `offsets` where each starts.
    struct Items
    {
        std::vector<BYTE> identifiers;
        std::vector<std::uint32_t> offsets;
    };

    explicit ItemEnumerator(std::shared_ptr<const Items> items, std::size_t position = 0)
        : m_items(std::move(items)), m_position(position)
    {
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG count, LPITEMIDLIST* items, ULONG* fetched) override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
    HRESULT STDMETHODCALLTYPE Reset() override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumIDList** clone) override;

private:
    std::size_t Left() const { return m_items->offsets.size() - m_position; }

    std::shared_ptr<const Items> m_items;
    std::size_t m_position;
};

} // namespace platform
