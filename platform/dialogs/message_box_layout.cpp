// What a message box of each kind offers, and where its parts go.
#include "platform/dialogs/message_box_layout.h"

#include <algorithm>

namespace platform
{

namespace
{

// What Windows' guide to layout recommends, in dialog units.
constexpr LONG kMargin = 7;
constexpr LONG kGap = 4;
constexpr SIZE kButton = {50, 14};
constexpr LONG kButtonStep = kButton.cx + kGap;

constexpr MessageBoxButton kOkButtons[] = {{IDOK, TEXT("OK")}};
constexpr MessageBoxButton kOkCancelButtons[] = {{IDOK, TEXT("OK")}, {IDCANCEL, TEXT("Cancel")}};
constexpr MessageBoxButton kAbortRetryIgnoreButtons[] = {
    {IDABORT, TEXT("&Abort")}, {IDRETRY, TEXT("&Retry")}, {IDIGNORE, TEXT("&Ignore")}};
constexpr MessageBoxButton kYesNoCancelButtons[] = {
    {IDYES, TEXT("&Yes")}, {IDNO, TEXT("&No")}, {IDCANCEL, TEXT("Cancel")}};
constexpr MessageBoxButton kYesNoButtons[] = {{IDYES, TEXT("&Yes")}, {IDNO, TEXT("&No")}};
constexpr MessageBoxButton kRetryCancelButtons[] = {{IDRETRY, TEXT("&Retry")}, {IDCANCEL, TEXT("Cancel")}};

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
    OffsetRect(&rect, static_cast<int>(index) * kButtonStep, 0);
    return rect;
}

MessageBoxLayout LayOutMessageBox(SIZE text, SIZE picture, std::size_t buttons)
{
    const LONG textLeft = picture.cx != 0 ? kMargin + picture.cx + kMargin : kMargin;
    const LONG content = std::max(picture.cy, text.cy);
    const LONG row = static_cast<LONG>(buttons) * kButtonStep - kGap;

    MessageBoxLayout layout;
    layout.client.cx = std::max(textLeft + text.cx, kMargin + row) + kMargin;
    layout.client.cy = kMargin + content + kMargin + kButton.cy + kMargin;
    layout.picture = {kMargin, kMargin, kMargin + picture.cx, kMargin + picture.cy};
    const LONG textTop = kMargin + (content - text.cy) / 2;
    layout.text = {textLeft, textTop, textLeft + text.cx, textTop + text.cy};
    const LONG left = (layout.client.cx - row) / 2;
    const LONG top = kMargin + content + kMargin;
    layout.firstButton = {left, top, left + kButton.cx, top + kButton.cy};
    return layout;
}

} // namespace platform
