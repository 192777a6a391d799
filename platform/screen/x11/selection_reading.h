// Reading a selection that another program owns, as a state machine. Knows no connection.
//
// Source: ICCCM 2.0, sections 2.4 (asking) and 2.7.2 (INCR).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <xcb/xproto.h>

namespace platform::x11
{

struct PropertyValue
{
    xcb_atom_t type = XCB_NONE;
    std::uint8_t format = 0; ///< bits of one element
    std::string bytes;
    bool whole = true; ///< false when there were more than asked for
};

/// What a reading asks of the display.
class ReadingPort
{
public:
    virtual ~ReadingPort() = default;
    /// Reads at most `limit` bytes of the property that the answer is put in, and deletes it.
    virtual PropertyValue TakeProperty(std::size_t limit) = 0;
};

class SelectionReading
{
public:
    enum class State : std::uint8_t
    {
        Asked,     ///< the owner has not answered
        Receiving, ///< piece by piece
        Done,
        Refused, ///< no owner, or it does not offer that
        Failed,  ///< not as the conventions have it, or too large
    };

    /// `incr`: the type by which content in pieces is announced. `limit`: bytes.
    SelectionReading(ReadingPort& port, xcb_atom_t incr, std::size_t limit) : m_port(port), m_incr(incr), m_limit(limit)
    {
    }

    /// The owner has answered; `property` is 0 for a refusal.
    void OnAnswer(xcb_atom_t property);
    /// The property has a new value.
    void OnNewValue();

    State Current() const { return m_state; }
    bool IsOver() const { return m_state != State::Asked && m_state != State::Receiving; }
    /// Counts what the owner has done, to tell whether it goes on.
    unsigned Steps() const { return m_steps; }
    /// Done only. The bytes of elements of `Format` bits.
    std::string& Content() { return m_content; }
    std::uint8_t Format() const { return m_format; }

private:
    ReadingPort& m_port;
    xcb_atom_t m_incr;
    std::size_t m_limit;
    State m_state = State::Asked;
    unsigned m_steps = 0;
    std::uint8_t m_format = 0;
    std::string m_content;
};

} // namespace platform::x11
