// What a pager does with what is dragged over its buttons.
#pragma once

#include "ole2.h"

#include "platform/ole/com_object.h"

namespace platform
{

class Pager;

/// Has the pager scroll while something is dragged over its buttons; takes nothing.
class PagerDropTarget final : public ComObject<IDropTarget, IID_IDropTarget>
{
public:
    explicit PagerDropTarget(Pager& pager) : m_pager(&pager) {}

    /// The pager goes.
    void Forget() { m_pager = nullptr; }

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keyState, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragLeave() override;
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) override;

private:
    ~PagerDropTarget() override = default;

    Pager* m_pager;
};

} // namespace platform
