// What a popup menu's loop does with keys, letters and the mouse.
#include "platform/dialogs/popup_keys.h"
#include "platform/dialogs/popup_tracking.h"
#include "platform/windowing/message_queue.h"
#include "platform/windowing/mnemonic_key.h"

#include <algorithm>
#include <cstdlib>

namespace platform
{

namespace
{

bool IsButton(UINT message, UINT left)
{
    // Left, right and middle are three messages apart.
    return message == left || message == left + 3 || message == left + 6;
}

bool IsPress(UINT message)
{
    return IsButton(message, WM_LBUTTONDOWN) || IsButton(message, WM_LBUTTONDBLCLK);
}

bool IsIn(UINT message, UINT first, UINT last)
{
    return message >= first && message <= last;
}

} // namespace

void PopupTracking::TakeMessage()
{
    MSG message{};
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE))
    {
        if (Going())
            WaitForMessage();
        return;
    }
    if (!Going())
        return;
    if (message.message == WM_QUIT || IsPressOutside(message))
    {
        End();
        return;
    }
    if (!PeekMessageW(&message, nullptr, message.message, message.message, PM_REMOVE) || !Going())
        return;
    if (message.message == WM_CHAR || message.message == WM_SYSCHAR)
        OnLetter(message);
    else if (IsIn(message.message, WM_KEYFIRST, WM_KEYLAST))
        OnKey(message);
    else if (IsIn(message.message, WM_MOUSEFIRST, WM_MOUSELAST))
        OnMouse(message);
    else
        DispatchMessageW(&message);
}

bool PopupTracking::IsPressOutside(const MSG& message) const
{
    return IsPress(message.message) && PopupAt(message.pt) < 0;
}

void PopupTracking::OnKey(const MSG& message)
{
    const int depth = ActiveDepth();
    const int hot = Popup(depth).Hot();
    const std::vector<MenuItem>& items = Popup(depth).Items();
    switch (MeaningOfKey(message.message, message.wParam, message.lParam))
    {
    case PopupKey::Nothing:
        TranslateMessage(&message);
        break;
    case PopupKey::Next:
        MoveTo(depth, NextItem(items, hot, 1));
        break;
    case PopupKey::Previous:
        MoveTo(depth, NextItem(items, hot, -1));
        break;
    case PopupKey::First:
        MoveTo(depth, NextItem(items, -1, 1));
        break;
    case PopupKey::Last:
        MoveTo(depth, NextItem(items, -1, -1));
        break;
    case PopupKey::OpenSubMenu:
        if (Popup(depth).Opens(hot))
            Activate(depth, hot);
        break;
    case PopupKey::CloseSubMenu:
        CloseBeyond(std::max(Deepest() - 1, 0));
        break;
    case PopupKey::Choose:
        Activate(depth, hot);
        break;
    case PopupKey::LeaveLevel:
        if (Deepest() == 0)
            End();
        else
            CloseBeyond(Deepest() - 1);
        break;
    case PopupKey::End:
        End();
        break;
    }
}

void PopupTracking::OnLetter(const MSG& message)
{
    const int depth = ActiveDepth();
    const std::vector<MenuItem>& items = Popup(depth).Items();
    const int hot = Popup(depth).Hot();
    LetterMatch match = FindLetter(items, hot, static_cast<WCHAR>(message.wParam));
    if (const WCHAR latin = LatinLetterOf(message); match.item < 0 && latin != 0)
        match = FindLetter(items, hot, latin);
    if (match.item < 0)
        return;
    MoveTo(depth, match.item);
    if (match.only && Shows(depth))
        Activate(depth, match.item);
}

void PopupTracking::OnMouse(const MSG& message)
{
    const bool rightButton =
        message.message == WM_RBUTTONDOWN || message.message == WM_RBUTTONDOWN + 2 || message.message == WM_RBUTTONUP;
    if (rightButton && (m_flags & TPM_RIGHTBUTTON) == 0)
        return;
    switch (message.message)
    {
    case WM_MOUSEMOVE:
        OnMove(message.pt);
        break;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDOWN + 2:
        OnPress(message.pt);
        break;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
        OnRelease(message.pt);
        break;
    case WM_MOUSEWHEEL:
        OnWheel(message);
        break;
    default:
        break;
    }
}

void PopupTracking::OnMove(POINT point)
{
    if (point.x == m_lastPoint.x && point.y == m_lastPoint.y)
        return; // a window has come or gone under the pointer
    m_lastPoint = point;
    m_mayChoose |= std::abs(point.x - m_openingPoint.x) > GetSystemMetrics(SM_CXDRAG) ||
                   std::abs(point.y - m_openingPoint.y) > GetSystemMetrics(SM_CYDRAG);
    StopScrolling();
    const int depth = PopupAt(point);
    if (depth < 0)
    {
        StopRest();
        Select(Deepest(), -1, true);
        return;
    }
    // Whoever has come here on the way across other items of the menus before: those that lead here count.
    for (int i = 0; i < depth; ++i)
        Popup(i).SetHot(OpenedFrom(i));
    const PopupHit hit = Popup(depth).HitTest(point);
    if (hit.part == PopupPart::ScrollUp || hit.part == PopupPart::ScrollDown)
        StartScrolling(depth, hit.part == PopupPart::ScrollUp ? -1 : 1);
    const bool open = depth < Deepest();
    if (hit.row < 0 && open)
        return;
    if (hit.row == OpenedFrom(depth) && open)
        StopRest();
    else if (hit.row != Popup(depth).Hot() && (open || Popup(depth).Opens(hit.row)))
        StartRest(depth, hit.row);
    else if (hit.row != Popup(depth).Hot())
        StopRest();
    Select(depth, hit.row, true);
}

void PopupTracking::OnPress(POINT point)
{
    m_mayChoose = true;
    const int depth = PopupAt(point);
    const PopupHit hit = depth >= 0 ? Popup(depth).HitTest(point) : PopupHit{};
    if (hit.row < 0)
        return;
    StopRest();
    if (hit.row == OpenedFrom(depth))
        return;
    Select(depth, hit.row, true);
    CloseBeyond(depth);
    if (Shows(depth))
        OpenSubMenu(depth, hit.row);
}

void PopupTracking::OnRelease(POINT point)
{
    const int depth = PopupAt(point);
    const PopupHit hit = depth >= 0 ? Popup(depth).HitTest(point) : PopupHit{};
    if (hit.row >= 0 && m_mayChoose && Popup(depth).At(hit.row).subMenu == nullptr)
        Activate(depth, hit.row);
}

void PopupTracking::OnWheel(const MSG& message)
{
    const int depth = PopupAt(message.pt);
    const int delta = static_cast<SHORT>(HIWORD(message.wParam));
    if (depth < 0 || !Popup(depth).ScrollBy(delta > 0 ? -1 : 1))
        return;
    StopRest();
    CloseBeyond(depth);
    if (Shows(depth))
        Select(depth, Popup(depth).HitTest(message.pt).row, true);
}

} // namespace platform
