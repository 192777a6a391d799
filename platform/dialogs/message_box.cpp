// The message box: a dialog with a text, a picture that says of what kind it is, and a row of buttons.
//
// Not implemented: the help button, the service and default-desktop kinds, reading from right to left.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/dialogs/dialog.h"
#include "platform/dialogs/dialog_template.h"
#include "platform/dialogs/message_box_layout.h"
#include "platform/windowing/clipboard.h"

#include <algorithm>
#include <string>

namespace platform
{
namespace
{

constexpr int kTextId = 0xFFFF;
constexpr int kPictureId = 20; // as in Windows' own boxes

struct MessageBox
{
    const MessageBoxKind& kind;
    HICON icon;
    int first; ///< the default button's id
};

/// The icon that says of what kind the box is; null for none.
HICON IconOfMessageBox(UINT type)
{
    const LPCWSTR icons[] = {nullptr, IDI_ERROR, IDI_QUESTION, IDI_WARNING, IDI_INFORMATION};
    const UINT kind = type >> 4 & 0xF;
    if (kind == 0 || kind >= std::size(icons))
        return nullptr;
    const int size = GetSystemMetrics(SM_CXICON);
    return static_cast<HICON>(LoadImageW(nullptr, icons[kind], IMAGE_ICON, size, size, LR_SHARED));
}

int DefaultButton(const MessageBoxKind& kind, UINT type)
{
    const std::size_t wanted = type >> 8 & 0xF;
    return kind.buttons[wanted < kind.buttons.size() ? wanted : 0].id;
}

LONG DivideUp(LONG length, LONG by)
{
    return (length + by - 1) / by;
}

/// Rounded up: nothing that is measured in pixels is cut off.
SIZE InUnits(SIZE pixels, SIZE units)
{
    return {DivideUp(pixels.cx * 4, units.cx), DivideUp(pixels.cy * 8, units.cy)};
}

/// The text broken to lines of half the work area's width at most, in dialog units. File names may be one long word;
/// and however much there is to say, the buttons have to be seen.
SIZE MeasureText(HWND owner, std::u16string_view text, HFONT font, SIZE units)
{
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY), &info);
    RECT area = {0, 0, (info.rcWork.right - info.rcWork.left) / 2, 0};
    const HDC dc = GetDC(nullptr);
    const HGDIOBJ previous = SelectObject(dc, font);
    DrawTextW(dc, text.data(), static_cast<int>(text.size()), &area,
              DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX);
    SelectObject(dc, previous);
    ReleaseDC(nullptr, dc);
    return InUnits({area.right, std::min(area.bottom, (info.rcWork.bottom - info.rcWork.top) * 3 / 4)}, units);
}

DialogTemplate BuildTemplate(const MessageBox& box, HWND owner, std::u16string_view text, std::u16string_view caption)
{
    const HFONT font = CreateMessageFont();
    const SIZE units = DialogUnits(font);
    const int icon = GetSystemMetrics(SM_CXICON);
    const MessageBoxLayout layout =
        LayOutMessageBox(MeasureText(owner, text, font, units),
                         box.icon != nullptr ? InUnits({icon, icon}, units) : SIZE{}, box.kind.buttons.size());
    DeleteObject(font);
    DialogTemplate made(caption, layout.client,
                        WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_CENTER | DS_SETFOREGROUND,
                        WS_EX_TOPMOST);
    if (box.icon != nullptr)
        made.Add({TEXT("Static"), {}, kPictureId, SS_ICON, layout.picture});
    made.Add({TEXT("Static"), text, kTextId, SS_NOPREFIX | SS_EDITCONTROL, layout.text});
    for (std::size_t i = 0; i < box.kind.buttons.size(); ++i)
    {
        const MessageBoxButton& button = box.kind.buttons[i];
        const DWORD style = i == 0 ? WS_TABSTOP | WS_GROUP : WS_TABSTOP;
        made.Add({TEXT("Button"), button.label, button.id, style, layout.ButtonRect(i)});
    }
    return made;
}

void Initialize(HWND dialog, const MessageBox& box)
{
    SetWindowLongPtrW(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(&box));
    SendDlgItemMessageW(dialog, kPictureId, STM_SETICON, reinterpret_cast<WPARAM>(box.icon), 0);
    SendMessageW(dialog, DM_SETDEFID, static_cast<WPARAM>(box.first), 0);
    SetFocus(GetDlgItem(dialog, box.first));
}

/// The whole box as text, in the form that Windows gives it.
void Copy(HWND dialog, const MessageBoxKind& kind)
{
    constexpr std::u16string_view kRule = u"---------------------------\r\n";
    const auto add = [](std::u16string& to, HWND window)
    {
        std::u16string text(static_cast<std::size_t>(GetWindowTextLengthW(window)), u'\0');
        GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
        to.append(text).append(u"\r\n");
    };
    std::u16string copy(kRule);
    add(copy, dialog);
    copy += kRule;
    add(copy, GetDlgItem(dialog, kTextId));
    copy += kRule;
    for (const MessageBoxButton& button : kind.buttons)
    {
        const std::u16string_view label = button.label;
        copy.append(label.substr(label.starts_with(u'&'))).append(u"   ");
    }
    PutTextOnClipboard(copy.append(u"\r\n").append(kRule));
}

INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    const auto* box = reinterpret_cast<const MessageBox*>(GetWindowLongPtrW(dialog, DWLP_USER));
    switch (message)
    {
    case WM_INITDIALOG:
        Initialize(dialog, *reinterpret_cast<const MessageBox*>(lParam));
        return FALSE;
    case WM_COMMAND:
    {
        const int id = LOWORD(wParam);
        const int answer = id == IDCANCEL ? box->kind.cancel : id;
        if (answer != 0) // a question that has no such answer has to be answered
            EndDialog(dialog, answer);
        return TRUE;
    }
    case WM_COPY:
        Copy(dialog, box->kind);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace
} // namespace platform

int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type)
{
    using namespace platform;
    if (FaultPoint("MessageBoxW"))
        return Fail(ERROR_NOT_ENOUGH_MEMORY, 0);
    if (owner != nullptr && !IsWindow(owner))
        return Fail(ERROR_INVALID_WINDOW_HANDLE, 0);
    const MessageBoxKind& kind = KindOfMessageBox(type);
    const MessageBox box = {kind, IconOfMessageBox(type), DefaultButton(kind, type)};
    const DialogTemplate made =
        BuildTemplate(box, owner, text != nullptr ? text : TEXT(""), caption != nullptr ? caption : TEXT("Error"));
    return std::max(0, static_cast<int>(DialogBoxIndirectParamW(nullptr, made.Get(), owner, Procedure,
                                                                reinterpret_cast<LPARAM>(&box))));
}
