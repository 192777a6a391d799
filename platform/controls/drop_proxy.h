// The drop target that a control registers for its owner.
#pragma once

#include "ole2.h"

#include "platform/ole/com_object.h"

namespace platform
{

/// Asks the owner for its drop target (TBN_GETOBJECT) when a drag comes over the control, and hands it everything until
/// the drag leaves or drops. An owner without one refuses the drag.
class DropProxy final : public ComObject<IDropTarget, IID_IDropTarget>
{
public:
    DropProxy(HWND control, HWND owner) : m_control(control), m_owner(owner) {}

    /// The control goes: a drag that is over it has left.
    void Close();

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keyState, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragLeave() override;
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) override;

private:
    ~DropProxy() override = default;
    ComReference<IDropTarget> AskOwner();

    HWND m_control; ///< null when it has gone
    HWND m_owner;
    ComReference<IDropTarget> m_target; ///< while a drag is over the control
};

} // namespace platform
