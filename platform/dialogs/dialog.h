// What the files of the dialog manager share: a dialog's own data, its focus and its default button.
#pragma once

#include "windows.h"

#include <memory>

namespace platform
{

/// A dialog that runs a message loop: on that loop's stack.
struct DialogRun
{
    HWND disabled = nullptr; ///< the owner, unless it was disabled before
    bool ended = false;
    INT_PTR result = 0;
};

/// Lives as long as its window. Any message may destroy that: keep the handle and look it up again.
struct Dialog
{
    Dialog() = default;
    ~Dialog()
    {
        DeleteObject(font);
        DestroyMenu(systemMenu);
    }
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    HFONT font = nullptr; ///< the template's, null when it names none
    SIZE units{};         ///< pixels of four dialog units across, eight down
    int defaultId = IDOK; ///< DM_SETDEFID; this one even where there is no such button
    HWND lastFocus = nullptr;
    HWND defaultSeenFor = nullptr; ///< the focus for which the default button was last put right
    DialogRun* run = nullptr;
    HMENU systemMenu = nullptr; ///< once somebody has asked for it
};

/// Null when the window is no dialog.
Dialog* FindDialog(HWND window);

// --- dialog_units.cpp

/// The font of the user's desktop; null when there is none to be had.
HFONT CreateMessageFont();
/// Pixels of four dialog units across, eight down, in a font; null stands for the system font.
SIZE DialogUnits(HFONT font);
RECT DialogToPixels(const RECT& units, SIZE base);

// --- system_menu.cpp

/// False while the system menu's command for it is greyed.
bool MayClose(const Dialog& dialog);

// --- dialog_procedure.cpp

/// A window of the dialog class, without controls; it owns the data from its first message on.
HWND CreateDialogFrame(DWORD exStyle, LPCWSTR title, DWORD style, const RECT& place, HWND owner, HINSTANCE instance,
                       std::unique_ptr<Dialog> dialog);

// --- dialog_focus.cpp

/// Selects all of a text that can be edited.
void SelectAll(HWND control);
/// Gives a control the focus; of a text all is selected.
void FocusControl(HWND control);
/// Gives the focus back to where it was last, else to the first control that takes it.
void RestoreFocus(HWND dialog);
/// The push button with the focus is the default one; while none has it, the dialog's own is.
void UpdateDefaultButton(HWND dialog);
void SetDefaultId(HWND dialog, int id);
/// WM_GETDLGCODE; 0 for null.
UINT DialogCode(HWND control);
bool CanTakeFocus(HWND control);

} // namespace platform
