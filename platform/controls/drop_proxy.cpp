// Handing drags over a control to its owner's drop target.
//
// Every call of the target may dispatch messages, and so end the control or bring the next drag. Whoever calls holds
// the proxy.
#include "platform/controls/drop_proxy.h"

#include "commctrl.h"

#include <utility>

namespace platform
{

void DropProxy::Close()
{
    m_control = nullptr;
    DragLeave();
}

ComReference<IDropTarget> DropProxy::AskOwner()
{
    if (m_control == nullptr)
        return {};
    NMOBJECTNOTIFY request = {};
    request.hdr = {m_control, static_cast<UINT_PTR>(GetDlgCtrlID(m_control)), TBN_GETOBJECT};
    request.iItem = -1;
    request.piid = &IID_IDropTarget;
    request.hResult = E_NOINTERFACE;
    SendMessageW(m_owner, WM_NOTIFY, request.hdr.idFrom, reinterpret_cast<LPARAM>(&request));
    if (FAILED(request.hResult))
        return {};
    return ComReference<IDropTarget>::Adopt(static_cast<IDropTarget*>(request.pObject));
}

HRESULT STDMETHODCALLTYPE DropProxy::DragEnter(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect)
{
    const ComReference<IDropTarget> target = AskOwner();
    m_target = target;
    if (target)
        return target->DragEnter(data, keyState, point, effect);
    *effect = DROPEFFECT_NONE;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE DropProxy::DragOver(DWORD keyState, POINTL point, DWORD* effect)
{
    const ComReference<IDropTarget> target = m_target;
    if (target)
        return target->DragOver(keyState, point, effect);
    *effect = DROPEFFECT_NONE;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE DropProxy::DragLeave()
{
    const ComReference<IDropTarget> target = std::exchange(m_target, {});
    return target ? target->DragLeave() : S_OK;
}

HRESULT STDMETHODCALLTYPE DropProxy::Drop(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect)
{
    const ComReference<IDropTarget> target = std::exchange(m_target, {});
    if (target)
        return target->Drop(data, keyState, point, effect);
    *effect = DROPEFFECT_NONE;
    return S_OK;
}

} // namespace platform
