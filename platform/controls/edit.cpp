// The edit control: its messages, its text, the clipboard.
#include "platform/controls/edit.h"

#include "platform/base/clock.h"
#include "platform/base/text.h"
#include "platform/screen/selections.h"
#include "platform/windowing/clipboard.h"
#include "platform/windowing/window_class.h"

#include <algorithm>
#include <utility>

namespace platform
{
namespace
{

constinit SystemClass g_class{TEXT("Edit"), &Edit::Procedure, CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW};

[[gnu::constructor]] void OfferClass()
{
    OfferSystemClass(g_class);
}

constexpr std::size_t kLargestLimit = 0x7FFFFFFE; // what EM_LIMITTEXT with 0 means

constexpr char kMarkedTarget[] = "UTF8_STRING";
constexpr std::uint64_t kPatience = 1000;      // milliseconds
constexpr std::size_t kLargestPaste = 1 << 20; // bytes

/// Marked text for others to paste.
class MarkedText final : public screen::SelectionSource
{
public:
    explicit MarkedText(std::u16string_view text) : m_text(Utf8FromUtf16(text)) {}
    std::vector<std::string> Targets() const override { return {kMarkedTarget, "text/plain;charset=utf-8"}; }
    std::optional<std::string> Content(std::string_view) const override { return m_text; }

private:
    std::string m_text;
};

/// As much of a text as `room` units hold, without half of a surrogate pair.
std::u16string_view Fitting(std::u16string_view text, std::size_t room)
{
    std::size_t length = std::min(text.size(), room);
    const bool cutsPair = length > 0 && length < text.size() && (text[length - 1] & 0xFC00) == 0xD800;
    return text.substr(0, cutsPair ? length - 1 : length);
}

} // namespace

LRESULT Edit::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_CREATE:
    case WM_SETTEXT:
    case WM_GETTEXT:
    case WM_GETTEXTLENGTH:
        return HandleText(message, wParam, lParam);
    case WM_CUT:
    case WM_COPY:
    case WM_PASTE:
    case WM_CLEAR:
    case WM_UNDO:
    case EM_UNDO:
        return HandleCommand(message);
    case WM_SETFONT:
    case WM_GETFONT:
    case WM_GETDLGCODE:
    case WM_ENABLE:
    case WM_SIZE:
    case WM_ERASEBKGND:
    case WM_PAINT:
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_TIMER:
    case WM_CONTEXTMENU:
    case WM_SETCURSOR:
    case WM_IME_COMPOSITION:
        return HandleState(message, wParam, lParam);
    default:
        return message >= EM_GETSEL && message <= EM_CHARFROMPOS ? HandleEdit(message, wParam, lParam)
                                                                 : HandleInput(message, wParam, lParam);
    }
}

LRESULT Edit::HandleText(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_CREATE:
        if (LPCWSTR text = reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpszName; text != nullptr)
            m_text.SetText(text);
        return 0;
    case WM_SETTEXT:
        SetText(reinterpret_cast<LPCWSTR>(lParam));
        return TRUE;
    case WM_GETTEXT:
        return CopyText(wParam, reinterpret_cast<LPWSTR>(lParam));
    default:
        return static_cast<LRESULT>(m_text.Text().size());
    }
}

LRESULT Edit::HandleCommand(UINT message)
{
    switch (message)
    {
    case WM_CUT:
        Cut();
        return 0;
    case WM_COPY:
        Copy();
        return 0;
    case WM_PASTE:
        Paste();
        return 0;
    case WM_CLEAR:
        Erase(m_text.Selection(), EditKind::Other);
        return 0;
    default:
        return Undo();
    }
}

LRESULT Edit::HandleEdit(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case EM_GETSEL:
        return GetSelection(reinterpret_cast<DWORD*>(wParam), reinterpret_cast<DWORD*>(lParam));
    case EM_SETSEL:
        SetSelection(static_cast<int>(wParam), static_cast<int>(lParam));
        return 0;
    case EM_SCROLLCARET:
        ScrollToCaret();
        return 1;
    case EM_REPLACESEL:
        if (lParam != 0)
            Replace(m_text.Selection(), reinterpret_cast<LPCWSTR>(lParam), EditKind::Other, wParam != 0);
        return 0;
    case EM_GETMODIFY:
        return m_modified;
    case EM_SETMODIFY:
        m_modified = wParam != 0;
        return 0;
    case EM_LIMITTEXT:
        m_limit = wParam != 0 ? static_cast<std::size_t>(wParam) : kLargestLimit;
        return 0;
    case EM_GETLIMITTEXT:
        return static_cast<LRESULT>(m_limit);
    case EM_CANUNDO:
        return m_text.CanUndo();
    case EM_EMPTYUNDOBUFFER:
        m_text.ForgetUndo();
        return 0;
    case EM_SETREADONLY:
        SetReadOnly(wParam != 0);
        return TRUE;
    case EM_POSFROMCHAR:
        return PositionOf(wParam);
    case EM_CHARFROMPOS:
    {
        RECT client;
        GetClientRect(Window(), &client);
        const POINT point = PointFrom(lParam);
        return PtInRect(&client, point) ? MAKELONG(PlaceAt(point.x).index, 0) : -1;
    }
    default:
        return 0;
    }
}

LRESULT Edit::HandleState(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_SETFONT:
        m_font = reinterpret_cast<HFONT>(wParam);
        m_line.reset();
        m_scroll = 0;
        Invalidate();
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(m_font);
    case WM_GETDLGCODE:
        return DLGC_HASSETSEL | DLGC_WANTCHARS | DLGC_WANTARROWS;
    case WM_ENABLE:
        Invalidate();
        return 0;
    case WM_SIZE:
        m_scroll = 0;
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        OnFocus(message == WM_SETFOCUS);
        return 0;
    case WM_TIMER:
        OnTimer(wParam);
        return 0;
    case WM_IME_COMPOSITION:
        OnComposition();
        return 0;
    case WM_SETCURSOR:
        if (LOWORD(lParam) != HTCLIENT)
            return Default(message, wParam, lParam);
        SetCursor(LoadCursorW(nullptr, IDC_IBEAM));
        return TRUE;
    default:
        ShowMenu(lParam);
        return 0;
    }
}

bool Edit::Tell(UINT code)
{
    SendMessageW(GetParent(Window()), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(Window()), code),
                 reinterpret_cast<LPARAM>(Window()));
    return Alive();
}

void Edit::SetText(LPCWSTR text)
{
    m_text.SetText(text != nullptr ? text : u"");
    m_modified = false;
    m_scroll = 0;
    m_secondary = false;
    TextChanged();
}

LRESULT Edit::CopyText(std::size_t capacity, LPWSTR buffer) const
{
    if (capacity == 0 || buffer == nullptr)
        return 0;
    const std::size_t copied = m_text.Text().copy(buffer, capacity - 1);
    buffer[copied] = 0;
    return static_cast<LRESULT>(copied);
}

LRESULT Edit::GetSelection(DWORD* begin, DWORD* end) const
{
    const TextSpan span = m_text.Selection();
    if (begin != nullptr)
        *begin = static_cast<DWORD>(span.begin);
    if (end != nullptr)
        *end = static_cast<DWORD>(span.end);
    return span.end > 0xFFFF ? -1 : static_cast<LRESULT>(MAKELONG(span.begin, span.end));
}

void Edit::SetSelection(int anchor, int caret)
{
    const std::size_t end = m_text.Text().size();
    const auto place = [&](int value) { return value < 0 ? end : std::min(static_cast<std::size_t>(value), end); };
    if (anchor < 0)
        m_text.Select(m_text.Caret(), m_text.Caret());
    else
        m_text.Select(place(anchor), place(caret));
    m_secondary = false;
    Invalidate();
}

void Edit::SetReadOnly(bool readOnly)
{
    const DWORD style = Style() & ~static_cast<DWORD>(ES_READONLY);
    SetWindowLongPtrW(Window(), GWL_STYLE, static_cast<LONG_PTR>(style | (readOnly ? ES_READONLY : 0)));
    if (Alive())
        Invalidate();
}

void Edit::Replace(TextSpan span, std::u16string_view text, EditKind kind, bool undoable)
{
    const std::size_t kept = m_text.Text().size() - (span.end - span.begin);
    const std::u16string_view whole = text;
    text = Fitting(whole, m_limit > kept ? m_limit - kept : 0);
    if ((Style() & ES_AUTOHSCROLL) == 0 && !text.empty())
    {
        const std::u16string result = std::u16string(m_text.Text()).replace(span.begin, span.end - span.begin, text);
        const RECT area = TextArea();
        if (ShapedLine(m_font, result).Width() > area.right - area.left - CaretWidth())
            text = {};
    }
    if (text.size() < whole.size() && (!Tell(EN_MAXTEXT) || (text.empty() && span.Empty())))
        return;
    const std::size_t length = m_text.Text().size(); // the parent may have set another text
    span = {std::min(span.begin, length), std::min(span.end, length)};
    m_text.Replace(span, text, kind, undoable);
    m_modified = true;
    m_line.reset();
    m_secondary = Line().PlaceAfter(m_text.Caret()).secondary;
    TextChanged();
}

void Edit::TextChanged()
{
    m_line.reset();
    ScrollToCaret();
    Invalidate();
    if (Tell(EN_UPDATE))
    {
        ShowCaret();
        Tell(EN_CHANGE);
    }
}

void Edit::Erase(TextSpan span, EditKind kind)
{
    if (!ReadOnly() && !span.Empty())
        Replace(span, {}, kind);
}

bool Edit::Undo()
{
    if (ReadOnly() || !m_text.Undo())
        return false;
    m_modified = true;
    m_secondary = false;
    TextChanged();
    return true;
}

void Edit::Redo()
{
    if (ReadOnly() || !m_text.Redo())
        return;
    m_modified = true;
    m_secondary = false;
    TextChanged();
}

void Edit::Copy()
{
    if (!m_text.Selection().Empty())
        PutTextOnClipboard(m_text.SelectedText());
}

void Edit::Cut()
{
    // What did not get to the clipboard is not taken away.
    const TextSpan span = m_text.Selection();
    if (!ReadOnly() && !span.Empty() && PutTextOnClipboard(m_text.SelectedText()))
        Replace(span, {}, EditKind::Other);
}

void Edit::Paste()
{
    if (ReadOnly())
        return;
    const std::optional<std::u16string> text = ClipboardText();
    const std::u16string_view line = FirstLine(text ? std::u16string_view(*text) : std::u16string_view());
    if (!line.empty())
        Replace(m_text.Selection(), line, EditKind::Other);
}

void Edit::OfferMarked()
{
    if (!m_text.Selection().Empty())
        screen::OfferSelection(screen::Selection::Primary, std::make_shared<MarkedText>(m_text.SelectedText()));
}

void Edit::PasteMarked(POINT point)
{
    const auto utf8 =
        screen::ReadSelection(screen::Selection::Primary, kMarkedTarget, NowMs() + kPatience, kLargestPaste);
    TakeFocus();
    if (!Alive())
        return;
    MoveTo(PlaceAt(point.x), false);
    const std::u16string text = Utf16FromUtf8(utf8.value_or(""));
    if (!ReadOnly() && !FirstLine(text).empty())
        Replace(m_text.Selection(), FirstLine(text), EditKind::Other);
}

} // namespace platform
