// What the programs share that on-screen tests have for company: plain xcb, for nothing of the layer's may help them.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>
#include <xcb/xcb.h>

struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply or an event.
template <typename T>
std::unique_ptr<T, FreeDeleter> Own(T* memory)
{
    return std::unique_ptr<T, FreeDeleter>(memory);
}

/// A program of its own on the display, and what it was asked to be.
struct XcbProgram
{
    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection{xcb_connect(nullptr, nullptr),
                                                                              &xcb_disconnect};
    xcb_connection_t* xcb = connection.get();
    xcb_window_t root = IsOpen() ? xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root : 0;
    xcb_window_t window = 0;
    std::string kind;
    std::map<std::string, xcb_atom_t> atoms;

    bool IsOpen() const { return xcb_connection_has_error(xcb) == 0; }

    xcb_atom_t operator[](const std::string& name)
    {
        auto& atom = atoms[name];
        const auto size = static_cast<std::uint16_t>(name.size());
        if (atom == 0)
            atom = Own(xcb_intern_atom_reply(xcb, xcb_intern_atom(xcb, 0, size, name.c_str()), nullptr))->atom;
        return atom;
    }

    /// Once the server has dealt with all that was asked of it.
    void Say(const std::string& what)
    {
        Own(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
        std::puts(what.c_str());
        std::fflush(stdout);
    }

    auto Read(xcb_window_t of, xcb_atom_t property, bool remove = false)
    {
        const auto cookie = xcb_get_property(xcb, remove, of, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 20);
        return Own(xcb_get_property_reply(xcb, cookie, nullptr));
    }

    void Put(xcb_window_t to, xcb_atom_t property, xcb_atom_t type, const std::string& bytes)
    {
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, to, property, type, 8, static_cast<std::uint32_t>(bytes.size()),
                            bytes.data());
        xcb_flush(xcb);
    }

    void PutWords(xcb_window_t to, xcb_atom_t property, xcb_atom_t type, const std::vector<std::uint32_t>& words)
    {
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, to, property, type, 32,
                            static_cast<std::uint32_t>(words.size()), words.data());
    }

    /// Tells who asks for a selection that its property has the answer.
    void Answer(const xcb_selection_request_event_t& request)
    {
        xcb_selection_notify_event_t notify{};
        notify.response_type = XCB_SELECTION_NOTIFY;
        notify.time = request.time;
        notify.requestor = request.requestor;
        notify.selection = request.selection;
        notify.target = request.target;
        notify.property = request.property;
        xcb_send_event(xcb, 0, request.requestor, 0, reinterpret_cast<const char*>(&notify));
        xcb_flush(xcb);
    }

    xcb_window_t MakeWindow(int x, int y, std::uint32_t events, bool unmanaged = false)
    {
        const xcb_window_t made = xcb_generate_id(xcb);
        const std::uint32_t values[] = {0x0000FF00, unmanaged, events};
        xcb_create_window(xcb, XCB_COPY_FROM_PARENT, made, root, static_cast<short>(x), static_cast<short>(y), 200, 150,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        const std::vector<std::uint32_t> placedByTheUser{1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
        PutWords(made, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, placedByTheUser);
        return made;
    }
};
