// Building a level: its toolbar, size, place and pager.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "geometry/dpi_scale.h"
#include "geometry/placement.h"
#include "menu/banner.h"
#include "menu/button_ids.h"
#include "menu/work_area.h"

#include <uxtheme.h>

namespace CustomMenu
{

namespace
{

constexpr int kPagerId = 1;
constexpr int kToolbarId = 2;
constexpr int kInitialToolbarSize = 10;

constexpr DWORD kToolbarStyle = WS_CHILD | WS_VISIBLE | TBSTYLE_TRANSPARENT | TBSTYLE_REGISTERDROP | TBSTYLE_LIST |
                                TBSTYLE_FLAT | CCS_VERT | CCS_NODIVIDER | CCS_NOPARENTALIGN | CCS_NORESIZE;
constexpr DWORD kPagerStyle =
    WS_CHILD | WS_VISIBLE | CCS_NODIVIDER | CCS_NOPARENTALIGN | PGS_DRAGNDROP | PGS_AUTOSCROLL | PGS_VERT;
static_assert(kToolbarStyle == 0x5000D8CC && kPagerStyle == 0x5000004E);

HMENU ChildId(int id)
{
    return reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id));
}

TBBUTTON ButtonOf(const MenuItem& item, int index)
{
    TBBUTTON button{};
    button.idCommand = kFirstCommand + index;
    button.dwData = static_cast<DWORD_PTR>(kFirstCommand + index);
    button.fsState = TBSTATE_ENABLED | TBSTATE_WRAP;
    button.iString = reinterpret_cast<INT_PTR>(item.name.Get());
    button.iBitmap = item.image;
    if (item.Is(MIF_SEPARATOR))
    {
        button.fsStyle = BTNS_SEP;
        button.iBitmap = g_launcher.m_separatorHeight;
    }
    return button;
}

void MoveChild(HWND child, const RECT& rect)
{
    SetWindowPos(child, nullptr, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

ButtonExtents MeasureButtons(const CustomBar& level)
{
    ButtonExtents extents;
    for (const MenuItem& item : level.m_items)
        extents.Add(level.ButtonRect(item.order), item.Is(MIF_SEPARATOR));
    return extents;
}

bool HasDeeperLevels(const CustomBar& level)
{
    return !g_launcher.m_levels.empty() && g_launcher.m_levels.back() != &level;
}

LevelSize MeasureLevel(const CustomBar& level)
{
    LevelMeasure measure;
    measure.buttons = MeasureButtons(level);
    measure.previousWidth = level.m_width;
    measure.deeperLevelsOpen = HasDeeperLevels(level);
    measure.workHeight = g_launcher.m_workArea.bottom - g_launcher.m_workArea.top;
    if (level.IsRoot() && g_launcher.m_bannerSkin)
        measure.bannerText = MeasureTitle();
    return ComputeLevelSize(measure, g_dpi);
}

void CreateToolbar(CustomBar& level, SUBCLASSPROC subclass)
{
    level.m_toolbar =
        CreateWindowExW(WS_EX_TOOLWINDOW, TOOLBARCLASSNAMEW, nullptr, kToolbarStyle, 0, 0, kInitialToolbarSize,
                        kInitialToolbarSize, level.m_hWnd, ChildId(kToolbarId), g_instance, nullptr);
    SetWindowTheme(level.m_toolbar, TEXT(""), TEXT(""));
    level.SendToolbar(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
    const UniqueImageList& images = level.UsesLargeIcons() ? g_launcher.m_largeImages : g_launcher.m_smallImages;
    level.SendToolbar(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images.Get()));
    level.SendToolbar(TB_SETINSERTMARKCOLOR, 0, static_cast<LPARAM>(g_launcher.m_menuTextColor));
    SetWindowSubclass(level.m_toolbar, subclass, reinterpret_cast<UINT_PTR>(&level),
                      reinterpret_cast<DWORD_PTR>(&level));
    for (int slot = 0; slot < static_cast<int>(level.m_sourceFolders.size()); ++slot)
        if (level.m_sourceFolders[slot])
            level.Watch(slot, level.m_sourceFolders[slot].Get(), level.m_toolbar, WM_APP_SHELLNOTIFY);
}

void RemoveButtons(const CustomBar& level)
{
    for (int i = static_cast<int>(level.SendToolbar(TB_BUTTONCOUNT)) - 1; i >= 0; --i)
        level.SendToolbar(TB_DELETEBUTTON, static_cast<WPARAM>(i));
}

void InsertButtons(CustomBar& level)
{
    for (int i = 0; i < level.ItemCount(); ++i)
    {
        MenuItem& item = level.m_items[i];
        const TBBUTTON button = ButtonOf(item, i);
        item.order = static_cast<std::int32_t>(level.SendToolbar(TB_BUTTONCOUNT));
        level.SendToolbar(TB_INSERTBUTTONW, static_cast<WPARAM>(item.order), reinterpret_cast<LPARAM>(&button));
    }
}

void PlaceWindow(HWND window, SIZE client, bool firstBuild)
{
    RECT frame{};
    RECT current{};
    AdjustWindowRect(&frame, g_launcher.m_levelStyle, FALSE);
    GetWindowRect(window, &current);
    RECT place = PlaceLevel(client, frame, current, firstBuild, g_launcher.m_align);
    ClipToWorkArea(place);
    SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS | SWP_DEFERERASE);
}

void PlacePager(CustomBar& level, const RECT& rect, int buttonSize)
{
    const bool existed = level.m_pager != nullptr;
    LRESULT position = 0;
    if (existed)
    {
        position = SendMessageW(level.m_pager, PGM_GETPOS, 0, 0);
        MoveChild(level.m_pager, rect);
    }
    else
    {
        level.m_pager =
            CreateWindowExW(0, WC_PAGESCROLLERW, nullptr, kPagerStyle, rect.left, rect.top, rect.right - rect.left,
                            rect.bottom - rect.top, level.m_hWnd, ChildId(kPagerId), g_instance, nullptr);
        if (level.m_pager == nullptr)
            return;
    }
    SendMessageW(level.m_pager, PGM_SETBUTTONSIZE, 0, buttonSize);
    SetParent(level.m_toolbar, level.m_pager);
    SetWindowPos(level.m_toolbar, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(level.m_pager, PGM_SETCHILD, 0, reinterpret_cast<LPARAM>(level.m_toolbar));
    if (existed)
        SendMessageW(level.m_pager, PGM_SETPOS, 0, position);
}

} // namespace

void CustomBar::Build()
{
    const bool firstBuild = m_toolbar == nullptr;
    if (firstBuild)
    {
        CreateToolbar(*this, &CustomBar::ToolbarSubclassProc);
        if (m_toolbar == nullptr)
            return;
    }
    else
    {
        // Out of the pager first, so that destroying the pager never destroys the toolbar.
        SetParent(m_toolbar, m_hWnd);
        RemoveButtons(*this);
    }
    InsertButtons(*this);
    SendToolbar(TB_AUTOSIZE);

    const LevelSize size = MeasureLevel(*this);
    m_width = size.width;
    m_contentRect = size.content;
    m_banner.Reset();
    if (size.banner)
        RenderBanner(*size.banner);

    SendToolbar(TB_SETBUTTONSIZE, 0, MAKELPARAM(size.width, size.itemHeight));
    const RECT& content = m_contentRect;
    MoveChild(m_toolbar, {content.left, content.top, content.left + size.width, content.top + size.height});
    PlaceWindow(m_hWnd, size.client, firstBuild);

    if (size.needsPager)
    {
        const int workHeight = g_launcher.m_workArea.bottom - g_launcher.m_workArea.top;
        PlacePager(*this, {content.left, content.top, content.left + size.width, content.top + workHeight},
                   size.pagerButtonSize);
    }
    else if (m_pager != nullptr)
    {
        DestroyWindow(m_pager);
        m_pager = nullptr;
    }
}

} // namespace CustomMenu
