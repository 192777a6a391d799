// The folder's IDropTarget.
//
// The effect is chosen as the folders of Windows do. A drop by the right button asks, whatever the keys; they say which
// entry is the default one.
#include "platform/shell/folder_drop_target.h"

#include "platform/base/fault_points.h"
#include "platform/ole/com_object.h"
#include "platform/shell/drop_menu.h"
#include "platform/shell/drop_place.h"
#include "platform/shell/dropped_content.h"
#include "platform/shell/file_operation.h"
#include "platform/shell/link_entries.h"

#include "windows.h"

namespace platform
{

namespace
{

class FolderDropTarget final : public ComObject<IDropTarget, IID_IDropTarget>
{
public:
    FolderDropTarget(HWND owner, std::string folder) : m_owner(owner), m_folder(std::move(folder)) {}

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keyState, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragLeave() override;
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) override;

private:
    void Take(IDataObject& data);
    DWORD Choose(DWORD allowed, DWORD keyState) const
    {
        return ChosenEffect(m_facts, PossibleEffects(m_facts, allowed), keyState);
    }

    const HWND m_owner;
    const std::string m_folder;
    bool m_rightButton = false; ///< the drop's key state has none any more
    DropFacts m_facts;
    DroppedContent m_content;
};

/// What the effect makes of the content. False when not all was done.
bool Perform(DWORD effect, const DroppedContent& content, const std::string& folder, HWND owner)
{
    const FileOperation operation = effect == DROPEFFECT_COPY   ? FileOperation::Copy
                                    : effect == DROPEFFECT_MOVE ? FileOperation::Move
                                                                : FileOperation::Link;
    if (!content.paths.empty() && RunFileOperation({operation, content.paths, folder, owner}) != S_OK)
        return false;
    return content.addresses.empty() || MakeLinkEntries(content.addresses, folder, owner);
}

HRESULT FolderDropTarget::DragEnter(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect)
{
    if (data == nullptr || effect == nullptr)
        return E_INVALIDARG;
    if (FaultPoint("IDropTarget::DragEnter"))
        return E_OUTOFMEMORY;
    Take(*data);
    return DragOver(keyState, point, effect);
}

void FolderDropTarget::Take(IDataObject& data)
{
    m_content = ReadDropped(data);
    m_facts = {!m_content.paths.empty(), !m_content.addresses.empty()};
    m_facts.preferred = PreferredEffect(data);
    if (!m_content.IsEmpty())
        LookAtDrop(m_facts, m_folder, m_content.paths);
}

HRESULT FolderDropTarget::DragOver(DWORD keyState, POINTL, DWORD* effect)
{
    if (effect == nullptr)
        return E_INVALIDARG;
    m_rightButton = (keyState & MK_RBUTTON) != 0;
    *effect = Choose(*effect, keyState);
    return S_OK;
}

HRESULT FolderDropTarget::DragLeave()
{
    m_content = {};
    m_facts = {};
    return S_OK;
}

HRESULT FolderDropTarget::Drop(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect)
{
    if (data == nullptr || effect == nullptr)
        return E_INVALIDARG;
    const DWORD allowed = *effect;
    *effect = DROPEFFECT_NONE;
    if (FaultPoint("IDropTarget::Drop"))
        return E_OUTOFMEMORY;
    AddRef(); // messages are dispatched while it asks and works
    const DWORD possible = PossibleEffects(m_facts, allowed);
    DWORD chosen = Choose(allowed, keyState);
    const DroppedContent content = std::move(m_content);
    if (possible != DROPEFFECT_NONE && (m_rightButton || (keyState & MK_RBUTTON) != 0))
        chosen = AskDropEffect(m_owner, {point.x, point.y}, possible, chosen);
    DragLeave();
    if (chosen != DROPEFFECT_NONE && Perform(chosen, content, m_folder, IsWindow(m_owner) ? m_owner : nullptr))
        *effect = chosen;
    Release();
    return S_OK;
}

} // namespace

IDropTarget* MakeFolderDropTarget(HWND owner, std::string folder)
{
    return new FolderDropTarget(owner, std::move(folder));
}

} // namespace platform
