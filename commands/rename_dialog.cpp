// The Rename dialog's procedure.
#include "commands/rename_dialog.h"

#include "app/launcher_state.h"
#include "commands/file_name.h"
#include "resources/resource.h"
#include "support/resource_text.h"

namespace CustomMenu
{

namespace
{

constexpr int kNameCapacity = 1024; ///< in characters
constexpr INT_PTR kAccepted = 1;
constexpr INT_PTR kCancelled = 0;

void ShowName(HWND dialog)
{
    const POINT place = g_launcher.m_renamePosition;
    SetDlgItemTextW(dialog, EDIT_NEW_NAME, g_launcher.m_renameText.c_str());
    SetWindowPos(dialog, nullptr, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    SendMessageW(dialog, DM_REPOSITION, 0, 0);
}

void AcceptName(HWND dialog)
{
    WCHAR name[kNameCapacity] = {};
    GetDlgItemTextW(dialog, EDIT_NEW_NAME, name, kNameCapacity);
    if (!IsValidFileName(name))
    {
        MessageBoxW(dialog, ResourceText(g_instance, STRING_INVALID_FILE_NAME).c_str(),
                    ResourceText(g_instance, STRING_RENAME).c_str(), MB_OK | MB_ICONERROR);
        return;
    }
    g_launcher.m_renameText = name;
    EndDialog(dialog, kAccepted);
}

INT_PTR CALLBACK RenameDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_INITDIALOG)
    {
        ShowName(dialog);
        return TRUE;
    }
    if (message != WM_COMMAND)
        return FALSE;
    switch (LOWORD(wParam))
    {
    case IDOK:
        AcceptName(dialog);
        return TRUE;
    case IDCANCEL:
        EndDialog(dialog, kCancelled);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

bool ShowRenameDialog()
{
    return DialogBoxParamW(g_instance, MAKEINTRESOURCEW(DIALOG_RENAME), nullptr, RenameDialogProc, 0) == kAccepted;
}

} // namespace CustomMenu
