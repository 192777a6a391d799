// What keys mean in a dialog: Tab, the arrows, Return, Escape, mnemonics. Ctrl+C where no text has the focus asks the
// dialog itself (WM_COPY).
#include "platform/dialogs/dialog.h"

#include "platform/dialogs/mnemonic.h"
#include "platform/windowing/mnemonic_key.h"
#include "platform/windowing/window.h"

namespace platform
{
namespace
{

constexpr WPARAM kCopyCharacter = 'C' - 'A' + 1; // what Ctrl+C types

void PressCommand(HWND dialog, int id)
{
    const HWND button = GetDlgItem(dialog, id);
    if (button == nullptr || IsWindowEnabled(button))
        SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

void PressDefaultButton(HWND dialog)
{
    const HWND focus = GetFocus();
    const auto given = static_cast<DWORD>(SendMessageW(dialog, DM_GETDEFID, 0, 0));
    if (IsChild(dialog, focus) && (DialogCode(focus) & DLGC_DEFPUSHBUTTON) != 0)
        PressCommand(dialog, GetDlgCtrlID(focus));
    else
        PressCommand(dialog, HIWORD(given) == DC_HASDEFID ? LOWORD(given) : IDOK);
}

bool HandleKeyDown(HWND dialog, const MSG& message)
{
    const auto code = static_cast<UINT>(
        SendMessageW(message.hwnd, WM_GETDLGCODE, message.wParam, reinterpret_cast<LPARAM>(&message)));
    if ((code & DLGC_WANTMESSAGE) != 0)
        return false;
    switch (message.wParam)
    {
    case VK_TAB:
        if ((code & DLGC_WANTTAB) != 0 || GetKeyState(VK_CONTROL) < 0)
            return false;
        SendMessageW(dialog, WM_NEXTDLGCTL, GetKeyState(VK_SHIFT) < 0, FALSE);
        return true;
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN:
        if ((code & DLGC_WANTARROWS) != 0)
            return false;
        if (const HWND next =
                GetNextDlgGroupItem(dialog, GetFocus(), message.wParam == VK_LEFT || message.wParam == VK_UP))
            FocusControl(next);
        return true;
    case VK_RETURN:
        PressDefaultButton(dialog);
        return true;
    case VK_ESCAPE:
        PressCommand(dialog, IDCANCEL);
        return true;
    default:
        return false;
    }
}

WCHAR MnemonicOf(HWND control)
{
    constexpr int kRoom = 256;
    WCHAR text[kRoom];
    const int length = GetWindowTextW(control, text, kRoom);
    return UpperCaseOf(MarkedLetter({text, static_cast<std::size_t>(length)}));
}

bool HasMnemonic(HWND control, WCHAR letter)
{
    const UINT code = DialogCode(control);
    const bool labelled = (code & DLGC_BUTTON) != 0 ||
                          ((code & DLGC_STATIC) != 0 && (GetWindowLongPtrW(control, GWL_STYLE) & SS_NOPREFIX) == 0);
    return labelled && CanTakeFocus(control) && MnemonicOf(control) == letter;
}

/// A button is pressed; a label's letter leads to the control behind it.
void FollowMnemonic(HWND dialog, HWND control)
{
    const bool button = (DialogCode(control) & DLGC_BUTTON) != 0;
    const HWND target = button ? control : GetNextDlgTabItem(dialog, control, FALSE);
    SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(target), TRUE);
    if (button && IsWindow(control))
        SendMessageW(control, BM_CLICK, 0, 0);
}

bool FollowLetter(HWND dialog, WCHAR letter)
{
    const Window* window = FindObject<Window>(dialog);
    for (const HWND control : window != nullptr && letter > u' ' ? HandlesOf(window->children) : std::vector<HWND>())
    {
        if (IsWindow(control) && HasMnemonic(control, letter))
        {
            FollowMnemonic(dialog, control);
            return true;
        }
    }
    return false;
}

bool HandleCharacter(HWND dialog, const MSG& message)
{
    const bool plain = message.message == WM_CHAR;
    if (plain && (DialogCode(message.hwnd) & (DLGC_WANTCHARS | DLGC_WANTMESSAGE)) != 0)
        return false;
    if (message.wParam == kCopyCharacter)
    {
        SendMessageW(dialog, WM_COPY, 0, 0);
        return true;
    }
    return FollowLetter(dialog, UpperCaseOf(static_cast<WCHAR>(message.wParam))) ||
           FollowLetter(dialog, LatinLetterOf(message));
}

bool HandleKey(HWND dialog, const MSG& message)
{
    switch (message.message)
    {
    case WM_KEYDOWN:
        return HandleKeyDown(dialog, message);
    case WM_CHAR:
    case WM_SYSCHAR:
        return HandleCharacter(dialog, message);
    default:
        return false;
    }
}

} // namespace
} // namespace platform

using namespace platform;

BOOL IsDialogMessageW(HWND dialog, LPMSG message)
{
    if (message == nullptr || (message->hwnd != dialog && !IsChild(dialog, message->hwnd)))
        return FALSE;
    if (!HandleKey(dialog, *message))
    {
        TranslateMessage(message);
        DispatchMessageW(message);
    }
    UpdateDefaultButton(dialog); // the mouse or the program may have moved the focus
    return TRUE;
}
