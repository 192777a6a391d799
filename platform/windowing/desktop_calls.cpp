// Small calls about the desktop as a whole: its window, its bell, its viewer of help files.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/screen/screen.h"

using namespace platform;

HWND GetDesktopWindow()
{
    return nullptr;
}

BOOL MessageBeep(UINT)
{
    if (FaultPoint("MessageBeep"))
        return Fail(ERROR_NOT_ENOUGH_MEMORY, FALSE);
    screen::RingBell();
    return TRUE;
}

BOOL WinHelpW(HWND, LPCWSTR, UINT, ULONG_PTR)
{
    return Fail(ERROR_FILE_NOT_FOUND, FALSE);
}
