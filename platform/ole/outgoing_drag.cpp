// This program's drags, step by step.
#include "platform/ole/outgoing_drag.h"

#include "platform/windowing/input_state.h"

#include <utility>

namespace platform
{
OutgoingDrag::OutgoingDrag(OutgoingDragPort& port, IDataObject& data, DWORD allowed, DWORD keys)
    : m_port(port),
      m_data(data),
      m_site(port),
      m_allowed(allowed & kDropEffects),
      m_asks((keys & (MK_LBUTTON | MK_RBUTTON)) == MK_RBUTTON),
      m_keys(keys)
{
}

void OutgoingDrag::OnInput(const Input& input)
{
    if (m_busy || m_step == Step::Over)
        return;
    m_busy = true;
    if (m_step == Step::Dragging)
        Handle(input);
    else
        HandleWhileDropped(input);
    m_busy = false;
}

void OutgoingDrag::OnRest()
{
    if (m_busy || m_step != Step::Dragging || !m_begun)
        return;
    m_busy = true;
    Look(m_port.Place());
    m_busy = false;
}

void OutgoingDrag::OnEnded()
{
    if (m_step == Step::Dropped)
        EndWith(DRAGDROP_S_DROP, DoneAction(m_port.Place().answer));
}

void OutgoingDrag::Handle(const Input& input)
{
    const bool first = !std::exchange(m_begun, true);
    const bool moved = first || input.point.x != m_point.x || input.point.y != m_point.y;
    const bool keysChanged = input.keys != m_keys;
    const HRESULT wish = first || keysChanged || input.escape ? m_port.QueryContinue(input.escape, input.keys) : S_OK;
    if (wish != S_OK && wish != DRAGDROP_S_DROP)
    {
        Stop(wish);
        return;
    }
    // A drop is where the pointer has come to, on a target as it is by now; and targets go by the button with which
    // they were last called.
    const bool drops = wish == DRAGDROP_S_DROP;
    const DWORD keys = drops ? (m_keys & kMouseButtons) | (input.keys & ~kMouseButtons) : input.keys;
    if (moved || keys != m_keys || (drops && m_own))
        Track(input.point, keys);
    if (drops && m_step == Step::Dragging)
        Drop(input.keys);
}

/// The other program may be asking its user, or hang: this one's user goes on when they like.
void OutgoingDrag::HandleWhileDropped(const Input& input)
{
    const DWORD pressed = input.keys & kMouseButtons & ~std::exchange(m_keys, input.keys);
    if (input.escape || pressed != 0)
        Cancel();
}

void OutgoingDrag::Track(POINT point, DWORD keys)
{
    m_point = point;
    m_keys = keys;
    Look(m_port.Move(point, Wanted()));
}

void OutgoingDrag::Look(const screen::DragPlace& place)
{
    m_own = place.own != 0;
    if (m_own)
    {
        const HWND window = m_port.WindowAt(place.own, m_point);
        m_possible = m_site.Over(window, m_data, Moment());
        Feedback(m_possible != DROPEFFECT_NONE && m_asks ? screen::kDragAsk : LikelyAction(m_possible));
        return;
    }
    m_site.Leave();
    if (place.answered)
        Feedback(place.answer);
}

void OutgoingDrag::Feedback(screen::DragActions action)
{
    const DWORD effect = (action & screen::kDragAsk) != 0 ? LikelyAction(m_allowed) : action;
    const bool ours = m_port.GiveFeedback(effect) == DRAGDROP_S_USEDEFAULTCURSORS;
    if (ours && std::exchange(m_shown, action) != action)
        m_port.Show(action);
}

void OutgoingDrag::Drop(DWORD keys)
{
    if (m_own)
        DropHere(keys);
    else if (m_port.DropOutside())
        m_step = Step::Dropped;
    else
        EndWith(DRAGDROP_S_DROP, DROPEFFECT_NONE);
}

/// The target may show boxes: pointer and keyboard are the user's again before it is called.
void OutgoingDrag::DropHere(DWORD keys)
{
    Release();
    DragMoment moment = Moment();
    moment.keys = keys;
    const DWORD done = m_possible != DROPEFFECT_NONE ? m_site.Drop(m_data, moment) : DROPEFFECT_NONE;
    EndWith(DRAGDROP_S_DROP, done);
}

void OutgoingDrag::Stop(HRESULT result)
{
    if (m_step != Step::Over)
        EndWith(m_step == Step::Dropped ? DRAGDROP_S_DROP : result, DROPEFFECT_NONE);
}

void OutgoingDrag::EndWith(HRESULT result, DWORD effect)
{
    m_step = Step::Over;
    m_result = result;
    m_effect = effect;
    Release();
    m_site.Leave();
}

void OutgoingDrag::Release()
{
    if (!std::exchange(m_released, true))
        m_port.End();
}

screen::DragActions OutgoingDrag::Wanted() const
{
    if (m_asks)
        return screen::kDragAsk;
    switch (m_keys & (MK_SHIFT | MK_CONTROL))
    {
    case MK_SHIFT | MK_CONTROL:
        return screen::kDragLink;
    case MK_CONTROL:
        return screen::kDragCopy;
    case MK_SHIFT:
        return screen::kDragMove;
    default:
        return 0;
    }
}

} // namespace platform
