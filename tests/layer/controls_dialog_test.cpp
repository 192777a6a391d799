// Dialogs in memory, used by keys: what the conformance tests, which send messages, do not see.
#include "platform/dialogs/dialog_template.h"
#include "tests/layer/windowing_desk.h"

#include <functional>
#include <vector>

namespace
{

using Steps = std::vector<std::function<void()>>;

constexpr int kCheck = 10;
constexpr int kSave = 11;

std::vector<int> g_commands;

INT_PTR CALLBACK NoteCommands(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_INITDIALOG)
        return TRUE;
    if (message != WM_COMMAND || HIWORD(wParam) != BN_CLICKED)
        return FALSE;
    g_commands.push_back(LOWORD(wParam));
    if (LOWORD(wParam) == kSave)
        EndDialog(dialog, kSave);
    return TRUE;
}

struct DialogKeys : Desk
{
    DialogKeys() { g_commands.clear(); }

    /// Takes a step each time the dialog waits; the last one has to end it.
    static INT_PTR Run(const Steps& steps)
    {
        platform::DialogTemplate made(u"Dialog", {150, 60}, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_SETFOREGROUND);
        made.Add({TEXT("Button"), u"Keep &both", kCheck, WS_TABSTOP | BS_AUTOCHECKBOX, {7, 7, 100, 20}});
        made.Add({TEXT("Button"), u"Save", kSave, WS_TABSTOP | BS_DEFPUSHBUTTON, {7, 25, 57, 39}});
        made.Add({TEXT("Button"), u"Cancel", IDCANCEL, WS_TABSTOP, {61, 25, 111, 39}});
        std::size_t next = 0;
        platform::headless::SetIdleHandler(
            [&]
            {
                if (next < steps.size())
                    steps[next++]();
                else
                    EndDialog(GetActiveWindow(), -1);
                PostMessageW(nullptr, WM_NULL, 0, 0);
                return true;
            });
        const INT_PTR result = DialogBoxIndirectParamW(nullptr, made.Get(), nullptr, NoteCommands, 0);
        platform::headless::SetIdleHandler(nullptr);
        EXPECT_EQ(next, steps.size()) << "it closed early";
        return result;
    }

    static std::function<void()> Key(BYTE key)
    {
        return [key] { Tap(key); };
    }
    static std::function<void()> ExpectFocus(int id)
    {
        return [=] { EXPECT_EQ(GetDlgCtrlID(GetFocus()), id); };
    }
};

} // namespace

TEST_F(DialogKeys, TheTemplatesDefaultButtonIsPressedFromElsewhere)
{
    EXPECT_EQ(Run({ExpectFocus(kCheck), Key(VK_RETURN)}), kSave);
}

TEST_F(DialogKeys, TabGoesRoundBothWays)
{
    EXPECT_EQ(Run({[] { Tap(VK_TAB, {VK_SHIFT}); }, ExpectFocus(IDCANCEL), Key(VK_TAB), ExpectFocus(kCheck),
                   Key(VK_TAB), ExpectFocus(kSave), Key(VK_SPACE)}),
              kSave);
}

TEST_F(DialogKeys, TheFocusComesBackToWhereItWas)
{
    HWND dialog = nullptr;
    const auto leave = [&]
    {
        dialog = GetActiveWindow();
        platform::headless::ActivateOtherApplication();
    };
    EXPECT_EQ(Run({Key(VK_TAB), ExpectFocus(kSave), leave, [] { EXPECT_EQ(GetFocus(), nullptr); },
                   [&] { SetForegroundWindow(dialog); }, ExpectFocus(kSave), Key(VK_RETURN)}),
              kSave);
}

TEST_F(DialogKeys, NeitherEscapeNorClosingPressesADisabledCancel)
{
    const auto disable = [] { EnableWindow(GetDlgItem(GetActiveWindow(), IDCANCEL), FALSE); };
    const auto close = [] { PostMessageW(GetActiveWindow(), WM_CLOSE, 0, 0); };
    EXPECT_EQ(Run({disable, Key(VK_ESCAPE), close, [] {}, Key(VK_RETURN)}), kSave);
    EXPECT_EQ(g_commands, std::vector{kSave});
}
