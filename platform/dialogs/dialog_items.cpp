// Controls by their number in a dialog.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/dialogs/dialog.h"

using namespace platform;

LRESULT SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam)
{
    const HWND control = GetDlgItem(dialog, id);
    return control != nullptr ? SendMessageW(control, message, wParam, lParam) : 0;
}

BOOL SetDlgItemTextW(HWND dialog, int id, LPCWSTR text)
{
    if (FaultPoint("SetDlgItemTextW"))
        return Fail(ERROR_NOT_ENOUGH_MEMORY, FALSE);
    return SendDlgItemMessageW(dialog, id, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0;
}

UINT GetDlgItemTextW(HWND dialog, int id, LPWSTR text, int capacity)
{
    if (text != nullptr && capacity > 0)
        text[0] = 0;
    if (FaultPoint("GetDlgItemTextW"))
        return Fail(ERROR_NOT_ENOUGH_MEMORY, 0U);
    const HWND control = GetDlgItem(dialog, id);
    return control != nullptr ? static_cast<UINT>(GetWindowTextW(control, text, capacity)) : 0;
}

BOOL CheckDlgButton(HWND dialog, int id, UINT check)
{
    SendDlgItemMessageW(dialog, id, BM_SETCHECK, check, 0);
    return TRUE;
}

UINT IsDlgButtonChecked(HWND dialog, int id)
{
    return static_cast<UINT>(SendDlgItemMessageW(dialog, id, BM_GETCHECK, 0, 0));
}
