// Reading what other programs have selected: the requests behind the reader's state machine, and waiting for its end.
#include "platform/screen/x11/selection_questions.h"

#include "platform/base/clock.h"
#include "platform/screen/x11/atoms.h"
#include "platform/screen/x11/connection.h"
#include "platform/screen/x11/drags.h"
#include "platform/screen/x11/input.h"
#include "platform/screen/x11/selection_reading.h"
#include "platform/screen/x11/selections.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace platform::x11
{
namespace
{

using screen::Selection;
using std::chrono::milliseconds;

constexpr char kReadingProperty[] = "_ORB_LAUNCHER_SELECTION";

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

struct Questions
{
    Question* current = nullptr;
    xcb_window_t window = 0;
    unsigned asked = 0;          ///< counts what other programs have asked
    xcb_timestamp_t readAt[3]{}; ///< by Selection: when another program's was last asked for
    std::weak_ptr<const screen::SelectionSource> readOwn[3]; ///< what was last read of this program's own
};

Questions& State()
{
    static Questions& state = *new Questions;
    return state;
}

std::size_t IndexOf(Selection selection)
{
    return static_cast<std::size_t>(selection);
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

/// A reading that was given up leaves its window behind: what the owner still sends must not meet the next reading, and
/// many an owner would not survive that its requestor is gone.
xcb_window_t ReadingWindow()
{
    xcb_window_t& window = State().window;
    window = window != 0 ? window : MakeSelectionWindow();
    return window;
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
    const auto steps = [&] { return question.reading.Steps() + State().asked; };
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
bool Ask(Question& question, xcb_timestamp_t time, Wait wait)
{
    xcb_convert_selection(Xcb(), question.window, question.selection, question.target, AtomNamed(kReadingProperty),
                          time);
    Question* const outer = std::exchange(State().current, &question);
    const bool isOver = wait(question);
    State().current = outer;
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
    Questions& state = State();
    const xcb_window_t window = ReadingWindow();
    PropertyReader reader(window);
    SelectionReading reading(reader, AtomNamed("INCR"), limit);
    const bool dragged = selection == Selection::Drag && IncomingDragTime() != XCB_CURRENT_TIME;
    const xcb_timestamp_t time = dragged ? IncomingDragTime() : SelectionTime();
    state.readAt[IndexOf(selection)] = time;
    Question question{window, SelectionAtom(selection), AtomNamed(target), reading};
    const bool answered = Ask(question, time, [&](const Question& asked) { return WaitFor(asked, until); });
    if (!answered || reading.Current() == SelectionReading::State::Failed)
        state.window = 0;
    if (reading.Current() != SelectionReading::State::Done)
        return {answered, std::nullopt, 0};
    return {true, std::move(reading.Content()), reading.Format()};
}

} // namespace

void NoteAsked()
{
    ++State().asked;
}

void NoteAnswer(const xcb_selection_notify_event_t& event)
{
    const Question* question = State().current;
    const bool ours = question != nullptr && event.requestor == question->window &&
                      event.selection == question->selection && event.target == question->target;
    if (ours)
        question->reading.OnAnswer(event.property);
}

bool NoteReadProperty(const xcb_property_notify_event_t& event)
{
    const Question* question = State().current;
    const bool isAnswer = question != nullptr && event.state == XCB_PROPERTY_NEW_VALUE &&
                          event.window == question->window && event.atom == AtomNamed(kReadingProperty);
    if (isAnswer)
        question->reading.OnNewValue();
    return event.window == State().window;
}

} // namespace platform::x11

namespace platform::screen
{

using namespace x11;

void ClearSelection(Selection selection)
{
    const std::size_t index = IndexOf(selection);
    if (const auto own = OfferedSelection(selection))
    {
        if (own == State().readOwn[index].lock())
            WithdrawSelection(selection);
        return;
    }
    // The server compares the times.
    const xcb_timestamp_t time = State().readAt[index];
    if (time != XCB_CURRENT_TIME)
        xcb_set_selection_owner(Xcb(), XCB_NONE, SelectionAtom(selection), time);
}

std::optional<std::vector<std::string>> SelectionTargets(Selection selection, std::uint64_t until)
{
    if (const auto own = OfferedSelection(selection))
        return own->Targets();
    const Read read = ReadFromOther(selection, "TARGETS", until, kMostAtoms * sizeof(xcb_atom_t));
    if (!read.answered)
        return std::nullopt;
    if (!read.content || read.format != 32)
        return std::vector<std::string>();
    std::vector<xcb_atom_t> atoms(read.content->size() / sizeof(xcb_atom_t));
    std::memcpy(atoms.data(), read.content->data(), atoms.size() * sizeof(xcb_atom_t));
    return NamesOf(atoms);
}

std::optional<std::string> ReadSelection(Selection selection, std::string_view target, std::uint64_t until,
                                         std::size_t limit)
{
    if (const auto own = OfferedSelection(selection))
    {
        State().readOwn[IndexOf(selection)] = own;
        auto content = own->Content(target);
        return content && content->size() <= limit ? std::move(content) : std::nullopt;
    }
    Read read = ReadFromOther(selection, target, until, limit);
    return read.format == 8 ? std::move(read.content) : std::nullopt;
}

bool SaveClipboard(std::chrono::milliseconds patience)
{
    const auto own = OfferedSelection(Selection::Clipboard);
    if (own == nullptr)
        return false;
    const xcb_atom_t manager = AtomNamed("CLIPBOARD_MANAGER");
    const auto owner = Collect(xcb_get_selection_owner_reply, xcb_get_selection_owner(Xcb(), manager));
    if (owner == nullptr || owner->owner == XCB_NONE)
        return false;
    // The owner's window asks: the manager may wait for its end before it takes the clipboard.
    const xcb_window_t window = SelectionWindow();
    SetAtoms(window, AtomNamed(kReadingProperty), AtomsNamed(own->Targets()));
    PropertyReader reader(window);
    SelectionReading reading(reader, AtomNamed("INCR"), kMostAtoms * sizeof(xcb_atom_t));
    Question question{window, manager, AtomNamed("SAVE_TARGETS"), reading};
    const auto wait = [&](const Question& asked) { return WaitWhileItGoesOn(asked, patience); };
    return Ask(question, SelectionTime(), wait) && reading.Current() != SelectionReading::State::Refused;
}

} // namespace platform::screen
