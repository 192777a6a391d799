// The edit control's keys and mouse.
#include "platform/controls/edit.h"

#include "platform/screen/screen.h"
#include "platform/windowing/text_input.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace platform
{
namespace
{

bool IsHeld(int key)
{
    return GetKeyState(key) < 0;
}

constexpr UINT kScrollInterval = 50;      // milliseconds
constexpr char16_t kWordBackspace = 0x7F; // what Control makes of Backspace

/// What Control makes of a letter.
constexpr char16_t Control(char16_t letter)
{
    return static_cast<char16_t>(letter - u'A' + 1);
}

} // namespace

LRESULT Edit::HandleInput(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_KEYDOWN:
        OnKey(wParam);
        return 0;
    case WM_CHAR:
        OnChar(static_cast<char16_t>(wParam));
        return 0;
    case WM_LBUTTONDOWN:
        OnPress(PointFrom(lParam), (wParam & MK_SHIFT) != 0);
        return 0;
    case WM_LBUTTONDBLCLK:
        OnDoubleClick(PointFrom(lParam));
        return 0;
    case WM_MOUSEMOVE:
        OnDrag(PointFrom(lParam));
        return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
        EndDrag();
        return 0;
    case WM_RBUTTONDOWN:
        SetFocus(Window());
        return 0;
    case WM_MBUTTONDOWN:
        PasteMarked(PointFrom(lParam));
        return 0;
    default:
        return Default(message, wParam, lParam);
    }
}

void Edit::OnComposition()
{
    const screen::Composition& composition = screen::CurrentComposition();
    m_composition = ReadOnly() ? std::u16string() : composition.text;
    m_compositionCaret = std::min(composition.caret, m_composition.size());
    m_line.reset();
    ScrollToCaret();
    ShowCaret();
}

void Edit::FinishComposition()
{
    if (m_composition.empty())
        return;
    EndTextInput();
    m_line.reset(); // the text may be full
    Type(std::exchange(m_composition, {}));
}

void Edit::OnKey(WPARAM key)
{
    const bool shift = IsHeld(VK_SHIFT);
    const bool control = IsHeld(VK_CONTROL);
    switch (key)
    {
    case VK_LEFT:
    case VK_UP:
        MoveSideways(-1);
        break;
    case VK_RIGHT:
    case VK_DOWN:
        MoveSideways(+1);
        break;
    case VK_HOME:
    case VK_END:
        FinishComposition();
        if (Alive())
            MoveTo({key == VK_HOME ? 0 : m_text.Text().size()}, shift);
        break;
    case VK_DELETE:
        OnDelete();
        break;
    case VK_INSERT:
        if (control && !shift)
            Copy();
        else if (shift && !control)
            Paste();
        break;
    default:
        break;
    }
}

void Edit::OnChar(char16_t unit)
{
    switch (unit)
    {
    case u'\b':
    case kWordBackspace:
        OnBackspace(unit == kWordBackspace);
        break;
    case Control(u'A'):
        FinishComposition();
        if (Alive())
            MarkAll();
        break;
    case Control(u'C'):
        Copy();
        break;
    case Control(u'V'):
        Paste();
        break;
    case Control(u'X'):
        Cut();
        break;
    case Control(u'Y'):
        Redo();
        break;
    case Control(u'Z'):
        if (IsHeld(VK_SHIFT))
            Redo();
        else
            Undo();
        break;
    default:
        if ((unit & 0xFC00) == 0xD800)
            m_highSurrogate = unit;
        else if ((unit & 0xFC00) == 0xDC00 && m_highSurrogate != 0)
            Type(std::u16string{std::exchange(m_highSurrogate, u'\0'), unit});
        else if (unit >= u' ')
            Type({&unit, 1});
        break;
    }
}

void Edit::Type(std::u16string_view text)
{
    if (!ReadOnly())
        Replace(m_text.Selection(), text, EditKind::Typing);
}

void Edit::OnBackspace(bool word)
{
    FinishComposition();
    if (!Alive())
        return;
    const std::size_t caret = m_text.Caret();
    const Places places = Line().Places();
    if (!m_text.Selection().Empty())
        Erase(m_text.Selection(), EditKind::Other);
    else if (word)
        Erase({PreviousWord(places, caret), caret}, EditKind::Other);
    else
        Erase({BackspaceFrom(places, m_text.Text(), caret), caret}, EditKind::Erasing);
}

void Edit::OnDelete()
{
    FinishComposition();
    if (!Alive())
        return;
    const std::size_t caret = m_text.Caret();
    const Places places = Line().Places();
    if (!m_text.Selection().Empty())
        if (IsHeld(VK_SHIFT))
            Cut();
        else
            Erase(m_text.Selection(), EditKind::Other);
    else if (IsHeld(VK_CONTROL))
        Erase({caret, NextWord(places, caret)}, EditKind::Other);
    else
        Erase({caret, NextStop(places, caret)}, EditKind::Erasing);
}

void Edit::MoveSideways(int step)
{
    FinishComposition();
    if (!Alive())
        return;
    const bool shift = IsHeld(VK_SHIFT);
    if (IsHeld(VK_CONTROL))
        MoveTo(WordSideways(step), shift);
    else if (!shift && !m_text.Selection().Empty())
        MoveTo(SelectionSide(step), false);
    else
        MoveTo(Line().Moved(Caret(), step), shift);
}

/// Words follow one another in the direction of the text, which is the one that a single step takes.
CaretPlace Edit::WordSideways(int step)
{
    const std::size_t caret = m_text.Caret();
    const std::size_t next = Line().Moved(Caret(), step).index;
    const Places places = Line().Places();
    return next == caret ? Caret() : CaretPlace{next > caret ? NextWord(places, caret) : PreviousWord(places, caret)};
}

CaretPlace Edit::SelectionSide(int step)
{
    const TextSpan span = m_text.Selection();
    const bool leftToRight = Line().CaretX({span.begin}) <= Line().CaretX({span.end});
    return {leftToRight == (step < 0) ? span.begin : span.end};
}

void Edit::MoveTo(CaretPlace place, bool extend)
{
    m_text.Select(extend ? m_text.Anchor() : place.index, place.index);
    m_secondary = place.secondary;
    ScrollToCaret();
    ShowCaret();
    Invalidate();
    if (extend && !m_dragging)
        OfferMarked();
}

void Edit::MarkAll()
{
    MoveTo({0}, false);
    MoveTo({m_text.Text().size()}, true);
}

void Edit::TakeFocus()
{
    SetFocus(Window());
    if (Alive())
        FinishComposition();
}

void Edit::OnPress(POINT point, bool shift)
{
    TakeFocus();
    if (!Alive())
        return;
    const bool third = m_doubleClickTime != 0 &&
                       static_cast<DWORD>(GetMessageTime()) - m_doubleClickTime <= GetDoubleClickTime() &&
                       std::abs(point.x - m_doubleClickPoint.x) <= GetSystemMetrics(SM_CXDOUBLECLK) / 2 &&
                       std::abs(point.y - m_doubleClickPoint.y) <= GetSystemMetrics(SM_CYDOUBLECLK) / 2;
    m_doubleClickTime = 0;
    m_draggedWord.reset();
    if (third)
    {
        MarkAll();
        return;
    }
    SetCapture(Window());
    m_dragging = true;
    m_dragPoint = point;
    MoveTo(PlaceAt(point.x), shift);
}

void Edit::OnDoubleClick(POINT point)
{
    TakeFocus();
    if (!Alive())
        return;
    m_doubleClickTime = std::max<DWORD>(static_cast<DWORD>(GetMessageTime()), 1);
    m_doubleClickPoint = point;
    SetCapture(Window());
    m_dragging = true;
    m_dragPoint = point;
    m_draggedWord = WordAround(Line().Places(), PlaceAt(point.x).index);
    MoveTo({m_draggedWord->begin}, false);
    MoveTo({m_draggedWord->end}, true);
}

void Edit::OnDrag(POINT point)
{
    if (!m_dragging || (point.x == m_dragPoint.x && point.y == m_dragPoint.y))
        return;
    m_dragPoint = point;
    m_doubleClickTime = 0;
    ExtendByPointer(point.x);
}

void Edit::EndDrag()
{
    if (!std::exchange(m_dragging, false))
        return;
    KillTimer(Window(), kScrollTimer);
    if (GetCapture() == Window())
        ReleaseCapture();
    if (Alive())
        OfferMarked();
}

void Edit::ExtendByPointer(int x)
{
    // Beyond what is seen, text comes into view by and by.
    const RECT area = TextArea();
    const int beyond = Line().EmHeight();
    if (x < area.left || x > area.right)
        SetTimer(Window(), kScrollTimer, kScrollInterval, nullptr);
    else
        KillTimer(Window(), kScrollTimer);
    const CaretPlace place = PlaceAt(std::clamp<int>(x, area.left - beyond, area.right + beyond));
    if (!m_draggedWord)
    {
        MoveTo(place, true);
        return;
    }
    // Words are taken whole, the first one among them.
    const TextSpan word = WordAround(Line().Places(), place.index);
    const bool before = word.begin < m_draggedWord->begin;
    m_text.Select(before ? m_draggedWord->end : m_draggedWord->begin, m_text.Caret());
    MoveTo({before ? word.begin : std::max(word.end, m_draggedWord->end)}, true);
}

} // namespace platform
