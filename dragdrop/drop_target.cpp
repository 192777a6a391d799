// A level as OLE sees it: its reference count, and an answer to every drag. Levels take no drops yet.
#include "menu/custom_bar.h"

namespace CustomMenu
{

HRESULT STDMETHODCALLTYPE CustomBar::QueryInterface(REFIID iid, void** object)
{
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IDropTarget))
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IDropTarget*>(this);
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE CustomBar::AddRef()
{
    return ++m_refCount;
}

ULONG STDMETHODCALLTYPE CustomBar::Release()
{
    const ULONG count = --m_refCount;
    if (count == 0)
        delete this;
    return count;
}

HRESULT STDMETHODCALLTYPE CustomBar::DragEnter(IDataObject*, DWORD, POINTL, DWORD* effect)
{
    *effect = DROPEFFECT_NONE;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CustomBar::DragOver(DWORD, POINTL, DWORD* effect)
{
    *effect = DROPEFFECT_NONE;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CustomBar::DragLeave()
{
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CustomBar::Drop(IDataObject*, DWORD, POINTL, DWORD* effect)
{
    *effect = DROPEFFECT_NONE;
    return S_OK;
}

} // namespace CustomMenu
