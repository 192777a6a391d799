// Buttons, check boxes and static texts, by number in a dialog.
#include "dialog_desk.h"

namespace
{

using conformance::Commands;

class DialogControls : public conformance::DialogTest
{
};

TEST_F(DialogControls, CheckBoxesTurnByThemselvesUnlessTheProgramWantsToDoIt)
{
    Run(
        kExtended,
        [&](HWND dialog)
        {
            const HWND check = Control(dialog, kCheck);
            EXPECT_EQ(IsDlgButtonChecked(dialog, kCheck), static_cast<UINT>(BST_UNCHECKED));
            SendMessageW(check, BM_CLICK, 0, 0);
            EXPECT_EQ(IsDlgButtonChecked(dialog, kCheck), static_cast<UINT>(BST_CHECKED));
            EXPECT_EQ(TakeCommands(), (Commands{{kCheck, BN_CLICKED}}));
            SendMessageW(check, BM_CLICK, 0, 0);
            EXPECT_EQ(SendMessageW(check, BM_GETCHECK, 0, 0), BST_UNCHECKED);
            TakeCommands();

            EXPECT_TRUE(CheckDlgButton(dialog, kCheck, BST_CHECKED));
            EXPECT_EQ(SendMessageW(check, BM_GETCHECK, 0, 0), BST_CHECKED);
            SendMessageW(check, BM_SETCHECK, BST_UNCHECKED, 0);
            EXPECT_EQ(IsDlgButtonChecked(dialog, kCheck), static_cast<UINT>(BST_UNCHECKED));
            EXPECT_EQ(TakeCommands(), Commands()) << "only a person's doing is told";

            SendMessageW(check, BM_SETSTYLE, BS_CHECKBOX, TRUE);
            SendMessageW(check, BM_CLICK, 0, 0);
            EXPECT_EQ(IsDlgButtonChecked(dialog, kCheck), static_cast<UINT>(BST_UNCHECKED));
            EXPECT_EQ(TakeCommands(), (Commands{{kCheck, BN_CLICKED}}));

            SendDlgItemMessageW(dialog, kFirst, BM_SETCHECK, BST_CHECKED, 0);
            EXPECT_EQ(IsDlgButtonChecked(dialog, kFirst), static_cast<UINT>(BST_UNCHECKED)) << "a push button has none";
        });
}

TEST_F(DialogControls, SayWhatTheyAreToTheDialog)
{
    Run(
        kExtended,
        [](HWND dialog)
        {
            const auto code = [&](int id) { return SendDlgItemMessageW(dialog, id, WM_GETDLGCODE, 0, 0); };
            EXPECT_EQ(code(kLabel), DLGC_STATIC);
            EXPECT_EQ(code(kCheck), DLGC_BUTTON);
            SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(dialog, kFirst)), TRUE);
            Press(dialog, VK_TAB);
            EXPECT_EQ(code(IDOK), DLGC_BUTTON | DLGC_DEFPUSHBUTTON);
            EXPECT_EQ(code(IDCANCEL), DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON);
            SendDlgItemMessageW(dialog, IDCANCEL, BM_SETSTYLE, BS_DEFPUSHBUTTON, FALSE);
            EXPECT_EQ(code(IDCANCEL), DLGC_BUTTON | DLGC_DEFPUSHBUTTON);
        });
}

TEST_F(DialogControls, SpaceAndMousePress)
{
    Run(
        kExtended,
        [&](HWND dialog)
        {
            const HWND first = Control(dialog, kFirst);
            SendMessageW(first, WM_KEYDOWN, VK_SPACE, 0);
            EXPECT_EQ(TakeCommands(), Commands()) << "not before it is let go";
            SendMessageW(first, WM_KEYUP, VK_SPACE, 0);
            EXPECT_EQ(TakeCommands(), (Commands{{kFirst, BN_CLICKED}}));
            const HWND check = Control(dialog, kCheck);
            SendMessageW(check, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
            EXPECT_EQ(FocusId(), kCheck);
            SendMessageW(check, WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
            EXPECT_EQ(TakeCommands(), (Commands{{kCheck, BN_CLICKED}}));
            EXPECT_EQ(IsDlgButtonChecked(dialog, kCheck), static_cast<UINT>(BST_CHECKED));
            SendMessageW(check, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
            SendMessageW(check, WM_LBUTTONUP, 0, MAKELPARAM(3, -30));
            EXPECT_EQ(TakeCommands(), Commands()) << "let go outside";
        });
}

TEST_F(DialogControls, TextsGoByNumber)
{
    Run(
        kExtended,
        [](HWND dialog)
        {
            WCHAR text[32] = {};
            EXPECT_TRUE(SetDlgItemTextW(dialog, kLabel, TEXT("Grüße")));
            EXPECT_EQ(GetDlgItemTextW(dialog, kLabel, text, 32), 5U);
            EXPECT_EQ(std::basic_string<WCHAR>(text), TEXT("Grüße"));
            EXPECT_EQ(GetDlgItemTextW(dialog, kLabel, text, 4), 3U);
            EXPECT_EQ(std::basic_string<WCHAR>(text), TEXT("Grü"));
            EXPECT_FALSE(SetDlgItemTextW(dialog, 999, TEXT("x")));
            EXPECT_EQ(GetDlgItemTextW(dialog, 999, text, 32), 0U);
            EXPECT_EQ(text[0], 0) << "emptied all the same";
        });
}

TEST_F(DialogControls, AStaticTakesNoMouse)
{
    Run(
        kExtended,
        [](HWND dialog)
        {
            const HWND label = Control(dialog, kLabel);
            RECT rect;
            GetWindowRect(label, &rect);
            EXPECT_EQ(SendMessageW(label, WM_NCHITTEST, 0, MAKELPARAM(rect.left + 3, rect.top + 3)), HTTRANSPARENT);
        });
}

} // namespace
