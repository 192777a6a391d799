// What a level sees of its toolbar's messages before the toolbar does.
#include "dragdrop/drag_rules.h"
#include "menu/level_ref.h"

#include <windowsx.h>

namespace CustomMenu
{

namespace
{

/// Position of the last mouse press or handled move on any level's toolbar: a message that repeats it is no move.
LPARAM g_lastMouseLParam = 0;

/// Where a mouse message happened, in the toolbar's coordinates. The toolbar of a long level is taller than the 16 bits
/// of lParam reach: of the heights that they can mean it is the one near what the toolbar's parent shows.
POINT MousePoint(HWND toolbar, LPARAM lParam)
{
    POINT shown{};
    MapWindowPoints(GetParent(toolbar), toolbar, &shown, 1);
    return {GET_X_LPARAM(lParam), shown.y + static_cast<SHORT>(GET_Y_LPARAM(lParam) - shown.y)};
}

int ButtonAt(const CustomBar& level, POINT point)
{
    return static_cast<int>(level.SendToolbar(TB_HITTEST, 0, reinterpret_cast<LPARAM>(&point)));
}

void ArmDrag(CustomBar& level, LPARAM lParam)
{
    level.m_dragStartPoint = MousePoint(level.m_toolbar, lParam);
    level.m_dragArmed = true;
    level.m_dragStartButton = ButtonAt(level, level.m_dragStartPoint);
    g_lastMouseLParam = lParam;
}

void DetectDrag(CustomBar& level, WPARAM keys, POINT point)
{
    if ((keys & (MK_LBUTTON | MK_RBUTTON)) == 0)
    {
        level.m_dragArmed = false;
        return;
    }
    const SIZE threshold{GetSystemMetrics(SM_CXDRAG), GetSystemMetrics(SM_CYDRAG)};
    if (!level.m_dragArmed || !IsDrag(level.m_dragStartPoint, point, threshold))
        return;
    level.m_dragArmed = false;
    PostMessageW(level.m_hWnd, WM_APP_BEGINDRAG, static_cast<WPARAM>(level.m_dragStartButton), 0);
}

LRESULT OnMouseMove(CustomBar& level, WPARAM wParam, LPARAM lParam)
{
    const DWORD position = GetMessagePos();
    g_lastMouseLParam = lParam;
    const POINT point = MousePoint(level.m_toolbar, lParam);
    const bool onButton = ButtonAt(level, point) >= 0;
    LRESULT result = 0;
    // Over the empty margin the highlight stays as it is.
    if (onButton || GetCapture() == level.m_toolbar)
        result = DefSubclassProc(level.m_toolbar, WM_MOUSEMOVE, wParam, lParam);
    level.m_lastMessagePos = position;
    DetectDrag(level, wParam, point);
    return result;
}

} // namespace

LRESULT CALLBACK CustomBar::ToolbarSubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                                DWORD_PTR data)
{
    CustomBar& level = *reinterpret_cast<CustomBar*>(data);
    // The toolbar's notifications may close levels, this one too.
    const LevelRef held(level);
    switch (message)
    {
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
        ArmDrag(level, lParam);
        break;
    case WM_MOUSEMOVE:
        if (lParam != g_lastMouseLParam)
            return OnMouseMove(level, wParam, lParam);
        break;
    case WM_APP_SHELLNOTIFY:
        PostMessageW(level.m_hWnd, WM_APP_SHELLNOTIFY, reinterpret_cast<WPARAM>(window), 0);
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(window, &CustomBar::ToolbarSubclassProc, id);
        break;
    default:
        break;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

} // namespace CustomMenu
