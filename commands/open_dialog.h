// The file picker.
#pragma once

#include <windows.h>
#include <shlobj.h>

namespace CustomMenu
{

/// Texts that are null are left as the picker has them.
struct OpenDialogParams
{
    HWND owner = nullptr;
    UINT typeCount = 0;
    const COMDLG_FILTERSPEC* types = nullptr; ///< null: no choice of types
    UINT typeIndex = 0;                       ///< of the first type shown, counted from 1
    LPWSTR buffer = nullptr; ///< in: the name that is there at first; out: the picked path, cut where it is too long
    UINT bufferSize = 0;     ///< in characters, with the terminator
    LPCWSTR defaultFolder = nullptr; ///< a parsing name; null: the desktop
    LPCWSTR title = nullptr;
    LPCWSTR okLabel = nullptr;
    LPCWSTR defaultExtension = nullptr;
    FILEOPENDIALOGOPTIONS options = 0; ///< added to the picker's own
};

static_assert(sizeof(void*) != 4 || sizeof(OpenDialogParams) == 44);

/// Lets the user pick a file or folder that exists. A failure, of which cancelling is one, leaves the buffer empty or
/// as it was.
HRESULT ShowOpenDialog(const OpenDialogParams& params);

} // namespace CustomMenu
