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
#include "xcb_program.h"

#include <algorithm>
#include <poll.h>

namespace
{

struct Partner : XcbProgram
{
    unsigned pieces = 0;

    void Take(const char* selection) { xcb_set_selection_owner(xcb, window, (*this)[selection], XCB_CURRENT_TIME); }
};

/// A manager saves before it answers: it reads every kind that is named, and offers nothing but what it says.
void Save(Partner& partner, const xcb_selection_request_event_t& request)
{
    const auto named = partner.Read(request.requestor, request.property);
    const auto* targets = static_cast<const xcb_atom_t*>(xcb_get_property_value(named.get()));
    std::printf("saving %d kinds\n", xcb_get_property_value_length(named.get()) / 4);
    xcb_convert_selection(partner.xcb, partner.window, partner["CLIPBOARD"], targets[0], partner["SAVED"],
                          request.time);
    xcb_flush(partner.xcb);
    while (const auto event = Own(xcb_wait_for_event(partner.xcb)))
        if ((event->response_type & 0x7F) == XCB_SELECTION_NOTIFY)
            break;
    partner.PutWords(request.requestor, request.property, partner["NULL"], {});
    partner.Answer(request);
    partner.Say("saved");
    partner.Take("CLIPBOARD");
    xcb_flush(partner.xcb);
}

void BeginPieces(Partner& partner, const xcb_selection_request_event_t& request)
{
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(partner.xcb, request.requestor, XCB_CW_EVENT_MASK, &mask);
    partner.PutWords(request.requestor, request.property, partner["INCR"], {1000});
    partner.Answer(request);
}

/// Content of the role; files are offered in both kinds.
void OnRequest(Partner& partner, const xcb_selection_request_event_t& request)
{
    const std::string& role = partner.kind;
    if (role == "manager" && request.selection == partner["CLIPBOARD_MANAGER"])
        Save(partner, request);
    else if (role == "silent" || role == "stuck-manager")
        partner.Say("asked");
    else if (role == "wrong-type")
    {
        partner.PutWords(request.requestor, request.property, XCB_ATOM_INTEGER, {1, 2, 3});
        partner.Answer(request);
    }
    else if (request.target == partner["TARGETS"])
    {
        partner.PutWords(request.requestor, request.property, XCB_ATOM_ATOM, {partner["text/uri-list"]});
        partner.Answer(request);
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
        partner.Answer(request);
    }
}

/// False when the role ends here.
bool OnPieceTaken(Partner& partner, const xcb_property_notify_event_t& taken)
{
    ++partner.pieces;
    if (partner.kind == "trickles")
    {
        poll(nullptr, 0, 100);
        partner.Put(taken.window, taken.atom, partner["text/uri-list"], "f");
        return true;
    }
    const std::string piece = partner.kind == "huge" ? std::string(1 << 20, 'x') : "file:///etc/passwd\r\n";
    if (partner.pieces > 2 && partner.kind != "huge")
        return partner.kind != "dies";
    partner.Put(taken.window, taken.atom, partner["text/uri-list"], piece);
    return true;
}

int RunOwner(Partner& partner)
{
    partner.Take(partner.kind.ends_with("manager") ? "CLIPBOARD_MANAGER" : "CLIPBOARD");
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
    Partner partner;
    if (!partner.IsOpen() || argc < 2)
        return 2;
    partner.kind = argv[1];
    partner.window = partner.MakeWindow(-300, -300, XCB_EVENT_MASK_PROPERTY_CHANGE);
    return partner.kind == "vanish" && argc > 2 ? Vanish(partner, argv[2]) : RunOwner(partner);
}
