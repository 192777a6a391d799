// Where the edit control's text and caret are, and painting them.
#include "platform/controls/edit.h"

#include "platform/screen/desktop_settings.h"
#include "platform/windowing/text_input.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace platform
{
namespace
{

constexpr int kMostBlinks = 20; // then the caret stays, and the program sleeps

/// Milliseconds that the caret is on, and off again; 0 when it is to be on always.
UINT BlinkInterval()
{
    if (DesktopSetting("Net/CursorBlink") == "0")
        return 0;
    const int period = std::atoi(DesktopSetting("Net/CursorBlinkTime").value_or("1060").c_str());
    return static_cast<UINT>(std::clamp(period / 2, 100, 5000));
}

} // namespace

const ShapedLine& Edit::Line()
{
    if (!m_line)
    {
        const TextSpan selection = m_text.Selection();
        std::u16string shown = m_text.Text();
        if (!m_composition.empty())
            shown.replace(selection.begin, selection.end - selection.begin, m_composition);
        m_line.emplace(m_font, shown, TextSpan{selection.begin, selection.begin + m_composition.size()});
    }
    return *m_line;
}

CaretPlace Edit::Caret() const
{
    return m_composition.empty() ? CaretPlace{m_text.Caret(), m_secondary}
                                 : CaretPlace{m_text.Selection().begin + m_compositionCaret};
}

int Edit::CaretWidth()
{
    return std::max(1, (Line().EmHeight() + 6) / 12);
}

RECT Edit::TextArea()
{
    RECT area;
    GetClientRect(Window(), &area);
    const int margin = std::max(1, Line().EmHeight() / 4);
    area.left += margin;
    area.right = std::max(area.left, area.right - margin);
    const int height = Line().Height();
    area.top += std::max(0, static_cast<int>(area.bottom - area.top - height) / 2);
    area.bottom = area.top + height;
    return area;
}

RECT Edit::CaretRect()
{
    const RECT area = TextArea();
    const int x = area.left + Line().CaretX(Caret()) - m_scroll;
    return {x, area.top, x + CaretWidth(), area.bottom};
}

LRESULT Edit::PositionOf(std::size_t index)
{
    if (index >= m_text.Text().size())
        return -1;
    const RECT area = TextArea();
    return MAKELONG(area.left + Line().CaretX({index}) - m_scroll, area.top);
}

void Edit::ScrollToCaret()
{
    const RECT area = TextArea();
    const int room = std::max(0, static_cast<int>(area.right - area.left) - CaretWidth());
    const int x = Line().CaretX(Caret());
    m_scroll = std::clamp(m_scroll, x - room, x);
    // Text that has become shorter leaves no gap behind its end.
    m_scroll = std::clamp(m_scroll, 0, std::max(0, Line().Width() - room));
    Invalidate();
}

void Edit::ShowCaret()
{
    m_blinks = 0;
    m_caretOn = m_focused;
    if (const UINT interval = m_focused ? BlinkInterval() : 0; interval != 0)
        SetTimer(Window(), kBlinkTimer, interval, nullptr);
    Invalidate();
}

void Edit::OnTimer(WPARAM id)
{
    if (id == kBlinkTimer)
    {
        m_caretOn = !m_caretOn || ++m_blinks >= kMostBlinks;
        if (m_blinks >= kMostBlinks || !m_focused)
            KillTimer(Window(), kBlinkTimer);
        Invalidate();
    }
    else if (id == kScrollTimer && m_dragging)
    {
        ExtendByPointer(m_dragPoint.x);
    }
}

void Edit::OnPaint()
{
    PAINTSTRUCT paint;
    if (HDC dc = BeginPaint(Window(), &paint))
        Paint(dc);
    // What is painted is where it will stay for a while; before the first painting a window is on no display.
    if (m_focused && !ReadOnly())
        SetTextInput(Window(), CaretRect());
    EndPaint(Window(), &paint);
}

void Edit::Paint(HDC dc)
{
    RECT client;
    GetClientRect(Window(), &client);
    const bool enabled = IsWindowEnabled(Window()) != FALSE;
    FillRect(dc, &client, GetSysColorBrush(enabled && !ReadOnly() ? COLOR_WINDOW : COLOR_BTNFACE));
    const RECT area = TextArea();
    const POINT origin{area.left - m_scroll, area.top};
    // Ink may reach into the margins, unless there is more text that way.
    const bool more = Line().Width() - m_scroll > area.right - area.left;
    const RECT seen{m_scroll > 0 ? area.left : client.left, client.top, more ? area.right : client.right,
                    client.bottom};
    Line().Draw(dc, origin, GetSysColor(enabled ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT), seen);
    if (m_composition.empty() && (m_focused || (Style() & ES_NOHIDESEL) != 0))
    {
        for (const auto& [left, right] : Line().Stretches(m_text.Selection()))
        {
            const RECT stretch{std::max<LONG>(origin.x + left, seen.left), area.top,
                               std::min<LONG>(origin.x + right, seen.right), area.bottom};
            if (IsRectEmpty(&stretch))
                continue;
            FillRect(dc, &stretch, GetSysColorBrush(COLOR_HIGHLIGHT));
            Line().Draw(dc, origin, GetSysColor(COLOR_HIGHLIGHTTEXT), stretch);
        }
    }
    const RECT caret = CaretRect();
    if (m_focused && m_caretOn && enabled)
        FillRect(dc, &caret, GetSysColorBrush(COLOR_WINDOWTEXT));
}

void Edit::OnFocus(bool focus)
{
    m_focused = focus;
    m_text.EndTyping();
    m_highSurrogate = 0;
    if (!focus)
    {
        KillTimer(Window(), kBlinkTimer);
        EndDrag();
        FinishComposition();
        EndTextInput();
    }
    if (Alive())
    {
        ShowCaret();
        Tell(focus ? EN_SETFOCUS : EN_KILLFOCUS);
    }
}

} // namespace platform
