// Registration of the common controls, and the calls that concern all of them.
#include "platform/controls/common_controls.h"

#include "platform/base/fault_points.h"
#include "platform/controls/pager.h"
#include "platform/controls/push_button.h"
#include "platform/controls/toolbar.h"
#include "platform/windowing/window_class.h"
#include "commctrl.h"

namespace platform
{

namespace
{

bool RegisterControl(LPCWSTR name, WNDPROC procedure, UINT style)
{
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.style = style | CS_GLOBALCLASS;
    windowClass.lpfnWndProc = procedure;
    // The control's object; GWLP_USERDATA stays the program's.
    windowClass.cbWndExtra = sizeof(void*);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = name;
    return RegisterClassExW(&windowClass) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

} // namespace

void RegisterCommonControls()
{
    static bool registered = false;
    if (registered)
        return;
    // What fails now is tried again next time.
    const bool toolbar = RegisterControl(TOOLBARCLASSNAMEW, Toolbar::Procedure, CS_DBLCLKS | kErasedByParent);
    const bool pager = RegisterControl(WC_PAGESCROLLERW, Pager::Procedure, kErasedByParent);
    const bool button = RegisterControl(TEXT("Button"), PushButton::Procedure, CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW);
    registered = toolbar && pager && button;
}

} // namespace platform

BOOL InitCommonControlsEx(const INITCOMMONCONTROLSEX* controls)
{
    if (controls == nullptr || controls->dwSize != sizeof(*controls) || platform::FaultPoint("InitCommonControlsEx"))
        return FALSE;
    platform::RegisterCommonControls();
    return TRUE;
}
