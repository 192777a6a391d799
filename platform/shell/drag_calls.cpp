// SHDoDragDrop, and the shell's own drop source.
#include "platform/base/fault_points.h"
#include "platform/ole/com_object.h"
#include "platform/shell/drop_rules.h"
#include "platform/shell/dropped_content.h"
#include "platform/windowing/input_state.h"

#include "shlobj.h"

namespace platform
{

namespace
{

DWORD PressedButton()
{
    const DWORD down = static_cast<DWORD>(MouseKeys()) & kMouseButtons;
    for (const DWORD button : {MK_LBUTTON, MK_RBUTTON, MK_MBUTTON})
        if ((down & button) != 0)
            return button;
    return MK_LBUTTON;
}

/// Escape, or another button, cancels; the release of the button that began the drag drops.
class ShellDropSource final : public ComObject<IDropSource, IID_IDropSource>
{
public:
    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escapePressed, DWORD keyState) override
    {
        if (escapePressed || (keyState & kMouseButtons & ~m_button) != 0)
            return DRAGDROP_S_CANCEL;
        return (keyState & m_button) != 0 ? S_OK : DRAGDROP_S_DROP;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }

private:
    const DWORD m_button = PressedButton();
};

} // namespace

} // namespace platform

HRESULT SHDoDragDrop(HWND, IDataObject* data, IDropSource* source, DWORD allowed, DWORD* effect)
{
    if (data == nullptr || effect == nullptr)
        return E_INVALIDARG;
    if (platform::FaultPoint("SHDoDragDrop"))
        return E_OUTOFMEMORY;
    allowed = platform::WithoutUnwantedMove(allowed, platform::PreferredEffect(*data)); // others do what is offered
    if (source != nullptr)
        return DoDragDrop(data, source, allowed, effect);
    IDropSource* own = new platform::ShellDropSource;
    const HRESULT result = DoDragDrop(data, own, allowed, effect);
    own->Release();
    return result;
}
