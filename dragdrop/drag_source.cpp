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
