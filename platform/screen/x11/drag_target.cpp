// The target's end of a drag: from the source's messages to the screen's events, and the answers to them.
#include "platform/screen/x11/drag_target.h"

#include <utility>

namespace platform::x11
{

using screen::DragActions;
using screen::EventType;

xcb_atom_t XdndAtoms::AtomOf(DragActions action) const
{
    switch (action)
    {
    case screen::kDragCopy:
        return (*this)[Xdnd::ActionCopy];
    case screen::kDragMove:
        return (*this)[Xdnd::ActionMove];
    case screen::kDragLink:
        return (*this)[Xdnd::ActionLink];
    case screen::kDragAsk:
        return (*this)[Xdnd::ActionAsk];
    default:
        return XCB_ATOM_NONE;
    }
}

DragActions XdndAtoms::ActionOf(xcb_atom_t atom) const
{
    for (const DragActions action : {screen::kDragMove, screen::kDragLink, screen::kDragAsk})
        if (AtomOf(action) == atom)
            return action;
    return atom != XCB_ATOM_NONE ? screen::kDragCopy : 0;
}

void DragTarget::OnMessage(const XdndMessage& message)
{
    switch (message.type)
    {
    case Xdnd::Enter:
        OnEnter(message);
        break;
    case Xdnd::Position:
        OnPosition(message);
        break;
    case Xdnd::Leave:
        if (IsCurrent(message))
            Leave();
        break;
    case Xdnd::Drop:
        OnDrop(message);
        break;
    default:
        break;
    }
}

bool DragTarget::IsCurrent(const XdndMessage& message) const
{
    return m_drag.number != 0 && message.data[0] == m_drag.source && message.window == m_drag.window;
}

/// Takes the place of whatever came before: a source that was killed has sent no Leave.
void DragTarget::OnEnter(const XdndMessage& message)
{
    Leave();
    const std::uint32_t version = message.data[1] >> 24;
    if (version < kOldestXdnd || version > kXdndVersion)
        return;
    m_drag.number = ++m_count;
    m_drag.source = message.data[0];
    m_drag.window = message.window;
    m_drag.version = version;
    Watch(m_drag.source, true);
    std::vector<xcb_atom_t> types;
    const bool hasList = (message.data[1] & 1) != 0;
    if (hasList)
        types = m_port.AtomsIn(m_drag.source, m_atoms[Xdnd::TypeList]);
    else
        types.assign(message.data.begin() + 2, message.data.end());
    std::erase(types, static_cast<xcb_atom_t>(XCB_ATOM_NONE));
    m_drag.targets = m_port.NamesOf(types);
}

void DragTarget::OnPosition(const XdndMessage& message)
{
    if (!IsCurrent(message))
    {
        // Whoever has not entered is answered nevertheless: it may wait for that.
        SendStatus(message.data[0], message.window, 0);
        return;
    }
    m_time = message.data[3];
    const DragTargetPort::Look look = m_port.LookAround(m_drag.source);
    m_drag.rightButton |= look.rightButton; // the last position may be read when it has been let go
    DragTargetPort::Report report;
    report.window = m_drag.window;
    report.position = UnpackXdnd(message.data[2]);
    report.modifiers = look.modifiers;
    report.offer.drag = m_drag.number;
    report.offer.targets = m_drag.targets;
    report.offer.actions = m_atoms.ActionOf(message.data[4]) | (m_drag.rightButton ? screen::kDragAsk : 0);
    for (const xcb_atom_t action : look.actions)
        report.offer.actions |= m_atoms.ActionOf(action) & ~screen::kDragAsk; // being able to ask is no wish to
    m_drag.told = m_drag.due = true;
    m_drag.last = report;
    m_port.Tell(report);
}

void DragTarget::OnDrop(const XdndMessage& message)
{
    const bool refused = !m_drag.due && m_drag.answer.value_or(0) == 0;
    const bool isBusy = m_dropped.number != 0 && m_dropped.source != message.data[0];
    if (!IsCurrent(message) || !m_drag.told || refused || isBusy)
    {
        Drag unwanted;
        unwanted.source = message.data[0];
        unwanted.window = message.window;
        unwanted.version = IsCurrent(message) ? m_drag.version : kXdndVersion;
        if (IsCurrent(message))
            Leave();
        // The second of two drops is no refusal of the first, which is being dealt with.
        if (m_dropped.number == 0 || isBusy)
            SendFinished(unwanted, 0);
        return;
    }
    m_time = message.data[2];
    // A source that drops again before the first drop is done has given that one up.
    Watch(std::exchange(m_dropped, {}).source, false);
    m_dropped = std::exchange(m_drag, {});
    Watch(m_dropped.source, true);
    m_dropped.last.type = EventType::DragDrop;
    m_port.Tell(m_dropped.last);
}

void DragTarget::OnWindowGone(xcb_window_t window)
{
    if (m_drag.number != 0 && (window == m_drag.source || window == m_drag.window))
        Leave();
    if (m_dropped.number != 0 && window == m_dropped.source)
        m_dropped = {};
}

void DragTarget::Leave()
{
    if (m_drag.number == 0)
        return;
    Drag left = std::exchange(m_drag, {});
    Watch(left.source, false);
    left.last.type = EventType::DragLeave;
    if (left.told)
        m_port.Tell(left.last);
}

void DragTarget::Answer(unsigned drag, DragActions action)
{
    if (drag == 0 || drag != m_drag.number || (!m_drag.due && m_drag.answer == action))
        return;
    m_drag.due = false;
    m_drag.answer = action;
    SendStatus(m_drag.source, m_drag.window, action);
}

void DragTarget::Finish(unsigned drag, DragActions action)
{
    if (drag == 0 || drag != m_dropped.number)
        return;
    const Drag done = std::exchange(m_dropped, {});
    SendFinished(done, action);
    Watch(done.source, false);
}

/// The rectangle in which nothing else would be answered stays empty: what is shown depends on each point.
void DragTarget::SendStatus(xcb_window_t source, xcb_window_t window, DragActions action)
{
    constexpr std::uint32_t kAccepts = 1, kWantsPositions = 2;
    XdndMessage status{source, Xdnd::Status, {window, kWantsPositions | (action != 0 ? kAccepts : 0)}};
    status.data[4] = m_atoms.AtomOf(action);
    m_port.Send(source, status);
}

void DragTarget::SendFinished(const Drag& drag, DragActions action)
{
    XdndMessage finished{drag.source, Xdnd::Finished, {drag.window}};
    if (drag.version >= 5)
    {
        finished.data[1] = action != 0 ? 1 : 0;
        finished.data[2] = m_atoms.AtomOf(action);
    }
    m_port.Send(drag.source, finished);
}

/// A window is watched as long as one of the two drags is its.
void DragTarget::Watch(xcb_window_t source, bool on)
{
    const bool other =
        (m_drag.number != 0 && m_drag.source == source) || (m_dropped.number != 0 && m_dropped.source == source);
    if (source != 0 && (on || !other))
        m_port.Watch(source, on);
}

} // namespace platform::x11
