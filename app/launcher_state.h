// The process-wide settings and shared resources.
//
// A plain record that every folder may read; it holds no logic. The user-interface thread owns it.
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

/// Bits of LauncherState::m_largeIcons.
enum LargeIcons : std::uint32_t
{
    LARGE_ICONS_SUB_LEVELS = 1,
    LARGE_ICONS_ROOT = 2,
};

struct LauncherState
{
    RECT m_workArea{};            ///< of the primary monitor, read when the root level is created
    UINT m_menuShowDelay = 0;     ///< milliseconds
    WORD m_shellIdListFormat = 0; ///< clipboard format of shell items
    ComPtr<IShellFolder> m_desktopFolder;
    POINT m_anchor{}; ///< screen point of the root's corner
    int m_align = 0;  ///< which corner of the root sits on the anchor, see PlaceLevel
    HWND m_rootParent = nullptr;
    WString m_folderPath;           ///< shell path of the folder that the root level shows
    WString m_layoutRoot;           ///< registry key path of the root's order and the options
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
    COLORREF m_menuTextColor = 0; ///< this and the next three: system colours without a channel of 0
    COLORREF m_highlightTextColor = 0;
    COLORREF m_menuColor = 0;
    COLORREF m_highlightColor = 0;
    /// Every live level in creation order: the root first, the deepest last. Not owned.
    std::vector<CustomMenu::CustomBar*> m_levels;
    WString m_renameText;
    std::uint32_t m_options = 0; ///< OptionBits
};

extern LauncherState g_launcher;

/// The level on which a shell operation or a drag that the launcher started is under way, null otherwise.
extern CustomMenu::CustomBar* g_operationBar;

/// The program's module.
extern HINSTANCE g_instance;

/// Styles, icon sizes, image lists and colours as the platform has them now; everything else empty.
void InitLauncherState();

/// Box "Error opening " followed by `what`; returns when the user closes it.
void ShowOpenError(const WString& what);
