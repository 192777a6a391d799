// The drag-and-drop protocol's vocabulary, for both of its ends.
//
// Source: the freedesktop drag-and-drop specification "XDND", version 5.
#pragma once

#include "platform/screen/drags.h"

#include <array>
#include <xcb/xproto.h>

namespace platform::x11
{

enum class Xdnd : std::uint8_t
{
    Enter,
    Position,
    Status,
    Leave,
    Drop,
    Finished,
    TypeList,
    ActionList,
    ActionCopy,
    ActionMove,
    ActionLink,
    ActionAsk,
    Aware,
    Proxy,
    Count,
};

/// By Xdnd.
inline constexpr const char* kXdndNames[] = {
    "XdndEnter",      "XdndPosition",  "XdndStatus",     "XdndLeave",      "XdndDrop",
    "XdndFinished",   "XdndTypeList",  "XdndActionList", "XdndActionCopy", "XdndActionMove",
    "XdndActionLink", "XdndActionAsk", "XdndAware",      "XdndProxy",
};
static_assert(std::size(kXdndNames) == static_cast<std::size_t>(Xdnd::Count));

// Version 3 is the first that says by which window a message was meant, and the first that anybody speaks.
inline constexpr std::uint32_t kXdndVersion = 5, kOldestXdnd = 3;

/// As one display numbers them.
class XdndAtoms
{
public:
    xcb_atom_t& operator[](Xdnd name) { return m_atoms[static_cast<std::size_t>(name)]; }
    xcb_atom_t operator[](Xdnd name) const { return m_atoms[static_cast<std::size_t>(name)]; }
    /// One action as its atom; None for none.
    xcb_atom_t AtomOf(screen::DragActions action) const;
    /// An action that this program has not heard of is dealt with as the one that every target knows: copying.
    screen::DragActions ActionOf(xcb_atom_t atom) const;

private:
    std::array<xcb_atom_t, static_cast<std::size_t>(Xdnd::Count)> m_atoms{};
};

/// A client message of the protocol.
struct XdndMessage
{
    xcb_window_t window = 0; ///< whom it concerns; a proxy may get it in its stead
    Xdnd type = Xdnd::Count;
    std::array<std::uint32_t, 5> data{};
};

inline constexpr std::uint32_t PackXdnd(POINT point)
{
    return static_cast<std::uint32_t>(point.x & 0xFFFF) << 16 | static_cast<std::uint32_t>(point.y & 0xFFFF);
}
inline constexpr POINT UnpackXdnd(std::uint32_t packed)
{
    return {static_cast<std::int16_t>(packed >> 16), static_cast<std::int16_t>(packed & 0xFFFF)};
}

} // namespace platform::x11
