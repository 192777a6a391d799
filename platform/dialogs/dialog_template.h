// Building a dialog's template in memory (DLGTEMPLATEEX), for the layer's own dialogs.
#pragma once

#include "windows.h"

#include <string_view>
#include <vector>

namespace platform
{

struct DialogControl
{
    LPCWSTR className = nullptr; ///< a name; "Button", "Edit", "Static" included
    std::u16string_view text{};
    int id = 0;
    DWORD style = 0; ///< WS_CHILD and WS_VISIBLE are added
    RECT bounds{};   ///< dialog units
};

/// Coordinates are dialog units of the desktop's message font.
class DialogTemplate
{
public:
    DialogTemplate(std::u16string_view title, SIZE size, DWORD style, DWORD exStyle = 0);
    void Add(const DialogControl& control);
    /// Valid until the next Add, or as long as the builder lives.
    LPCDLGTEMPLATEW Get() const;

private:
    std::vector<WORD> m_words; ///< items are aligned to four bytes
};

} // namespace platform
