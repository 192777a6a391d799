// Dialogs: templates of both kinds, units, focus, default button, keys, and how a dialog ends.
#include "dialog_desk.h"

namespace
{

using conformance::Box;
using conformance::Commands;

class Dialogs : public conformance::DialogTest
{
};

conformance::Text TextOf(HWND window)
{
    WCHAR text[64] = {};
    GetWindowTextW(window, text, 64);
    return text;
}

RECT RectIn(HWND dialog, int id)
{
    RECT rect;
    GetWindowRect(GetDlgItem(dialog, id), &rect);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

/// Where a control of these units goes: corner and size each mapped by itself.
Box Mapped(HWND dialog, LONG x, LONG y, LONG width, LONG height)
{
    RECT corner = {x, y, 0, 0};
    RECT size = {0, 0, width, height};
    MapDialogRect(dialog, &corner);
    MapDialogRect(dialog, &size);
    return {corner.left, corner.top, corner.left + size.right, corner.top + size.bottom};
}

/// What the documentation says of four units across and eight down.
SIZE UnitsOf(HFONT font)
{
    const HDC dc = GetDC(nullptr);
    const HGDIOBJ previous = SelectObject(dc, font);
    SIZE letters;
    TEXTMETRICW metrics;
    GetTextExtentPoint32W(dc, TEXT("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"), 52, &letters);
    GetTextMetricsW(dc, &metrics);
    SelectObject(dc, previous);
    ReleaseDC(nullptr, dc);
    return {(letters.cx / 26 + 1) / 2, metrics.tmHeight};
}

DWORD ButtonKind(HWND dialog, int id)
{
    return static_cast<DWORD>(GetWindowLongPtrW(GetDlgItem(dialog, id), GWL_STYLE)) & 0xF;
}

TEST_F(Dialogs, TemplatesOfBothKindsAreRead)
{
    for (const int number : {kExtended, kPlain})
    {
        const INT_PTR result =
            Run(number,
                [&](HWND dialog)
                {
                    EXPECT_EQ(TextOf(dialog), number == kExtended ? TEXT("Extended") : TEXT("Plain"));
                    EXPECT_EQ(TextOf(Control(dialog, kLabel)), TEXT("&New name:"));
                    EXPECT_EQ(TextOf(Control(dialog, IDCANCEL)), TEXT("Cancel"));
                    EXPECT_EQ(Box(RectIn(dialog, kFirst)), Mapped(dialog, 56, 7, 60, 14));
                    EXPECT_EQ(Box(RectIn(dialog, IDCANCEL)), Mapped(dialog, 170, 43, 50, 14));
                    RECT client;
                    GetClientRect(dialog, &client);
                    EXPECT_EQ(Box(client), Mapped(dialog, 0, 0, 227, 64));
                    const auto exStyle = GetWindowLongPtrW(dialog, GWL_EXSTYLE);
                    EXPECT_EQ((exStyle & WS_EX_TOPMOST) != 0, number == kExtended);
                    EXPECT_NE(exStyle & WS_EX_DLGMODALFRAME, 0) << "from DS_MODALFRAME";
                    EXPECT_FALSE(IsWindowEnabled(Control(dialog, kDisabled)));
                    EXPECT_FALSE(IsWindowVisible(Control(dialog, kHidden)));
                });
        EXPECT_EQ(result, 77);
    }
}

TEST_F(Dialogs, UnitsFollowTheFont)
{
    Run(
        [](HWND dialog)
        {
            const auto font = reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0));
            ASSERT_NE(font, nullptr);
            const auto ofControl = SendMessageW(Control(dialog, kFirst), WM_GETFONT, 0, 0);
            EXPECT_EQ(reinterpret_cast<HFONT>(ofControl), font);
            const SIZE units = UnitsOf(font);
            EXPECT_EQ(Mapped(dialog, 4, 8, 40, 80),
                      Box(units.cx, units.cy, units.cx + 10 * units.cx, units.cy + 10 * units.cy));
        });
    Run(
        [](HWND dialog)
        {
            EXPECT_EQ(SendMessageW(dialog, WM_GETFONT, 0, 0), 0);
            const SIZE units = UnitsOf(static_cast<HFONT>(GetStockObject(SYSTEM_FONT)));
            EXPECT_EQ(Box(RectIn(dialog, 101)), Mapped(dialog, 10, 8, 40, 16));
            EXPECT_EQ(Mapped(dialog, 4, 8, 4, 8), Box(units.cx, units.cy, 2 * units.cx, 2 * units.cy));
        },
        TEXT("namedDialog"));
}

TEST_F(Dialogs, WhatCannotBeMadeGivesMinusOne)
{
    const auto never = [](HWND) { FAIL() << "it runs"; };
    EXPECT_EQ(Run(999, never), -1);
    EXPECT_EQ(Run(303, never), -1) << "a control's class does not exist";
}

TEST_F(Dialogs, TheFirstTabStopHasTheFocusUnlessTheProgramChoosesAnother)
{
    HWND offered = nullptr;
    m_whenShown = true;
    m_onInit = [&](HWND dialog, HWND focus)
    {
        offered = focus;
        if (!m_usualFocus)
            SetFocus(Control(dialog, kCheck));
    };
    const auto look = [&](HWND dialog)
    {
        EXPECT_EQ(offered, Control(dialog, kFirst));
        EXPECT_EQ(FocusId(), m_usualFocus ? kFirst : kCheck);
        EXPECT_EQ(GetActiveWindow(), dialog);
        EXPECT_TRUE(IsWindowVisible(dialog));
    };
    Run(look);
    m_usualFocus = false;
    Run(look);
}

TEST_F(Dialogs, OfAnEditThatComesFirstAllIsSelected)
{
    m_onInit = [](HWND dialog, HWND) { SetDlgItemTextW(dialog, 102, TEXT("Kitchen")); };
    Run(304,
        [&](HWND dialog)
        {
            const auto selected = [&] { return SendDlgItemMessageW(dialog, 102, EM_GETSEL, 0, 0); };
            EXPECT_EQ(FocusId(), 102);
            EXPECT_EQ(selected(), MAKELONG(0, 7));
            SendDlgItemMessageW(dialog, 102, EM_SETSEL, 2, 2);
            Press(dialog, VK_TAB);
            EXPECT_EQ(FocusId(), IDOK);
            Type(dialog, WM_SYSCHAR, 'n');
            EXPECT_EQ(FocusId(), 102);
            EXPECT_EQ(selected(), MAKELONG(0, 7)) << "the keyboard selects all again";
            Type(dialog, WM_CHAR, 'o');
            WCHAR text[16];
            EXPECT_EQ(GetDlgItemTextW(dialog, 102, text, 16), 1U) << "what is typed there is text, no mnemonic";
            Press(dialog, VK_RIGHT);
            EXPECT_EQ(FocusId(), 102) << "so are the arrows";
            TakeCommands(); // what the edit has told
            Press(dialog, VK_RETURN);
            Press(dialog, VK_ESCAPE);
            EXPECT_EQ(TakeCommands(), (Commands{{IDOK, BN_CLICKED}, {IDCANCEL, BN_CLICKED}}));
        });
}

/// A box as a program lays it out itself: a template of the older kind, without a font, classes by number.
class TemplateInMemory
{
public:
    TemplateInMemory(DWORD style, short width, short height, const WCHAR* caption)
    {
        Append(
            {LOWORD(style), HIWORD(style), 0, 0, 0, 0, 0, static_cast<WORD>(width), static_cast<WORD>(height), 0, 0});
        Append(caption);
    }
    void Add(WORD classNumber, WORD id, DWORD style, std::vector<WORD> place, const WCHAR* text)
    {
        ++m_words[4];
        m_words.resize(m_words.size() + m_words.size() % 2);
        Append({LOWORD(style), HIWORD(style), 0, 0});
        Append(std::move(place));
        Append({id, 0xFFFF, classNumber});
        Append(text);
        m_words.push_back(0);
    }
    const DLGTEMPLATE* Get() const { return reinterpret_cast<const DLGTEMPLATE*>(m_words.data()); }

private:
    void Append(const std::vector<WORD>& words) { m_words.insert(m_words.end(), words.begin(), words.end()); }
    void Append(const WCHAR* text)
    {
        for (; *text != 0; ++text)
            m_words.push_back(static_cast<WORD>(*text));
        m_words.push_back(0);
    }

    std::vector<WORD> m_words;
};

TEST_F(Dialogs, ATemplateInMemoryNeedsNoFont)
{
    TemplateInMemory box(0x90C80880, 120, 60, TEXT("Notice"));
    box.Add(0x82, 1001, WS_CHILD | WS_VISIBLE, {8, 8, 90, 16}, TEXT("Shall it & be?"));
    box.Add(0x80, IDOK, WS_CHILD | WS_VISIBLE | WS_TABSTOP, {8, 30, 50, 14}, TEXT("OK"));
    box.Add(0x80, IDCANCEL, WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON, {62, 30, 50, 14}, TEXT("Cancel"));
    box.Add(0x80, 5555, WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX, {8, 48, 90, 10}, TEXT("Never again"));
    m_usualFocus = false;
    m_onInit = [](HWND dialog, HWND) { SetFocus(GetDlgItem(dialog, IDCANCEL)); };
    const auto look = [&](HWND dialog)
    {
        EXPECT_EQ(TextOf(dialog), TEXT("Notice"));
        EXPECT_EQ(TextOf(Control(dialog, 1001)), TEXT("Shall it & be?"));
        const LONG base = GetDialogBaseUnits();
        EXPECT_EQ(Mapped(dialog, 0, 0, 4, 8), Box(0, 0, LOWORD(base), HIWORD(base)));
        EXPECT_EQ(Box(RectIn(dialog, 5555)), Mapped(dialog, 8, 48, 90, 10));
        EXPECT_EQ(FocusId(), IDCANCEL);
        EXPECT_EQ(ButtonKind(dialog, IDCANCEL), 1U);
        CheckDlgButton(dialog, 5555, BST_CHECKED);
        EXPECT_EQ(IsDlgButtonChecked(dialog, 5555), static_cast<UINT>(BST_CHECKED));
        Press(dialog, VK_TAB);
        EXPECT_EQ(FocusId(), 5555);
        Press(dialog, VK_TAB);
        EXPECT_EQ(FocusId(), IDOK);
        if (!conformance::OnWine()) // which gives it to the text
        {
            Press(dialog, VK_LEFT);
            EXPECT_EQ(FocusId(), 5555) << "round, and past the text of the same group";
        }
        End(dialog, IDOK | 0x02000000);
    };
    EXPECT_EQ(RunInMemory(box.Get(), look), IDOK | 0x02000000);
}

TEST_F(Dialogs, TabStopsAndGroupsGoRound)
{
    Run(
        [](HWND dialog)
        {
            struct Case
            {
                int from;
                int next;
                int previous;
            };
            const auto id = [&](auto* call, int from, BOOL previous)
            { return GetDlgCtrlID(call(dialog, Control(dialog, from), previous)); };
            for (const auto& [from, next, previous] : {Case{kFirst, kCheck, IDCANCEL},
                                                       {kCheck, IDOK, kFirst},
                                                       {IDOK, IDCANCEL, kCheck},
                                                       {IDCANCEL, kFirst, IDOK},
                                                       {kNoTabStop, kCheck, kFirst},
                                                       {kLabel, kFirst, IDCANCEL}})
            {
                EXPECT_EQ(id(GetNextDlgTabItem, from, FALSE), next) << "from " << from;
                EXPECT_EQ(id(GetNextDlgTabItem, from, TRUE), previous) << "from " << from;
            }
            for (const auto& [from, next, previous] : {Case{kFirst, kNoTabStop, kCheck},
                                                       {kNoTabStop, kCheck, kFirst},
                                                       {kCheck, kFirst, kNoTabStop},
                                                       {IDOK, IDCANCEL, IDCANCEL},
                                                       {IDCANCEL, IDOK, IDOK}})
            {
                EXPECT_EQ(id(GetNextDlgGroupItem, from, FALSE), next) << "from " << from;
                EXPECT_EQ(id(GetNextDlgGroupItem, from, TRUE), previous) << "from " << from;
            }
            EXPECT_EQ(GetDlgCtrlID(GetNextDlgTabItem(dialog, nullptr, FALSE)), kFirst);
        });
}

TEST_F(Dialogs, KeysMoveTheFocus)
{
    Run(
        [](HWND dialog)
        {
            std::vector<int> visited;
            for (const WPARAM key : {VK_TAB, VK_TAB, VK_LEFT, VK_DOWN, VK_TAB, VK_UP, VK_RIGHT})
            {
                Press(dialog, key);
                visited.push_back(FocusId());
            }
            EXPECT_EQ(visited, (std::vector<int>{kCheck, IDOK, IDCANCEL, IDOK, IDCANCEL, IDOK, IDCANCEL}));
            SendMessageW(dialog, WM_NEXTDLGCTL, 1, FALSE);
            EXPECT_EQ(FocusId(), IDOK) << "backwards";
            SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(dialog, kNoTabStop)), TRUE);
            EXPECT_EQ(FocusId(), kNoTabStop);
        });
}

TEST_F(Dialogs, TheDefaultButtonGoesWithTheFocus)
{
    Run(
        [](HWND dialog)
        {
            const auto kinds = [&] {
                return std::vector<DWORD>{ButtonKind(dialog, kFirst), ButtonKind(dialog, IDOK),
                                          ButtonKind(dialog, IDCANCEL)};
            };
            Press(dialog, VK_TAB);
            SendMessageW(dialog, WM_NEXTDLGCTL, 1, FALSE);
            EXPECT_EQ(kinds(), (std::vector<DWORD>{1, 0, 0})) << "the focus is on the first";
            Press(dialog, VK_TAB);
            EXPECT_EQ(kinds(), (std::vector<DWORD>{0, 1, 0})) << "a check box has it: the dialog's own is the default";
            Press(dialog, VK_TAB);
            Press(dialog, VK_TAB);
            EXPECT_EQ(kinds(), (std::vector<DWORD>{0, 0, 1}));
            EXPECT_EQ(SendMessageW(dialog, DM_GETDEFID, 0, 0), MAKELRESULT(IDOK, DC_HASDEFID)) << "for all that";
            SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(dialog, kCheck)), TRUE);
            EXPECT_EQ(SendMessageW(dialog, DM_SETDEFID, kFirst, 0), TRUE);
            EXPECT_EQ(kinds(), (std::vector<DWORD>{1, 0, 0}));
            EXPECT_EQ(SendMessageW(dialog, DM_GETDEFID, 0, 0), MAKELRESULT(kFirst, DC_HASDEFID));
        });
    Run([](HWND dialog)
        { EXPECT_EQ(SendMessageW(dialog, DM_GETDEFID, 0, 0), MAKELRESULT(IDOK, DC_HASDEFID)) << "no default button"; },
        TEXT("namedDialog"));
}

TEST_F(Dialogs, ReturnAndEscapeAreCommands)
{
    Run(
        [&](HWND dialog)
        {
            Press(dialog, VK_TAB);
            SendMessageW(dialog, WM_NEXTDLGCTL, 1, FALSE);
            Press(dialog, VK_RETURN);
            EXPECT_EQ(TakeCommands(), (Commands{{kFirst, BN_CLICKED}})) << "the button with the focus";
            Press(dialog, VK_TAB);
            Press(dialog, VK_RETURN);
            EXPECT_EQ(TakeCommands(), (Commands{{IDOK, BN_CLICKED}})) << "a check box does not take it";
            Press(dialog, VK_ESCAPE);
            EXPECT_EQ(TakeCommands(), (Commands{{IDCANCEL, BN_CLICKED}}));
            SendMessageW(dialog, DM_SETDEFID, kDisabled, 0);
            Press(dialog, VK_RETURN);
            EnableWindow(Control(dialog, IDCANCEL), FALSE);
            if (!conformance::OnWine()) // which cancels all the same
                Press(dialog, VK_ESCAPE);
            EXPECT_EQ(TakeCommands(), Commands()) << "disabled buttons are not pressed";
        });
    Run(
        [&](HWND dialog)
        {
            SetFocus(dialog);
            Press(dialog, VK_RETURN);
            Press(dialog, VK_ESCAPE);
            EXPECT_EQ(TakeCommands(), (Commands{{IDOK, 0}, {IDCANCEL, 0}})) << "without any such button";
        },
        TEXT("namedDialog"));
}

TEST_F(Dialogs, MnemonicsPressButtonsAndLeadFromALabelToItsControl)
{
    Run(
        [&](HWND dialog)
        {
            SetFocus(Control(dialog, IDOK));
            Type(dialog, WM_SYSCHAR, 'n');
            EXPECT_EQ(FocusId(), kFirst);
            EXPECT_EQ(TakeCommands(), Commands());
            Type(dialog, WM_SYSCHAR, 'c');
            EXPECT_EQ(FocusId(), kCheck);
            EXPECT_EQ(IsDlgButtonChecked(dialog, kCheck), static_cast<UINT>(BST_CHECKED));
            EXPECT_EQ(TakeCommands(), (Commands{{kCheck, BN_CLICKED}}));
            Type(dialog, WM_CHAR, 'F'); // without Alt where no text is typed
            EXPECT_EQ(TakeCommands(), (Commands{{kFirst, BN_CLICKED}}));
            Type(dialog, WM_CHAR, 'd');
            EXPECT_EQ(TakeCommands(), Commands()) << "no mnemonic";
        });
}

TEST_F(Dialogs, TheCloseButtonIsCancel)
{
    Run(
        [&](HWND dialog)
        {
            SendMessageW(dialog, WM_CLOSE, 0, 0);
            EXPECT_TRUE(IsWindow(dialog));
            conformance::PumpMessages();
            EXPECT_EQ(TakeCommands(), (Commands{{IDCANCEL, BN_CLICKED}}));
        });
}

TEST_F(Dialogs, EndingInInitDialogNeverShowsIt)
{
    bool shown = false;
    m_answer = [&](HWND dialog, UINT message, WPARAM, LPARAM) -> std::optional<INT_PTR>
    {
        shown |= message == WM_SHOWWINDOW;
        if (message == WM_INITDIALOG)
            EndDialog(dialog, 5);
        return std::nullopt;
    };
    EXPECT_EQ(Run([](HWND) { FAIL() << "it runs"; }), 5);
    EXPECT_FALSE(shown);
}

TEST_F(Dialogs, ItsEndIsWhatEndDialogSays)
{
    EXPECT_EQ(Run([](HWND dialog) { End(dialog, -5); }), -5);
    EXPECT_EQ(Run(
                  [](HWND dialog)
                  {
                      End(dialog, 1);
                      EXPECT_TRUE(IsWindow(dialog)) << "it ends when its loop comes to it";
                      EXPECT_FALSE(IsWindowVisible(dialog));
                      End(dialog, 2);
                  }),
              2);
}

TEST_F(Dialogs, DestroyedInTheMiddleItIsOver)
{
    Run([](HWND dialog) { DestroyWindow(dialog); });
    EXPECT_FALSE(EndDialog(nullptr, 1));
}

TEST_F(Dialogs, NestedDialogsEndEachByItself)
{
    const INT_PTR outer = Run(
        [&](HWND dialog)
        {
            const INT_PTR inner = Run(
                [&](HWND second)
                {
                    EXPECT_FALSE(IsWindowEnabled(dialog));
                    End(dialog, 11); // its loop is not running now
                    End(second, 12);
                },
                MAKEINTRESOURCEW(kPlain), dialog);
            EXPECT_EQ(inner, 12);
            EXPECT_TRUE(IsWindowEnabled(dialog));
            End(dialog, 13);
        });
    EXPECT_EQ(outer, 13);
}

TEST_F(Dialogs, AQuitEndsItAndReachesTheLoopAround)
{
    m_answer = [](HWND, UINT message, WPARAM, LPARAM) -> std::optional<INT_PTR>
    {
        if (message != WM_TIMER)
            return std::nullopt;
        PostQuitMessage(9);
        return TRUE;
    };
    Run([](HWND) {});
    MSG message;
    BOOL received = TRUE;
    while (received > 0) // some posted messages may be left before it
        received = GetMessageW(&message, nullptr, 0, 0);
    EXPECT_EQ(received, 0);
    EXPECT_EQ(message.wParam, 9U);
}

TEST_F(Dialogs, AnAnswerIsStoredButForAFewMessages)
{
    m_answer = [](HWND dialog, UINT message, WPARAM, LPARAM) -> std::optional<INT_PTR>
    {
        if (message == WM_USER + 50)
            SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 1234);
        return message == WM_USER + 50 ? std::optional<INT_PTR>(TRUE) : std::nullopt;
    };
    Run([](HWND dialog) { EXPECT_EQ(SendMessageW(dialog, WM_USER + 50, 0, 0), 1234); });
}

struct DialogOwners : Dialogs
{
    DialogOwners()
    {
        owner = CreateWindowExW(0, TEXT("static"), TEXT(""), WS_POPUP | WS_VISIBLE, 300, 200, 400, 300, nullptr,
                                nullptr, GetModuleHandleW(nullptr), nullptr);
        child = CreateWindowExW(0, TEXT("static"), TEXT(""), WS_CHILD | WS_VISIBLE, 10, 10, 50, 50, owner, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
    }
    ~DialogOwners() override { DestroyWindow(owner); }

    HWND owner = nullptr;
    HWND child = nullptr;
};

TEST_F(DialogOwners, WaitDisabled)
{
    for (const HWND named : {owner, child})
    {
        Run(
            [&](HWND dialog)
            {
                EXPECT_FALSE(IsWindowEnabled(owner));
                EXPECT_TRUE(IsWindowEnabled(child));
                EXPECT_EQ(GetParent(dialog), owner);
            },
            MAKEINTRESOURCEW(kExtended), named);
        EXPECT_TRUE(IsWindowEnabled(owner));
        EXPECT_EQ(GetActiveWindow(), owner);
    }
    if (conformance::OnWine())
        return; // enables the owner however it was before
    EnableWindow(owner, FALSE);
    Run([](HWND) {}, MAKEINTRESOURCEW(kExtended), owner);
    EXPECT_FALSE(IsWindowEnabled(owner)) << "as it was before";
}

TEST_F(DialogOwners, ThatGoTakeTheDialogAlong)
{
    Run([&](HWND) { DestroyWindow(owner); }, MAKEINTRESOURCEW(kExtended), owner);
    EXPECT_FALSE(IsWindow(owner));
}

TEST_F(DialogOwners, RepositioningBringsItIntoTheWorkArea)
{
    Run(
        [&](HWND dialog)
        {
            RECT work;
            SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
            RECT rect;
            GetWindowRect(dialog, &rect);
            EXPECT_NEAR(rect.left - work.left, work.right - rect.right, 1) << "DS_CENTER";
            EXPECT_NEAR(rect.top - work.top, work.bottom - rect.bottom, 1);
            if (conformance::OnWine())
                return; // does not know DM_REPOSITION
            struct Case
            {
                LONG x, y;
                LONG left, top;
            };
            const LONG width = rect.right - rect.left;
            const LONG height = rect.bottom - rect.top;
            for (const auto& [x, y, left, top] : {Case{-1, -1, work.left, work.top},
                                                  {work.right - 5, 50, work.right - width, 50},
                                                  {60, work.bottom - 5, 60, work.bottom - height},
                                                  {70, 80, 70, 80}})
            {
                SetWindowPos(dialog, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
                SendMessageW(dialog, DM_REPOSITION, 0, 0);
                GetWindowRect(dialog, &rect);
                EXPECT_EQ(rect.left, left) << "from " << x;
                EXPECT_EQ(rect.top, top) << "from " << y;
            }
        },
        MAKEINTRESOURCEW(kExtended), owner);
}

TEST_F(Dialogs, TheProcedureHearsInThisOrder)
{
    std::vector<UINT> heard;
    m_whenShown = true;
    m_answer = [&](HWND, UINT message, WPARAM, LPARAM) -> std::optional<INT_PTR>
    {
        const bool watched = message == WM_INITDIALOG || message == WM_SHOWWINDOW || message == WM_COMMAND ||
                             message == WM_DESTROY || message == WM_NCDESTROY;
        if (watched)
            heard.push_back(message);
        return std::nullopt;
    };
    Run([](HWND dialog) { SendMessageW(Control(dialog, IDOK), BM_CLICK, 0, 0); });
    EXPECT_EQ(heard, (std::vector<UINT>{WM_INITDIALOG, WM_SHOWWINDOW, WM_COMMAND, WM_DESTROY, WM_NCDESTROY}));
}

TEST_F(Dialogs, ColoursAreAskedOfTheProcedure)
{
    std::map<UINT, HWND> asked;
    m_whenShown = true;
    const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
    m_answer = [&](HWND, UINT message, WPARAM, LPARAM lParam) -> std::optional<INT_PTR>
    {
        if (message != WM_CTLCOLORDLG && message != WM_CTLCOLORSTATIC && message != WM_CTLCOLORBTN)
            return std::nullopt;
        asked[message] = reinterpret_cast<HWND>(lParam);
        return message == WM_CTLCOLORDLG ? reinterpret_cast<INT_PTR>(brush) : 0;
    };
    Run(
        [&](HWND dialog)
        {
            for (const int id : {kLabel, IDOK, kCheck})
                UpdateWindow(Control(dialog, id));
            UpdateWindow(dialog);
            EXPECT_EQ(asked[WM_CTLCOLORDLG], dialog);
            const HDC dc = GetDC(dialog);
            SendMessageW(dialog, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0);
            EXPECT_EQ(GetPixel(dc, 1, 1), RGB(1, 2, 3));
            ReleaseDC(dialog, dc);
            EXPECT_NE(asked[WM_CTLCOLORSTATIC], nullptr);
            EXPECT_NE(asked[WM_CTLCOLORBTN], nullptr);
        });
    DeleteObject(brush);
}

} // namespace
