// Atoms by name and names by atom.
#include "platform/screen/x11/atoms.h"

#include "platform/screen/x11/connection.h"

#include <map>

namespace platform::x11
{
namespace
{

struct Known
{
    std::map<std::string, xcb_atom_t, std::less<>> atoms;
    std::map<xcb_atom_t, std::string> names;
};

Known& State()
{
    static Known& known = *new Known;
    return known;
}

xcb_intern_atom_cookie_t AskForAtom(std::string_view name)
{
    return xcb_intern_atom(Xcb(), 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t Learn(std::string_view name, xcb_intern_atom_cookie_t cookie)
{
    const auto reply = Collect(xcb_intern_atom_reply, cookie);
    const xcb_atom_t atom = reply != nullptr ? reply->atom : static_cast<xcb_atom_t>(XCB_NONE);
    State().atoms.emplace(name, atom);
    State().names.emplace(atom, name);
    return atom;
}

void LearnNames(std::span<const xcb_atom_t> atoms)
{
    std::vector<std::pair<xcb_atom_t, xcb_get_atom_name_cookie_t>> cookies;
    for (const xcb_atom_t atom : atoms)
        if (!State().names.contains(atom))
            cookies.emplace_back(atom, xcb_get_atom_name(Xcb(), atom));
    for (const auto& [atom, cookie] : cookies)
    {
        const auto reply = Collect(xcb_get_atom_name_reply, cookie);
        if (reply != nullptr)
            State().names.try_emplace(atom, xcb_get_atom_name_name(reply.get()),
                                      static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())));
    }
}

} // namespace

xcb_atom_t AtomNamed(std::string_view name)
{
    const auto known = State().atoms.find(name);
    return known != State().atoms.end() ? known->second : Learn(name, AskForAtom(name));
}

std::vector<xcb_atom_t> AtomsNamed(const std::vector<std::string>& names)
{
    std::vector<std::pair<std::string_view, xcb_intern_atom_cookie_t>> cookies;
    for (const std::string_view name : names)
        if (!State().atoms.contains(name))
            cookies.emplace_back(name, AskForAtom(name));
    for (const auto& [name, cookie] : cookies)
        Learn(name, cookie);
    std::vector<xcb_atom_t> atoms;
    for (const std::string& name : names)
        atoms.push_back(AtomNamed(name));
    return atoms;
}

std::string NameOfAtom(xcb_atom_t atom)
{
    LearnNames({&atom, 1});
    const auto known = State().names.find(atom);
    return known != State().names.end() ? known->second : std::string();
}

std::vector<std::string> NamesOf(std::span<const xcb_atom_t> atoms)
{
    LearnNames(atoms);
    std::vector<std::string> names;
    for (const xcb_atom_t atom : atoms)
        if (std::string name = NameOfAtom(atom); !name.empty())
            names.push_back(std::move(name));
    return names;
}

std::vector<xcb_atom_t> AtomsIn(xcb_window_t window, xcb_atom_t property)
{
    return CollectWords(AskForAtoms(window, property));
}

xcb_get_property_cookie_t AskForAtoms(xcb_window_t window, xcb_atom_t property)
{
    return xcb_get_property(Xcb(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kMostAtoms);
}

void SetAtoms(xcb_window_t window, xcb_atom_t property, const std::vector<xcb_atom_t>& atoms)
{
    xcb_change_property(Xcb(), XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(atoms.size()), atoms.data());
}

} // namespace platform::x11
