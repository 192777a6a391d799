// The dialog's window class: its program's procedure first, then what every dialog does.
#include "platform/dialogs/dialog.h"

#include "platform/windowing/window.h"

#include <algorithm>

namespace platform
{
namespace
{

constexpr LPCWSTR kDialogClass = TEXT("#32770");
constexpr int kStateIndex = DWLP_USER + static_cast<int>(sizeof(LONG_PTR));
constexpr int kExtraBytes = kStateIndex + static_cast<int>(sizeof(LONG_PTR));

Dialog* StateOf(HWND window)
{
    return reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, kStateIndex));
}

void FreeState(HWND window)
{
    const std::unique_ptr<Dialog> dialog(StateOf(window));
    SetWindowLongPtrW(window, kStateIndex, 0);
    // The loop that runs it may be waiting, and has to see that there is nothing left to run.
    if (dialog->run != nullptr)
        PostMessageW(nullptr, WM_NULL, 0, 0);
}

/// The messages whose answer a dialog procedure returns itself instead of storing it.
bool ReturnsItsAnswer(UINT message)
{
    switch (message)
    {
    case WM_INITDIALOG:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
        return true;
    default:
        return false;
    }
}

LRESULT Erase(HWND window, HDC dc)
{
    const auto brush = reinterpret_cast<HBRUSH>(
        SendMessageW(window, WM_CTLCOLORDLG, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(window)));
    RECT client;
    if (brush != nullptr && GetClientRect(window, &client))
        FillRect(dc, &client, brush);
    return 1;
}

/// Moves it as far as needed to be on one monitor, the work area's top left corner before all.
void MoveIntoWorkArea(HWND window)
{
    RECT rect;
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    if (!GetWindowRect(window, &rect) || !GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &info))
        return;
    const RECT& work = info.rcWork;
    const LONG left = std::max(std::min(rect.left, work.right - Width(rect)), work.left);
    const LONG top = std::max(std::min(rect.top, work.bottom - Height(rect)), work.top);
    SetWindowPos(window, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void MoveFocus(HWND window, WPARAM target, bool isControl)
{
    const HWND next = isControl ? reinterpret_cast<HWND>(target) : GetNextDlgTabItem(window, GetFocus(), target != 0);
    if (next != nullptr)
        FocusControl(next);
    UpdateDefaultButton(window);
}

void OnActivate(HWND window, bool active)
{
    if (active)
    {
        RestoreFocus(window);
        UpdateDefaultButton(window);
    }
    else if (IsChild(window, GetFocus()))
    {
        StateOf(window)->lastFocus = GetFocus();
    }
}

/// The close button is Cancel, unless that is forbidden just now.
void OnClose(HWND window)
{
    const HWND cancel = GetDlgItem(window, IDCANCEL);
    if (!MayClose(*StateOf(window)))
        return;
    if (cancel == nullptr || IsWindowEnabled(cancel))
        PostMessageW(window, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), reinterpret_cast<LPARAM>(cancel));
}

LRESULT HandleDialogMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const Dialog& dialog = *StateOf(window);
    switch (message)
    {
    case WM_ERASEBKGND:
        return Erase(window, reinterpret_cast<HDC>(wParam));
    case WM_ACTIVATE:
        OnActivate(window, LOWORD(wParam) != WA_INACTIVE);
        return 0;
    case WM_SETFOCUS:
        RestoreFocus(window);
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(dialog.font);
    case WM_CLOSE:
        OnClose(window);
        return 0;
    case WM_NEXTDLGCTL:
        MoveFocus(window, wParam, LOWORD(lParam) != 0);
        return 0;
    case DM_GETDEFID:
        return MAKELRESULT(dialog.defaultId, DC_HASDEFID);
    case DM_SETDEFID:
        SetDefaultId(window, static_cast<int>(wParam));
        return TRUE;
    case DM_REPOSITION:
        MoveIntoWorkArea(window);
        return 0;
    case WM_NCDESTROY:
        FreeState(window);
        return DefWindowProcW(window, message, wParam, lParam);
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE)
    {
        auto& dialog =
            *static_cast<std::unique_ptr<Dialog>*>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
        SetWindowLongPtrW(window, kStateIndex, reinterpret_cast<LONG_PTR>(dialog.release()));
        return DefWindowProcW(window, message, wParam, lParam);
    }
    if (StateOf(window) == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    if (const auto procedure = reinterpret_cast<DLGPROC>(GetWindowLongPtrW(window, DWLP_DLGPROC)))
    {
        SetWindowLongPtrW(window, DWLP_MSGRESULT, 0);
        const INT_PTR answer = procedure(window, message, wParam, lParam);
        if (!IsWindow(window))
            return answer;
        if (answer != 0 && message != WM_NCDESTROY)
            return ReturnsItsAnswer(message) ? answer : GetWindowLongPtrW(window, DWLP_MSGRESULT);
    }
    return HandleDialogMessage(window, message, wParam, lParam);
}

bool RegisterDialogClass()
{
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    if (GetClassInfoExW(nullptr, kDialogClass, &windowClass))
        return true;
    windowClass.style = CS_DBLCLKS | CS_GLOBALCLASS;
    windowClass.lpfnWndProc = Procedure;
    windowClass.cbWndExtra = kExtraBytes;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kDialogClass;
    return RegisterClassExW(&windowClass) != 0;
}

} // namespace

Dialog* FindDialog(HWND window)
{
    const Window* found = FindObject<Window>(window);
    return found != nullptr && found->windowClass->procedure == Procedure ? StateOf(window) : nullptr;
}

HWND CreateDialogFrame(DWORD exStyle, LPCWSTR title, DWORD style, const RECT& place, HWND owner, HINSTANCE instance,
                       std::unique_ptr<Dialog> dialog)
{
    if (!RegisterDialogClass())
        return nullptr;
    return CreateWindowExW(exStyle, kDialogClass, title, style, place.left, place.top, Width(place), Height(place),
                           owner, nullptr, instance, &dialog);
}

} // namespace platform
