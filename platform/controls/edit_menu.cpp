// The edit control's context menu.
#include "platform/controls/edit.h"

#include "platform/windowing/clipboard.h"

namespace platform
{

void Edit::ShowMenu(LPARAM position)
{
    POINT at = PointFrom(position);
    if (position == -1)
    {
        const RECT caret = CaretRect();
        at = {caret.left, caret.bottom};
        ClientToScreen(Window(), &at);
    }
    const bool writable = !ReadOnly();
    const bool marked = !m_text.Selection().Empty();
    const bool allMarked = m_text.SelectedText().size() == m_text.Text().size();
    struct Entry
    {
        UINT message; ///< what choosing it sends, and its identifier
        LPCWSTR text;
        bool enabled;
    };
    const Entry entries[] = {
        {WM_UNDO, TEXT("&Undo\tCtrl+Z"), writable && m_text.CanUndo()},
        {0, nullptr, false},
        {WM_CUT, TEXT("Cu&t\tCtrl+X"), writable && marked},
        {WM_COPY, TEXT("&Copy\tCtrl+C"), marked},
        {WM_PASTE, TEXT("&Paste\tCtrl+V"), writable && ClipboardMayHoldText()},
        {WM_CLEAR, TEXT("&Delete\tDel"), writable && marked},
        {0, nullptr, false},
        {EM_SETSEL, TEXT("Select &All\tCtrl+A"), !allMarked},
    };
    HMENU menu = CreatePopupMenu();
    for (const Entry& entry : entries)
        AppendMenuW(menu, entry.message == 0 ? MF_SEPARATOR : MF_STRING | (entry.enabled ? MF_ENABLED : MF_GRAYED),
                    entry.message, entry.text);
    const BOOL chosen = TrackPopupMenuEx(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, at.x, at.y, Window(), nullptr);
    DestroyMenu(menu);
    if (Alive() && chosen != 0)
        SendMessageW(Window(), static_cast<UINT>(chosen), 0, chosen == EM_SETSEL ? -1 : 0);
}

} // namespace platform
