// Dragging an item out of a level.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "commands/bound_item.h"
#include "commands/operation_scope.h"
#include "content/ordering.h"
#include "dragdrop/drag_rules.h"
#include "dragdrop/synchronous_data.h"

namespace CustomMenu
{

namespace
{

bool MouseButtonIsDown()
{
    return GetKeyState(VK_LBUTTON) < 0 || GetKeyState(VK_RBUTTON) < 0;
}

ComPtr<IDataObject> DataOf(const BoundItem& item)
{
    ComPtr<IDataObject> data;
    LPCITEMIDLIST child = item.Child();
    if (FAILED(item.Folder()->GetUIObjectOf(nullptr, 1, &child, IID_IDataObject, nullptr, data.ReceiveVoid())))
        return {};
    return data;
}

/// A copy of the shell's picture of an absolute item.
UniqueBitmap PictureOf(LPCITEMIDLIST list, int size)
{
    ComPtr<IShellItem> item;
    ComPtr<IShellItemImageFactory> pictures;
    HBITMAP bitmap = nullptr;
    if (FAILED(SHCreateItemFromIDList(list, IID_IShellItem, item.ReceiveVoid())) ||
        FAILED(item->QueryInterface(IID_IShellItemImageFactory, pictures.ReceiveVoid())) ||
        FAILED(pictures->GetImage({size, size}, SIIGBF_RESIZETOFIT, &bitmap)))
        return {};
    const UniqueBitmap picture(bitmap);
    return UniqueBitmap(static_cast<HBITMAP>(CopyImage(picture.Get(), IMAGE_BITMAP, 0, 0, 0)));
}

/// Whatever fails leaves the drag without a picture.
void SetDragImage(IDragSourceHelper2& helper, IDataObject& data, LPCITEMIDLIST list)
{
    const int size = g_launcher.m_dragImageSize;
    UniqueBitmap picture = PictureOf(list, size);
    if (!picture)
        return;
    helper.SetFlags(DSH_ALLOWDROPDESCRIPTIONTEXT);
    SHDRAGIMAGE image{};
    image.sizeDragImage = {size, size};
    image.ptOffset = DragImageOffset(size);
    image.hbmpDragImage = picture.Get();
    image.crColorKey = CLR_NONE;
    if (SUCCEEDED(helper.InitializeFromBitmap(&image, &data)))
        picture.Release(); // the helper's
}

} // namespace

void CustomBar::BeginItemDrag(int index)
{
    if (!HasItem(index) || !CanDrag(m_items[index]) || !MouseButtonIsDown())
        return;
    const LevelRef self(*this);
    const std::uint32_t key = m_items[index].key;
    BoundItem item(m_items[index].pidl.Get());
    if (!item.Bind())
        return;
    const ComPtr<IDataObject> data = DataOf(item);
    if (!data)
        return;
    if (m_dragHelper)
        SetDragImage(*m_dragHelper.Get(), *data.Get(), item.List());
    const ComPtr<IDataObjectAsyncCapability> async = TakeSynchronously(*data.Get());
    {
        const OperationScope operation(*this);
        m_dragIndex = FindAgain(m_items, index, key);
        DWORD effect = DROPEFFECT_NONE;
        SHDoDragDrop(nullptr, data.Get(), nullptr, kAllEffects, &effect);
    }
    ActivateDeepestLevel();
}

} // namespace CustomMenu
