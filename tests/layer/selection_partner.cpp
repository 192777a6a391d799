// The other end of a selection as on-screen tests need it, well-behaved or not, in plain xcb. Each says "ready" when it
// is in place.
//
//   manager             a clipboard manager: saves what it is asked to save, then takes the clipboard
//   stuck-manager       one that never answers
//   silent              owns the clipboard and says when it is asked, and answers nothing
//   targets-only        says that it offers files, and answers nothing else
//   dies                begins to send files in pieces, and ends
//   stalls              begins to send files in pieces, and stops
//   trickles            sends files in pieces, a byte of them several times a second
//   wrong-type          answers every question with numbers
//   huge                sends files without an end, a megabyte at a time
//   garbage             a megabyte of bytes that are no list of files
//   vanish TARGET       begins to read the clipboard in pieces, and ends
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <poll.h>
#include <string>
#include <string_view>
#include <vector>
#include <xcb/xcb.h>

namespace
{

struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};

template <typename T>
std::unique_ptr<T, FreeDeleter> Own(T* memory)
{
    return std::unique_ptr<T, FreeDeleter>(memory);
}

struct Partner
{
    std::string role;
    xcb_connection_t* xcb = nullptr;
    xcb_window_t window = 0;
    std::map<std::string, xcb_atom_t> atoms;
    unsigned pieces = 0;

    xcb_atom_t operator[](const std::string& name)
    {
        auto& atom = atoms[name];
        const auto size = static_cast<std::uint16_t>(name.size());
        if (atom == 0)
            atom = Own(xcb_intern_atom_reply(xcb, xcb_intern_atom(xcb, 0, size, name.c_str()), nullptr))->atom;
        return atom;
    }
    void Take(const char* selection) { xcb_set_selection_owner(xcb, window, (*this)[selection], XCB_CURRENT_TIME); }
    void Say(const char* what)
    {
        xcb_flush(xcb);
        Own(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
        std::puts(what);
        std::fflush(stdout);
    }
    void Answer(const xcb_selection_request_event_t& request, xcb_atom_t property)
    {
        xcb_selection_notify_event_t notify{};
        notify.response_type = XCB_SELECTION_NOTIFY;
        notify.time = request.time;
        notify.requestor = request.requestor;
        notify.selection = request.selection;
        notify.target = request.target;
        notify.property = property;
        xcb_send_event(xcb, 0, request.requestor, 0, reinterpret_cast<const char*>(&notify));
        xcb_flush(xcb);
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
};

/// A manager saves before it answers: it reads every kind that is named, and offers nothing but what it says.
void Save(Partner& partner, const xcb_selection_request_event_t& request)
{
    const auto named = Own(xcb_get_property_reply(
        partner.xcb, xcb_get_property(partner.xcb, 0, request.requestor, request.property, XCB_ATOM_ATOM, 0, 100),
        nullptr));
    const auto* targets = static_cast<const xcb_atom_t*>(xcb_get_property_value(named.get()));
    std::printf("saving %d kinds\n", xcb_get_property_value_length(named.get()) / 4);
    xcb_convert_selection(partner.xcb, partner.window, partner["CLIPBOARD"], targets[0], partner["SAVED"],
                          request.time);
    xcb_flush(partner.xcb);
    while (const auto event = Own(xcb_wait_for_event(partner.xcb)))
        if ((event->response_type & 0x7F) == XCB_SELECTION_NOTIFY)
            break;
    partner.PutWords(request.requestor, request.property, partner["NULL"], {});
    partner.Answer(request, request.property);
    partner.Say("saved");
    partner.Take("CLIPBOARD");
    xcb_flush(partner.xcb);
}

void BeginPieces(Partner& partner, const xcb_selection_request_event_t& request)
{
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(partner.xcb, request.requestor, XCB_CW_EVENT_MASK, &mask);
    partner.PutWords(request.requestor, request.property, partner["INCR"], {1000});
    partner.Answer(request, request.property);
}

/// Content of the role; files are offered in both kinds.
void OnRequest(Partner& partner, const xcb_selection_request_event_t& request)
{
    const std::string& role = partner.role;
    if (role == "manager" && request.selection == partner["CLIPBOARD_MANAGER"])
        Save(partner, request);
    else if (role == "silent" || role == "stuck-manager")
        partner.Say("asked");
    else if (role == "wrong-type")
    {
        partner.PutWords(request.requestor, request.property, XCB_ATOM_INTEGER, {1, 2, 3});
        partner.Answer(request, request.property);
    }
    else if (request.target == partner["TARGETS"])
    {
        partner.PutWords(request.requestor, request.property, XCB_ATOM_ATOM, {partner["text/uri-list"]});
        partner.Answer(request, request.property);
    }
    else if (role == "dies" || role == "stalls" || role == "trickles" || role == "huge")
        BeginPieces(partner, request);
    else if (role == "garbage")
    {
        std::string bytes(1 << 20, '\0');
        std::uint32_t seed = 1;
        std::ranges::generate(bytes, [&] { return static_cast<char>((seed = seed * 1664525 + 1013904223) >> 24); });
        std::ranges::replace(bytes, '\0', '%'); // none: a text would end there
        partner.Put(request.requestor, request.property, request.target, bytes);
        partner.Answer(request, request.property);
    }
}

/// False when the role ends here.
bool OnPieceTaken(Partner& partner, const xcb_property_notify_event_t& taken)
{
    ++partner.pieces;
    if (partner.role == "trickles")
    {
        poll(nullptr, 0, 100);
        partner.Put(taken.window, taken.atom, partner["text/uri-list"], "f");
        return true;
    }
    const std::string piece = partner.role == "huge" ? std::string(1 << 20, 'x') : "file:///etc/passwd\r\n";
    if (partner.pieces > 2 && partner.role != "huge")
        return partner.role != "dies";
    partner.Put(taken.window, taken.atom, partner["text/uri-list"], piece);
    return true;
}

int RunOwner(Partner& partner)
{
    partner.Take(partner.role.ends_with("manager") ? "CLIPBOARD_MANAGER" : "CLIPBOARD");
    partner.Say("ready");
    while (const auto event = Own(xcb_wait_for_event(partner.xcb)))
    {
        const int type = event->response_type & 0x7F;
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
        if (type == XCB_SELECTION_REQUEST)
            OnRequest(partner, reinterpret_cast<const xcb_selection_request_event_t&>(*event));
        else if (type == XCB_SELECTION_CLEAR)
            partner.Say("lost");
        else if (type == XCB_PROPERTY_NOTIFY && property.state == XCB_PROPERTY_DELETE &&
                 !OnPieceTaken(partner, property))
            break;
    }
    return 0;
}

int Vanish(Partner& partner, const char* target)
{
    xcb_convert_selection(partner.xcb, partner.window, partner["CLIPBOARD"], partner[target], partner["READ"],
                          XCB_CURRENT_TIME);
    xcb_flush(partner.xcb);
    while (const auto event = Own(xcb_wait_for_event(partner.xcb)))
    {
        const auto& notify = reinterpret_cast<const xcb_selection_notify_event_t&>(*event);
        if ((event->response_type & 0x7F) == XCB_SELECTION_NOTIFY && notify.property != 0)
            break;
    }
    xcb_delete_property(partner.xcb, partner.window, partner["READ"]);
    partner.Say("vanished");
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection(xcb_connect(nullptr, nullptr),
                                                                                    xcb_disconnect);
    xcb_connection_t* xcb = connection.get();
    if (xcb_connection_has_error(xcb) != 0)
        return 1;
    Partner partner{argv[1], xcb, xcb_generate_id(xcb), {}};
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(xcb, 0, partner.window, xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root, -10, -10, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    return partner.role == "vanish" && argc > 2 ? Vanish(partner, argv[2]) : RunOwner(partner);
}
