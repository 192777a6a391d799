// Selections on X11: the requests behind the two state machines, and the questions that wait for an answer.
#include "platform/screen/x11/selections.h"

#include "platform/base/clock.h"
#include "platform/screen/x11/atoms.h"
#include "platform/screen/x11/connection.h"
#include "platform/screen/x11/drags.h"
#include "platform/screen/x11/input.h"
#include "platform/screen/x11/selection_owner.h"
#include "platform/screen/x11/selection_reading.h"
#include "platform/screen/x11/watches.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace platform::x11
{
namespace
{

using screen::Selection;
using std::chrono::milliseconds;

// Bytes of a property; larger content goes in pieces.
constexpr std::size_t kLargestPiece = 128 * 1024;
// Kinds that one owner may name.
constexpr std::size_t kMostTargets = 1024;
constexpr char kReadingProperty[] = "_ORB_LAUNCHER_SELECTION";
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

/// Takes the property of the reading window.
class PropertyReader final : public ReadingPort
{
public:
    explicit PropertyReader(xcb_window_t window) : m_window(window) {}
    PropertyValue TakeProperty(std::size_t limit) override;

private:
    xcb_window_t m_window;
};

/// A question under way, asked by the call that waits for its answer.
struct Question
{
    xcb_window_t window;
    xcb_atom_t selection;
    xcb_atom_t target;
    SelectionReading& reading;
};

struct Selections
{
    Port port;
    SelectionOwner owners[3]{SelectionOwner(port), SelectionOwner(port), SelectionOwner(port)}; ///< by Selection
    xcb_timestamp_t readAt[3]{};                             ///< when another program's was last asked for
    std::weak_ptr<const screen::SelectionSource> readOwn[3]; ///< what was last read of this program's own
    xcb_window_t ownerWindow = 0;
    xcb_window_t readingWindow = 0;
    std::optional<xcb_timestamp_t> inputTime;
    std::optional<xcb_timestamp_t> stamp; ///< the time that was asked for by a change of a property
    Question* question = nullptr;
    unsigned steps = 0; ///< counts what other programs have asked
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

PropertyValue PropertyReader::TakeProperty(std::size_t limit)
{
    const xcb_atom_t property = AtomNamed(kReadingProperty);
    const auto words = static_cast<std::uint32_t>(std::min<std::size_t>(limit / 4 + 1, UINT32_MAX / 4));
    const auto cookie = xcb_get_property(Xcb(), 1, m_window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, words);
    const auto reply = Collect(xcb_get_property_reply, cookie);
    PropertyValue value;
    if (reply == nullptr)
        return value;
    value.type = reply->type;
    value.format = reply->format;
    value.bytes.assign(static_cast<const char*>(xcb_get_property_value(reply.get())),
                       static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    value.whole = reply->bytes_after == 0 && value.bytes.size() <= limit;
    if (reply->bytes_after != 0) // the server deletes only what it has given whole
        xcb_delete_property(Xcb(), m_window, property);
    return value;
}

xcb_window_t MakeWindow()
{
    const xcb_window_t window = xcb_generate_id(Xcb());
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(Xcb(), 0, window, TheConnection().Root(), -10, -10, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    return window;
}

/// A reading that was given up leaves its window behind: what the owner still sends must not meet the next reading, and
/// many an owner would not survive that its requestor is gone.
xcb_window_t ReadingWindow()
{
    xcb_window_t& window = State().readingWindow;
    window = window != 0 ? window : MakeWindow();
    return window;
}

xcb_atom_t AtomOf(Selection selection)
{
    constexpr std::string_view kNames[] = {"CLIPBOARD", "PRIMARY", "XdndSelection"};
    return AtomNamed(kNames[static_cast<std::size_t>(selection)]);
}

SelectionOwner& OwnerOf(Selection selection)
{
    return State().owners[static_cast<std::size_t>(selection)];
}

SelectionOwner* OwnerOf(xcb_atom_t atom)
{
    for (const Selection selection : {Selection::Clipboard, Selection::Primary, Selection::Drag})
        if (AtomOf(selection) == atom)
            return &OwnerOf(selection);
    return nullptr;
}

/// The time of the last input; before there was any, the server's present one, by a change of a property that changes
/// nothing (ICCCM 2.1).
xcb_timestamp_t Time()
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
    ++State().steps;
    if (event.selection == AtomOf(Selection::Drag))
        NoteDragRead();
    if (SelectionOwner* owner = OwnerOf(event.selection))
        owner->OnRequest(request, NowMs());
    else
        State().port.Answer(request, XCB_NONE);
}

void OnNotify(const xcb_selection_notify_event_t& event)
{
    const Question* question = State().question;
    const bool ours = question != nullptr && event.requestor == question->window &&
                      event.selection == question->selection && event.target == question->target;
    if (ours)
        question->reading.OnAnswer(event.property);
}

bool OnProperty(const xcb_property_notify_event_t& event)
{
    Selections& state = State();
    const bool reading = event.window == state.readingWindow || event.window == state.ownerWindow;
    if (event.state == XCB_PROPERTY_DELETE)
    {
        ++state.steps;
        for (SelectionOwner& owner : state.owners)
            owner.OnPropertyDeleted(event.window, event.atom, NowMs());
        xcb_flush(Xcb());
        screen::Wake(); // the last piece may have let the source go
    }
    else if (event.atom == AtomNamed(kTimeProperty))
    {
        state.stamp = event.time;
    }
    else if (state.question != nullptr && event.window == state.question->window &&
             event.atom == AtomNamed(kReadingProperty))
    {
        state.question->reading.OnNewValue();
    }
    return reading;
}

/// False when it was not over by then.
bool WaitFor(const Question& question, std::uint64_t until)
{
    HandleEventsUntil(until, [&] { return question.reading.IsOver(); });
    return question.reading.IsOver();
}

/// Waits for as long as the owner goes on: it answers, or reads what is this program's. False when it does not.
bool WaitWhileItGoesOn(const Question& question, milliseconds patience)
{
    const auto steps = [&] { return question.reading.Steps() + State().steps; };
    unsigned before = 0;
    do
    {
        before = steps();
        HandleEventsUntil(NowMs() + static_cast<std::uint64_t>(patience.count()),
                          [&] { return question.reading.IsOver() || steps() != before; });
    } while (!question.reading.IsOver() && steps() != before);
    return question.reading.IsOver();
}

/// Asks, and waits for the end of the reading. False when the waiting ended before.
template <typename Wait>
bool Ask(Question& question, Wait wait)
{
    Selections& state = State();
    const bool dragged = question.selection == AtomOf(Selection::Drag) && IncomingDragTime() != XCB_CURRENT_TIME;
    const xcb_timestamp_t time = dragged ? IncomingDragTime() : Time();
    for (const Selection selection : {Selection::Clipboard, Selection::Primary, Selection::Drag})
        if (AtomOf(selection) == question.selection)
            state.readAt[static_cast<std::size_t>(selection)] = time;
    xcb_convert_selection(Xcb(), question.window, question.selection, question.target, AtomNamed(kReadingProperty),
                          time);
    Question* const outer = std::exchange(state.question, &question);
    const bool isOver = wait(question);
    state.question = outer;
    return isOver;
}

struct Read
{
    bool answered = false; ///< the owner, or the server for want of one
    std::optional<std::string> content;
    std::uint8_t format = 0;
};

Read ReadFromOther(Selection selection, std::string_view target, std::uint64_t until, std::size_t limit)
{
    if (!TheConnection().IsOpen())
        return {true, std::nullopt, 0};
    Selections& state = State();
    const xcb_window_t window = ReadingWindow();
    PropertyReader reader(window);
    SelectionReading reading(reader, AtomNamed("INCR"), limit);
    Question question{window, AtomOf(selection), AtomNamed(target), reading};
    const bool answered = Ask(question, [&](const Question& asked) { return WaitFor(asked, until); });
    if (!answered || reading.Current() == SelectionReading::State::Failed)
        state.readingWindow = 0;
    if (reading.Current() != SelectionReading::State::Done)
        return {answered, std::nullopt, 0};
    return {true, std::move(reading.Content()), reading.Format()};
}

} // namespace

xcb_window_t SelectionWindow()
{
    xcb_window_t& window = State().ownerWindow;
    window = window != 0 ? window : MakeWindow();
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
        OnNotify(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
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
    const xcb_timestamp_t time = x11::Time();
    xcb_set_selection_owner(Xcb(), window, x11::AtomOf(selection), time);
    const auto cookie = xcb_get_selection_owner(Xcb(), x11::AtomOf(selection));
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
    xcb_set_selection_owner(Xcb(), XCB_NONE, x11::AtomOf(selection), owner.Since());
    x11::LetGo(owner);
}

void ClearSelection(Selection selection)
{
    const auto index = static_cast<std::size_t>(selection);
    if (const auto own = OfferedSelection(selection))
    {
        if (own == x11::State().readOwn[index].lock())
            WithdrawSelection(selection);
        return;
    }
    // The server compares the times.
    const xcb_timestamp_t time = x11::State().readAt[index];
    if (time != XCB_CURRENT_TIME)
        xcb_set_selection_owner(Xcb(), XCB_NONE, x11::AtomOf(selection), time);
}

std::shared_ptr<const SelectionSource> OfferedSelection(Selection selection)
{
    return OwnerOf(selection).Source();
}

std::optional<std::vector<std::string>> SelectionTargets(Selection selection, std::uint64_t until)
{
    if (const auto own = OfferedSelection(selection))
        return own->Targets();
    const x11::Read read = x11::ReadFromOther(selection, "TARGETS", until, x11::kMostTargets * sizeof(xcb_atom_t));
    if (!read.answered)
        return std::nullopt;
    if (!read.content || read.format != 32)
        return std::vector<std::string>();
    std::vector<xcb_atom_t> atoms(read.content->size() / sizeof(xcb_atom_t));
    std::memcpy(atoms.data(), read.content->data(), atoms.size() * sizeof(xcb_atom_t));
    return x11::NamesOf(atoms);
}

std::optional<std::string> ReadSelection(Selection selection, std::string_view target, std::uint64_t until,
                                         std::size_t limit)
{
    if (const auto own = OfferedSelection(selection))
    {
        x11::State().readOwn[static_cast<std::size_t>(selection)] = own;
        auto content = own->Content(target);
        return content && content->size() <= limit ? std::move(content) : std::nullopt;
    }
    x11::Read read = x11::ReadFromOther(selection, target, until, limit);
    return read.format == 8 ? std::move(read.content) : std::nullopt;
}

bool SaveClipboard(std::chrono::milliseconds patience)
{
    const auto own = OfferedSelection(Selection::Clipboard);
    if (own == nullptr)
        return false;
    x11::Port& port = x11::State().port;
    const xcb_atom_t manager = port.AtomOf("CLIPBOARD_MANAGER");
    const auto owner = x11::Collect(xcb_get_selection_owner_reply, xcb_get_selection_owner(Xcb(), manager));
    if (owner == nullptr || owner->owner == XCB_NONE)
        return false;
    // The owner's window asks: the manager may wait for its end before it takes the clipboard.
    const xcb_window_t window = x11::SelectionWindow();
    const std::vector<xcb_atom_t> targets = x11::AtomsNamed(own->Targets());
    port.SetProperty(window, port.AtomOf(x11::kReadingProperty), XCB_ATOM_ATOM, 32,
                     {reinterpret_cast<const char*>(targets.data()), targets.size() * sizeof(xcb_atom_t)});
    x11::PropertyReader reader(window);
    x11::SelectionReading reading(reader, port.AtomOf("INCR"), x11::kLargestPiece);
    x11::Question question{window, manager, port.AtomOf("SAVE_TARGETS"), reading};
    const auto wait = [&](const x11::Question& asked) { return x11::WaitWhileItGoesOn(asked, patience); };
    return x11::Ask(question, wait) && reading.Current() != x11::SelectionReading::State::Refused;
}

} // namespace platform::screen
