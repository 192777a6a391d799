// What other programs drag over this one: the requests behind the target's state machine.
#include "platform/screen/x11/drags.h"

#include "platform/base/clock.h"
#include "platform/screen/x11/atoms.h"
#include "platform/screen/x11/connection.h"
#include "platform/screen/x11/drag_target.h"
#include "platform/screen/x11/focus.h"
#include "platform/screen/x11/input.h"
#include "platform/screen/x11/watches.h"
#include "platform/screen/x11/windows.h"

#include <utility>

namespace platform::x11
{
namespace
{

using screen::DragOffer;
using screen::Event;
using screen::EventType;

class Port final : public DragTargetPort
{
public:
    void Send(xcb_window_t to, const XdndMessage& message) override { SendXdnd(to, message); }
    std::vector<xcb_atom_t> AtomsIn(xcb_window_t window, xcb_atom_t property) override
    {
        return x11::AtomsIn(window, property);
    }
    std::vector<std::string> NamesOf(const std::vector<xcb_atom_t>& atoms) override { return x11::NamesOf(atoms); }
    void Watch(xcb_window_t window, bool on) override { WatchForeign(window, Watcher::DragIn, on); }
    Look LookAround(xcb_window_t source) override;
    void Tell(const Report& report) override;
};

struct Incoming
{
    Port port;
    DragTarget target{port, TheXdndAtoms()};
    unsigned asking = 0; ///< the drag whose drop the user is asked about, until it is finished
};

/// Made when the first message comes: it asks for the protocol's atoms.
constinit Incoming* g_incoming = nullptr;

Incoming& State()
{
    if (g_incoming == nullptr)
        g_incoming = new Incoming;
    return *g_incoming;
}

Port::Look Port::LookAround(xcb_window_t source)
{
    const auto listed = AskForAtoms(source, TheXdndAtoms()[Xdnd::ActionList]);
    const auto pointer = Collect(xcb_query_pointer_reply, xcb_query_pointer(Xcb(), TheConnection().Root()));
    Look look;
    look.actions = CollectWords(listed);
    look.modifiers = pointer != nullptr ? ModifiersOf(pointer->mask) : 0;
    look.rightButton = pointer != nullptr && (pointer->mask & XCB_BUTTON_MASK_3) != 0;
    return look;
}

/// A position takes the place of the one before that nobody has looked at yet.
void Port::Tell(const Report& report)
{
    Event event;
    event.type = report.type;
    event.window = report.window;
    event.position = report.position;
    event.modifiers = report.modifiers;
    event.time = NowMs();
    event.offer = std::make_shared<DragOffer>(report.offer);
    auto& ready = ReadyEvents();
    const bool onlyMoved = report.type == EventType::DragOver && !ready.empty() &&
                           ready.back().type == EventType::DragOver && ready.back().offer->drag == report.offer.drag;
    if (onlyMoved)
        ready.pop_back();
    ready.push_back(std::move(event));
    if (report.type != EventType::DragDrop || (report.offer.actions & screen::kDragAsk) == 0)
        return;
    // The menu that asks needs the keyboard, which is then lost as ever.
    State().asking = report.offer.drag;
    OnDropTaken();
}

} // namespace

const XdndAtoms& TheXdndAtoms()
{
    static const XdndAtoms& known = []() -> XdndAtoms&
    {
        auto& learned = *new XdndAtoms;
        const auto atoms = AtomsNamed({std::begin(kXdndNames), std::end(kXdndNames)});
        for (std::size_t i = 0; i < atoms.size(); ++i)
            learned[static_cast<Xdnd>(i)] = atoms[i];
        return learned;
    }();
    return known;
}

void SendXdnd(xcb_window_t to, const XdndMessage& message)
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = message.window;
    event.type = TheXdndAtoms()[message.type];
    std::copy(message.data.begin(), message.data.end(), event.data.data32);
    IgnoreErrors(xcb_send_event_checked(Xcb(), 0, to, 0, reinterpret_cast<const char*>(&event)));
    xcb_flush(Xcb());
}

void HandleDragMessage(const xcb_client_message_event_t& event)
{
    if (event.format != 32)
        return;
    XdndMessage message;
    message.window = event.window;
    for (const Xdnd type : {Xdnd::Enter, Xdnd::Position, Xdnd::Status, Xdnd::Leave, Xdnd::Drop, Xdnd::Finished})
        message.type = TheXdndAtoms()[type] == event.type ? type : message.type;
    std::copy(std::begin(event.data.data32), std::end(event.data.data32), message.data.begin());
    if (message.type == Xdnd::Status || message.type == Xdnd::Finished)
        HandleDragAnswer(message);
    else if (message.type != Xdnd::Count && FindNative(event.window) != nullptr)
        State().target.OnMessage(message);
}

void HandleWindowGone(xcb_window_t window)
{
    ForgetForeign(window);
    HandlePartnerGone(window);
    if (g_incoming != nullptr)
        g_incoming->target.OnWindowGone(window);
}

bool IsDraggedOver()
{
    return g_incoming != nullptr && g_incoming->target.IsBusy() && g_incoming->asking == 0;
}

xcb_timestamp_t IncomingDragTime()
{
    return g_incoming != nullptr ? g_incoming->target.Time() : XCB_CURRENT_TIME;
}

} // namespace platform::x11

namespace platform::screen
{

void AnswerDrag(unsigned drag, DragActions action)
{
    if (x11::g_incoming != nullptr)
        x11::g_incoming->target.Answer(drag, action);
}

void FinishDrop(unsigned drag, DragActions action)
{
    if (x11::g_incoming == nullptr)
        return;
    x11::g_incoming->target.Finish(drag, action);
    if (x11::g_incoming->asking == drag)
        x11::g_incoming->asking = 0;
    if (action != 0)
        x11::OnDropTaken();
}

} // namespace platform::screen
