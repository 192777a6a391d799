// The staged ends of a drop.
#include "tests/scenarios/staged_drop.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

#include <ostream>

namespace
{

StagedDrag*& g_drag = StagedDrag::current;

} // namespace

// The linker sends the call here first (see CMakeLists.txt).
STAGED_CALL(HRESULT, DoDragDrop, "12SHDoDragDropP6HWND__P11IDataObjectP11IDropSourcejPj", HWND window,
            IDataObject* data, IDropSource* source, DWORD allowed, DWORD* effect)
{
    if (g_drag == nullptr)
        return RealDoDragDrop(window, data, source, allowed, effect);
    ++g_drag->drags;
    g_drag->window = window;
    g_drag->data = data;
    g_drag->hasSource = source != nullptr;
    g_drag->allowed = allowed;
    if (g_drag->onDrag)
        g_drag->onDrag();
    *effect = g_drag->effect;
    return DRAGDROP_S_DROP;
}

StagedData::StagedData()
{
    references = 1; // the dragging program's
}

StagedData::~StagedData()
{
    EXPECT_EQ(references, 1) << "somebody still holds what was dragged";
    EXPECT_EQ(m_async.references, 0);
}

HRESULT StagedData::QueryInterface(REFIID iid, void** object)
{
    return iid == IID_IDataObjectAsyncCapability ? m_async.QueryInterface(iid, object)
                                                 : StagedObject::QueryInterface(iid, object);
}

HRESULT StagedData::QueryGetData(FORMATETC* format)
{
    asked = *format;
    return isShellItems && format->cfFormat == g_launcher.m_shellIdListFormat ? S_OK : DV_E_FORMATETC;
}

std::ostream& operator<<(std::ostream& out, const StagedCall& call)
{
    return out << call.name << "(keys " << call.keyState << ", effect " << call.effect << ")";
}

StagedDropTarget::~StagedDropTarget()
{
    EXPECT_EQ(references, 0) << "somebody still holds the folder's drop target";
}

HRESULT StagedDropTarget::DragEnter(IDataObject*, DWORD keyState, POINTL, DWORD* effect)
{
    calls.push_back({"DragEnter", keyState, *effect});
    *effect = DROPEFFECT_NONE; // the copy that is passed is nobody's answer
    return refuses ? E_FAIL : S_OK;
}

HRESULT StagedDropTarget::DragOver(DWORD keyState, POINTL, DWORD* effect)
{
    calls.push_back({"DragOver", keyState, *effect});
    *effect = answer;
    return S_OK;
}

HRESULT StagedDropTarget::DragLeave()
{
    calls.push_back({"DragLeave", 0, 0});
    return S_OK;
}

HRESULT StagedDropTarget::Drop(IDataObject*, DWORD keyState, POINTL, DWORD* effect)
{
    calls.push_back({"Drop", keyState, *effect});
    *effect = answer;
    if (onDrop)
        onDrop();
    return S_OK;
}

StagedDropFolder::~StagedDropFolder()
{
    EXPECT_EQ(references, 0) << "somebody still holds the folder";
}

HRESULT StagedDropFolder::CreateViewObject(HWND window, REFIID iid, void** result)
{
    owner = window;
    return hasTarget ? target.QueryInterface(iid, result) : E_FAIL;
}
