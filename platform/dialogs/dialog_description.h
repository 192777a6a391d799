// What a dialog template says, of either kind.
#pragma once

#include "windows.h"

#include <optional>
#include <vector>

namespace platform
{

/// Texts point into the template; in place of a text there may be a resource's number (IS_INTRESOURCE).
struct DialogItem
{
    DWORD style = 0;
    DWORD exStyle = 0;
    RECT bounds{}; ///< dialog units
    DWORD id = 0;
    LPCWSTR className = nullptr; ///< a name, whichever way the template gives it; null for an unknown number
    LPCWSTR text = nullptr;
};

struct DialogFont
{
    int points = 0;
    LONG weight = FW_NORMAL;
    bool italic = false;
    LPCWSTR face = nullptr;
};

struct DialogDescription
{
    DWORD style = 0;
    DWORD exStyle = 0;
    RECT bounds{}; ///< dialog units
    LPCWSTR title = nullptr;
    std::optional<DialogFont> font;
    std::vector<DialogItem> items;
};

/// Trusts the template, which is the program's own data.
DialogDescription ReadDialogTemplate(LPCDLGTEMPLATEW dialogTemplate);

} // namespace platform
