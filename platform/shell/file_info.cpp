// SHGetFileInfoW: what is shown of an item.
#include "shlobj.h"

#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/drawing/icon.h"
#include "platform/shell/namespace.h"
#include "platform/icons/shell_icon.h"
#include "platform/shell/system_images.h"

#include <algorithm>

namespace platform
{

namespace
{

// Tokens that tell the two system image lists apart. No image is ever drawn from them.
constexpr DWORD_PTR kLargeSystemList = 0x51A0;
constexpr DWORD_PTR kSmallSystemList = 0x51A1;

template <std::size_t n>
void CopyTruncated(WCHAR (&out)[n], std::u16string_view text)
{
    text = text.substr(0, n - 1);
    out[std::copy(text.begin(), text.end(), out) - out] = 0;
}

void FillFileInfo(const ItemId& item, SHFILEINFOW& info, UINT flags)
{
    const bool overlaid = item.kind == ItemKind::Link;
    if ((flags & (SHGFI_SYSICONINDEX | SHGFI_ICON)) != 0)
    {
        info.iIcon = static_cast<int>(item.icon & 0xFFFFFF);
        info.iIcon |= overlaid && (flags & SHGFI_ADDOVERLAYS) != 0 ? kLinkOverlay : 0;
    }
    if ((flags & SHGFI_TYPENAME) != 0)
        CopyTruncated(info.szTypeName, TypeName(item.type));
    if ((flags & SHGFI_ICON) != 0)
    {
        const int metric = (flags & SHGFI_SMALLICON) != 0 ? SM_CXSMICON : SM_CXICON;
        const bool drawOverlay = overlaid && (flags & SHGFI_ADDOVERLAYS) != 0;
        info.hIcon =
            CreateIconFromSource(ShellIcon(SystemImageIdentity(item.icon), GetSystemMetrics(metric), drawOverlay));
    }
}

/// The item of an absolute list; the root of the name space shows as a folder.
std::optional<ItemId> ItemOfList(LPCITEMIDLIST list)
{
    if (list == nullptr || !IsEmptyList(list))
        return LastItem(list);
    ItemId root{ItemKind::Folder, SystemImageIndex(kFolderIcon), TypeNameIndex(kFolderTypeName), "/"};
    static constexpr char16_t kRootName[] = u"File System";
    root.display = reinterpret_cast<const BYTE*>(kRootName);
    root.displayUnits = std::size(kRootName) - 1;
    return root;
}

} // namespace

} // namespace platform

DWORD_PTR SHGetFileInfoW(LPCWSTR path, DWORD, SHFILEINFOW* info, UINT size, UINT flags)
{
    if (path == nullptr || info == nullptr || size < sizeof *info || platform::FaultPoint("SHGetFileInfoW"))
        return 0;
    LPITEMIDLIST parsed = nullptr;
    if ((flags & SHGFI_PIDL) == 0 && FAILED(SHParseDisplayName(path, nullptr, &parsed, 0, nullptr)))
        return 0;
    const auto* list = parsed != nullptr ? parsed : reinterpret_cast<LPCITEMIDLIST>(path);
    const auto item = platform::ItemOfList(list);
    if (item)
        platform::FillFileInfo(*item, *info, flags);
    ILFree(parsed);
    if (!item || ((flags & SHGFI_ICON) != 0 && info->hIcon == nullptr))
        return 0;
    if ((flags & SHGFI_SYSICONINDEX) == 0)
        return 1;
    return (flags & SHGFI_SMALLICON) != 0 ? platform::kSmallSystemList : platform::kLargeSystemList;
}
