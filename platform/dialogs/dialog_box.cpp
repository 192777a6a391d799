// Making a dialog out of its template, and running it until it ends.
//
// Not implemented: dialogs that are not modal, WM_ENTERIDLE.
#include "platform/base/fault_points.h"
#include "platform/dialogs/dialog.h"
#include "platform/dialogs/dialog_description.h"
#include "platform/windowing/window.h"

#include <algorithm>

namespace platform
{
namespace
{

constexpr DWORD kNoParentNotify = 0x00000004; // WS_EX_NOPARENTNOTIFY

/// "MS Shell Dlg" stands for the font of the user's desktop, its size included.
HFONT CreateDialogFont(const DialogFont& wanted)
{
    if (std::u16string_view(wanted.face).starts_with(u"MS Shell Dlg"))
        return CreateMessageFont();
    constexpr int kPointsPerInch = 72;
    const HDC dc = GetDC(nullptr);
    const int height = -MulDiv(wanted.points, GetDeviceCaps(dc, LOGPIXELSY), kPointsPerInch);
    ReleaseDC(nullptr, dc);
    return CreateFontW(height, 0, 0, 0, wanted.weight, wanted.italic, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH, wanted.face);
}

/// Position and size are mapped each by itself, so that equal controls are equally large wherever they are.
RECT PlaceInPixels(const RECT& units, SIZE base)
{
    const RECT size = DialogToPixels({0, 0, Width(units), Height(units)}, base);
    const RECT corner = DialogToPixels(units, base);
    return {corner.left, corner.top, corner.left + size.right, corner.top + size.bottom};
}

/// In the middle of its monitor's work area or where the template says, from the owner's corner on.
RECT PlaceOf(const DialogDescription& description, SIZE units, HWND owner)
{
    RECT place = PlaceInPixels(description.bounds, units);
    AdjustWindowRectEx(&place, description.style, FALSE, description.exStyle);
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    const HWND near = owner != nullptr ? owner : GetActiveWindow();
    const bool known = GetMonitorInfoW(MonitorFromWindow(near, MONITOR_DEFAULTTOPRIMARY), &info) != FALSE;
    const RECT& work = info.rcWork;
    if ((description.style & DS_CENTER) != 0 && known)
    {
        OffsetRect(&place, std::max(work.left, (work.left + work.right - Width(place)) / 2) - place.left,
                   std::max(work.top, (work.top + work.bottom - Height(place)) / 2) - place.top);
    }
    else if (owner != nullptr)
    {
        MapWindowPoints(owner, nullptr, reinterpret_cast<POINT*>(&place), 2);
    }
    return place;
}

bool CreateControl(HWND dialog, const DialogItem& item, HINSTANCE instance)
{
    const Dialog* state = FindDialog(dialog);
    if (state == nullptr || item.className == nullptr)
        return false;
    const HFONT font = state->font;
    const RECT place = PlaceInPixels(item.bounds, state->units);
    const LPCWSTR text = IS_INTRESOURCE(item.text) ? nullptr : item.text;
    const HWND control = CreateWindowExW(item.exStyle | kNoParentNotify, item.className, text, item.style | WS_CHILD,
                                         place.left, place.top, Width(place), Height(place), dialog,
                                         reinterpret_cast<HMENU>(static_cast<UINT_PTR>(item.id)), instance, nullptr);
    if (control == nullptr)
        return false;
    if (font != nullptr)
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    Dialog* after = FindDialog(dialog);
    if (after != nullptr && (DialogCode(control) & DLGC_DEFPUSHBUTTON) != 0)
        after->defaultId = static_cast<int>(item.id);
    return after != nullptr;
}

/// Asks the program to fill the dialog, and notes who is to have the focus when it shows.
void Initialize(HWND dialog, DLGPROC procedure, LPARAM param)
{
    SetWindowLongPtrW(dialog, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(procedure));
    if (const Dialog* state = FindDialog(dialog); state != nullptr && state->font != nullptr)
        SendMessageW(dialog, WM_SETFONT, reinterpret_cast<WPARAM>(state->font), FALSE);
    const auto first = reinterpret_cast<WPARAM>(GetNextDlgTabItem(dialog, nullptr, FALSE));
    const bool usualFocus = SendMessageW(dialog, WM_INITDIALOG, first, param) != 0;
    // The answer may have come from a dialog with other controls in front than before.
    const HWND focus = usualFocus ? GetNextDlgTabItem(dialog, nullptr, FALSE) : GetFocus();
    Dialog* state = FindDialog(dialog);
    if (state == nullptr || state->run->ended || !IsChild(dialog, focus))
        return;
    state->lastFocus = focus;
    if (usualFocus)
        SelectAll(focus);
}

/// Null when the dialog or one of its controls cannot be made: a dialog must not lack an answer.
HWND CreateDialogWindow(const DialogDescription& description, HINSTANCE instance, HWND owner, DialogRun& run)
{
    auto made = std::make_unique<Dialog>();
    made->run = &run;
    made->font = description.font ? CreateDialogFont(*description.font) : nullptr;
    made->units = DialogUnits(made->font);
    const RECT place = PlaceOf(description, made->units, owner);
    const DWORD frame = (description.style & DS_MODALFRAME) != 0 ? WS_EX_DLGMODALFRAME : 0;
    const HWND dialog =
        CreateDialogFrame(description.exStyle | frame, description.title,
                          description.style & ~static_cast<DWORD>(WS_VISIBLE), place, owner, instance, std::move(made));
    for (const DialogItem& item : description.items)
    {
        if (dialog != nullptr && !CreateControl(dialog, item, instance))
        {
            DestroyWindow(dialog);
            return nullptr;
        }
    }
    return dialog;
}

void Show(HWND dialog)
{
    ShowWindow(dialog, SW_SHOWNORMAL);
    if ((GetWindowLongPtrW(dialog, GWL_STYLE) & DS_SETFOREGROUND) != 0)
        SetForegroundWindow(dialog);
    RestoreFocus(dialog);
    UpdateDefaultButton(dialog);
}

/// Until the dialog has ended, or is gone.
void PumpDialog(HWND dialog, const DialogRun& run)
{
    while (!run.ended && IsWindow(dialog))
    {
        MSG message;
        const BOOL received = GetMessageW(&message, nullptr, 0, 0);
        if (received <= 0)
        {
            if (received == 0)
                PostQuitMessage(static_cast<int>(message.wParam)); // the quit is the outer loop's
            return;
        }
        if (!IsDialogMessageW(dialog, &message))
        {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

/// Enables the owner, unless it was disabled before. Before the dialog goes, so that the owner and not another
/// program's window gets the keyboard.
void ReleaseOwner(DialogRun& run)
{
    const HWND owner = std::exchange(run.disabled, nullptr);
    if (IsWindow(owner))
        EnableWindow(owner, TRUE);
}

INT_PTR RunDialog(const DialogDescription& description, HINSTANCE instance, HWND owner, DLGPROC procedure, LPARAM param)
{
    DialogRun run;
    run.disabled = owner != nullptr && !EnableWindow(owner, FALSE) ? owner : nullptr;
    const HWND dialog = CreateDialogWindow(description, instance, owner, run);
    if (dialog != nullptr)
        Initialize(dialog, procedure, param);
    if (!run.ended && IsWindow(dialog))
    {
        Show(dialog);
        PumpDialog(dialog, run);
    }
    ReleaseOwner(run);
    if (Dialog* state = FindDialog(dialog))
    {
        state->run = nullptr;
        DestroyWindow(dialog);
    }
    if (dialog == nullptr)
        return -1;
    return run.ended ? run.result : 0;
}

} // namespace
} // namespace platform

using namespace platform;

INT_PTR DialogBoxIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialogTemplate, HWND owner, DLGPROC procedure,
                                LPARAM initParam)
{
    if (FaultPoint("DialogBoxIndirectParamW"))
        return Fail<INT_PTR>(ERROR_NOT_ENOUGH_MEMORY, -1);
    if (dialogTemplate == nullptr || procedure == nullptr)
        return Fail<INT_PTR>(ERROR_INVALID_PARAMETER, -1);
    if (owner != nullptr && RequireWindow(owner) == nullptr)
        return 0; // documented: not -1
    const HWND root = owner != nullptr ? GetAncestor(owner, GA_ROOT) : nullptr;
    return RunDialog(ReadDialogTemplate(dialogTemplate), instance, root, procedure, initParam);
}

INT_PTR DialogBoxParamW(HINSTANCE instance, LPCWSTR templateName, HWND owner, DLGPROC procedure, LPARAM initParam)
{
    const HRSRC resource = FindResourceW(instance, templateName, RT_DIALOG);
    const HGLOBAL data = resource != nullptr ? LoadResource(instance, resource) : nullptr;
    if (data == nullptr)
        return -1;
    return DialogBoxIndirectParamW(instance, static_cast<LPCDLGTEMPLATEW>(LockResource(data)), owner, procedure,
                                   initParam);
}

BOOL EndDialog(HWND window, INT_PTR result)
{
    Dialog* dialog = FindDialog(window);
    if (dialog == nullptr || dialog->run == nullptr)
        return Fail(ERROR_INVALID_WINDOW_HANDLE, FALSE);
    dialog->run->ended = true;
    dialog->run->result = result;
    PostMessageW(nullptr, WM_NULL, 0, 0); // the loop may be waiting
    ReleaseOwner(*dialog->run);
    SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_HIDEWINDOW | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER);
    return TRUE;
}
