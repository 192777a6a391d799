// Dialogs on the real X11 screen, over a pop-up like a menu level, one after another; what happens to them is said on
// standard output.
//
// Command line: x y KIND. The pop-up opens the dialog of that kind with the key D and takes the keyboard again when it
// is over; Escape ends it. Kinds: "rename" is at (x, y), moved into the work area; "owned" is the same, centred over
// the pop-up that owns it; "slow" is as "rename", and the program stops itself (SIGSTOP) before it takes the keyboard
// again; a number is a message box of that type.
#include "windows.h"

#include "platform/base/text.h"
#include "platform/dialogs/dialog_template.h"
#include "platform/screen/screen.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{

constexpr int kField = 102;
constexpr int kForAll = 103;

POINT g_place{};
std::string g_kind;

void Say(const char* what, long value)
{
    std::printf("%s %ld\n", what, value);
    std::fflush(stdout);
}

INT_PTR CALLBACK DialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_INITDIALOG:
        SetDlgItemTextW(dialog, kField, TEXT("Kitchen recipes"));
        if (lParam != 0)
        {
            SetWindowPos(dialog, nullptr, g_place.x, g_place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
            SendMessageW(dialog, DM_REPOSITION, 0, 0);
        }
        return TRUE;
    case WM_ACTIVATE:
        Say("dialog-active", LOWORD(wParam) != WA_INACTIVE);
        return FALSE;
    case WM_COMMAND:
        Say("command", LOWORD(wParam));
        if (LOWORD(wParam) == kForAll)
            Say("checked", IsDlgButtonChecked(dialog, kForAll));
        else if (LOWORD(wParam) <= IDCANCEL)
            EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    default:
        return FALSE;
    }
}

INT_PTR ShowRename(HWND owner)
{
    platform::DialogTemplate made(u"Rename", {227, 68},
                                  WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFOREGROUND | DS_CENTER,
                                  WS_EX_TOPMOST);
    made.Add({TEXT("Static"), u"&New name:", 0xFFFF, WS_GROUP | SS_CENTERIMAGE, {7, 7, 51, 21}});
    made.Add({TEXT("Edit"), u"", kField, WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL, {56, 7, 219, 21}});
    made.Add({TEXT("Button"), u"Do this for &all", kForAll, WS_TABSTOP | BS_AUTOCHECKBOX, {56, 27, 219, 39}});
    made.Add({TEXT("Button"), u"OK", IDOK, WS_TABSTOP | BS_DEFPUSHBUTTON, {116, 47, 166, 61}});
    made.Add({TEXT("Button"), u"Cancel", IDCANCEL, WS_TABSTOP, {170, 47, 220, 61}});
    return DialogBoxIndirectParamW(nullptr, made.Get(), owner, DialogProcedure, owner == nullptr);
}

INT_PTR ShowDialog(HWND window)
{
    if (std::strtoul(g_kind.c_str(), nullptr, 0) == 0 && g_kind != "0")
        return ShowRename(g_kind == "owned" ? window : nullptr);
    return MessageBoxW(window,
                       TEXT("\u201cKitchen recipes\u201d is already there.\nReplace it with the one from Holiday?"),
                       TEXT("Copying"), static_cast<UINT>(std::strtoul(g_kind.c_str(), nullptr, 0)));
}

void OpenDialog(HWND window)
{
    const bool owned = g_kind != "rename" && g_kind != "slow";
    if (!owned)
        EnableWindow(window, FALSE);
    Say("result", static_cast<long>(ShowDialog(window)));
    if (g_kind == "slow")
    {
        platform::screen::Commit(); // the display learns that the dialog has gone
        std::raise(SIGSTOP);
    }
    if (!owned)
    {
        EnableWindow(window, TRUE);
        SetForegroundWindow(window);
    }
}

LRESULT CALLBACK MenuProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_ACTIVATEAPP:
        Say(IsWindowEnabled(window) ? "in-front" : "disabled-in-front", static_cast<long>(wParam));
        return 0;
    case WM_KEYDOWN:
        Say("key", static_cast<long>(wParam));
        if (wParam == 'D')
            OpenDialog(window);
        else if (wParam == VK_ESCAPE)
            DestroyWindow(window);
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR commandLine, int)
{
    char kind[16] = "";
    std::sscanf(platform::Utf8FromUtf16(commandLine).c_str(), "%d %d %15s", &g_place.x, &g_place.y, kind);
    g_kind = kind;
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = MenuProcedure;
    windowClass.hInstance = instance;
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_MENU + 1);
    windowClass.lpszClassName = TEXT("Menu");
    RegisterClassExW(&windowClass);
    const HWND window = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, TEXT("Menu"), nullptr, WS_POPUP | WS_BORDER,
                                        100, 100, 200, 300, nullptr, nullptr, instance, nullptr);
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
    Say("open", 1);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}
