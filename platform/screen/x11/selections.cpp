// Selections on X11: what other programs ask of this one, and the requests behind the owner's state machine.
#include "platform/screen/x11/selections.h"

#include "platform/base/clock.h"
#include "platform/screen/x11/atoms.h"
#include "platform/screen/x11/connection.h"
#include "platform/screen/x11/drags.h"
#include "platform/screen/x11/input.h"
#include "platform/screen/x11/selection_owner.h"
#include "platform/screen/x11/selection_questions.h"
#include "platform/screen/x11/watches.h"

#include <algorithm>
#include <utility>

namespace platform::x11
{
namespace
{

using screen::Selection;

// Bytes of a property; larger content goes in pieces.
constexpr std::size_t kLargestPiece = 128 * 1024;
constexpr char kTimeProperty[] = "_ORB_LAUNCHER_TIME";

class Port final : public OwnerPort
{
public:
    xcb_atom_t AtomOf(std::string_view name) override { return AtomNamed(name); }
    std::string NameOf(xcb_atom_t atom) override { return NameOfAtom(atom); }
    void SetProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
                     std::string_view bytes) override;
    std::vector<xcb_atom_t> AtomsIn(xcb_window_t window, xcb_atom_t property) override
    {
        return x11::AtomsIn(window, property);
    }
    void Watch(xcb_window_t window, bool on) override { WatchForeign(window, Watcher::Transfer, on); }
    void Answer(const ConversionRequest& request, xcb_atom_t property) override;
    std::size_t LargestPiece() override { return kLargestPiece; }
};

struct Selections
{
    Port port;
    SelectionOwner owners[3]{SelectionOwner(port), SelectionOwner(port), SelectionOwner(port)}; ///< by Selection
    xcb_window_t ownerWindow = 0;
    std::optional<xcb_timestamp_t> inputTime;
    std::optional<xcb_timestamp_t> stamp; ///< the time that was asked for by a change of a property
};

Selections& State()
{
    static Selections& state = *new Selections;
    return state;
}

void Port::SetProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
                       std::string_view bytes)
{
    IgnoreErrors(xcb_change_property_checked(Xcb(), XCB_PROP_MODE_REPLACE, window, property, type, format,
                                             static_cast<std::uint32_t>(bytes.size() * 8 / format), bytes.data()));
}

void Port::Answer(const ConversionRequest& request, xcb_atom_t property)
{
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = property;
    IgnoreErrors(xcb_send_event_checked(Xcb(), 0, request.requestor, 0, reinterpret_cast<const char*>(&notify)));
    xcb_flush(Xcb());
}

SelectionOwner& OwnerOf(Selection selection)
{
    return State().owners[static_cast<std::size_t>(selection)];
}

SelectionOwner* OwnerOf(xcb_atom_t atom)
{
    for (const Selection selection : {Selection::Clipboard, Selection::Primary, Selection::Drag})
        if (SelectionAtom(selection) == atom)
            return &OwnerOf(selection);
    return nullptr;
}

/// What keeps the process may have been let go while the loop is about to wait: it looks at its messages again.
void LetGo(SelectionOwner& owner)
{
    owner.Lose();
    screen::Wake();
}

void OnClear(const xcb_selection_clear_event_t& event)
{
    SelectionOwner* owner = OwnerOf(event.selection);
    const bool older = owner != nullptr && static_cast<std::int32_t>(event.time - owner->Since()) < 0;
    if (owner != nullptr && event.owner == State().ownerWindow && !older)
        LetGo(*owner);
}

void OnRequest(const xcb_selection_request_event_t& event)
{
    const ConversionRequest request{event.requestor, event.selection, event.target, event.property, event.time};
    NoteAsked();
    if (event.selection == SelectionAtom(Selection::Drag))
        NoteDragRead();
    if (SelectionOwner* owner = OwnerOf(event.selection))
        owner->OnRequest(request, NowMs());
    else
        State().port.Answer(request, XCB_NONE);
}

bool OnProperty(const xcb_property_notify_event_t& event)
{
    Selections& state = State();
    const bool reading = NoteReadProperty(event);
    if (event.state == XCB_PROPERTY_DELETE)
    {
        NoteAsked();
        for (SelectionOwner& owner : state.owners)
            owner.OnPropertyDeleted(event.window, event.atom, NowMs());
        xcb_flush(Xcb());
        screen::Wake(); // the last piece may have let the source go
    }
    else if (event.atom == AtomNamed(kTimeProperty))
    {
        state.stamp = event.time;
    }
    return reading || event.window == state.ownerWindow;
}

} // namespace

xcb_atom_t SelectionAtom(Selection selection)
{
    constexpr std::string_view kNames[] = {"CLIPBOARD", "PRIMARY", "XdndSelection"};
    return AtomNamed(kNames[static_cast<std::size_t>(selection)]);
}

xcb_window_t MakeSelectionWindow()
{
    const xcb_window_t window = xcb_generate_id(Xcb());
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(Xcb(), 0, window, TheConnection().Root(), -10, -10, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    return window;
}

xcb_timestamp_t SelectionTime()
{
    Selections& state = State();
    if (state.inputTime)
        return *state.inputTime;
    state.stamp.reset();
    xcb_change_property(Xcb(), XCB_PROP_MODE_APPEND, SelectionWindow(), AtomNamed(kTimeProperty), XCB_ATOM_INTEGER, 32,
                        0, nullptr);
    HandleEventsUntil(NowMs() + 1000, [&] { return state.stamp.has_value(); });
    return state.stamp.value_or(XCB_CURRENT_TIME);
}

xcb_window_t SelectionWindow()
{
    xcb_window_t& window = State().ownerWindow;
    window = window != 0 ? window : MakeSelectionWindow();
    return window;
}

xcb_timestamp_t LastInputTime()
{
    return State().inputTime.value_or(XCB_CURRENT_TIME);
}

void NoteInputTime(const xcb_generic_event_t& event, std::uint8_t type)
{
    const bool keyOrPointer = type >= XCB_KEY_PRESS && type <= XCB_LEAVE_NOTIFY;
    // All of these events begin alike.
    if (keyOrPointer)
        State().inputTime = reinterpret_cast<const xcb_key_press_event_t&>(event).time;
}

bool HandleSelectionEvent(const xcb_generic_event_t& event, std::uint8_t type)
{
    switch (type)
    {
    case XCB_SELECTION_CLEAR:
        OnClear(reinterpret_cast<const xcb_selection_clear_event_t&>(event));
        return true;
    case XCB_SELECTION_REQUEST:
        OnRequest(reinterpret_cast<const xcb_selection_request_event_t&>(event));
        return true;
    case XCB_SELECTION_NOTIFY:
        NoteAnswer(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
        return true;
    case XCB_PROPERTY_NOTIFY:
        return OnProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    case XCB_DESTROY_NOTIFY:
        for (SelectionOwner& owner : State().owners)
            owner.OnWindowGone(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
        screen::Wake();
        return false;
    default:
        return false;
    }
}

std::optional<std::uint64_t> SelectionDeadline()
{
    std::optional<std::uint64_t> deadline;
    for (const SelectionOwner& owner : State().owners)
        if (const auto own = owner.Deadline())
            deadline = std::min(deadline.value_or(*own), *own);
    return deadline;
}

void DropStalledSelections()
{
    for (SelectionOwner& owner : State().owners)
        owner.DropStalled(NowMs());
}

} // namespace platform::x11

namespace platform::screen
{

using x11::OwnerOf;
using x11::Xcb;

bool OfferSelection(Selection selection, std::shared_ptr<const SelectionSource> source)
{
    if (!x11::TheConnection().IsOpen())
        return false;
    const xcb_window_t window = x11::SelectionWindow();
    const xcb_timestamp_t time = x11::SelectionTime();
    xcb_set_selection_owner(Xcb(), window, x11::SelectionAtom(selection), time);
    const auto cookie = xcb_get_selection_owner(Xcb(), x11::SelectionAtom(selection));
    const auto reply = x11::Collect(xcb_get_selection_owner_reply, cookie);
    if (reply == nullptr || reply->owner != window)
        return false; // another program has taken it since
    OwnerOf(selection).Own(std::move(source), time);
    return true;
}

void WithdrawSelection(Selection selection)
{
    x11::SelectionOwner& owner = OwnerOf(selection);
    if (owner.Source() == nullptr)
        return;
    xcb_set_selection_owner(Xcb(), XCB_NONE, x11::SelectionAtom(selection), owner.Since());
    x11::LetGo(owner);
}

std::shared_ptr<const SelectionSource> OfferedSelection(Selection selection)
{
    return OwnerOf(selection).Source();
}

} // namespace platform::screen
