// Reading a selection, in one piece or in many.
#include "platform/screen/x11/selection_reading.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace platform::x11
{

void SelectionReading::OnAnswer(xcb_atom_t property)
{
    if (m_state != State::Asked)
        return;
    ++m_steps;
    if (property == XCB_NONE)
    {
        m_state = State::Refused;
        return;
    }
    PropertyValue value = m_port.TakeProperty(m_limit);
    if (value.type == m_incr)
    {
        std::uint32_t atLeast = 0;
        std::memcpy(&atLeast, value.bytes.data(), std::min(sizeof(atLeast), value.bytes.size()));
        m_state = atLeast > m_limit ? State::Failed : State::Receiving;
        return;
    }
    m_state = value.type != XCB_NONE && value.whole ? State::Done : State::Failed;
    m_format = value.format;
    m_content = std::move(value.bytes);
}

void SelectionReading::OnNewValue()
{
    if (m_state != State::Receiving)
        return; // the announcement itself, or a latecomer
    ++m_steps;
    const PropertyValue piece = m_port.TakeProperty(m_limit - m_content.size());
    const bool fits = piece.type != XCB_NONE && piece.whole && (m_content.empty() || piece.format == m_format);
    if (piece.type != XCB_NONE && piece.bytes.empty())
    {
        m_state = State::Done;
    }
    else if (!fits)
    {
        m_state = State::Failed;
    }
    else
    {
        m_format = piece.format;
        m_content += piece.bytes;
    }
}

} // namespace platform::x11
