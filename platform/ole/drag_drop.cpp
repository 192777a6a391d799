// DoDragDrop: the loop.
//
// The display lets pointer and keyboard report here wherever the pointer is. A window that nobody sees has the capture
// meanwhile, so that the windows below hear of no movement; who takes the capture away within this program ends the
// drag. Another program that becomes the active one does not: the user may have it brought up to drop something there.
// What of the input matters is read from the state of pointer and keys after each message, since keys make messages
// only in an active program.
#include "platform/base/fault_points.h"
#include "platform/ole/drag_loop.h"
#include "platform/ole/drag_picture.h"
#include "platform/ole/drop_targets.h"
#include "platform/ole/offered_source.h"
#include "platform/ole/outgoing_drag.h"
#include "platform/windowing/input_state.h"
#include "platform/windowing/message_queue.h"

#include <optional>
#include <utility>

namespace platform
{
namespace
{

constexpr UINT kNcMouseLast = WM_NCMOUSEMOVE + (WM_MOUSELAST - WM_MOUSEFIRST);

HWND MakeInputWindow()
{
    constexpr LPCWSTR kName = u"OrbDragInput";
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.lpszClassName = kName;
    RegisterClassExW(&windowClass); // fails from the second time on
    return CreateWindowExW(0, kName, nullptr, WS_POPUP, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
}

bool IsInput(UINT message)
{
    return (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) ||
           (message >= WM_NCMOUSEMOVE && message <= kNcMouseLast) || (message >= WM_KEYFIRST && message <= WM_KEYLAST);
}

bool EscapeToggled()
{
    return (GetKeyState(VK_ESCAPE) & 1) != 0;
}

class DragLoop final : public OutgoingDragPort
{
public:
    DragLoop(IDataObject& data, IDropSource& source, DWORD allowed)
        : m_data(&data), m_source(&source), m_allowed(allowed), m_drag(*this, data, allowed, Keys())
    {
    }

    HRESULT Run(DWORD* effect);
    OutgoingDrag& Drag() { return m_drag; }

    HWND WindowAt(screen::NativeWindow native, POINT point) override { return DropWindowAt(native, point); }
    ComReference<IDropTarget> TargetOf(HWND window) override { return DropTargetOf(window); }
    HRESULT QueryContinue(bool escape, DWORD keys) override { return m_source->QueryContinueDrag(escape, keys); }
    HRESULT GiveFeedback(DWORD effect) override { return m_source->GiveFeedback(effect); }
    screen::DragPlace Move(POINT point, screen::DragActions wanted) override { return screen::MoveDrag(point, wanted); }
    screen::DragPlace Place() override { return screen::CurrentDragPlace(); }
    void Show(screen::DragActions action) override { screen::ShowDragAction(action); }
    bool DropOutside() override { return screen::DropDrag(); }
    void End() override;

private:
    static DWORD Keys() { return static_cast<DWORD>(MouseKeys()); }
    bool Begin();
    void TakeMessage();
    void LookAtInput();

    ComReference<IDataObject> m_data;
    ComReference<IDropSource> m_source;
    DWORD m_allowed;
    OutgoingDrag m_drag;
    HWND m_input = nullptr;
    UINT_PTR m_restTimer = 0;
    bool m_escapeToggled = EscapeToggled();
    std::optional<int> m_quit;
};

constinit DragLoop* g_loop = nullptr;

void CALLBACK OnRestTimer(HWND, UINT, UINT_PTR, DWORD)
{
    if (g_loop != nullptr)
        g_loop->Drag().OnRest();
}

HRESULT DragLoop::Run(DWORD* effect)
{
    *effect = DROPEFFECT_NONE;
    if (!Begin())
        return E_FAIL;
    LookAtInput();
    while (!m_drag.IsOver())
        TakeMessage();
    if (m_quit)
        PostQuitMessage(*m_quit);
    *effect = m_drag.Effect();
    return m_drag.Result();
}

bool DragLoop::Begin()
{
    m_input = MakeInputWindow();
    if (m_input == nullptr)
        return false;
    if (!screen::BeginDrag(OfferToOthers(*m_data.Get()), m_allowed, DragPictureOf(*m_data.Get())))
    {
        DestroyWindow(m_input);
        return false;
    }
    SetCapture(m_input);
    m_restTimer = SetTimer(nullptr, 0, kRestPeriod, OnRestTimer);
    return true;
}

void DragLoop::End()
{
    screen::EndDrag();
    if (m_restTimer != 0)
        KillTimer(nullptr, std::exchange(m_restTimer, 0));
    DestroyWindow(std::exchange(m_input, nullptr)); // and with it the capture
}

void DragLoop::TakeMessage()
{
    MSG message{};
    const bool taken = PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE;
    if (taken && message.message == WM_QUIT)
    {
        m_quit = static_cast<int>(message.wParam);
        m_drag.Cancel();
    }
    else if (taken && !IsInput(message.message))
    {
        DispatchMessageW(&message);
    }
    LookAtInput();
    if (!taken && !m_drag.IsOver())
        WaitForMessage();
}

void DragLoop::LookAtInput()
{
    if (m_drag.IsOver())
        return;
    if (GetCapture() == nullptr)
        SetCapture(m_input); // given up on another program's becoming active
    else if (GetCapture() != m_input)
        m_drag.Cancel();
    const bool toggled = EscapeToggled();
    const bool escape = std::exchange(m_escapeToggled, toggled) != toggled;
    m_drag.OnInput({MessagePoint(), Keys(), escape});
}

} // namespace

void OnOwnDragEvent(const screen::Event& event)
{
    if (g_loop != nullptr && event.type == screen::EventType::DragAnswered)
        g_loop->Drag().OnAnswered();
    else if (g_loop != nullptr)
        g_loop->Drag().OnEnded();
}

} // namespace platform

using namespace platform;

HRESULT DoDragDrop(IDataObject* data, IDropSource* source, DWORD allowed, DWORD* effect)
{
    if (data == nullptr || source == nullptr || effect == nullptr)
        return E_INVALIDARG;
    if (FaultPoint("DoDragDrop") || g_loop != nullptr)
        return E_FAIL;
    TakeDragEvents();
    DragLoop loop(*data, *source, allowed);
    g_loop = &loop;
    const HRESULT result = loop.Run(effect);
    g_loop = nullptr;
    return result;
}
