// Drawing a level: background, separators, colours of the items, sub-level arrows.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "geometry/dpi_scale.h"
#include "menu/banner.h"
#include "menu/button_ids.h"
#include "menu/nine_slice.h"

#include <algorithm>

namespace CustomMenu
{

namespace
{

constexpr int kArrowSize = 4;
constexpr int kSeparatorInset = 2;
constexpr LRESULT kItemResult =
    TBCDRF_USECDCOLORS | TBCDRF_NOMARK | TBCDRF_NOOFFSET | TBCDRF_NOEDGES | CDRF_NOTIFYPOSTPAINT;
constexpr LRESULT kHotItemResult = kItemResult | TBCDRF_HILITEHOTTRACK;
static_assert(kItemResult == 0x8D0010 && kHotItemResult == 0x8F0010);

LRESULT ColorItem(NMTBCUSTOMDRAW& draw)
{
    const bool hot = (draw.nmcd.uItemState & CDIS_HOT) != 0;
    draw.clrText = hot ? g_launcher.m_highlightTextColor : g_launcher.m_menuTextColor;
    draw.clrHighlightHotTrack = hot ? g_launcher.m_highlightColor : g_launcher.m_menuColor;
    return hot ? kHotItemResult : kItemResult;
}

void DrawArrow(HDC dc, const RECT& item, COLORREF color)
{
    const int size = g_dpi.Scaled(kArrowSize);
    const LONG left = item.right - 2 * size;
    const LONG middle = (item.top + item.bottom) / 2;
    const POINT triangle[] = {{left, middle - size}, {left, middle + size}, {left + size, middle}};
    const UniqueBrush brush(CreateSolidBrush(color));
    const SelectGuard fill(dc, brush.Get());
    const SelectGuard noOutline(dc, GetStockObject(NULL_PEN));
    Polygon(dc, triangle, 3);
}

void DrawSeparators(const CustomBar& level, HDC dc)
{
    const auto isSeparator = [](const MenuItem& item) { return item.Is(MIF_SEPARATOR); };
    if (!g_launcher.m_separatorImage || std::none_of(level.m_items.begin(), level.m_items.end(), isSeparator))
        return;
    const UniqueMemoryDC image(CreateCompatibleDC(dc));
    if (!image)
        return;
    const SelectGuard selected(image.Get(), g_launcher.m_separatorImage.Get());
    const RECT source{0, 0, g_launcher.m_separatorWidth, g_launcher.m_separatorHeight};
    const Margins margins{0, g_launcher.m_separatorHeight, 0, 0};
    for (const MenuItem& item : level.m_items)
    {
        if (!isSeparator(item))
            continue;
        const RECT place = level.ButtonRect(item.order);
        StretchNineSlice(image.Get(), dc, place, source, margins);
        ExcludeClipRect(dc, place.left + kSeparatorInset, place.top + kSeparatorInset, place.right - kSeparatorInset,
                        place.bottom - kSeparatorInset);
    }
}

} // namespace

LRESULT CustomBar::OnEraseBackground(WPARAM wParam, LPARAM, bool&)
{
    const HDC dc = reinterpret_cast<HDC>(wParam);
    if (m_banner)
    {
        DrawBanner(dc, m_banner.Get(), m_contentRect);
    }
    else
    {
        RECT client{};
        GetClientRect(m_hWnd, &client);
        const UniqueBrush brush(CreateSolidBrush(g_launcher.m_menuColor));
        FillRect(dc, &client, brush.Get());
    }
    return 1;
}

LRESULT CustomBar::OnCustomDraw(NMTBCUSTOMDRAW& draw, bool& handled)
{
    switch (draw.nmcd.dwDrawStage)
    {
    case CDDS_PREPAINT:
        DrawSeparators(*this, draw.nmcd.hdc);
        return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
        return ColorItem(draw);
    case CDDS_ITEMPOSTPAINT:
    {
        const int index = IndexOfCommand(static_cast<DWORD_PTR>(draw.nmcd.lItemlParam));
        if (HasItem(index) && m_items[index].Is(MIF_FOLDER))
        {
            const bool hot = (draw.nmcd.uItemState & CDIS_HOT) != 0;
            DrawArrow(draw.nmcd.hdc, draw.nmcd.rc, hot ? g_launcher.m_highlightTextColor : g_launcher.m_menuTextColor);
            return CDRF_DODEFAULT;
        }
        break;
    }
    default:
        break;
    }
    handled = false;
    return 0;
}

} // namespace CustomMenu
