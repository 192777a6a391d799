// Running a message box as a modal dialog.
#pragma once

#include "prompts/box_layout.h"
#include "support/unique_handle.h"

/// What its dialog needs to know of a box.
struct BoxDialog
{
    DWORD flags = 0;
    DWORD helpContext = 0;
    int defaultId = IDOK;
    HICON icon = nullptr; ///< shared, null for none
    UniqueFont font{};    ///< of text, buttons and check box
};

/// The answer, see ShowMessageBox. One at a time.
int RunBoxDialog(HWND owner, const BoxLayout& layout, const WString& caption, const BoxDialog& box);
