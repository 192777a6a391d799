// Scrolling a pager by what is dragged over its buttons.
#include "platform/controls/pager_drops.h"

#include "platform/controls/pager.h"

namespace platform
{

HRESULT STDMETHODCALLTYPE PagerDropTarget::DragEnter(IDataObject*, DWORD keyState, POINTL point, DWORD* effect)
{
    return DragOver(keyState, point, effect);
}

HRESULT STDMETHODCALLTYPE PagerDropTarget::DragOver(DWORD, POINTL point, DWORD* effect)
{
    *effect = DROPEFFECT_NONE;
    if (m_pager != nullptr)
        m_pager->OnDragOver({point.x, point.y});
    return S_OK;
}

HRESULT STDMETHODCALLTYPE PagerDropTarget::DragLeave()
{
    if (m_pager != nullptr)
        m_pager->OnDragLeave();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE PagerDropTarget::Drop(IDataObject*, DWORD, POINTL, DWORD* effect)
{
    *effect = DROPEFFECT_NONE;
    return DragLeave();
}

} // namespace platform
