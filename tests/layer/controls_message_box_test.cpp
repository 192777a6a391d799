// Message boxes, answered as a person answers them.
#include "platform/base/fault_points.h"
#include "platform/windowing/clipboard.h"
#include "tests/layer/windowing_desk.h"
#include "tests/scenarios/failing.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace
{

using Steps = std::vector<std::function<void()>>;

std::function<void()> Key(BYTE key)
{
    return [key] { Desk::Tap(key); };
}

struct MessageBoxes : Desk
{
    /// Shows a box and does one step each time it waits. A box that still waits after the last step is closed, which
    /// the test sees as the answer −1.
    int Show(UINT type, Steps steps, HWND owner = nullptr, LPCWSTR text = TEXT("Delete it?"),
             LPCWSTR caption = TEXT("Orb"))
    {
        std::size_t next = 0;
        bool stuck = false;
        platform::headless::SetIdleHandler(
            [&]
            {
                if (next < steps.size())
                {
                    steps[next++]();
                    return true;
                }
                stuck = true;
                SendMessageW(GetActiveWindow(), WM_COMMAND, IDOK, 0);
                return true;
            });
        const int result = MessageBoxW(owner, text, caption, type);
        platform::headless::SetIdleHandler(nullptr);
        EXPECT_EQ(next, steps.size()) << "the box closed early";
        return stuck ? -1 : result;
    }

    static void ClickButton(int id)
    {
        RECT rect{};
        GetWindowRect(GetDlgItem(GetActiveWindow(), id), &rect);
        Click((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
    }

    static void Close()
    {
        for (const auto& window : platform::headless::Windows())
        {
            if (window.visible && window.kind == platform::screen::WindowKind::Managed)
            {
                platform::headless::RequestClose(window.id);
                return;
            }
        }
    }
};

} // namespace

TEST_F(MessageBoxes, KeysAnswer)
{
    EXPECT_EQ(Show(MB_OK, {Key(VK_RETURN)}), IDOK);
    EXPECT_EQ(Show(MB_OK, {Key(VK_ESCAPE)}), IDOK) << "there is only this answer";
    EXPECT_EQ(Show(MB_OKCANCEL, {Key(VK_ESCAPE)}), IDCANCEL);
    EXPECT_EQ(Show(MB_OKCANCEL, {Key(VK_TAB), Key(VK_RETURN)}), IDCANCEL);
    EXPECT_EQ(Show(MB_OKCANCEL, {Key(VK_TAB), Key(VK_TAB), Key(VK_SPACE)}), IDOK);
    EXPECT_EQ(Show(MB_YESNO, {Key(VK_RIGHT), Key(VK_SPACE)}), IDNO);
    EXPECT_EQ(Show(MB_YESNO, {Key('N')}), IDNO);
    EXPECT_EQ(Show(MB_YESNO, {Key(VK_ESCAPE), Key('Y')}), IDYES) << "a question has to be answered";
    EXPECT_EQ(Show(MB_YESNO | 0x100, {Key(VK_RETURN)}), IDNO) << "the second button is the default";
    const auto cyrillic = [] { platform::headless::PressKey('N', u"\u0442"); };
    EXPECT_EQ(Show(MB_YESNO, {cyrillic}), IDNO) << "the letter on the key, under another layout";
}

TEST_F(MessageBoxes, EveryKindHasItsButtonsAndItsCancel)
{
    struct Kind
    {
        UINT type;
        std::vector<int> buttons;
        int cancel; ///< 0: has to be answered
    };
    const Kind kinds[] = {{MB_OK, {IDOK}, IDOK},
                          {MB_OKCANCEL, {IDOK, IDCANCEL}, IDCANCEL},
                          {MB_ABORTRETRYIGNORE, {IDABORT, IDRETRY, IDIGNORE}, 0},
                          {MB_YESNOCANCEL, {IDYES, IDNO, IDCANCEL}, IDCANCEL},
                          {MB_YESNO, {IDYES, IDNO}, 0},
                          {MB_RETRYCANCEL, {IDRETRY, IDCANCEL}, IDCANCEL}};
    for (const Kind& kind : kinds)
    {
        SCOPED_TRACE(kind.type);
        const auto look = [&]
        {
            const HWND box = GetActiveWindow();
            LONG right = 0;
            for (int id = IDOK; id <= IDNO; ++id)
            {
                const bool wanted = std::find(kind.buttons.begin(), kind.buttons.end(), id) != kind.buttons.end();
                EXPECT_EQ(GetDlgItem(box, id) != nullptr, wanted) << id;
            }
            for (const int id : kind.buttons)
            {
                RECT rect{};
                GetWindowRect(GetDlgItem(box, id), &rect);
                EXPECT_GT(rect.left, right) << "from left to right";
                right = rect.right;
            }
            Tap(VK_ESCAPE);
        };
        if (kind.cancel != 0)
            EXPECT_EQ(Show(kind.type, {look}), kind.cancel);
        else
            EXPECT_EQ(Show(kind.type, {look, [] { Close(); }, Key(VK_SPACE)}), kind.buttons.front());
        for (std::size_t i = 0; i < kind.buttons.size(); ++i)
        {
            const UINT type = kind.type | static_cast<UINT>(i) * MB_DEFBUTTON2;
            EXPECT_EQ(Show(type, {Key(VK_RETURN)}), kind.buttons[i]) << "the default button";
        }
    }
    EXPECT_EQ(Show(MB_OK | MB_DEFBUTTON3, {Key(VK_SPACE)}), IDOK) << "a default that is not there";
    EXPECT_EQ(Show(0xF, {Key(VK_ESCAPE)}), IDOK) << "an unknown kind";
}

TEST_F(MessageBoxes, ItsTextCanBeCopied)
{
    const auto copy = [] { Tap('C', {VK_CONTROL}); };
    EXPECT_EQ(Show(MB_YESNO, {copy, Key('Y')}), IDYES);
    const std::u16string rule = u"---------------------------\r\n";
    EXPECT_EQ(platform::ClipboardText().value_or(u""),
              rule + u"Orb\r\n" + rule + u"Delete it?\r\n" + rule + u"Yes   No   \r\n" + rule);
}

TEST_F(MessageBoxes, WhateverFailsItEndsAndTheOwnerIsEnabled)
{
    const HWND owner = ShownPopup(10, 10, 100, 100);
    bool failed = true;
    for (int nth = 1; failed; ++nth)
    {
        ASSERT_LT(nth, 1000);
        const Faults faults(nth, FaultMode::Once);
        platform::headless::SetIdleHandler(
            []
            {
                SendMessageW(GetActiveWindow(), WM_COMMAND, IDCANCEL, 0);
                return true;
            });
        const int answer = MessageBoxW(owner, TEXT("x"), TEXT("y"), MB_OKCANCEL | MB_ICONWARNING);
        platform::headless::SetIdleHandler(nullptr);
        failed = Faults::Reached();
        EXPECT_TRUE(answer == IDCANCEL || answer == 0) << Faults::Failed() << ": " << answer;
        EXPECT_TRUE(IsWindowEnabled(owner)) << Faults::Failed();
    }
}

TEST_F(MessageBoxes, TheMouseAnswers)
{
    EXPECT_EQ(Show(MB_OKCANCEL, {[] { ClickButton(IDCANCEL); }}), IDCANCEL);
    EXPECT_EQ(Show(MB_YESNO | MB_ICONQUESTION, {[] { ClickButton(IDYES); }}), IDYES);
    EXPECT_EQ(Show(MB_OKCANCEL, {[] { Close(); }}), IDCANCEL);
    EXPECT_EQ(Show(MB_YESNO, {[] { Close(); }, [] { ClickButton(IDNO); }}), IDNO);
}

TEST_F(MessageBoxes, CaptionAndButtonsAreReadable)
{
    const auto look = [](const std::u16string& caption)
    {
        return [caption]
        {
            EXPECT_EQ(TextOf(GetActiveWindow()), caption);
            Tap(VK_RETURN);
        };
    };
    Show(MB_OK | MB_ICONERROR, {look(u"Rename")}, nullptr, TEXT("Invalid Filename."), TEXT("Rename"));
    Show(MB_OK, {look(u"Error")}, nullptr, TEXT("Something"), nullptr);
}

TEST_F(MessageBoxes, ALongTextIsBrokenToFitTheScreen)
{
    std::u16string text;
    for (int i = 0; i < 60; ++i)
        text += u"Error opening a rather long path. ";
    const auto look = []
    {
        RECT box{};
        GetWindowRect(GetActiveWindow(), &box);
        EXPECT_LE(box.right - box.left, GetSystemMetrics(SM_CXSCREEN));
        EXPECT_LE(box.bottom - box.top, GetSystemMetrics(SM_CYSCREEN));
        RECT button{};
        GetWindowRect(GetDlgItem(GetActiveWindow(), IDOK), &button);
        EXPECT_LT(button.bottom, box.bottom);
        EXPECT_GT(button.top, (box.top + box.bottom) / 2);
        Tap(VK_RETURN);
    };
    EXPECT_EQ(Show(MB_OK | MB_ICONWARNING, {look}, nullptr, text.c_str()), IDOK);
    const std::u16string name(1000, u'W');
    EXPECT_EQ(Show(MB_OK | MB_ICONWARNING, {look}, nullptr, name.c_str()), IDOK) << "one word";
    const std::u16string lines(1000, u'\n');
    EXPECT_EQ(Show(MB_OK | MB_ICONWARNING, {look}, nullptr, lines.c_str()), IDOK) << "more than there is room for";
}

TEST_F(MessageBoxes, ADeadOwnerIsRefused)
{
    EXPECT_EQ(MessageBoxW(reinterpret_cast<HWND>(static_cast<INT_PTR>(0xFFFF0)), TEXT("x"), TEXT("y"), MB_OK), 0);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
}
