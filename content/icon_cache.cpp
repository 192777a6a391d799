// The icon cache's one lookup.
#include "content/icon_cache.h"

#include "app/launcher_state.h"
#include "content/item_key.h"
#include "support/unique_handle.h"

namespace
{

constexpr UINT kKindFlags = SHGFI_PIDL | SHGFI_ADDOVERLAYS | SHGFI_TYPENAME | SHGFI_SYSICONINDEX;
constexpr UINT kIconFlags = SHGFI_PIDL | SHGFI_ADDOVERLAYS | SHGFI_ICON | SHGFI_SYSICONINDEX;
static_assert(kKindFlags == 0x4428 && kIconFlags == 0x4128);

DWORD_PTR QueryFileInfo(LPCITEMIDLIST pidl, SHFILEINFOW& info, UINT flags)
{
    return SHGetFileInfoW(reinterpret_cast<LPCWSTR>(pidl), 0, &info, sizeof(info), flags);
}

} // namespace

std::uint32_t IconKey(const SHFILEINFOW& info, DWORD_PTR systemImageList)
{
    return static_cast<std::uint32_t>(info.iIcon) + HashText(info.szTypeName) +
           static_cast<std::uint32_t>(systemImageList);
}

std::int32_t GetIconIndex(LPCITEMIDLIST pidl, bool large)
{
    IconCache& cache = large ? g_launcher.IconCacheLarge : g_launcher.IconCacheSmall;
    const HIMAGELIST images = large ? g_launcher.m_largeImages.Get() : g_launcher.m_smallImages.Get();
    const UINT size = large ? SHGFI_LARGEICON : SHGFI_SMALLICON;

    SHFILEINFOW info;
    info.szTypeName[0] = 0;
    info.iIcon = 0;
    const DWORD_PTR list = QueryFileInfo(pidl, info, kKindFlags | size);
    if (list == 0)
        return 0;
    const std::uint32_t key = IconKey(info, list);
    if (const auto found = cache.find(key); found != cache.end())
        return found->second;

    info.hIcon = nullptr;
    const DWORD_PTR result = QueryFileInfo(pidl, info, kIconFlags | size);
    const UniqueIcon icon(info.hIcon);
    if (result == 0 || !icon)
        return 0;
    const std::int32_t index = ImageList_ReplaceIcon(images, -1, icon.Get());
    cache.emplace(key, index);
    return index;
}
