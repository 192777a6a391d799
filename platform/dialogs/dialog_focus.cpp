// Who has the focus in a dialog, who is next, and which button is the default one.
#include "platform/dialogs/dialog.h"

#include "platform/windowing/window.h"

#include <algorithm>

namespace platform
{
namespace
{

constexpr UINT kSelect = 0x00B1; // EM_SETSEL

/// The dialog's controls in their tab order.
std::vector<HWND> ControlsOf(HWND dialog)
{
    const Window* window = RequireWindow(dialog);
    return window != nullptr ? HandlesOf(window->children) : std::vector<HWND>();
}

bool HasStyle(HWND window, DWORD style)
{
    return (static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE)) & style) != 0;
}

/// The first control behind `start` (or before it) that is wanted, around the end of the list; `start` itself comes
/// last. A start that is not in the list stands before its first and behind its last control.
template <typename Wanted>
HWND NextAround(const std::vector<HWND>& controls, HWND start, bool previous, Wanted wanted)
{
    const auto count = static_cast<std::ptrdiff_t>(controls.size());
    const std::ptrdiff_t found = std::find(controls.begin(), controls.end(), start) - controls.begin();
    std::ptrdiff_t at = found != count ? found : previous ? 0 : -1;
    for (std::ptrdiff_t i = 0; i < count; ++i)
    {
        at = (at + (previous ? count - 1 : 1)) % count;
        const HWND control = controls[static_cast<std::size_t>(at)];
        if (wanted(control))
            return control;
    }
    return found != count ? start : nullptr;
}

/// The controls from the last one with WS_GROUP up to `control` to the one before the next with it.
std::vector<HWND> GroupOf(const std::vector<HWND>& controls, HWND control)
{
    const auto startsGroup = [](HWND candidate) { return HasStyle(candidate, WS_GROUP); };
    auto begin = std::find(controls.begin(), controls.end(), control);
    if (begin == controls.end())
        begin = controls.begin();
    const auto end = begin != controls.end() ? std::find_if(begin + 1, controls.end(), startsGroup) : begin;
    while (begin != controls.begin() && !startsGroup(*begin))
        --begin;
    return {begin, end};
}

void SetButtonStyle(HWND button, DWORD style)
{
    SendMessageW(button, BM_SETSTYLE, style, TRUE);
}

} // namespace

UINT DialogCode(HWND control)
{
    return control != nullptr ? static_cast<UINT>(SendMessageW(control, WM_GETDLGCODE, 0, 0)) : 0;
}

bool CanTakeFocus(HWND control)
{
    return HasStyle(control, WS_VISIBLE) && !HasStyle(control, WS_DISABLED);
}

void SelectAll(HWND control)
{
    if ((DialogCode(control) & DLGC_HASSETSEL) != 0)
        SendMessageW(control, kSelect, 0, -1);
}

void FocusControl(HWND control)
{
    SelectAll(control);
    SetFocus(control);
}

void RestoreFocus(HWND window)
{
    const Dialog* dialog = FindDialog(window);
    if (dialog == nullptr)
        return;
    const HWND last = dialog->lastFocus;
    if (IsChild(window, last) && CanTakeFocus(last))
        SetFocus(last);
    else if (const HWND first = GetNextDlgTabItem(window, nullptr, FALSE))
        FocusControl(first);
}

void UpdateDefaultButton(HWND window)
{
    const HWND focus = GetFocus();
    Dialog* dialog = FindDialog(window);
    if (dialog == nullptr || !IsChild(window, focus) || std::exchange(dialog->defaultSeenFor, focus) == focus)
        return;
    const int own = dialog->defaultId;
    const UINT push = DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON;
    const HWND wanted = (DialogCode(focus) & push) != 0 ? focus : GetDlgItem(window, own);
    for (const HWND control : ControlsOf(window))
    {
        const UINT code = DialogCode(control);
        if (control == wanted && (code & DLGC_UNDEFPUSHBUTTON) != 0)
            SetButtonStyle(control, BS_DEFPUSHBUTTON);
        else if (control != wanted && (code & DLGC_DEFPUSHBUTTON) != 0)
            SetButtonStyle(control, BS_PUSHBUTTON);
    }
}

void SetDefaultId(HWND window, int id)
{
    Dialog* dialog = FindDialog(window);
    if (dialog == nullptr)
        return;
    const HWND before = GetDlgItem(window, std::exchange(dialog->defaultId, id));
    const HWND after = GetDlgItem(window, id);
    if (before != after && (DialogCode(before) & DLGC_DEFPUSHBUTTON) != 0)
        SetButtonStyle(before, BS_PUSHBUTTON);
    if ((DialogCode(after) & DLGC_UNDEFPUSHBUTTON) != 0)
        SetButtonStyle(after, BS_DEFPUSHBUTTON);
}

} // namespace platform

using namespace platform;

HWND GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous)
{
    return NextAround(
        ControlsOf(dialog), control, previous != FALSE,
        [](HWND next) { return CanTakeFocus(next) && HasStyle(next, WS_TABSTOP); });
}

HWND GetNextDlgGroupItem(HWND dialog, HWND control, BOOL previous)
{
    return NextAround(
        GroupOf(ControlsOf(dialog), control), control, previous != FALSE,
        [](HWND next) { return CanTakeFocus(next) && (DialogCode(next) & DLGC_STATIC) == 0; });
}
