// Image lists, and their API.
//
// Not implemented: masks (an icon carries its own alpha), overlays, dragging, drawing styles other than normal.
#include "platform/controls/image_list.h"

#include "platform/base/fault_points.h"
#include "platform/drawing/image_scaling.h"

namespace platform
{

int ImageList::Replace(int index, std::shared_ptr<IconSource> source)
{
    if (source == nullptr || (index != -1 && !Has(index)))
        return -1;
    if (index == -1)
    {
        m_entries.push_back({std::move(source), std::nullopt});
        return Count() - 1;
    }
    m_entries[static_cast<std::size_t>(index)] = {std::move(source), std::nullopt};
    return index;
}

std::shared_ptr<IconSource> ImageList::SourceAt(int index) const
{
    return Has(index) ? m_entries[static_cast<std::size_t>(index)].source : nullptr;
}

const IconImage& ImageList::ImageOf(Entry& entry)
{
    const IconImage& own = entry.source->Image();
    if (own.width == m_width && own.height == m_height)
        return own;
    if (!entry.scaled)
        entry.scaled = ScaleImage(own, m_width, m_height);
    return *entry.scaled;
}

bool ImageList::Draw(int index, HDC dc, int x, int y)
{
    return Has(index) && DrawIconImage(dc, x, y, ImageOf(m_entries[static_cast<std::size_t>(index)]));
}

} // namespace platform

using platform::FaultPoint;
using platform::FindObject;
using platform::ImageList;

HIMAGELIST ImageList_Create(int width, int height, UINT, int initial, int)
{
    if (FaultPoint("ImageList_Create") || width <= 0 || height <= 0 || initial < 0)
        return nullptr;
    return reinterpret_cast<HIMAGELIST>(platform::InsertHandle(std::make_unique<ImageList>(width, height)));
}

BOOL ImageList_Destroy(HIMAGELIST list)
{
    return FindObject<ImageList>(list) != nullptr &&
           platform::TakeHandle(reinterpret_cast<std::uintptr_t>(list)) != nullptr;
}

int ImageList_GetImageCount(HIMAGELIST list)
{
    const auto* images = FindObject<ImageList>(list);
    return images != nullptr ? images->Count() : 0;
}

int ImageList_ReplaceIcon(HIMAGELIST list, int index, HICON icon)
{
    auto* images = FindObject<ImageList>(list);
    return images != nullptr && !FaultPoint("ImageList_ReplaceIcon")
               ? images->Replace(index, platform::IconSourceOf(icon))
               : -1;
}

BOOL ImageList_Draw(HIMAGELIST list, int index, HDC dc, int x, int y, UINT)
{
    auto* images = FindObject<ImageList>(list);
    return images != nullptr && images->Draw(index, dc, x, y);
}

BOOL ImageList_GetIconSize(HIMAGELIST list, int* width, int* height)
{
    const auto* images = FindObject<ImageList>(list);
    if (images == nullptr || width == nullptr || height == nullptr)
        return FALSE;
    *width = images->Width();
    *height = images->Height();
    return TRUE;
}
