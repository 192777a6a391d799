// First values of the process-wide state.
#include "app/launcher_state.h"

#include "geometry/dpi_scale.h"

#include <algorithm>

LauncherState g_launcher;
HINSTANCE g_instance = nullptr;

namespace
{

constexpr int kLargeIcon = 32;
constexpr int kSmallIcon = 16;
constexpr int kDragImage = 96;
constexpr int kImageListGrowth = 16;

/// A channel of 0 becomes 1, so that no pixel of these colours is ever taken for an empty one.
COLORREF LiftedSysColor(int index)
{
    const auto lift = [](BYTE channel) { return std::max<BYTE>(channel, 1); };
    const COLORREF color = GetSysColor(index);
    return RGB(lift(GetRValue(color)), lift(GetGValue(color)), lift(GetBValue(color)));
}

UniqueImageList MakeImageList(int size)
{
    return UniqueImageList(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 1, kImageListGrowth));
}

} // namespace

void InitLauncherState()
{
    g_launcher = LauncherState{};
    g_launcher.m_levelStyle = WS_POPUP | WS_BORDER;
    g_launcher.m_levelExStyle = WS_EX_TOPMOST | WS_EX_TOOLWINDOW;
    g_launcher.m_largeIconSize = g_dpi.Scaled(kLargeIcon);
    g_launcher.m_smallIconSize = g_dpi.Scaled(kSmallIcon);
    g_launcher.m_dragImageSize = kDragImage;
    g_launcher.m_largeImages = MakeImageList(g_launcher.m_largeIconSize);
    g_launcher.m_smallImages = MakeImageList(g_launcher.m_smallIconSize);
    g_launcher.m_titleColor = 0x00FFFFFF;
    g_launcher.m_menuTextColor = LiftedSysColor(COLOR_MENUTEXT);
    g_launcher.m_highlightTextColor = LiftedSysColor(COLOR_HIGHLIGHTTEXT);
    g_launcher.m_menuColor = LiftedSysColor(COLOR_MENU);
    g_launcher.m_highlightColor = LiftedSysColor(COLOR_HIGHLIGHT);
}

void ShowOpenError(const WString& what)
{
    MessageBoxW(nullptr, (TEXT("Error opening ") + what).c_str(), nullptr, MB_OK);
}
