// What another program drags over this one's windows, as a state machine: from the screen's drag events to the calls of
// drop targets, and to the answers. Knows no screen and no clock.
#pragma once

#include "platform/ole/drop_site.h"

#include <deque>
#include <optional>

namespace platform
{

/// What the machine asks and tells besides.
class IncomingDragPort : public DropPlaces
{
public:
    virtual ComReference<IDataObject> MakeData(const screen::DragOffer& offer) = 0;
    /// The drag is over: nothing more can be read of what it offered.
    virtual void CloseData() = 0;
    virtual void Answer(unsigned drag, screen::DragActions action) = 0;
    virtual void Finish(unsigned drag, screen::DragActions action) = 0;
};

/// Targets may take messages in any call, and with them further events: those wait until the call has returned. Of
/// several movements only the last is passed on. While a drop is being carried out, which may take as long as the user
/// likes, another drag is refused; it is looked at when the drop is done.
class IncomingDrag
{
public:
    explicit IncomingDrag(IncomingDragPort& port) : m_port(port), m_site(port) {}

    /// DragOver, DragLeave and DragDrop; each DragOver that is passed on is answered once, each DragDrop finished once.
    void OnEvent(const screen::Event& event);
    /// The drag rests: its target is called again and the answer given if it is another.
    void OnRest();
    /// A drag is over this program's windows.
    bool IsOver() const { return m_last.has_value(); }

private:
    void Queue(const screen::Event& event);
    void QueueWhileDropping(const screen::Event& event);
    void ForgetMovement();
    void HandleQueued();
    void Handle(const screen::Event& event);
    void OnOver(const screen::Event& event);
    void OnDrop(const screen::Event& event);
    void Begin(const screen::Event& event);
    void End();
    screen::DragActions Ask();
    DragMoment Moment() const;

    IncomingDragPort& m_port;
    DropSite m_site;
    ComReference<IDataObject> m_data;
    std::optional<screen::Event> m_last;
    screen::DragActions m_answer = 0; ///< the last one given
    std::deque<screen::Event> m_queue;
    bool m_busy = false; ///< in a call
    bool m_dropping = false;
};

} // namespace platform
