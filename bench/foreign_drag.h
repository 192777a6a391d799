// Another program's drag over a menu, as far as the menu sees it: the source's side of XDND, without a drop.
#pragma once

#include <array>
#include <cstdint>
#include <xcb/xcb.h>

namespace bench
{

/// On a connection of its own to $DISPLAY. Offers a list of addresses; leaves with its end.
class ForeignDrag
{
public:
    /// Enters a top-level window.
    explicit ForeignDrag(xcb_window_t over);
    ~ForeignDrag();
    ForeignDrag(const ForeignDrag&) = delete;
    ForeignDrag& operator=(const ForeignDrag&) = delete;

    /// To a point of the screen, where copying is proposed; the message is on its way when this returns.
    void MoveTo(int x, int y);
    /// Returns with the target's answer to the last move; it is to be awaited before the next one.
    void AwaitStatus();

private:
    /// `rest`: what follows the source's window.
    void Send(xcb_atom_t type, std::array<std::uint32_t, 4> rest);

    xcb_connection_t* m_connection;
    xcb_window_t m_window;
    xcb_window_t m_over;
    xcb_atom_t m_position;
    xcb_atom_t m_status;
    xcb_atom_t m_copy;
};

} // namespace bench
