// The edit control as a person types in it.
#include "tests/layer/windowing_desk.h"
#include "tests/scenarios/failing.h"

#include "platform/base/fault_points.h"
#include "platform/windowing/clipboard.h"

#include <string>
#include <string_view>
#include <vector>

namespace
{

using namespace platform;
using namespace std::string_view_literals;

constexpr int kLeft = 100;
constexpr int kTop = 50;
constexpr int kId = 7;

struct Edits : Desk
{
    explicit Edits(DWORD style = ES_AUTOHSCROLL | WS_BORDER, int width = 200)
    {
        parent = ShownPopup(kLeft, kTop, 400, 100);
        edit = CreateWindowExW(0, TEXT("EDIT"), nullptr, WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, 0, 0, width, 24,
                               parent, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(kId)), nullptr, nullptr);
        font = CreateFontW(-16, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                           DEFAULT_QUALITY, DEFAULT_PITCH, TEXT("DejaVu Sans"));
        SendMessageW(edit, WM_SETFONT, reinterpret_cast<WPARAM>(font), 0);
        SetFocus(edit);
        Pump();
    }

    ~Edits() override
    {
        DestroyWindow(parent);
        DeleteObject(font);
    }

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return SendMessageW(edit, message, wParam, lParam);
    }

    static void Key(BYTE key, std::initializer_list<BYTE> held = {})
    {
        Tap(key, held);
        Pump();
    }

    /// Every character by a key of its own.
    static void Type(std::u16string_view text)
    {
        for (std::size_t i = 0; i < text.size(); ++i)
        {
            const std::size_t units = (text[i] & 0xFC00) == 0xD800 ? 2 : 1;
            headless::PressKey('X', text.substr(i, units));
            headless::ReleaseKey('X');
            i += units - 1;
        }
        Pump();
    }

    /// Opens the context menu by its key and presses a letter there; whether that has chosen an entry.
    bool ChosenFromContextMenu(BYTE letter)
    {
        int turn = 0;
        headless::SetIdleHandler(
            [&]
            {
                if (turn == 0)
                    menuLeft = headless::Windows().front().bounds.left;
                Tap(turn++ == 0 ? letter : BYTE{VK_ESCAPE});
                return true;
            });
        Key(VK_APPS);
        headless::SetIdleHandler(nullptr);
        return turn == 1;
    }

    void Set(std::u16string_view text)
    {
        SetWindowTextW(edit, std::u16string(text).c_str());
        m_records.clear();
    }

    std::u16string Text() const { return TextOf(edit); }

    /// The text with [ and ] around the selection, or | where the caret is.
    std::u16string State()
    {
        DWORD begin = 0;
        DWORD end = 0;
        Send(EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
        std::u16string text = Text();
        if (begin == end)
            return text.insert(begin, 1, u'|');
        return text.insert(end, 1, u']').insert(begin, 1, u'[');
    }

    /// Screen position of a place's caret, half way down the line.
    POINT At(std::size_t index)
    {
        const LRESULT at = Send(EM_POSFROMCHAR, index);
        POINT point{static_cast<short>(LOWORD(at)), static_cast<short>(HIWORD(at)) + 8};
        ClientToScreen(edit, &point);
        return point;
    }

    POINT CaretOnScreen()
    {
        const std::optional<RECT> caret = headless::TextCaret();
        POINT point{caret.value_or(RECT{}).left, 0};
        ClientToScreen(parent, &point);
        return point;
    }

    void MoveTo(POINT point)
    {
        headless::MoveMouse(point.x, point.y);
        Pump();
    }

    void ClickAt(POINT point, int times = 1)
    {
        for (int i = 0; i < times; ++i)
        {
            Click(point.x, point.y);
            Pump();
        }
    }

    std::vector<int> Notifications()
    {
        std::vector<int> codes;
        for (const Record& record : m_records)
            if (record.window == parent && record.message == WM_COMMAND)
                codes.push_back(HIWORD(record.wParam));
        m_records.clear();
        return codes;
    }

    HWND parent = nullptr;
    HWND edit = nullptr;
    HFONT font = nullptr;
    LONG menuLeft = 0; ///< where the context menu was
};

} // namespace

TEST_F(Edits, TypingReplacesWhatIsMarked)
{
    Type(u"report");
    EXPECT_EQ(State(), u"report|");
    Key(VK_HOME, {VK_SHIFT});
    EXPECT_EQ(State(), u"[report]");
    Type(u"\U0001F600b");
    EXPECT_EQ(State(), u"\U0001F600b|");
    Key(VK_LEFT);
    Key(VK_BACK);
    EXPECT_EQ(State(), u"|b") << "both halves of a surrogate pair go";
}

TEST_F(Edits, WordsAreSteppedOverAndErased)
{
    Set(u"one two.txt  three");
    Key(VK_RIGHT, {VK_CONTROL});
    EXPECT_EQ(State(), u"one |two.txt  three");
    Key(VK_END);
    Key(VK_LEFT, {VK_CONTROL, VK_SHIFT});
    EXPECT_EQ(State(), u"one two.txt  [three]");
    Key(VK_LEFT);
    EXPECT_EQ(State(), u"one two.txt  |three") << "an arrow key leaves the selection at its side";
    Key(VK_DELETE, {VK_CONTROL});
    EXPECT_EQ(State(), u"one two.txt  |");
    Key(VK_HOME);
    Key(VK_RIGHT, {VK_CONTROL});
    Key(VK_BACK, {VK_CONTROL});
    EXPECT_EQ(State(), u"|two.txt  ");
}

TEST_F(Edits, WhatIsSeenAsOneCharacterIsOneStep)
{
    const std::u16string_view characters[] = {
        u"\U0001F468\u200D\U0001F469\u200D\U0001F467", // a family, joined
        u"\U0001F1E9\U0001F1EA",                       // a flag
        u"\U0001F44D\U0001F3FD",                       // with a skin tone
        u"e\u0301",                                    // with a combining accent
        u"\u2764\uFE0F",
    };
    for (const std::u16string_view character : characters)
    {
        const std::u16string before = std::u16string(1, u'a').append(character);
        Set(std::u16string(before).append(1, u'b'));
        Key(VK_RIGHT);
        Key(VK_RIGHT);
        EXPECT_EQ(State(), std::u16string(before).append(u"|b"));
        Key(VK_BACK);
        EXPECT_EQ(State(), u"a|b");
        Send(EM_UNDO);
        Key(VK_HOME);
        Key(VK_RIGHT);
        Key(VK_DELETE);
        EXPECT_EQ(State(), u"a|b");
    }
    // A point of Hebrew goes alone: it was typed alone.
    Set(u"\u05E9\u05C1");
    Key(VK_END);
    Key(VK_BACK);
    EXPECT_EQ(State(), u"\u05E9|");
}

TEST_F(Edits, ArrowsFollowWhatIsSeenInMixedDirections)
{
    // The Hebrew letters at 4 to 7 are shown from right to left: what is right of the one at 7 is the one at 6.
    Set(u"abc \u05D3\u05D4\u05D5\u05D6 hi");
    const std::vector<DWORD> fromLeft{0, 1, 2, 3, 4, 7, 6, 5, 8, 9, 10, 11};
    std::vector<DWORD> seen;
    for (std::size_t i = 0; i < fromLeft.size(); ++i)
    {
        DWORD caret = 0;
        Send(EM_GETSEL, 0, reinterpret_cast<LPARAM>(&caret));
        seen.push_back(caret);
        Key(VK_RIGHT);
    }
    EXPECT_EQ(seen, fromLeft);
    for (std::size_t i = 0; i < fromLeft.size(); ++i)
        Key(VK_LEFT);
    EXPECT_EQ(State(), Text().insert(0, 1, u'|'));
}

TEST_F(Edits, TheCaretIsBehindWhatWasTypedInEitherDirection)
{
    Type(u"ab\u05D3\u05D4");
    // More Hebrew would be shown left of the last letter, and there the arrows go on.
    Key(VK_RIGHT);
    EXPECT_EQ(State(), u"ab\u05D3|\u05D4");
    Key(VK_END);
    EXPECT_EQ(State(), u"ab\u05D3\u05D4|") << "Latin text would go on at the right";
    Key(VK_LEFT);
    EXPECT_EQ(State(), u"ab\u05D3|\u05D4");
}

TEST_F(Edits, TheMouseMarksCharactersWordsAndAll)
{
    Set(u"first second third");
    ClickAt(At(6));
    EXPECT_EQ(State(), u"first |second third");
    headless::PressKey(VK_SHIFT);
    ClickAt(At(2));
    headless::ReleaseKey(VK_SHIFT);
    EXPECT_EQ(State(), u"fi[rst ]second third");

    AdvanceManualClock(1000);
    ClickAt(At(8), 2);
    EXPECT_EQ(State(), u"first [second] third");
    ClickAt(At(8));
    EXPECT_EQ(State(), u"[first second third]");

    AdvanceManualClock(1000);
    ClickAt(At(8), 2);
    AdvanceManualClock(1000);
    ClickAt(At(8));
    EXPECT_EQ(State(), u"first se|cond third") << "too late for a third click";

    AdvanceManualClock(1000);
    MoveTo(At(14));
    ClickAt(At(14));
    headless::PressButton();
    Pump();
    MoveTo(At(8));
    headless::ReleaseButton();
    Pump();
    EXPECT_EQ(State(), u"first [second third]") << "dragging from a double click takes words whole";

    AdvanceManualClock(1000);
    MoveTo(At(3));
    headless::PressButton();
    Pump();
    MoveTo(At(9));
    headless::ReleaseButton();
    Pump();
    MoveTo(At(1));
    EXPECT_EQ(State(), u"fir[st sec]ond third");
}

TEST_F(Edits, ThePointerIsAnIBeamOverTheText)
{
    const auto shapeAt = [this](POINT point)
    {
        MoveTo(point);
        return headless::Windows().front().pointer;
    };
    RECT bounds{};
    GetWindowRect(edit, &bounds);
    EXPECT_EQ(shapeAt({bounds.left + 9, bounds.top + 9}), screen::PointerShape::Text);
    EXPECT_EQ(shapeAt({bounds.left + 9, bounds.bottom + 2}), screen::PointerShape::Arrow);
}

TEST_F(Edits, DraggingBeyondTheEdgeScrolls)
{
    Set(std::u16string(200, u'w'));
    MoveTo(At(2));
    headless::PressButton();
    Pump();
    headless::MoveMouse(kLeft + 300, kTop + 10);
    Pump();
    DWORD caret = 0;
    for (int i = 0; i < 1000 && caret < 200; ++i)
    {
        AdvanceManualClock(50);
        Pump();
        Send(EM_GETSEL, 0, reinterpret_cast<LPARAM>(&caret));
    }
    EXPECT_EQ(caret, 200u);
    headless::ReleaseButton();
    Pump();
    EXPECT_LT(static_cast<short>(LOWORD(Send(EM_POSFROMCHAR, 2))), 0) << "the beginning has scrolled away";
}

TEST_F(Edits, UndoTakesBackByKindsOfWork)
{
    Type(u"one two");
    Key(VK_BACK);
    Key(VK_BACK);
    EXPECT_EQ(Text(), u"one t");
    Key('Z', {VK_CONTROL});
    EXPECT_EQ(State(), u"one two|");
    Key('Z', {VK_CONTROL});
    EXPECT_EQ(State(), u"one |");
    Key('Y', {VK_CONTROL});
    EXPECT_EQ(State(), u"one two|");
    Key('Z', {VK_CONTROL});
    Key('Z', {VK_CONTROL});
    EXPECT_EQ(State(), u"|");
    Key('Z', {VK_CONTROL});
    EXPECT_EQ(State(), u"|");
    Key('Z', {VK_CONTROL, VK_SHIFT});
    EXPECT_EQ(State(), u"one |");
    Type(u"X");
    Key('Z', {VK_CONTROL});
    Key('Z', {VK_CONTROL});
    EXPECT_EQ(State(), u"|") << "what was taken back and typed over is forgotten";
}

TEST_F(Edits, TextGoesToTheClipboardAndComesFromIt)
{
    Set(u"alpha beta");
    Key('A', {VK_CONTROL});
    EXPECT_EQ(State(), u"[alpha beta]");
    Key('C', {VK_CONTROL});
    EXPECT_EQ(ClipboardText(), u"alpha beta");
    Key(VK_HOME);
    Key(VK_RIGHT, {VK_CONTROL, VK_SHIFT});
    Key(VK_DELETE, {VK_SHIFT});
    EXPECT_EQ(State(), u"|beta");
    Key(VK_END);
    Key(VK_INSERT, {VK_SHIFT});
    EXPECT_EQ(State(), u"betaalpha |");
    PutTextOnClipboard(u"two\r\nlines");
    Key('V', {VK_CONTROL});
    EXPECT_EQ(State(), u"betaalpha two|");
    Key('Z', {VK_CONTROL});
    EXPECT_EQ(State(), u"betaalpha |");
    Key('A', {VK_CONTROL});
    const Failing refused("PutOnClipboard");
    Key('X', {VK_CONTROL});
    EXPECT_EQ(State(), u"[betaalpha ]") << "what cannot be put there is not taken away";
}

TEST_F(Edits, WhatIsMarkedIsPastedByTheMiddleButton)
{
    Set(u"word rest");
    ClickAt(At(1), 2);
    EXPECT_EQ(State(), u"[word] rest");
    MoveTo(At(7));
    headless::PressButton(screen::Button::Middle);
    headless::ReleaseButton(screen::Button::Middle);
    Pump();
    EXPECT_EQ(State(), u"word reword|st");
    Key(VK_END);
    Key(VK_LEFT, {VK_SHIFT});
    MoveTo(At(0));
    headless::PressButton(screen::Button::Middle);
    headless::ReleaseButton(screen::Button::Middle);
    Pump();
    EXPECT_EQ(State(), u"t|word rewordst") << "what keys have marked, too";
}

TEST_F(Edits, ReadOnlyTextCanBeMarkedAndCopiedOnly)
{
    Set(u"fixed");
    Send(EM_SETREADONLY, TRUE);
    Type(u"x");
    Key(VK_BACK);
    Key(VK_DELETE);
    Key('V', {VK_CONTROL});
    Key('A', {VK_CONTROL});
    Key('X', {VK_CONTROL});
    Key('C', {VK_CONTROL});
    EXPECT_EQ(State(), u"[fixed]");
    EXPECT_EQ(ClipboardText(), u"fixed");
    EXPECT_EQ(Notifications(), std::vector<int>());
}

TEST_F(Edits, TheCaretBlinksWhileTheEditHasTheFocus)
{
    const auto caretColor = [&]
    {
        const POINT at = At(0);
        return headless::PixelAt(at.x, at.y);
    };
    Set(u" ");
    Key(VK_HOME);
    const auto on = caretColor();
    AdvanceManualClock(600);
    Pump();
    EXPECT_NE(caretColor(), on);
    Key(VK_HOME);
    EXPECT_EQ(caretColor(), on) << "after a key the caret is seen at once";
    SetFocus(parent);
    Pump();
    EXPECT_NE(caretColor(), on);
}

TEST_F(Edits, TheContextMenuOffersWhatCanBeDone)
{
    Set(u"alpha");
    Key(VK_END);
    const LONG end = CaretOnScreen().x;
    Key('A', {VK_CONTROL});
    EXPECT_TRUE(ChosenFromContextMenu('T')) << "\"Cut\"";
    EXPECT_EQ(menuLeft, end);
    EXPECT_EQ(State(), u"|");
    EXPECT_EQ(ClipboardText(), u"alpha");
    EXPECT_TRUE(ChosenFromContextMenu('P'));
    EXPECT_EQ(State(), u"alpha|");
    PutOnClipboard({{"text/uri-list", "file:///tmp/x"}});
    EXPECT_FALSE(ChosenFromContextMenu('P')) << "no text";
    EXPECT_EQ(State(), u"alpha|");
    screen::ClearSelection(screen::Selection::Clipboard);
    EXPECT_FALSE(ChosenFromContextMenu('P')) << "nothing";
}

TEST_F(Edits, AnInputMethodComposesAtTheCaret)
{
    Type(u"ab");
    const std::optional<RECT> caret = headless::TextCaret();
    ASSERT_TRUE(caret) << "candidates have to be shown somewhere";
    Key(VK_LEFT);
    ASSERT_LT(headless::TextCaret()->left, caret->left);
    headless::Compose(u"nihao", 5);
    Pump();
    EXPECT_EQ(State(), u"a|b") << "nothing is typed yet";
    EXPECT_GT(headless::TextCaret()->left, caret->left) << "but the caret is behind what is composed";
    headless::CommitText(u"\u4F60\u597D");
    headless::Compose(u"", 0);
    Pump();
    EXPECT_EQ(State(), u"a\u4F60\u597D|b");

    headless::Compose(u"wo", 2);
    Pump();
    SetFocus(parent);
    Pump();
    EXPECT_EQ(State(), u"a\u4F60\u597Dwo|b") << "what was composed is not lost with the focus";
    EXPECT_FALSE(headless::TextCaret());
    Send(EM_SETREADONLY, TRUE);
    SetFocus(edit);
    Pump();
    EXPECT_FALSE(headless::TextCaret());
}

TEST_F(Edits, LeavingEndsWhatIsComposed)
{
    Set(u"ab");
    Send(EM_LIMITTEXT, 2);
    const POINT end = At(1);
    headless::Compose(u"MMM", 3);
    Pump();
    ASSERT_GT(At(1).x, end.x);
    Key(VK_END);
    EXPECT_EQ(State(), u"ab|");
    EXPECT_EQ(At(1).x, end.x);
    Send(EM_LIMITTEXT, 9);
    headless::Compose(u"c", 1);
    Pump();
    Key(VK_HOME);
    EXPECT_EQ(State(), u"|abc") << "it is typed before the caret leaves";
}

TEST_F(Edits, AParentThatDestroysTheEditIsSurvived)
{
    for (const int code : {EN_UPDATE, EN_CHANGE, EN_MAXTEXT, EN_KILLFOCUS})
    {
        const HWND victim = CreateWindowExW(0, TEXT("EDIT"), TEXT("abc"), WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL, 0, 40,
                                            200, 24, parent, nullptr, nullptr, nullptr);
        m_handlers[WM_COMMAND] = [=](HWND, WPARAM wParam, LPARAM) -> std::optional<LRESULT>
        {
            if (HIWORD(wParam) == code)
                DestroyWindow(victim);
            return std::nullopt;
        };
        SetFocus(victim);
        SendMessageW(victim, EM_LIMITTEXT, 3, 0);
        Type(u"x");
        Key(VK_DELETE);
        SetFocus(edit);
        EXPECT_FALSE(IsWindow(victim)) << code;
        m_handlers.clear();
    }
}
