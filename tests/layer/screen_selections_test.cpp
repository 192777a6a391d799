// Selections by invented messages: both sides of a conversation, well-behaved and not.
#include "platform/screen/x11/selection_owner.h"
#include "platform/screen/x11/selection_reading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>

namespace
{

using namespace platform::x11;
using platform::screen::SelectionSource;
using State = SelectionReading::State;

constexpr std::size_t kPiece = 10;
constexpr xcb_atom_t kClipboard = 900;
constexpr xcb_window_t kAlice = 1, kBob = 2;

struct Property
{
    std::string type;
    std::string bytes;
    std::vector<std::uint32_t> Words() const
    {
        std::vector<std::uint32_t> words(bytes.size() / 4);
        if (!words.empty())
            std::memcpy(words.data(), bytes.data(), words.size() * 4);
        return words;
    }
};

/// The display as the owner sees it: properties of windows, and what has been told to whom.
class FakeDisplay : public OwnerPort
{
public:
    xcb_atom_t AtomOf(std::string_view name) override
    {
        const auto found = std::ranges::find(names, name);
        if (found == names.end())
            names.emplace_back(name);
        return static_cast<xcb_atom_t>(std::ranges::find(names, name) - names.begin()) + 1;
    }
    std::string NameOf(xcb_atom_t atom) override
    {
        return atom >= 1 && atom <= names.size() ? names[atom - 1] : std::string();
    }
    void SetProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t,
                     std::string_view bytes) override
    {
        properties[{window, NameOf(property)}] = {NameOf(type), std::string(bytes)};
    }
    std::vector<xcb_atom_t> AtomsIn(xcb_window_t window, xcb_atom_t property) override
    {
        return properties[{window, NameOf(property)}].Words();
    }
    void Watch(xcb_window_t window, bool on) override { watched[window] = on; }
    void Answer(const ConversionRequest& request, xcb_atom_t property) override
    {
        answers.push_back({request.requestor, NameOf(property)});
    }
    std::size_t LargestPiece() override { return kPiece; }

    std::vector<std::string> names;
    std::map<std::pair<xcb_window_t, std::string>, Property> properties;
    std::map<xcb_window_t, bool> watched;
    std::vector<std::pair<xcb_window_t, std::string>> answers;
};

class Source : public SelectionSource
{
public:
    std::vector<std::string> Targets() const override { return {"SHORT", "LONG", "TEXT"}; }
    std::optional<std::string> Content(std::string_view target) const override
    {
        if (target == "SHORT" || target == "TEXT")
            return "short";
        return target == "LONG" ? std::optional<std::string>("a text of 25 bytes, or so") : std::nullopt;
    }
};

struct Owner : testing::Test
{
    Owner() { owner.Own(source, 1000); }
    void Ask(xcb_window_t who, std::string_view target, std::string_view property = "P", xcb_timestamp_t time = 2000)
    {
        owner.OnRequest(
            {who, kClipboard, display.AtomOf(target), property.empty() ? 0 : display.AtomOf(property), time}, now);
    }
    std::string Answered() const { return display.answers.empty() ? "nobody" : display.answers.back().second; }
    const Property& Given(xcb_window_t who, const std::string& property = "P")
    {
        return display.properties[{who, property}];
    }
    /// The requestor takes a piece.
    std::string Take(xcb_window_t who, const std::string& property = "P")
    {
        display.properties.erase({who, property});
        owner.OnPropertyDeleted(who, display.AtomOf(property), now);
        return Given(who, property).bytes;
    }
    std::string TakeAll(xcb_window_t who, const std::string& property = "P")
    {
        std::string all;
        for (std::string piece = Take(who, property); !piece.empty(); piece = Take(who, property))
            all += piece;
        return all;
    }

    FakeDisplay display;
    SelectionOwner owner{display};
    std::shared_ptr<Source> source = std::make_shared<Source>();
    std::uint64_t now = 50000;
};

TEST_F(Owner, SaysWhatThereIsAndSinceWhen)
{
    Ask(kAlice, "TARGETS");
    EXPECT_EQ(Given(kAlice).type, "ATOM");
    std::vector<std::string> names;
    for (const std::uint32_t atom : Given(kAlice).Words())
        names.push_back(display.NameOf(atom));
    EXPECT_EQ(names,
              (std::vector<std::string>{"TARGETS", "TIMESTAMP", "MULTIPLE", "SAVE_TARGETS", "SHORT", "LONG", "TEXT"}));
    Ask(kAlice, "TIMESTAMP");
    EXPECT_EQ(Given(kAlice).type, "INTEGER");
    EXPECT_EQ(Given(kAlice).Words(), std::vector<std::uint32_t>{1000});
}

TEST_F(Owner, GivesContentUnderItsNameAndTextUnderItsEncoding)
{
    Ask(kAlice, "SHORT");
    EXPECT_EQ(Answered(), "P");
    EXPECT_EQ(Given(kAlice).type, "SHORT");
    EXPECT_EQ(Given(kAlice).bytes, "short");
    Ask(kAlice, "TEXT");
    EXPECT_EQ(Given(kAlice).type, "UTF8_STRING");
    Ask(kAlice, "SHORT", "");
    EXPECT_EQ(Answered(), "SHORT") << "an obsolete requestor names no property";
}

TEST_F(Owner, RefusesWhatItHasNotGotAndQuestionsFromBeforeItsTime)
{
    Ask(kAlice, "PICTURE");
    EXPECT_EQ(Answered(), "");
    Ask(kAlice, "SHORT", "P", 999);
    EXPECT_EQ(Answered(), "");
    Ask(kAlice, "SHORT", "P", XCB_CURRENT_TIME);
    EXPECT_EQ(Answered(), "P");
    owner.Own(source, 0xFFFFFFF0);
    Ask(kAlice, "SHORT", "P", 5); // the server's clock has wrapped in between
    EXPECT_EQ(Answered(), "P");
    owner.Lose();
    Ask(kAlice, "SHORT");
    EXPECT_EQ(Answered(), "");
    EXPECT_EQ(display.properties.size(), 1u);
}

TEST_F(Owner, AnswersManyQuestionsAtOnceAndMarksTheRefusedOnes)
{
    const std::vector<std::uint32_t> pairs{
        display.AtomOf("SHORT"),    display.AtomOf("A"), display.AtomOf("PICTURE"), display.AtomOf("B"),
        display.AtomOf("MULTIPLE"), display.AtomOf("C"), display.AtomOf("LONG"),    display.AtomOf("D")};
    display.properties[{kAlice, "P"}] = {"ATOM_PAIR", {reinterpret_cast<const char*>(pairs.data()), pairs.size() * 4}};
    Ask(kAlice, "MULTIPLE");
    EXPECT_EQ(display.answers.size(), 1u);
    EXPECT_EQ(Answered(), "P");
    EXPECT_EQ(Given(kAlice, "A").bytes, "short");
    const auto marked = Given(kAlice).Words();
    ASSERT_EQ(marked.size(), 8u);
    EXPECT_EQ(marked[1], display.AtomOf("A"));
    EXPECT_EQ(marked[3], 0u);
    EXPECT_EQ(marked[5], 0u) << "a MULTIPLE within a MULTIPLE";
    EXPECT_EQ(TakeAll(kAlice, "D"), "a text of 25 bytes, or so");
    display.properties.erase({kBob, "P"});
    Ask(kBob, "MULTIPLE");
    EXPECT_EQ(Answered(), "") << "no list at all";
}

TEST_F(Owner, SendsLargeContentInPiecesToSeveralAtOnce)
{
    Ask(kAlice, "LONG");
    EXPECT_EQ(Given(kAlice).type, "INCR");
    EXPECT_EQ(Given(kAlice).Words(), std::vector<std::uint32_t>{25});
    EXPECT_TRUE(display.watched[kAlice]);
    Ask(kBob, "LONG", "Q");
    EXPECT_EQ(Take(kAlice), "a text of ");
    EXPECT_EQ(Given(kAlice).type, "LONG");
    EXPECT_EQ(TakeAll(kBob, "Q"), "a text of 25 bytes, or so");
    EXPECT_FALSE(display.watched[kBob]);
    EXPECT_TRUE(display.watched[kAlice]);
    owner.Lose();
    EXPECT_EQ(TakeAll(kAlice), "25 bytes, or so") << "what has begun goes on";
    display.properties.erase({kAlice, "P"});
    owner.OnPropertyDeleted(kAlice, display.AtomOf("P"), now);
    EXPECT_FALSE(display.properties.contains({kAlice, "P"})) << "nothing comes after the end";
}

TEST_F(Owner, LetsGoOfTheSourceWhenNobodyTakesItAnyMore)
{
    Ask(kAlice, "LONG");
    Ask(kBob, "LONG");
    owner.Lose();
    const std::weak_ptr<Source> watched = source;
    source.reset();
    owner.OnWindowGone(kAlice);
    EXPECT_FALSE(watched.expired()) << "the other is still reading";
    ASSERT_TRUE(owner.Deadline().has_value());
    EXPECT_GT(*owner.Deadline(), now);
    owner.DropStalled(*owner.Deadline() - 1);
    EXPECT_FALSE(watched.expired());
    owner.DropStalled(*owner.Deadline());
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(owner.Deadline().has_value()) << "nothing to wake up for";
    EXPECT_FALSE(display.watched[kBob]);
}

/// What the reader finds in its property, in order.
class FakeProperty : public ReadingPort
{
public:
    PropertyValue TakeProperty(std::size_t limit) override
    {
        if (values.empty())
            return {};
        PropertyValue value = values.front();
        values.erase(values.begin());
        value.whole = value.bytes.size() <= limit;
        return value;
    }
    std::vector<PropertyValue> values;
};

constexpr xcb_atom_t kIncr = 77, kType = 78;

PropertyValue Piece(std::string bytes, std::uint8_t format = 8)
{
    return {kType, format, std::move(bytes)};
}

PropertyValue Announced(std::uint32_t size)
{
    return {kIncr, 32, {reinterpret_cast<const char*>(&size), 4}};
}

struct Reading : testing::Test
{
    State Receive(std::vector<PropertyValue> values)
    {
        const std::size_t count = values.size();
        property.values = std::move(values);
        reading.emplace(property, kIncr, 100);
        reading->OnNewValue(); // comes before the answer, and tells nothing
        reading->OnAnswer(5);
        for (std::size_t i = 1; i < count; ++i)
            reading->OnNewValue();
        return reading->Current();
    }
    FakeProperty property;
    std::optional<SelectionReading> reading;
};

TEST_F(Reading, TakesContentInOnePieceOrInMany)
{
    EXPECT_EQ(Receive({Piece("whole")}), State::Done);
    EXPECT_EQ(reading->Content(), "whole");
    SelectionReading second(property, kIncr, 100);
    property.values = {Announced(3), Piece("in "), Piece("pieces"), Piece("")};
    second.OnAnswer(5);
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_EQ(second.Current(), State::Receiving);
        const unsigned before = second.Steps();
        second.OnNewValue();
        EXPECT_GT(second.Steps(), before);
    }
    EXPECT_EQ(second.Current(), State::Done);
    EXPECT_EQ(second.Content(), "in pieces");
    EXPECT_EQ(second.Format(), 8);
}

TEST_F(Reading, IsRefusedOnce)
{
    reading.emplace(property, kIncr, 100);
    reading->OnAnswer(0);
    EXPECT_EQ(reading->Current(), State::Refused);
    property.values = {Piece("late")};
    reading->OnAnswer(5);
    reading->OnNewValue();
    EXPECT_EQ(reading->Current(), State::Refused);
}

TEST_F(Reading, FailsWithoutWhatWasPromised)
{
    const struct
    {
        const char* what;
        std::vector<PropertyValue> values;
    } cases[] = {
        {"no property", {}},
        {"too large as a whole", {Piece(std::string(101, 'x'))}},
        {"announced too large", {Announced(101), Piece("x")}},
        {"pieces that grow too large", {Announced(1), Piece(std::string(60, 'x')), Piece(std::string(60, 'x'))}},
        {"pieces of different formats", {Announced(1), Piece("four"), Piece("four", 32)}},
    };
    for (const auto& one : cases)
        EXPECT_EQ(Receive(one.values), State::Failed) << one.what;
}

TEST_F(Reading, AnEmptyContentIsContent)
{
    EXPECT_EQ(Receive({Announced(0), Piece("")}), State::Done);
    EXPECT_EQ(reading->Content(), "");
}

} // namespace
