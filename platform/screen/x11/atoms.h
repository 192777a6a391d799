// Atoms by name and names by atom, each asked for once.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>
#include <xcb/xproto.h>

namespace platform::x11
{

/// That one list may hold.
inline constexpr std::uint32_t kMostAtoms = 1024;

xcb_atom_t AtomNamed(std::string_view name);
/// Asks for all that are not known yet at once.
std::vector<xcb_atom_t> AtomsNamed(const std::vector<std::string>& names);
/// Empty for an atom that the server does not know.
std::string NameOfAtom(xcb_atom_t atom);
/// Asks for all at once likewise; without those that the server does not know.
std::vector<std::string> NamesOf(std::span<const xcb_atom_t> atoms);
/// The atoms that a property lists; empty when it does not list atoms.
std::vector<xcb_atom_t> AtomsIn(xcb_window_t window, xcb_atom_t property);
void SetAtoms(xcb_window_t window, xcb_atom_t property, const std::vector<xcb_atom_t>& atoms);
/// For CollectWords.
xcb_get_property_cookie_t AskForAtoms(xcb_window_t window, xcb_atom_t property);

} // namespace platform::x11
