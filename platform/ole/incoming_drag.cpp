// Drags of other programs, event by event.
#include "platform/ole/incoming_drag.h"

#include <utility>

namespace platform
{

using screen::Event;
using screen::EventType;

void IncomingDrag::OnEvent(const Event& event)
{
    if (m_dropping)
        QueueWhileDropping(event);
    else
        Queue(event);
    HandleQueued();
}

void IncomingDrag::OnRest()
{
    if (m_busy || !m_last)
        return;
    m_busy = true;
    const screen::DragActions answer = Ask();
    if (std::exchange(m_answer, answer) != answer)
        m_port.Answer(m_last->offer->drag, answer);
    m_busy = false;
    HandleQueued();
}

void IncomingDrag::Queue(const Event& event)
{
    if (event.type != EventType::DragDrop)
        ForgetMovement();
    m_queue.push_back(event);
}

/// What leaves now has not been here yet, and what is dropped was refused.
void IncomingDrag::QueueWhileDropping(const Event& event)
{
    ForgetMovement();
    if (event.type == EventType::DragDrop)
        m_port.Finish(event.offer->drag, 0);
    if (event.type != EventType::DragOver)
        return;
    m_port.Answer(event.offer->drag, 0);
    m_queue.push_back(event);
}

/// The last one, if nobody has heard of it yet: another follows it, or its drag is over. Drops that wait stay.
void IncomingDrag::ForgetMovement()
{
    if (!m_queue.empty() && m_queue.back().type == EventType::DragOver)
        m_queue.pop_back();
}

void IncomingDrag::HandleQueued()
{
    while (!m_busy && !m_queue.empty())
    {
        const Event event = m_queue.front();
        m_queue.pop_front();
        m_busy = true;
        Handle(event);
        m_busy = false;
    }
}

void IncomingDrag::Handle(const Event& event)
{
    if (event.type == EventType::DragOver)
        OnOver(event);
    else if (event.type == EventType::DragDrop)
        OnDrop(event);
    else
        End();
}

void IncomingDrag::OnOver(const Event& event)
{
    Begin(event);
    m_answer = Ask();
    m_port.Answer(event.offer->drag, m_answer);
}

void IncomingDrag::OnDrop(const Event& event)
{
    Begin(event);
    m_answer = Ask(); // even where nothing has moved: the target may have, or have been filled anew
    DWORD done = DROPEFFECT_NONE;
    if (m_answer != 0)
    {
        m_dropping = true;
        const ComReference<IDataObject> data = m_data;
        const DragMoment moment = Moment();
        done = m_site.Drop(*data.Get(), moment);
        m_dropping = false;
    }
    m_port.Finish(event.offer->drag, DoneAction(done));
    End();
}

/// The event is the latest of the drag that is over the windows: the one before, or another whose begin was missed.
void IncomingDrag::Begin(const Event& event)
{
    if (m_last && m_last->offer->drag != event.offer->drag)
        End();
    if (!m_data)
        m_data = m_port.MakeData(*event.offer);
    m_last = event;
}

void IncomingDrag::End()
{
    m_site.Leave();
    m_last.reset();
    m_answer = 0;
    if (std::exchange(m_data, {}))
        m_port.CloseData();
}

screen::DragActions IncomingDrag::Ask()
{
    const HWND window = m_port.WindowAt(m_last->window, m_last->position);
    const DWORD effect = m_data ? m_site.Over(window, *m_data.Get(), Moment()) : DROPEFFECT_NONE;
    const bool ask = (m_last->offer->actions & screen::kDragAsk) != 0;
    return effect != DROPEFFECT_NONE && ask ? screen::kDragAsk : LikelyAction(effect);
}

DragMoment IncomingDrag::Moment() const
{
    const screen::DragActions actions = m_last->offer->actions;
    DragMoment moment;
    moment.point = m_last->position;
    moment.allowed = actions & kDropEffects;
    moment.keys = (actions & screen::kDragAsk) != 0 ? MK_RBUTTON : MK_LBUTTON;
    moment.keys |= (m_last->modifiers & screen::kShift) != 0 ? MK_SHIFT : 0;
    moment.keys |= (m_last->modifiers & screen::kControl) != 0 ? MK_CONTROL : 0;
    return moment;
}

} // namespace platform
