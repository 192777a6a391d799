// What a message box of each kind offers, and where its parts go.
#include "platform/windowing/message_box_layout.h"

#include <algorithm>

namespace platform
{

namespace
{

constexpr int idAbort = 3;
constexpr int idRetry = 4;
constexpr int idIgnore = 5;

constexpr MessageBoxButton okButtons[] = {{IDOK, TEXT("OK")}};
constexpr MessageBoxButton okCancelButtons[] = {{IDOK, TEXT("OK")}, {IDCANCEL, TEXT("Cancel")}};
constexpr MessageBoxButton abortRetryIgnoreButtons[] = {
    {idAbort, TEXT("&Abort")}, {idRetry, TEXT("&Retry")}, {idIgnore, TEXT("&Ignore")}};
constexpr MessageBoxButton yesNoCancelButtons[] = {
    {IDYES, TEXT("&Yes")}, {IDNO, TEXT("&No")}, {IDCANCEL, TEXT("Cancel")}};
constexpr MessageBoxButton yesNoButtons[] = {{IDYES, TEXT("&Yes")}, {IDNO, TEXT("&No")}};
constexpr MessageBoxButton retryCancelButtons[] = {{idRetry, TEXT("&Retry")}, {IDCANCEL, TEXT("Cancel")}};

/// In the order of the type's low four bits: MB_OK, MB_OKCANCEL, MB_ABORTRETRYIGNORE, …
constexpr MessageBoxKind kinds[] = {
    {okButtons, IDOK}, {okCancelButtons, IDCANCEL},   {abortRetryIgnoreButtons, 0}, {yesNoCancelButtons, IDCANCEL},
    {yesNoButtons, 0}, {retryCancelButtons, IDCANCEL}};

} // namespace

const MessageBoxKind& KindOfMessageBox(UINT type)
{
    const UINT kind = type & 0xf;
    return kinds[kind < std::size(kinds) ? kind : 0];
}

RECT MessageBoxLayout::ButtonRect(std::size_t index) const
{
    RECT rect = firstButton;
    OffsetRect(&rect, static_cast<int>(index) * static_cast<int>(buttonStep), 0);
    return rect;
}

MessageBoxLayout LayOutMessageBox(SIZE text, LONG widestLabel, LONG line, std::size_t buttons, bool hasPicture)
{
    const LONG space = line * 3 / 4;
    const LONG picture = hasPicture ? line * 2 : 0;
    const LONG textLeft = hasPicture ? space + picture + space : space;
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
