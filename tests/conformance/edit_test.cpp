// What dialogs rely on in the edit control.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace
{

using Text = std::basic_string<WCHAR>;
using Codes = std::vector<int>;

class EditTest : public testing::Test
{
protected:
    void SetUp() override
    {
        WNDCLASSEXW windowClass = {};
        windowClass.cbSize = sizeof(windowClass);
        windowClass.lpfnWndProc = Procedure;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = TEXT("EditParent");
        RegisterClassExW(&windowClass);
        m_parent = CreateWindowExW(0, TEXT("EditParent"), nullptr, WS_POPUP, 100, 100, 400, 100, nullptr, nullptr,
                                   windowClass.hInstance, nullptr);
        Make(ES_AUTOHSCROLL, TEXT("abc"));
    }

    void TearDown() override
    {
        DestroyWindow(m_parent);
        UnregisterClassW(TEXT("EditParent"), GetModuleHandleW(nullptr));
        s_codes.clear();
    }

    void Make(DWORD style, const WCHAR* text)
    {
        if (m_edit != nullptr)
            DestroyWindow(m_edit);
        m_edit =
            CreateWindowExW(0, TEXT("EDIT"), text, WS_CHILD | WS_VISIBLE | WS_BORDER | style, 0, 0, 200, 24, m_parent,
                            reinterpret_cast<HMENU>(static_cast<UINT_PTR>(5)), GetModuleHandleW(nullptr), nullptr);
        ASSERT_NE(m_edit, nullptr);
        s_edit = m_edit;
        s_codes.clear();
    }

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return SendMessageW(m_edit, message, wParam, lParam);
    }
    void Insert(const WCHAR* text, bool undoable = true)
    {
        Send(EM_REPLACESEL, undoable, reinterpret_cast<LPARAM>(text));
    }
    void Type(const Text& text)
    {
        for (const WCHAR unit : text)
            Send(WM_CHAR, unit, 1);
    }
    Text Content() const
    {
        WCHAR text[64] = {};
        const int length = GetWindowTextW(m_edit, text, 64);
        EXPECT_EQ(Text(text).size(), static_cast<std::size_t>(length));
        return text;
    }
    std::pair<DWORD, DWORD> Selection()
    {
        DWORD begin = 99;
        DWORD end = 99;
        const LRESULT both = Send(EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
        EXPECT_EQ(both, MAKELONG(begin, end));
        return {begin, end};
    }
    static Codes Told() { return std::exchange(s_codes, {}); }
    static auto CountTold(int code)
    {
        const Codes codes = Told();
        return std::count(codes.begin(), codes.end(), code);
    }

    HWND m_parent = nullptr;
    HWND m_edit = nullptr;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_COMMAND && LOWORD(wParam) == 5 && reinterpret_cast<HWND>(lParam) == s_edit)
            s_codes.push_back(HIWORD(wParam));
        return DefWindowProcW(window, message, wParam, lParam);
    }

    static inline Codes s_codes;
    static inline HWND s_edit = nullptr;
};

using Range = std::pair<DWORD, DWORD>;

} // namespace

TEST_F(EditTest, TextIsSetAndRead)
{
    EXPECT_EQ(Content(), TEXT("abc"));
    EXPECT_EQ(Send(WM_GETTEXTLENGTH), 3);
    WCHAR few[3] = {};
    EXPECT_EQ(Send(WM_GETTEXT, 3, reinterpret_cast<LPARAM>(few)), 2);
    EXPECT_EQ(Text(few), TEXT("ab"));

    Send(EM_SETSEL, 1, 3);
    Type(TEXT("x"));
    Told();
    EXPECT_TRUE(SetWindowTextW(m_edit, TEXT("other")));
    EXPECT_EQ(Told(), (Codes{EN_UPDATE, EN_CHANGE}));
    EXPECT_EQ(Selection(), (Range{0, 0}));
    EXPECT_FALSE(Send(EM_GETMODIFY));
    EXPECT_FALSE(Send(EM_CANUNDO));
    SetWindowTextW(m_edit, nullptr);
    EXPECT_EQ(Content(), TEXT(""));
}

TEST_F(EditTest, TheSelectionIsSetByPlaces)
{
    EXPECT_EQ(Selection(), (Range{0, 0}));
    Send(EM_SETSEL, 0, -1);
    EXPECT_EQ(Selection(), (Range{0, 3}));
    Send(EM_SETSEL, 2, 1);
    EXPECT_EQ(Selection(), (Range{1, 2}));
    Send(EM_SETSEL, 1, 50);
    EXPECT_EQ(Selection(), (Range{1, 3}));
    Send(EM_SETSEL, 2, 2);
    EXPECT_EQ(Selection(), (Range{2, 2}));
    Send(EM_SETSEL, 0, 2);
    Send(EM_SETSEL, static_cast<WPARAM>(-1), 0);
    EXPECT_EQ(Selection(), (Range{2, 2}));
    EXPECT_EQ(Told(), Codes());
}

TEST_F(EditTest, TypingTellsTheParentAndMarksAsModified)
{
    Send(EM_SETSEL, 1, 2);
    Type(TEXT("xy"));
    EXPECT_EQ(Content(), TEXT("axyc"));
    EXPECT_EQ(Selection(), (Range{3, 3}));
    EXPECT_EQ(Told(), (Codes{EN_UPDATE, EN_CHANGE, EN_UPDATE, EN_CHANGE}));
    EXPECT_TRUE(Send(EM_GETMODIFY));
    Send(EM_SETMODIFY, FALSE);
    EXPECT_FALSE(Send(EM_GETMODIFY));
    Type(TEXT("\b"));
    EXPECT_EQ(Content(), TEXT("axc"));
    Send(WM_KEYDOWN, VK_DELETE, 1);
    EXPECT_EQ(Content(), TEXT("ax"));
    EXPECT_TRUE(Send(EM_GETMODIFY));
    Told();
    // Nothing to take away, nothing to tell.
    Send(WM_KEYDOWN, VK_DELETE, 1);
    EXPECT_EQ(Told(), Codes());
}

TEST_F(EditTest, KeysMoveTheCaret)
{
    const auto press = [&](WPARAM key)
    {
        Send(WM_KEYDOWN, key, 1);
        return Selection();
    };
    EXPECT_EQ(press(VK_END), (Range{3, 3}));
    EXPECT_EQ(press(VK_LEFT), (Range{2, 2}));
    EXPECT_EQ(press(VK_HOME), (Range{0, 0}));
    EXPECT_EQ(press(VK_LEFT), (Range{0, 0}));
    EXPECT_EQ(press(VK_RIGHT), (Range{1, 1}));
    EXPECT_EQ(press(VK_DOWN), (Range{2, 2}));
    EXPECT_EQ(press(VK_UP), (Range{1, 1}));
    EXPECT_EQ(Told(), Codes());
}

TEST_F(EditTest, ReplacingTheSelectionCanBeUndone)
{
    Send(EM_SETSEL, 1, 2);
    Insert(TEXT("long"));
    EXPECT_EQ(Content(), TEXT("alongc"));
    EXPECT_EQ(Selection(), (Range{5, 5}));
    EXPECT_EQ(Told(), (Codes{EN_UPDATE, EN_CHANGE}));
    EXPECT_TRUE(Send(EM_CANUNDO));
    EXPECT_TRUE(Send(EM_UNDO));
    EXPECT_EQ(Content(), TEXT("abc"));
    EXPECT_EQ(CountTold(EN_UPDATE), 1) << "(Wine tells EN_CHANGE twice)";

    Send(EM_SETSEL, 0, 1);
    Send(WM_CLEAR);
    EXPECT_EQ(Content(), TEXT("bc"));
    EXPECT_TRUE(Send(WM_UNDO));
    EXPECT_EQ(Content(), TEXT("abc"));

    Insert(TEXT("x"));
    Send(EM_EMPTYUNDOBUFFER);
    EXPECT_FALSE(Send(EM_CANUNDO));
    Insert(TEXT("y"), false);
    EXPECT_FALSE(Send(EM_CANUNDO));
}

TEST_F(EditTest, TheLimitHoldsForWhatIsEntered)
{
    EXPECT_EQ(Send(EM_GETLIMITTEXT), 30000);
    Send(EM_LIMITTEXT, 5);
    EXPECT_EQ(Send(EM_GETLIMITTEXT), 5);
    Send(EM_SETSEL, 3, 3);
    Type(TEXT("dex"));
    EXPECT_EQ(Content(), TEXT("abcde"));
    EXPECT_EQ(CountTold(EN_MAXTEXT), 1) << "(Wine tells of a change besides)";
    Send(EM_SETSEL, 1, 3);
    Insert(TEXT("12345"));
    EXPECT_EQ(Content(), TEXT("a12de"));
    EXPECT_EQ(Told(), (Codes{EN_MAXTEXT, EN_UPDATE, EN_CHANGE}));
    SetWindowTextW(m_edit, TEXT("longer than that"));
    EXPECT_EQ(Content(), TEXT("longer than that")) << "a program's own text is not limited";
    Send(EM_LIMITTEXT, 0);
    EXPECT_EQ(Send(EM_GETLIMITTEXT), 0x7FFFFFFE);
}

TEST_F(EditTest, ReadOnlyTextIsChangedByMessagesAlone)
{
    Make(ES_AUTOHSCROLL | ES_READONLY, TEXT("abc"));
    Send(EM_SETSEL, 0, 1);
    Type(TEXT("x\b"));
    Send(WM_KEYDOWN, VK_DELETE, 1);
    EXPECT_EQ(Content(), TEXT("abc"));
    Insert(TEXT("z"));
    EXPECT_EQ(Content(), TEXT("zbc"));
    EXPECT_TRUE(Send(EM_SETREADONLY, FALSE));
    EXPECT_EQ(GetWindowLongPtrW(m_edit, GWL_STYLE) & ES_READONLY, 0);
    Type(TEXT("x"));
    EXPECT_EQ(Content(), TEXT("zxbc"));
}

TEST_F(EditTest, CutCopyAndPaste)
{
    Send(EM_SETSEL, 0, 2);
    Send(WM_COPY);
    Send(EM_SETSEL, 3, 3);
    Send(WM_PASTE);
    EXPECT_EQ(Content(), TEXT("abcab"));
    EXPECT_EQ(Told(), (Codes{EN_UPDATE, EN_CHANGE}));
    Send(EM_SETSEL, 0, 3);
    Send(WM_CUT);
    EXPECT_EQ(Content(), TEXT("ab"));
    Send(WM_PASTE);
    EXPECT_EQ(Content(), TEXT("abcab"));
}

TEST_F(EditTest, PlacesAndPoints)
{
    Make(ES_AUTOHSCROLL, TEXT("wide letters"));
    const auto x = [&](WPARAM index) { return static_cast<short>(LOWORD(Send(EM_POSFROMCHAR, index))); };
    for (WPARAM index = 0; index + 1 < 12; ++index)
    {
        EXPECT_LT(x(index), x(index + 1));
        EXPECT_EQ(LOWORD(Send(EM_CHARFROMPOS, 0, MAKELPARAM(x(index), 10))), index);
    }
    EXPECT_EQ(Send(EM_CHARFROMPOS, 0, MAKELPARAM(190, 10)), 12);
    EXPECT_EQ(Send(EM_CHARFROMPOS, 0, MAKELPARAM(500, 10)), -1);
}

TEST_F(EditTest, TheParentHearsOfTheFocus)
{
    ShowWindow(m_parent, SW_SHOW);
    SetFocus(m_edit);
    EXPECT_EQ(Told(), Codes{EN_SETFOCUS});
    EXPECT_EQ(Selection(), (Range{0, 0}));
    SetFocus(m_parent);
    EXPECT_EQ(Told(), Codes{EN_KILLFOCUS});
}

TEST_F(EditTest, ADialogIsToldWhichKeysTheEditWants)
{
    EXPECT_EQ(Send(WM_GETDLGCODE), DLGC_HASSETSEL | DLGC_WANTCHARS | DLGC_WANTARROWS);
}
