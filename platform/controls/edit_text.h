// What is edited: text, selection, and what can be undone. The rules of the edit control, without a window.
//
// Places are between UTF-16 units. What a person sees as one character, and where words are, is told by the line that
// the text has been laid out in (platform/services/text_line_service.h).
#pragma once

#include "platform/services/text_line_service.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

/// Of each place of a line: kCaretStop and so on.
using Places = std::span<const std::uint8_t>;

std::size_t NextStop(Places places, std::size_t from);
std::size_t PreviousStop(Places places, std::size_t from);
/// The next word's start, the end behind the last one.
std::size_t NextWord(Places places, std::size_t from);
/// The start of the word before, or of the one that the place is within.
std::size_t PreviousWord(Places places, std::size_t from);
/// The word, or what lies between two words, that begins or ends at the place or holds it.
TextSpan WordAround(Places places, std::size_t at);
/// Where Backspace takes characters from: the last character, but of combining marks and the like the last alone.
std::size_t BackspaceFrom(Places places, std::u16string_view text, std::size_t from);
/// The part that goes into a single line: up to the first line end.
std::u16string_view FirstLine(std::u16string_view text);

/// How a change came about; neighbouring changes of one kind are undone as one.
enum class EditKind : std::uint8_t
{
    Typing,
    Erasing,
    Other, ///< stands alone
};

class EditText
{
public:
    const std::u16string& Text() const { return m_text; }
    /// Where the selection begins to be marked, and where it ends: the caret.
    std::size_t Anchor() const { return m_anchor; }
    std::size_t Caret() const { return m_caret; }
    TextSpan Selection() const;
    std::u16string_view SelectedText() const;

    /// Another text altogether, with the caret before it; nothing is left to undo.
    void SetText(std::u16string_view text);
    /// Places beyond the end mean the end.
    void Select(std::size_t anchor, std::size_t caret);
    /// Puts text in a span's place, the caret behind it. `undoable` changes can be taken back; others forget the rest.
    void Replace(TextSpan span, std::u16string_view text, EditKind kind, bool undoable = true);
    /// What is typed next is undone by itself.
    void EndTyping() { m_open = false; }

    bool CanUndo() const { return m_done > 0; }
    /// Each false when there is nothing to do.
    bool Undo();
    bool Redo();
    void ForgetUndo();

private:
    struct Change
    {
        std::size_t at = 0;
        std::u16string removed;
        std::u16string inserted;
        EditKind kind = EditKind::Other;
        std::size_t anchorBefore = 0;
        std::size_t caretBefore = 0;
    };

    void Apply(std::size_t at, std::size_t length, std::u16string_view text);
    void Remember(TextSpan span, std::u16string_view text, EditKind kind);
    bool Joins(const Change& last, TextSpan span, std::u16string_view text, EditKind kind) const;

    std::u16string m_text;
    std::size_t m_anchor = 0;
    std::size_t m_caret = 0;
    std::vector<Change> m_changes;
    std::size_t m_done = 0; ///< the first so many stand, the rest is undone
    bool m_open = false;    ///< the last change may take in the next
};

} // namespace platform
