// What the levels share: settings, and resources that are loaded once for all of them. Only the one thread uses it.
#pragma once

#include "content/icon_cache.h"
#include "support/com_ptr.h"
#include "support/unique_handle.h"
#include "support/wstring.h"

#include <cstdint>
#include <vector>

namespace CustomMenu
{
class CustomBar;
}

/// Which levels show large icons.
enum LargeIcons : std::uint32_t
{
    LARGE_ICONS_SUB_LEVELS = 1,
    LARGE_ICONS_ROOT = 2,
};

struct LauncherState
{
    RECT m_workArea{};            ///< of the primary monitor, as it was at the start
    UINT m_menuShowDelay = 0;     ///< milliseconds
    WORD m_shellIdListFormat = 0; ///< clipboard format of shell items
    ComPtr<IShellFolder> m_desktopFolder;
    POINT m_anchor{}; ///< screen point of the root's corner
    int m_align = 0;  ///< which corner of the root that is, see PlaceLevel
    HWND m_rootParent = nullptr;
    WString m_folderPath;           ///< the root level's folder
    WString m_layoutRoot;           ///< registry key of the root's order and of the options
    std::uint32_t m_largeIcons = 0; ///< LargeIcons
    DWORD m_levelStyle = 0;
    DWORD m_levelExStyle = 0;
    POINT m_renamePosition{}; ///< screen coordinates
    int m_largeIconSize = 0;  ///< pixels
    int m_smallIconSize = 0;  ///< pixels
    int m_dragImageSize = 0;  ///< pixels
    UniqueImageList m_largeImages;
    UniqueImageList m_smallImages;
    IconCache IconCacheLarge;
    IconCache IconCacheSmall;
    UniqueBitmap m_bannerSkin;     ///< 32-bit, premultiplied
    int m_bannerSkinHeight = 0;    ///< pixels
    UniqueBitmap m_separatorImage; ///< 32-bit, premultiplied
    int m_separatorWidth = 0;      ///< pixels
    int m_separatorHeight = 0;     ///< pixels; also the extent of a separator button
    UniqueFont m_font;             ///< of the banner's title
    WString m_title;
    std::uint32_t m_titleColor = 0; ///< 0x00RRGGBB, as a bitmap's pixel
    int m_fontSize = 0;             ///< points
    WString m_fontFace;
    // System colours, with no channel of 0.
    COLORREF m_menuTextColor = 0;
    COLORREF m_highlightTextColor = 0;
    COLORREF m_menuColor = 0;
    COLORREF m_highlightColor = 0;
    /// The level for which the launcher itself has started a shell operation or a drag, null when there is none.
    CustomMenu::CustomBar* g_operationBar = nullptr;
    /// Every live level as it was opened: the root first, the deepest last. They own themselves.
    std::vector<CustomMenu::CustomBar*> m_levels;
    WString m_renameText;
    std::uint32_t m_options = 0; ///< OptionBits
};

extern LauncherState g_launcher;

extern HINSTANCE g_instance; ///< the program's module

/// Empties g_launcher, but for the styles, icon sizes, image lists and colours.
void InitLauncherState();

/// Box "Error opening " followed by `what`; returns when the user closes it.
void ShowOpenError(const WString& what);
