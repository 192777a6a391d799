// The source's end of a drag: what is told to the windows under the pointer, and what they answer.
#include "platform/screen/x11/drag_source.h"

#include <bit>
#include <utility>

namespace platform::x11
{

using screen::DragActions;
using screen::EventType;

namespace
{

bool Contains(const RECT& rect, POINT point)
{
    return point.x >= rect.left && point.x < rect.right && point.y >= rect.top && point.y < rect.bottom;
}

} // namespace

void DragSource::Move(const DropSite& site, const Point& point, std::uint64_t now)
{
    if (m_step != Step::Over)
        return;
    if (site != m_site)
        GoTo(site);
    if (m_site.window == 0)
        return;
    if (m_awaiting)
        m_next = point;
    else if (!Spares(point))
        SendPosition(point, now);
}

void DragSource::GoTo(const DropSite& site)
{
    if (m_site.window != 0)
        SendLeave();
    Forget();
    m_site = site;
    if (m_site.window != 0)
        Enter();
}

/// What was said to the partner, and what it has said.
void DragSource::Forget()
{
    m_site = {};
    m_sent.reset();
    m_next.reset();
    m_awaiting = m_answered = false;
    m_answer = 0;
    m_spared = {};
    m_deadline.reset();
}

void DragSource::Enter()
{
    m_port.Watch(m_site.window, true);
    constexpr std::size_t kMostInMessage = 3;
    const bool hasList = m_offer.types.size() > kMostInMessage;
    XdndMessage enter{m_site.window, Xdnd::Enter, {m_offer.window, m_site.version << 24 | (hasList ? 1U : 0U)}};
    for (std::size_t i = 0; i < std::min(kMostInMessage, m_offer.types.size()); ++i)
        enter.data[2 + i] = m_offer.types[i];
    m_port.Send(m_site.listener, enter);
}

/// The same point with the same wish is not told twice, nor one of which the partner does not want to hear.
bool DragSource::Spares(const Point& point) const
{
    if (!m_sent || m_sent->wanted != point.wanted)
        return false;
    const bool same = m_sent->position.x == point.position.x && m_sent->position.y == point.position.y;
    return same || Contains(m_spared, point.position);
}

std::uint32_t DragSource::ActionFor(DragActions wanted) const
{
    const DragActions possible = wanted & (m_offer.allowed | screen::kDragAsk);
    const DragActions actions = possible != 0 ? possible : m_offer.allowed;
    return m_atoms.AtomOf((actions & screen::kDragAsk) != 0 ? screen::kDragAsk : 1U << std::countr_zero(actions | 8U));
}

void DragSource::SendPosition(const Point& point, std::uint64_t now)
{
    XdndMessage position{m_site.window, Xdnd::Position, {m_offer.window, 0, PackXdnd(point.position), point.time}};
    position.data[4] = ActionFor(point.wanted);
    m_port.Send(m_site.listener, position);
    m_sent = point;
    m_awaiting = true;
    m_deadline = now + kPatience;
}

void DragSource::SendLeave()
{
    m_port.Send(m_site.listener, {m_site.window, Xdnd::Leave, {m_offer.window}});
    m_port.Watch(m_site.window, false);
}

bool DragSource::Drop(xcb_timestamp_t time, std::uint64_t now)
{
    if (m_step != Step::Over)
        return false;
    m_dropTime = time;
    // Without a deadline the answer is overdue.
    if (m_site.window != 0 && m_awaiting && m_deadline)
    {
        m_step = Step::Dropping;
        return true;
    }
    if (m_site.window == 0 || m_answer == 0)
    {
        GoTo({});
        m_step = Step::Ended;
        return false;
    }
    SendDrop(now);
    return true;
}

void DragSource::SendDrop(std::uint64_t now)
{
    m_port.Send(m_site.listener, {m_site.window, Xdnd::Drop, {m_offer.window, 0, m_dropTime}});
    m_step = Step::Dropped;
    AwaitFinished(now);
}

void DragSource::AwaitFinished(std::uint64_t now)
{
    m_deadline = now + ((m_answer & screen::kDragAsk) != 0 ? kPatienceWithUsers : kPatience);
}

void DragSource::Cancel()
{
    if (m_step == Step::Over || m_step == Step::Dropping)
        GoTo({});
    else if (m_site.window != 0)
        m_port.Watch(m_site.window, false);
    m_site = {};
    m_deadline.reset();
    m_step = m_step == Step::Finished ? Step::Finished : Step::Ended;
}

void DragSource::OnMessage(const XdndMessage& message, std::uint64_t now)
{
    const bool fromPartner = m_site.window != 0 && message.window == m_offer.window &&
                             (message.data[0] == m_site.window || message.data[0] == m_site.listener);
    if (fromPartner && message.type == Xdnd::Status)
        OnStatus(message, now);
    else if (fromPartner && message.type == Xdnd::Finished)
        OnFinished(message);
}

/// A partner may also answer anew without having been asked.
void DragSource::OnStatus(const XdndMessage& message, std::uint64_t now)
{
    constexpr std::uint32_t kAccepts = 1, kWantsPositions = 2;
    if ((m_step != Step::Over && m_step != Step::Dropping) || !m_sent)
        return;
    const bool accepts = (message.data[1] & kAccepts) != 0;
    const DragActions answer = accepts ? m_atoms.ActionOf(message.data[4]) & (m_offer.allowed | screen::kDragAsk) : 0;
    const bool news = !m_answered || answer != m_answer;
    m_answered = true;
    m_answer = answer;
    const POINT corner = UnpackXdnd(message.data[2]);
    const LONG width = static_cast<LONG>(message.data[3] >> 16);
    const LONG height = static_cast<LONG>(message.data[3] & 0xFFFF);
    const bool spares = (message.data[1] & kWantsPositions) == 0;
    m_spared = spares ? RECT{corner.x, corner.y, corner.x + width, corner.y + height} : RECT{};
    m_awaiting = false;
    m_deadline.reset();
    if (const auto next = std::exchange(m_next, {}); next && !Spares(*next))
        SendPosition(*next, now);
    if (m_step == Step::Over)
    {
        if (news)
            m_port.Tell(EventType::DragAnswered);
    }
    else if (!m_awaiting && m_answer != 0)
    {
        SendDrop(now);
    }
    else if (!m_awaiting)
    {
        SendLeave();
        End(Step::Ended, 0);
    }
}

/// Only version 5 says whether anything was done, and what.
void DragSource::OnFinished(const XdndMessage& message)
{
    if (m_step != Step::Dropped)
        return;
    DragActions done = m_answer;
    if (m_site.version >= 5)
    {
        const DragActions said = m_atoms.ActionOf(message.data[2]);
        done = (message.data[1] & 1) == 0 ? 0 : said != 0 ? said : m_answer;
    }
    m_port.Watch(m_site.window, false);
    End(Step::Finished, done);
}

void DragSource::OnWindowGone(xcb_window_t window)
{
    if (m_site.window == 0 || (window != m_site.window && window != m_site.listener))
        return;
    if (m_step != Step::Over)
    {
        End(Step::Ended, 0);
        return;
    }
    Forget();
    m_port.Tell(EventType::DragAnswered);
}

void DragSource::OnRead(std::uint64_t now)
{
    if (m_step == Step::Dropped)
        AwaitFinished(now);
}

void DragSource::OnTime(std::uint64_t now)
{
    if (!m_deadline || now < *m_deadline)
        return;
    m_deadline.reset();
    switch (m_step)
    {
    case Step::Over:
        // Still awaited: nothing more is told until it comes.
        m_answered = true;
        m_answer = 0;
        m_port.Tell(EventType::DragAnswered);
        break;
    case Step::Dropping:
        SendLeave();
        End(Step::Ended, 0);
        break;
    case Step::Dropped:
        m_port.Watch(m_site.window, false);
        End(Step::Ended, 0);
        break;
    default:
        break;
    }
}

void DragSource::End(Step step, DragActions done)
{
    m_step = step;
    m_site = {};
    m_deadline.reset();
    m_answered = true;
    m_answer = done;
    m_port.Tell(EventType::DragEnded);
}

} // namespace platform::x11
