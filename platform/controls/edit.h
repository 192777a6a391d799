// The edit control: one line of text to type in.
//
// Its rules are in edit_text.h, this is the rest. Not implemented: several lines, ES_PASSWORD and other ways to show or
// change what is typed, ES_RIGHT and ES_CENTER, margins and formatting rectangles, WM_CTLCOLOREDIT. Undoing goes back
// more than one step, so that EM_UNDO twice takes back two changes instead of none.
#pragma once

#include "platform/controls/control_object.h"
#include "platform/controls/edit_text.h"
#include "platform/drawing/shaped_line.h"

#include <optional>

namespace platform
{

class Edit final : public ControlObject
{
public:
    using ControlObject::ControlObject;

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return Route<Edit>(window, message, wParam, lParam);
    }

private:
    static constexpr UINT_PTR kBlinkTimer = 1;
    static constexpr UINT_PTR kScrollTimer = 2; ///< while text is marked beyond what is seen

    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    LRESULT HandleText(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleEdit(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleCommand(UINT message);
    LRESULT HandleState(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleInput(UINT message, WPARAM wParam, LPARAM lParam);

    // --- text and selection (edit.cpp)
    DWORD Style() const { return static_cast<DWORD>(GetWindowLongPtrW(Window(), GWL_STYLE)); }
    bool ReadOnly() const { return (Style() & ES_READONLY) != 0; }
    /// Sends WM_COMMAND; false when the window is gone afterwards.
    bool Tell(UINT code);
    void SetText(LPCWSTR text);
    LRESULT CopyText(std::size_t capacity, LPWSTR buffer) const;
    LRESULT GetSelection(DWORD* begin, DWORD* end) const;
    /// A negative place is the end of the text; a negative `anchor` marks nothing.
    void SetSelection(int anchor, int caret);
    void SetReadOnly(bool readOnly);
    /// Replaces a span with as much of the text as the limit leaves room for.
    void Replace(TextSpan span, std::u16string_view text, EditKind kind, bool undoable = true);
    /// Tells the parent and shows the new text; the caret is where it belongs.
    void TextChanged();
    void Erase(TextSpan span, EditKind kind);
    bool Undo();
    void Redo();
    void Copy();
    void Cut();
    void Paste();
    /// What is marked can be pasted with the middle button.
    void OfferMarked();
    void PasteMarked(POINT point);
    /// `position` as of WM_CONTEXTMENU (edit_menu.cpp).
    void ShowMenu(LPARAM position);

    // --- keys and mouse (edit_input.cpp)
    void OnKey(WPARAM key);
    void OnChar(char16_t unit);
    void Type(std::u16string_view text);
    void OnBackspace(bool word);
    void OnDelete();
    void MoveSideways(int step);
    CaretPlace WordSideways(int step);
    CaretPlace SelectionSide(int step);
    void MoveTo(CaretPlace place, bool extend);
    void MarkAll();
    /// With the focus comes the end of a composition; the window may be gone afterwards.
    void TakeFocus();
    void OnPress(POINT point, bool shift);
    void OnDoubleClick(POINT point);
    void OnDrag(POINT point);
    void EndDrag();
    void ExtendByPointer(int x);
    void OnComposition();
    /// Types what is being composed as it is.
    void FinishComposition();

    // --- where things are, and painting (edit_paint.cpp)
    /// The line as it is shown, with what is being composed in the selection's place; laid out when first asked for
    /// after a change.
    const ShapedLine& Line();
    CaretPlace Caret() const;
    CaretPlace PlaceAt(int x) { return Line().PlaceAt(x - TextArea().left + m_scroll); }
    int CaretWidth();
    /// Where text is shown; client coordinates.
    RECT TextArea();
    RECT CaretRect();
    LRESULT PositionOf(std::size_t index);
    void ScrollToCaret();
    /// After a move of the caret: it is seen, and solid for a while.
    void ShowCaret();
    void OnTimer(WPARAM id);
    void Invalidate() { InvalidateRect(Window(), nullptr, FALSE); }
    void OnPaint();
    void Paint(HDC dc);
    void OnFocus(bool focus);

    EditText m_text;
    std::optional<ShapedLine> m_line;
    HFONT m_font = nullptr;
    std::size_t m_limit = 30000; ///< units; Windows' own first limit
    bool m_modified = false;
    bool m_secondary = false;     ///< the caret's side where the direction changes (CaretPlace)
    char16_t m_highSurrogate = 0; ///< typed, its second half still to come
    int m_scroll = 0;             ///< pixels of the line that are hidden at the left

    std::u16string m_composition; ///< by the input method, not in the text yet
    std::size_t m_compositionCaret = 0;

    bool m_focused = false;
    bool m_caretOn = false;
    int m_blinks = 0; ///< since the last move

    bool m_dragging = false;
    std::optional<TextSpan> m_draggedWord; ///< the word that a double click began with
    POINT m_dragPoint{};
    DWORD m_doubleClickTime = 0; ///< of a double click that a third may follow; 0 for none
    POINT m_doubleClickPoint{};
};

} // namespace platform
