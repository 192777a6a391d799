// What a level sees of its toolbar's messages before the toolbar does.
#include "menu/custom_bar.h"

#include <windowsx.h>

namespace CustomMenu
{

namespace
{

/// Position of the last mouse press or handled move on any level's toolbar: a message that repeats it is no move.
LPARAM g_lastMouseLParam = 0;

} // namespace

LRESULT CALLBACK CustomBar::ToolbarSubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                                DWORD_PTR data)
{
    auto* const level = reinterpret_cast<CustomBar*>(data);
    switch (message)
    {
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
        g_lastMouseLParam = lParam;
        break;
    case WM_MOUSEMOVE:
        if (lParam != g_lastMouseLParam)
            return level->OnToolbarMouseMove(wParam, lParam);
        break;
    case WM_APP_SHELLNOTIFY:
        PostMessageW(level->m_hWnd, WM_APP_SHELLNOTIFY, reinterpret_cast<WPARAM>(window), 0);
        break;
    default:
        break;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

LRESULT CustomBar::OnToolbarMouseMove(WPARAM wParam, LPARAM lParam)
{
    const DWORD position = GetMessagePos();
    g_lastMouseLParam = lParam;
    // The toolbar's notifications may close levels, this one too.
    AddRef();
    // Not from lParam: the toolbar of a long level is taller than its 16 bits reach.
    POINT point{GET_X_LPARAM(position), GET_Y_LPARAM(position)};
    ScreenToClient(m_toolbar, &point);
    const bool onButton = SendToolbar(TB_HITTEST, 0, reinterpret_cast<LPARAM>(&point)) >= 0;
    LRESULT result = 0;
    // Over the empty margin the highlight stays as it is.
    if (onButton || GetCapture() == m_toolbar)
        result = DefSubclassProc(m_toolbar, WM_MOUSEMOVE, wParam, lParam);
    m_lastMessagePos = position;
    Release();
    return result;
}

} // namespace CustomMenu
