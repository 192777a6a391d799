// A pop-up like a menu level on the real X11 screen, which says on standard output what happens to it.
//
// Command line: x y [stay]. It paints itself red, closes when another program becomes active (with "stay": only says
// so) and on Escape.
#include "windows.h"
#include "windowsx.h"
#include "shellscalingapi.h"

#include "platform/base/text.h"
#include "platform/screen/x11/keymap.h"
#include "platform/windowing/clipboard.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{

bool g_stay = false;

void Say(const char* what, long value)
{
    std::printf("%s %ld\n", what, value);
    std::fflush(stdout);
}

void Paint(HWND window)
{
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(window, &paint);
    const HBRUSH red = CreateSolidBrush(RGB(255, 0, 0));
    FillRect(dc, &paint.rcPaint, red);
    DeleteObject(red);
    EndPaint(window, &paint);
}

void OnKey(HWND window, WPARAM key)
{
    if (key == VK_ESCAPE)
        PostMessageW(window, WM_CLOSE, 0, 0);
    if (key == 'L')
    {
        // The key left of V, as an event reports it while the second layout is active.
        const auto meaning = platform::x11::TranslateKey(54, 1U << 13, true);
        Say("second-layout-key", meaning.virtualKey);
        Say("second-layout-char", meaning.text[0]);
    }
    if (key == 'V')
        Say("pasted", platform::ClipboardText().has_value());
    if (key == 'M')
    {
        EnableWindow(window, FALSE);
        Say("box", MessageBoxW(window, TEXT("text"), TEXT("caption"), MB_OKCANCEL));
        EnableWindow(window, TRUE);
        SetForegroundWindow(window);
    }
}

void DescribeScreen()
{
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    UINT dpi = 0;
    const HMONITOR primary = MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY);
    GetDpiForMonitor(primary, MDT_EFFECTIVE_DPI, &dpi, &dpi);
    const HMONITOR right = MonitorFromPoint({5000, 0}, MONITOR_DEFAULTTONEAREST);
    GetMonitorInfoW(right, &info);
    DWORD delay = 0;
    SystemParametersInfoW(SPI_GETMENUSHOWDELAY, 0, &delay, 0);
    Say("delay", static_cast<long>(delay));
    Say("dpi", static_cast<long>(dpi));
    Say("monitors", GetSystemMetrics(SM_CMONITORS));
    Say("right-monitor-left", info.rcMonitor.left);
    Say("right-monitor-bottom", info.rcWork.bottom);
}

LRESULT CALLBACK MenuProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_PAINT:
        Paint(window);
        return 0;
    case WM_KEYDOWN:
        Say("key", static_cast<long>(wParam));
        OnKey(window, wParam);
        return 0;
    case WM_CHAR:
        Say("char", static_cast<long>(wParam));
        return 0;
    case WM_LBUTTONDOWN:
        Say("press", GET_X_LPARAM(lParam));
        return 0;
    case WM_LBUTTONUP:
        Say("release", GET_X_LPARAM(lParam));
        return 0;
    case WM_MOUSEWHEEL:
        Say("wheel", static_cast<short>(HIWORD(wParam)));
        return 0;
    case WM_MOUSEMOVE:
        Say("move", GET_X_LPARAM(lParam));
        return 0;
    case WM_ACTIVATEAPP:
        Say("active", static_cast<long>(wParam));
        if (!wParam && !g_stay && IsWindowEnabled(window))
            PostMessageW(window, WM_CLOSE, 0, 0);
        return 0;
    case WM_DESTROY:
        Say("closed", 0);
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR commandLine, int)
{
    int x = 0;
    int y = 0;
    char option[16] = "";
    std::sscanf(platform::Utf8FromUtf16(commandLine).c_str(), "%d %d %15s", &x, &y, option);
    g_stay = std::string(option) == "stay";
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = MenuProcedure;
    windowClass.hInstance = instance;
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_MENU + 1);
    windowClass.lpszClassName = TEXT("Menu");
    RegisterClassExW(&windowClass);
    const HWND window = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, TEXT("Menu"), nullptr, WS_POPUP | WS_BORDER,
                                        x, y, 200, 300, nullptr, nullptr, instance, nullptr);
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
    DescribeScreen();
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}
