// System colours: those of Windows 10's default theme.
#include "platform/base/handle_table.h"

#include "windows.h"

namespace
{

constexpr COLORREF kColors[] = {
    RGB(200, 200, 200), // COLOR_SCROLLBAR
    RGB(0, 0, 0),       // COLOR_BACKGROUND
    RGB(153, 180, 209), // COLOR_ACTIVECAPTION
    RGB(191, 205, 219), // COLOR_INACTIVECAPTION
    RGB(240, 240, 240), // COLOR_MENU
    RGB(255, 255, 255), // COLOR_WINDOW
    RGB(100, 100, 100), // COLOR_WINDOWFRAME
    RGB(0, 0, 0),       // COLOR_MENUTEXT
    RGB(0, 0, 0),       // COLOR_WINDOWTEXT
    RGB(0, 0, 0),       // COLOR_CAPTIONTEXT
    RGB(180, 180, 180), // COLOR_ACTIVEBORDER
    RGB(244, 247, 252), // COLOR_INACTIVEBORDER
    RGB(171, 171, 171), // COLOR_APPWORKSPACE
    RGB(0, 120, 215),   // COLOR_HIGHLIGHT
    RGB(255, 255, 255), // COLOR_HIGHLIGHTTEXT
    RGB(240, 240, 240), // COLOR_BTNFACE
    RGB(160, 160, 160), // COLOR_BTNSHADOW
    RGB(109, 109, 109), // COLOR_GRAYTEXT
    RGB(0, 0, 0),       // COLOR_BTNTEXT
    RGB(0, 0, 0),       // COLOR_INACTIVECAPTIONTEXT
    RGB(255, 255, 255), // COLOR_BTNHIGHLIGHT
    RGB(105, 105, 105), // COLOR_3DDKSHADOW
    RGB(227, 227, 227), // COLOR_3DLIGHT
    RGB(0, 0, 0),       // COLOR_INFOTEXT
    RGB(255, 255, 225), // COLOR_INFOBK
    RGB(0, 0, 0),       // 25, which nothing uses
    RGB(0, 102, 204),   // COLOR_HOTLIGHT
    RGB(185, 209, 234), // COLOR_GRADIENTACTIVECAPTION
    RGB(215, 228, 242), // COLOR_GRADIENTINACTIVECAPTION
    RGB(0, 120, 215),   // COLOR_MENUHILIGHT
    RGB(240, 240, 240), // COLOR_MENUBAR
};
constexpr int kCount = static_cast<int>(std::size(kColors));

bool IsColor(int index)
{
    return index >= 0 && index < kCount;
}

} // namespace

DWORD GetSysColor(int index)
{
    return IsColor(index) ? kColors[index] : 0;
}

HBRUSH GetSysColorBrush(int index)
{
    static HBRUSH brushes[kCount] = {};
    if (!IsColor(index))
        return nullptr;
    if (brushes[index] == nullptr)
    {
        brushes[index] = CreateSolidBrush(kColors[index]);
        if (auto* object = platform::FindHandle(reinterpret_cast<std::uintptr_t>(brushes[index])))
            object->permanent = true;
    }
    return brushes[index];
}
