// A managed window with an edit in it on the real X11 screen, which says on standard output what the edit holds.
//
// Command line: the text to begin with. It closes on Escape.
#include "platform/base/text.h"

#include "windows.h"

#include <cstdio>
#include <string>

namespace
{

constexpr int kEdit = 1;

int Scaled(int pixels)
{
    HDC dc = GetDC(nullptr);
    const int dpi = GetDeviceCaps(dc, LOGPIXELSX);
    ReleaseDC(nullptr, dc);
    return pixels * dpi / 96;
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    HWND edit = GetDlgItem(window, kEdit);
    if (message == WM_SETFOCUS && edit != nullptr)
    {
        SetFocus(edit);
    }
    else if (message == WM_COMMAND && HIWORD(wParam) == EN_CHANGE)
    {
        WCHAR text[256] = {};
        GetWindowTextW(edit, text, 256);
        std::printf("text <%s>\n", platform::Utf8FromUtf16(text).c_str());
        std::fflush(stdout);
    }
    else if (message == WM_DESTROY)
    {
        PostQuitMessage(0);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR commandLine, int)
{
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = Procedure;
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = TEXT("EditWindow");
    RegisterClassExW(&windowClass);
    HWND window = CreateWindowExW(0, TEXT("EditWindow"), TEXT("Edit"), WS_POPUP | WS_CAPTION | WS_SYSMENU, Scaled(200),
                                  Scaled(150), Scaled(320), Scaled(80), nullptr, nullptr, instance, nullptr);
    HWND edit =
        CreateWindowExW(0, TEXT("Edit"), commandLine, WS_CHILD | WS_VISIBLE | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL,
                        Scaled(10), Scaled(20), Scaled(290), Scaled(23), window,
                        reinterpret_cast<HMENU>(static_cast<UINT_PTR>(kEdit)), instance, nullptr);
    const HFONT font = CreateFontW(-Scaled(12), 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                   CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, TEXT("DejaVu Sans"));
    SendMessageW(edit, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    SendMessageW(edit, EM_SETSEL, 0, -1);
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
    SetFocus(edit);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0))
    {
        if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE)
            DestroyWindow(window);
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    DeleteObject(font);
    return 0;
}
