// RegisterDragDrop, RevokeDragDrop, and what incoming drags need of windows and screen.
#include "platform/ole/drop_targets.h"

#include "platform/base/fault_points.h"
#include "platform/ole/drag_loop.h"
#include "platform/ole/incoming_drag.h"
#include "platform/ole/offered_data.h"
#include "platform/windowing/drag_events.h"
#include "platform/windowing/window.h"

#include <map>
#include <utility>

namespace platform
{
namespace
{

using Targets = std::map<HWND, ComReference<IDropTarget>>;

Targets& TheTargets()
{
    static Targets& targets = *new Targets;
    return targets;
}

/// The reference is given back when the window can no longer be found: its end may run into everything.
bool Forget(HWND window)
{
    const auto node = TheTargets().extract(window);
    return !node.empty();
}

class ScreenPort final : public IncomingDragPort
{
public:
    HWND WindowAt(screen::NativeWindow native, POINT point) override { return DropWindowAt(native, point); }
    ComReference<IDropTarget> TargetOf(HWND window) override { return DropTargetOf(window); }
    ComReference<IDataObject> MakeData(const screen::DragOffer& offer) override
    {
        m_reading = std::make_shared<OfferReading>();
        return MakeOfferedData(offer, m_reading);
    }
    void CloseData() override { m_reading->open = false; }
    void Answer(unsigned drag, screen::DragActions action) override { screen::AnswerDrag(drag, action); }
    void Finish(unsigned drag, screen::DragActions action) override { screen::FinishDrop(drag, action); }

private:
    std::shared_ptr<OfferReading> m_reading;
};

struct Incoming
{
    ScreenPort port;
    IncomingDrag drag{port};
    UINT_PTR restTimer = 0;
};

Incoming& TheIncoming()
{
    static Incoming& incoming = *new Incoming;
    return incoming;
}

void FollowRest();

void CALLBACK OnRestTimer(HWND, UINT, UINT_PTR, DWORD)
{
    TheIncoming().drag.OnRest();
    FollowRest();
}

void FollowRest()
{
    Incoming& incoming = TheIncoming();
    if (incoming.drag.IsOver() == (incoming.restTimer != 0))
        return;
    if (incoming.restTimer == 0)
        incoming.restTimer = SetTimer(nullptr, 0, kRestPeriod, OnRestTimer);
    else
        KillTimer(nullptr, std::exchange(incoming.restTimer, 0));
}

void OnDragEvent(const screen::Event& event)
{
    if (event.type == screen::EventType::DragAnswered || event.type == screen::EventType::DragEnded)
    {
        OnOwnDragEvent(event);
        return;
    }
    TheIncoming().drag.OnEvent(event);
    FollowRest();
}

void OnWindowGone(HWND window)
{
    Forget(window);
}

constexpr DragHandler kHandler{OnDragEvent, OnWindowGone};

bool MayBeDroppedOn(const Window& window)
{
    for (const Window* each = &window; each != nullptr; each = each->parent)
        if (each->destroying || (each->style & WS_DISABLED) != 0)
            return false;
    return true;
}

} // namespace

HWND DropWindowAt(screen::NativeWindow native, POINT point)
{
    HWND root = nullptr;
    for (const Window* window : TopLevels())
        if (native != 0 && window->native == native && (window->style & WS_VISIBLE) != 0)
            root = window->handle;
    if (root == nullptr || !MayBeDroppedOn(*FindObject<Window>(root)))
        return nullptr;
    const Window* window = FindObject<Window>(WindowAtPoint(root, point));
    if (window == nullptr || !MayBeDroppedOn(*window))
        return nullptr;
    while (window != nullptr && !TheTargets().contains(window->handle))
        window = window->parent;
    return HandleOf(window);
}

ComReference<IDropTarget> DropTargetOf(HWND window)
{
    const auto found = TheTargets().find(window);
    return found != TheTargets().end() ? found->second : ComReference<IDropTarget>();
}

void TakeDragEvents()
{
    SetDragHandler(kHandler);
}

} // namespace platform

using namespace platform;

HRESULT RegisterDragDrop(HWND window, IDropTarget* target)
{
    if (!IsWindow(window))
        return DRAGDROP_E_INVALIDHWND;
    if (target == nullptr)
        return E_INVALIDARG;
    if (TheTargets().contains(window))
        return DRAGDROP_E_ALREADYREGISTERED;
    if (FaultPoint("RegisterDragDrop"))
        return E_OUTOFMEMORY;
    TakeDragEvents();
    TheTargets().emplace(window, ComReference<IDropTarget>(target));
    return S_OK;
}

HRESULT RevokeDragDrop(HWND window)
{
    if (!IsWindow(window))
        return DRAGDROP_E_INVALIDHWND;
    return Forget(window) ? S_OK : DRAGDROP_E_NOTREGISTERED;
}
