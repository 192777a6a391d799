// What another program drags over this one, as a state machine: the target's end of the protocol. Knows no connection.
//
// Source: the freedesktop drag-and-drop specification "XDND", version 5.
#pragma once

#include "platform/screen/x11/xdnd.h"

namespace platform::x11
{

/// What a target asks of the display. What concerns a window that has gone fails quietly.
class DragTargetPort
{
public:
    virtual ~DragTargetPort() = default;
    virtual void Send(xcb_window_t to, const XdndMessage& message) = 0;
    /// The atoms that a property of another program's window lists.
    virtual std::vector<xcb_atom_t> AtomsIn(xcb_window_t window, xcb_atom_t property) = 0;
    virtual std::vector<std::string> NamesOf(const std::vector<xcb_atom_t>& atoms) = 0;
    /// Hear of the window's end, or no longer.
    virtual void Watch(xcb_window_t window, bool on) = 0;

    struct Look
    {
        unsigned modifiers = 0; ///< as in screen::Event
        bool rightButton = false;
        std::vector<xcb_atom_t> actions; ///< that the source lists; empty when it lists none
    };
    /// How things are now. One round trip.
    virtual Look LookAround(xcb_window_t source) = 0;

    struct Report
    {
        screen::EventType type = screen::EventType::DragOver; ///< DragOver, DragLeave or DragDrop
        xcb_window_t window = 0;
        POINT position{};
        unsigned modifiers = 0;
        screen::DragOffer offer;
    };
    virtual void Tell(const Report& report) = 0;
};

class DragTarget
{
public:
    DragTarget(DragTargetPort& port, const XdndAtoms& atoms) : m_port(port), m_atoms(atoms) {}

    /// Enter, Position, Leave and Drop; others are none of a target's.
    void OnMessage(const XdndMessage& message);
    /// The end of a window, another program's or this one's.
    void OnWindowGone(xcb_window_t window);

    /// A drop at the last position would do this. For a drag that is over already: nothing happens.
    void Answer(unsigned drag, screen::DragActions action);
    void Finish(unsigned drag, screen::DragActions action);

    /// A drag is over this program's windows, or dropped there and not dealt with.
    bool IsBusy() const { return m_drag.number != 0 || m_dropped.number != 0; }
    /// The server's time of what was last heard, with which the content is asked for; 0 when there was none.
    xcb_timestamp_t Time() const { return m_time; }

private:
    struct Drag
    {
        unsigned number = 0; ///< 0: none
        xcb_window_t source = 0;
        xcb_window_t window = 0; ///< this program's
        std::uint32_t version = 0;
        std::vector<std::string> targets;
        bool told = false;        ///< that it is over the window
        bool due = false;         ///< a position has not been answered
        bool rightButton = false; ///< drags it, as a position has shown
        std::optional<screen::DragActions> answer;
        DragTargetPort::Report last;
    };

    void OnEnter(const XdndMessage& message);
    void OnPosition(const XdndMessage& message);
    void OnDrop(const XdndMessage& message);
    bool IsCurrent(const XdndMessage& message) const;
    void Leave();
    void SendStatus(xcb_window_t source, xcb_window_t window, screen::DragActions action);
    void SendFinished(const Drag& drag, screen::DragActions action);
    void Watch(xcb_window_t source, bool on);

    DragTargetPort& m_port;
    const XdndAtoms& m_atoms;
    Drag m_drag;
    Drag m_dropped; ///< waits for Finish, while the next drag may be coming already
    unsigned m_count = 0;
    xcb_timestamp_t m_time = 0;
};

} // namespace platform::x11
