// Handing drags over a control to its owner's drop target.
//
// Every call of the target may dispatch messages, and so end the control or bring the next drag.
#include "platform/controls/drop_proxy.h"

#include "commctrl.h"

#include <utility>

namespace platform
{

namespace
{

/// Holds an object for the length of a call.
class Held
{
public:
    explicit Held(IUnknown* object) : m_object(object)
    {
        if (m_object != nullptr)
            m_object->AddRef();
    }
    ~Held()
    {
        if (m_object != nullptr)
            m_object->Release();
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

private:
    IUnknown* m_object;
};

void ReleaseTarget(IDropTarget* target)
{
    if (target != nullptr)
        target->Release();
}

} // namespace

DropProxy::~DropProxy()
{
    ReleaseTarget(m_target);
}

void DropProxy::Close()
{
    m_control = nullptr;
    DragLeave();
}

IDropTarget* DropProxy::AskOwner()
{
    if (m_control == nullptr)
        return nullptr;
    NMOBJECTNOTIFY request = {};
    request.hdr = {m_control, static_cast<UINT_PTR>(GetDlgCtrlID(m_control)), TBN_GETOBJECT};
    request.iItem = -1;
    request.piid = &IID_IDropTarget;
    request.hResult = E_NOINTERFACE;
    SendMessageW(m_owner, WM_NOTIFY, request.hdr.idFrom, reinterpret_cast<LPARAM>(&request));
    return SUCCEEDED(request.hResult) ? static_cast<IDropTarget*>(request.pObject) : nullptr;
}

HRESULT STDMETHODCALLTYPE DropProxy::DragEnter(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect)
{
    const Held self(this);
    IDropTarget* const target = AskOwner();
    ReleaseTarget(std::exchange(m_target, target));
    const Held held(target);
    if (target != nullptr)
        return target->DragEnter(data, keyState, point, effect);
    *effect = DROPEFFECT_NONE;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE DropProxy::DragOver(DWORD keyState, POINTL point, DWORD* effect)
{
    const Held self(this);
    IDropTarget* const target = m_target;
    const Held held(target);
    if (target != nullptr)
        return target->DragOver(keyState, point, effect);
    *effect = DROPEFFECT_NONE;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE DropProxy::DragLeave()
{
    IDropTarget* const target = std::exchange(m_target, nullptr);
    const HRESULT result = target != nullptr ? target->DragLeave() : S_OK;
    ReleaseTarget(target);
    return result;
}

HRESULT STDMETHODCALLTYPE DropProxy::Drop(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect)
{
    IDropTarget* const target = std::exchange(m_target, nullptr);
    if (target == nullptr)
    {
        *effect = DROPEFFECT_NONE;
        return S_OK;
    }
    const HRESULT result = target->Drop(data, keyState, point, effect);
    ReleaseTarget(target);
    return result;
}

} // namespace platform
