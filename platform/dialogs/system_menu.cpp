// The system menu of a dialog, which is never shown: it says whether the dialog may be closed.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/dialogs/dialog.h"
#include "platform/dialogs/menu.h"

namespace platform
{

bool MayClose(const Dialog& dialog)
{
    const MenuPlace close = FindMenuItem(dialog.systemMenu, SC_CLOSE, false);
    return !close || close.Item().IsEnabled();
}

} // namespace platform

using namespace platform;

HMENU GetSystemMenu(HWND window, BOOL revert)
{
    constexpr HMENU kNone = nullptr;
    Dialog* dialog = FindDialog(window);
    if (dialog == nullptr)
        return Fail(ERROR_INVALID_WINDOW_HANDLE, kNone);
    if (FaultPoint("GetSystemMenu"))
        return Fail(ERROR_NOT_ENOUGH_MEMORY, kNone);
    if (revert)
    {
        DestroyMenu(dialog->systemMenu);
        dialog->systemMenu = nullptr;
        return kNone;
    }
    if (dialog->systemMenu == nullptr && (dialog->systemMenu = CreatePopupMenu()) != nullptr)
        AppendMenuW(dialog->systemMenu, MF_STRING, SC_CLOSE, TEXT("&Close"));
    return dialog->systemMenu;
}
