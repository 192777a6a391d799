// The enumerator of a folder's items.
#pragma once

#include "platform/files/folder_listing.h"
#include "platform/ole/com_object.h"
#include "platform/shell/item_id.h"

#include <memory>

namespace platform
{

class ItemEnumerator final : public ComObject<IEnumIDList, IID_IEnumIDList>
{
public:
    /// Hands out those of the listing's files that the flags ask for.
    ItemEnumerator(std::shared_ptr<const FolderListing> listing, SHCONTF flags)
        : m_listing(std::move(listing)), m_flags(flags), m_cursor(*m_listing)
    {
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG count, LPITEMIDLIST* items, ULONG* fetched) override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
    HRESULT STDMETHODCALLTYPE Reset() override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumIDList** clone) override;

private:
    /// The file to hand out next, having passed those that are not wanted; null at the end.
    const ListedFile* Current();
    LPITEMIDLIST MakeItem(const ListedFile& file);

    std::shared_ptr<const FolderListing> m_listing;
    SHCONTF m_flags;
    ListingCursor m_cursor;
    // Neighbours tend to be of one kind: their numbers are looked up once.
    std::optional<std::string_view> m_iconText;
    std::optional<std::u16string_view> m_typeText;
    std::uint32_t m_icon = 0;
    std::uint32_t m_type = 0;
};

} // namespace platform
