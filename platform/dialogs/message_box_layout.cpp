// What a message box of each kind offers, and where its parts go.
#include "platform/dialogs/message_box_layout.h"

#include <algorithm>

namespace platform
{

namespace
{

constexpr int kIdAbort = 3;
constexpr int kIdRetry = 4;
constexpr int kIdIgnore = 5;

constexpr MessageBoxButton kOkButtons[] = {{IDOK, TEXT("OK")}};
constexpr MessageBoxButton kOkCancelButtons[] = {{IDOK, TEXT("OK")}, {IDCANCEL, TEXT("Cancel")}};
constexpr MessageBoxButton kAbortRetryIgnoreButtons[] = {
    {kIdAbort, TEXT("&Abort")}, {kIdRetry, TEXT("&Retry")}, {kIdIgnore, TEXT("&Ignore")}};
constexpr MessageBoxButton kYesNoCancelButtons[] = {
    {IDYES, TEXT("&Yes")}, {IDNO, TEXT("&No")}, {IDCANCEL, TEXT("Cancel")}};
constexpr MessageBoxButton kYesNoButtons[] = {{IDYES, TEXT("&Yes")}, {IDNO, TEXT("&No")}};
constexpr MessageBoxButton kRetryCancelButtons[] = {{kIdRetry, TEXT("&Retry")}, {IDCANCEL, TEXT("Cancel")}};

/// In the order of the type's low four bits: MB_OK, MB_OKCANCEL, MB_ABORTRETRYIGNORE, …
constexpr MessageBoxKind kKinds[] = {
    {kOkButtons, IDOK}, {kOkCancelButtons, IDCANCEL},   {kAbortRetryIgnoreButtons, 0}, {kYesNoCancelButtons, IDCANCEL},
    {kYesNoButtons, 0}, {kRetryCancelButtons, IDCANCEL}};

} // namespace

const MessageBoxKind& KindOfMessageBox(UINT type)
{
    const UINT kind = type & 0xf;
    return kKinds[kind < std::size(kKinds) ? kind : 0];
}

RECT MessageBoxLayout::ButtonRect(std::size_t index) const
{
    RECT rect = firstButton;
    OffsetRect(&rect, static_cast<int>(index) * static_cast<int>(buttonStep), 0);
    return rect;
}

MessageBoxLayout LayOutMessageBox(SIZE text, LONG widestLabel, LONG line, std::size_t buttons, LONG picture)
{
    const LONG space = line * 3 / 4;
    const LONG textLeft = picture != 0 ? space + picture + space : space;
    const LONG contentHeight = std::max(picture, text.cy);
    const LONG buttonWidth = std::max(widestLabel + 2 * line, 5 * line);
    const LONG buttonHeight = line * 7 / 4;

    MessageBoxLayout layout;
    layout.buttonStep = buttonWidth + line / 2;
    const LONG row = static_cast<LONG>(buttons) * layout.buttonStep - line / 2;
    layout.client.cx = std::max(textLeft + text.cx, space + row) + space;
    layout.client.cy = space + contentHeight + space + buttonHeight + space;
    layout.picture = {space, space, space + picture, space + picture};
    const LONG textTop = space + (contentHeight - text.cy) / 2;
    layout.text = {textLeft, textTop, textLeft + text.cx, textTop + text.cy};
    const LONG left = (layout.client.cx - row) / 2;
    const LONG top = space + contentHeight + space;
    layout.firstButton = {left, top, left + buttonWidth, top + buttonHeight};
    return layout;
}

} // namespace platform
