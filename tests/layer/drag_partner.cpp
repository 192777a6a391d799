// The other end of a drag as on-screen tests need it, well-behaved or not, in plain xcb.
//
// drag_partner source WINDOW X Y KIND: drags addresses to that point of a window and says "status", "finished" with the
// action's name. Kinds:
//   good             enters, asks, drops, waits
//   ask              leaves it to the user what is done
//   old, newer       speaks version 3; speaks version 6
//   many             100,000 addresses
//   nothing          offers nothing
//   garbage          a megabyte of bytes that are no list of files
//   list             names 40 kinds in its property
//   dies             ends after the first answer
//   destroys         its window is gone after the first answer
//   drop-only        drops without having entered
//   no-position      drops without having asked
//   two-enters       enters twice and goes on
//   two-drops        drops twice
//   hasty            asks 50 times without waiting for an answer
//   silent           never gives the content
//
// drag_partner target X Y KIND: a window of 200 by 150 pixels there, which says "enter", "over", "leave", "drop" and
// what it was given. Kinds:
//   good             takes what is offered as a copy
//   move, link       likewise
//   old              of version 3
//   refuses          takes nothing
//   once             wants to hear of no other point in its window
//   no-status        never answers a position
//   no-finish        never says that it is done
//   late             answers each position with the next one
//   dies, destroys   at the first position
//   proxy, bad-proxy another window speaks for it; says so without being one
//   plain            takes no part
#include "xcb_program.h"

#include <algorithm>

namespace
{

struct Message
{
    std::string type;
    std::uint32_t data[5];
};

struct Partner : XcbProgram
{
    xcb_window_t other = 0;

    std::string NameOf(xcb_atom_t atom)
    {
        const auto reply = Own(xcb_get_atom_name_reply(xcb, xcb_get_atom_name(xcb, atom), nullptr));
        return reply != nullptr ? std::string(xcb_get_atom_name_name(reply.get()),
                                              static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())))
                                : "none";
    }
    void Send(const Message& message, xcb_window_t to = 0)
    {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = other;
        event.type = (*this)[message.type];
        std::copy(std::begin(message.data), std::end(message.data), event.data.data32);
        xcb_send_event(xcb, 0, to != 0 ? to : other, 0, reinterpret_cast<const char*>(&event));
        xcb_flush(xcb);
    }
};

constexpr std::uint32_t kEvents = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;

// --- source

std::string Content(const std::string& kind)
{
    if (kind == "garbage")
        return std::string(1 << 20, '\xFF');
    std::string list;
    for (int i = 0; i < (kind == "many" ? 100000 : 2); ++i)
        list += "file:///tmp/number-" + std::to_string(i) + "\r\n";
    return list;
}

void Answer(Partner& partner, const xcb_selection_request_event_t& request)
{
    if (partner.kind == "silent")
        return;
    // The maximum request of every server is larger than a quarter megabyte; BIG-REQUESTS makes it 16.
    partner.Put(request.requestor, request.property, request.target, Content(partner.kind));
    partner.Answer(request);
}

/// Serves the content until a message of that type comes.
void Await(Partner& partner, const char* type)
{
    while (const auto event = Own(xcb_wait_for_event(partner.xcb)))
    {
        const int number = event->response_type & 0x7F;
        if (number == XCB_SELECTION_REQUEST)
            Answer(partner, *reinterpret_cast<const xcb_selection_request_event_t*>(event.get()));
        const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event.get());
        if (number != XCB_CLIENT_MESSAGE || message->type != partner[type])
            continue;
        const bool status = message->type == partner["XdndStatus"];
        const bool accepted = (message->data.data32[1] & 1) != 0;
        const xcb_atom_t action = message->data.data32[status ? 4 : 2];
        partner.Say((status ? "status " : "finished ") +
                    (accepted ? partner.NameOf(action) : std::string(action == 0 ? "none" : "inconsistent")));
        return;
    }
}

void Enter(Partner& partner)
{
    const std::uint32_t version = partner.kind == "old" ? 3 : partner.kind == "newer" ? 6 : 5;
    Message enter{"XdndEnter", {partner.window, version << 24, partner["text/uri-list"], 0, 0}};
    if (partner.kind == "nothing")
        enter.data[2] = 0;
    if (partner.kind == "list")
    {
        std::vector<std::uint32_t> types{partner["text/uri-list"]};
        for (int i = 0; i < 39; ++i)
            types.push_back(partner["text/number-" + std::to_string(i)]);
        partner.PutWords(partner.window, partner["XdndTypeList"], XCB_ATOM_ATOM, types);
        enter.data[1] |= 1;
    }
    partner.Send(enter);
}

void RunSource(Partner& partner, std::uint32_t x, std::uint32_t y)
{
    partner.window = partner.MakeWindow(-300, -300, kEvents);
    xcb_set_selection_owner(partner.xcb, partner.window, partner["XdndSelection"], XCB_CURRENT_TIME);
    const bool ask = partner.kind == "ask";
    if (ask)
        partner.PutWords(partner.window, partner["XdndActionList"], XCB_ATOM_ATOM,
                         {partner["XdndActionAsk"], partner["XdndActionMove"], partner["XdndActionLink"]});
    const Message position{
        "XdndPosition",
        {partner.window, 0, x << 16 | y, XCB_CURRENT_TIME, partner[ask ? "XdndActionAsk" : "XdndActionCopy"]}};
    const Message drop{"XdndDrop", {partner.window, 0, XCB_CURRENT_TIME, 0, 0}};
    partner.Say("ready");
    if (partner.kind != "drop-only")
        Enter(partner);
    if (partner.kind == "two-enters")
        Enter(partner);
    if (partner.kind != "drop-only" && partner.kind != "no-position")
    {
        for (int i = 0; i < (partner.kind == "hasty" ? 50 : 1); ++i)
            partner.Send(position);
        Await(partner, "XdndStatus");
    }
    if (partner.kind == "dies")
        return;
    if (partner.kind == "destroys")
    {
        xcb_destroy_window(partner.xcb, partner.window);
        partner.Say("destroyed");
        while (Own(xcb_wait_for_event(partner.xcb)))
        {
        }
    }
    partner.Send(drop);
    if (partner.kind == "two-drops")
        partner.Send(drop);
    Await(partner, "XdndFinished");
}

// --- target

xcb_atom_t ActionOf(Partner& partner)
{
    return partner["XdndAction" + std::string(partner.kind == "move"   ? "Move"
                                              : partner.kind == "link" ? "Link"
                                                                       : "Copy")];
}

void SendStatus(Partner& partner, const xcb_client_message_event_t& position)
{
    partner.other = position.data.data32[0];
    const bool refuses = partner.kind == "refuses";
    Message status{"XdndStatus", {partner.window, refuses ? 2U : 3U, 0, 0, refuses ? 0U : ActionOf(partner)}};
    if (partner.kind == "once")
    {
        const auto reply = Own(xcb_translate_coordinates_reply(
            partner.xcb, xcb_translate_coordinates(partner.xcb, partner.window, partner.root, 0, 0), nullptr));
        status.data[1] = 1;
        status.data[2] = static_cast<std::uint32_t>(reply->dst_x) << 16 | static_cast<std::uint32_t>(reply->dst_y);
        status.data[3] = 200U << 16 | 150U;
    }
    partner.Send(status);
}

void OnDropped(Partner& partner)
{
    const auto property = partner.Read(partner.window, partner["GIVEN"], true);
    partner.Say("given " + std::to_string(xcb_get_property_value_length(property.get())));
    if (partner.kind != "no-finish")
        partner.Send({"XdndFinished", {partner.window, 1, ActionOf(partner), 0, 0}});
}

int ListedActions(Partner& partner, xcb_window_t source)
{
    const auto list = partner.Read(source, partner["XdndActionList"]);
    return list != nullptr ? xcb_get_property_value_length(list.get()) / 4 : 0;
}

void OnTargetMessage(Partner& partner, const xcb_client_message_event_t& message)
{
    const auto* data = message.data.data32;
    if (message.type == partner["XdndEnter"])
    {
        partner.Say("enter " + std::to_string(data[1] >> 24) + " list " + std::to_string(data[1] & 1));
    }
    else if (message.type == partner["XdndPosition"])
    {
        partner.Say("over " + std::to_string(data[2] >> 16) + " " + std::to_string(data[2] & 0xFFFF) + " " +
                    partner.NameOf(data[4]) + " of " + std::to_string(ListedActions(partner, data[0])) +
                    (data[3] != 0 ? "" : " without time"));
        if (partner.kind == "dies")
            std::exit(0);
        if (partner.kind == "destroys")
        {
            xcb_destroy_window(partner.xcb, partner.window);
            xcb_flush(partner.xcb);
        }
        else if (partner.kind != "no-status")
        {
            SendStatus(partner, message);
        }
    }
    else if (message.type == partner["XdndLeave"])
    {
        partner.Say("leave");
    }
    else if (message.type == partner["XdndDrop"])
    {
        partner.other = data[0];
        partner.Say("drop");
        xcb_convert_selection(partner.xcb, partner.window, partner["XdndSelection"], partner["text/uri-list"],
                              partner["GIVEN"], data[2]);
        xcb_flush(partner.xcb);
    }
}

void RunTarget(Partner& partner, short x, short y)
{
    partner.window = partner.MakeWindow(x, y, kEvents);
    const bool proxied = partner.kind == "proxy" || partner.kind == "bad-proxy";
    const xcb_window_t speaker = proxied ? partner.MakeWindow(-300, -300, kEvents) : partner.window;
    if (partner.kind != "plain")
        partner.PutWords(speaker, partner["XdndAware"], XCB_ATOM_ATOM, {partner.kind == "old" ? 3U : 5U});
    if (proxied)
        partner.PutWords(partner.window, partner["XdndProxy"], XCB_ATOM_WINDOW, {speaker});
    if (partner.kind == "proxy")
        partner.PutWords(speaker, partner["XdndProxy"], XCB_ATOM_WINDOW, {speaker});
    xcb_map_window(partner.xcb, partner.window);
    xcb_flush(partner.xcb);
    while (const auto event = Own(xcb_wait_for_event(partner.xcb)))
    {
        const int number = event->response_type & 0x7F;
        if (number == XCB_MAP_NOTIFY)
            partner.Say("mapped " + std::to_string(partner.window));
        else if (number == XCB_CLIENT_MESSAGE)
            OnTargetMessage(partner, *reinterpret_cast<const xcb_client_message_event_t*>(event.get()));
        else if (number == XCB_SELECTION_NOTIFY)
            OnDropped(partner);
    }
}

} // namespace

int main(int argc, char** argv)
{
    Partner partner;
    const std::string role = argc > 1 ? argv[1] : "";
    if (!partner.IsOpen() || argc < (role == "source" ? 6 : 5))
        return 2;
    partner.kind = argv[argc - 1];
    if (role == "source")
    {
        partner.other = static_cast<xcb_window_t>(std::strtoul(argv[2], nullptr, 10));
        RunSource(partner, static_cast<std::uint32_t>(std::atoi(argv[3])),
                  static_cast<std::uint32_t>(std::atoi(argv[4])));
    }
    else
    {
        RunTarget(partner, static_cast<short>(std::atoi(argv[2])), static_cast<short>(std::atoi(argv[3])));
    }
    return 0;
}
