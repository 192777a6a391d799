// The progress bar control.
#include "platform/controls/progress_bar.h"

#include "platform/windowing/window_class.h"

#include "commctrl.h"

#include <algorithm>
#include <utility>

namespace platform
{
namespace
{

constinit SystemClass g_class{PROGRESS_CLASSW, &ProgressBar::Procedure, CS_HREDRAW | CS_VREDRAW};

[[gnu::constructor]] void OfferClass()
{
    OfferSystemClass(g_class);
}

} // namespace

LRESULT ProgressBar::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        OnPaint();
        return 0;
    case PBM_SETRANGE32:
        m_low = static_cast<int>(wParam);
        m_high = std::max(m_low, static_cast<int>(lParam));
        SetPosition(m_position);
        return 0;
    case PBM_SETPOS:
        return SetPosition(static_cast<int>(wParam));
    case PBM_GETPOS:
        return m_position;
    default:
        return Default(message, wParam, lParam);
    }
}

LRESULT ProgressBar::SetPosition(int position)
{
    const int previous = std::exchange(m_position, std::clamp(position, m_low, m_high));
    if (m_position != previous)
        InvalidateRect(Window(), nullptr, FALSE);
    return previous;
}

void ProgressBar::OnPaint()
{
    PAINTSTRUCT paint;
    if (HDC dc = BeginPaint(Window(), &paint))
    {
        RECT rect;
        GetClientRect(Window(), &rect);
        FrameColors(dc, rect, COLOR_BTNSHADOW, COLOR_BTNSHADOW);
        InflateRect(&rect, -1, -1);
        RECT done = rect;
        if (m_high > m_low)
            done.right = rect.left + MulDiv(rect.right - rect.left, m_position - m_low, m_high - m_low);
        else
            done.right = rect.left;
        rect.left = done.right;
        FillRect(dc, &done, GetSysColorBrush(COLOR_HIGHLIGHT));
        FillRect(dc, &rect, GetSysColorBrush(COLOR_WINDOW));
    }
    EndPaint(Window(), &paint);
}

} // namespace platform
