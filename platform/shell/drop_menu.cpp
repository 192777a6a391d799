// "Copy here", "Move here", "Create shortcut here", "Cancel".
#include "platform/shell/drop_menu.h"

#include "windows.h"

namespace platform
{

namespace
{

constexpr struct
{
    DWORD effect;
    LPCWSTR text;
} kEntries[] = {
    {DROPEFFECT_COPY, u"&Copy here"},
    {DROPEFFECT_MOVE, u"&Move here"},
    {DROPEFFECT_LINK, u"Create &shortcut here"},
};
constexpr UINT kCancel = 0x100;

} // namespace

DWORD AskDropEffect(HWND owner, POINT point, DWORD possible, DWORD usual)
{
    const HMENU menu = CreatePopupMenu();
    for (const auto& entry : kEntries)
        if ((possible & entry.effect) != 0)
            AppendMenuW(menu, MF_STRING, entry.effect, entry.text);
    AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu, MF_STRING, kCancel, u"Cancel");
    SetMenuDefaultItem(menu, usual, FALSE);
    const int chosen = TrackPopupMenuEx(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, point.x, point.y, owner, nullptr);
    DestroyMenu(menu);
    return static_cast<DWORD>(chosen) & possible;
}

} // namespace platform
