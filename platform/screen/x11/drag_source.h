// What this program drags over others, as a state machine: the source's end of the protocol. Knows no connection.
//
// Source: the freedesktop drag-and-drop specification "XDND", version 5.
#pragma once

#include "platform/screen/x11/xdnd.h"

namespace platform::x11
{

/// A window of another program that takes part.
struct DropSite
{
    xcb_window_t window = 0;   ///< 0: nobody is there
    xcb_window_t listener = 0; ///< who gets the messages: the window, or its proxy
    std::uint32_t version = 0; ///< of the protocol, at most ours
    bool operator==(const DropSite&) const = default;
};

/// What a source asks of the display. What concerns a window that has gone fails quietly.
class DragSourcePort
{
public:
    virtual ~DragSourcePort() = default;
    virtual void Send(xcb_window_t to, const XdndMessage& message) = 0;
    /// Hear of the window's end, or no longer.
    virtual void Watch(xcb_window_t window, bool on) = 0;
    /// DragAnswered or DragEnded.
    virtual void Tell(screen::EventType type) = 0;
};

class DragSource
{
public:
    /// What a partner has for an answer, milliseconds.
    static constexpr std::uint64_t kPatience = 2000;
    /// What it has after the drop when it asks its user.
    static constexpr std::uint64_t kPatienceWithUsers = 60000;

    struct Offer
    {
        xcb_window_t window = 0; ///< of this program, known to others as the source; it has the properties
        std::vector<xcb_atom_t> types;
        screen::DragActions allowed = 0;
    };

    /// Where the pointer is: on the screen, and as of which of the server's times.
    struct Point
    {
        POINT position{};
        xcb_timestamp_t time = 0;
        screen::DragActions wanted = 0;
    };

    DragSource(DragSourcePort& port, const XdndAtoms& atoms, Offer offer)
        : m_port(port), m_atoms(atoms), m_offer(std::move(offer))
    {
    }

    /// `now`: milliseconds of the clock, here and below.
    void Move(const DropSite& site, const Point& point, std::uint64_t now);
    /// False when nobody takes it: the other side has been told that the drag has left.
    bool Drop(xcb_timestamp_t time, std::uint64_t now);
    /// Tells the other side that the drag has left. After a drop: stops listening.
    void Cancel();

    /// Status and Finished; others are none of a source's.
    void OnMessage(const XdndMessage& message, std::uint64_t now);
    void OnWindowGone(xcb_window_t window);
    /// The partner reads what was dropped on it.
    void OnRead(std::uint64_t now);
    /// Gives up on a partner that has been silent for too long.
    void OnTime(std::uint64_t now);
    /// When OnTime has to be asked; nothing while no answer is awaited.
    std::optional<std::uint64_t> Deadline() const { return m_deadline; }

    /// As it is where nobody is there to do so.
    bool IsAnswered() const { return m_answered || m_site.window == 0; }
    /// What the partner would do; once the drag has ended, what it has done.
    screen::DragActions Answer() const { return m_answer; }
    /// The drop has come to its end, and the partner has said so.
    bool IsFinished() const { return m_step == Step::Finished; }

private:
    enum class Step : std::uint8_t
    {
        Over,     ///< nobody, or a partner
        Dropping, ///< let go, while an answer for the point is awaited
        Dropped,  ///< and told
        Finished,
        Ended, ///< without the partner's word
    };

    void Enter();
    void SendPosition(const Point& point, std::uint64_t now);
    void SendDrop(std::uint64_t now);
    void SendLeave();
    void OnStatus(const XdndMessage& message, std::uint64_t now);
    void OnFinished(const XdndMessage& message);
    void GoTo(const DropSite& site);
    void Forget();
    void AwaitFinished(std::uint64_t now);
    void End(Step step, screen::DragActions done);
    bool Spares(const Point& point) const;
    std::uint32_t ActionFor(screen::DragActions wanted) const;

    DragSourcePort& m_port;
    const XdndAtoms& m_atoms;
    Offer m_offer;
    Step m_step = Step::Over;
    DropSite m_site;
    std::optional<Point> m_sent; ///< the last point told
    bool m_awaiting = false;     ///< its answer
    std::optional<Point> m_next; ///< told as soon as that has come
    RECT m_spared{};             ///< the partner wants to hear of no point inside
    bool m_answered = false;
    screen::DragActions m_answer = 0;
    xcb_timestamp_t m_dropTime = 0;
    std::optional<std::uint64_t> m_deadline;
};

} // namespace platform::x11
