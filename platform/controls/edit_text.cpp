// The rules of the edit control.
#include "platform/controls/edit_text.h"

#include <algorithm>

namespace platform
{
namespace
{

bool Is(Places places, std::size_t index, std::uint8_t what)
{
    return (places[index] & what) != 0;
}

bool IsSpace(char16_t unit)
{
    return unit == u' ' || unit == u'\t' || unit == u'\u00A0' || unit == u'\u3000';
}

} // namespace

std::size_t NextStop(Places places, std::size_t from)
{
    const std::size_t end = places.size() - 1;
    for (std::size_t i = from + 1; i < end; ++i)
        if (Is(places, i, kCaretStop))
            return i;
    return end;
}

std::size_t PreviousStop(Places places, std::size_t from)
{
    for (std::size_t i = from; i-- > 1;)
        if (Is(places, i, kCaretStop))
            return i;
    return 0;
}

std::size_t NextWord(Places places, std::size_t from)
{
    const std::size_t end = places.size() - 1;
    for (std::size_t i = from + 1; i < end; ++i)
        if (Is(places, i, kWordStart))
            return i;
    return end;
}

std::size_t PreviousWord(Places places, std::size_t from)
{
    for (std::size_t i = from; i-- > 1;)
        if (Is(places, i, kWordStart))
            return i;
    return 0;
}

TextSpan WordAround(Places places, std::size_t at)
{
    const std::size_t end = places.size() - 1;
    constexpr std::uint8_t kEdge = kWordStart | kWordEnd;
    // Right behind a word it is still meant: the pointer was on its last character's second half.
    const bool behind = at == end || (Is(places, at, kWordEnd) && !Is(places, at, kWordStart));
    std::size_t begin = behind ? PreviousStop(places, at) : at;
    while (begin > 0 && !Is(places, begin, kEdge))
        --begin;
    std::size_t after = std::min(begin + 1, end);
    while (after < end && !Is(places, after, kEdge))
        ++after;
    return {begin, after};
}

std::size_t BackspaceFrom(Places places, std::u16string_view text, std::size_t from)
{
    if (from == 0 || !Is(places, from, kErasesPart))
        return PreviousStop(places, from);
    const bool pair = from >= 2 && (text[from - 1] & 0xFC00) == 0xDC00 && (text[from - 2] & 0xFC00) == 0xD800;
    return from - (pair ? 2 : 1);
}

std::u16string_view FirstLine(std::u16string_view text)
{
    constexpr std::u16string_view kEnds(u"\r\n\0", 3);
    return text.substr(0, text.find_first_of(kEnds));
}

TextSpan EditText::Selection() const
{
    return {std::min(m_anchor, m_caret), std::max(m_anchor, m_caret)};
}

std::u16string_view EditText::SelectedText() const
{
    const TextSpan span = Selection();
    return std::u16string_view(m_text).substr(span.begin, span.end - span.begin);
}

void EditText::SetText(std::u16string_view text)
{
    m_text = text;
    m_anchor = m_caret = 0;
    ForgetUndo();
}

void EditText::Select(std::size_t anchor, std::size_t caret)
{
    m_anchor = std::min(anchor, m_text.size());
    m_caret = std::min(caret, m_text.size());
    m_open = false;
}

void EditText::Apply(std::size_t at, std::size_t length, std::u16string_view text)
{
    m_text.replace(at, length, text);
    m_anchor = m_caret = at + text.size();
}

void EditText::Replace(TextSpan span, std::u16string_view text, EditKind kind, bool undoable)
{
    if (undoable)
        Remember(span, text, kind);
    else
        ForgetUndo();
    Apply(span.begin, span.end - span.begin, text);
}

/// Typing goes on behind itself until a new word begins; erasing to either side of where it has been.
bool EditText::Joins(const Change& last, TextSpan span, std::u16string_view text, EditKind kind) const
{
    if (!m_open || last.kind != kind || m_done != m_changes.size())
        return false;
    if (kind == EditKind::Typing)
    {
        const bool newWord = !last.inserted.empty() && IsSpace(last.inserted.back()) && !IsSpace(text.front());
        return span.Empty() && span.begin == last.at + last.inserted.size() && !newWord;
    }
    return kind == EditKind::Erasing && (span.end == last.at || span.begin == last.at);
}

void EditText::Remember(TextSpan span, std::u16string_view text, EditKind kind)
{
    const std::u16string removed = m_text.substr(span.begin, span.end - span.begin);
    if (removed.empty() && text.empty())
        return;
    if (m_done > 0 && Joins(m_changes[m_done - 1], span, text, kind))
    {
        Change& last = m_changes[m_done - 1];
        last.inserted += text;
        last.removed.insert(span.begin < last.at ? 0 : last.removed.size(), removed);
        last.at = std::min(last.at, span.begin);
        return;
    }
    m_changes.resize(m_done);
    m_changes.push_back({span.begin, removed, std::u16string(text), kind, m_anchor, m_caret});
    m_done = m_changes.size();
    m_open = kind != EditKind::Other;
}

bool EditText::Undo()
{
    if (m_done == 0)
        return false;
    const Change& change = m_changes[--m_done];
    Apply(change.at, change.inserted.size(), change.removed);
    Select(change.anchorBefore, change.caretBefore);
    return true;
}

bool EditText::Redo()
{
    if (m_done == m_changes.size())
        return false;
    const Change& change = m_changes[m_done++];
    Apply(change.at, change.removed.size(), change.inserted);
    m_open = false;
    return true;
}

void EditText::ForgetUndo()
{
    m_changes.clear();
    m_done = 0;
    m_open = false;
}

} // namespace platform
