// The toolbar's drawing: what the owner's custom-draw answers leave to it, and the insertion mark.
#include "platform/controls/toolbar.h"

#include "platform/windowing/system_parameters.h"

#include <algorithm>
#include <utility>

namespace platform
{

namespace
{

constexpr int kMargin = 4; ///< left of the image, and between image and text
// At 96 DPI; the insertion mark's ends reach this far above and below its middle.
constexpr int kMarkReach = 3;
constexpr int kMarkThickness = 2;

bool SamePlace(const TBINSERTMARK& a, const TBINSERTMARK& b)
{
    return a.iButton == b.iButton && a.dwFlags == b.dwFlags;
}

void DrawEtchedLine(HDC dc, const RECT& rect)
{
    const LONG middle = (rect.top + rect.bottom) / 2;
    const RECT dark = {rect.left + 2, middle - 1, rect.right - 2, middle};
    const RECT light = {rect.left + 2, middle, rect.right - 2, middle + 1};
    FillRect(dc, &dark, GetSysColorBrush(COLOR_BTNSHADOW));
    FillRect(dc, &light, GetSysColorBrush(COLOR_BTNHIGHLIGHT));
}

void Fill(HDC dc, const RECT& rect, COLORREF color)
{
    if (HBRUSH brush = CreateSolidBrush(color))
    {
        FillRect(dc, &rect, brush);
        DeleteObject(brush);
    }
}

UINT ItemState(const ToolbarButton& button, bool hot)
{
    return (hot ? CDIS_HOT : 0u) | ((button.state & TBSTATE_PRESSED) != 0 ? CDIS_SELECTED : 0u) |
           (button.IsEnabled() ? 0u : CDIS_DISABLED);
}

} // namespace

void Toolbar::OnPaint()
{
    UpdateSize();
    m_allInvalid = false;
    PAINTSTRUCT paint;
    if (HDC dc = BeginPaint(Window(), &paint))
        Paint(dc, paint.rcPaint);
    if (Alive())
        EndPaint(Window(), &paint);
}

void Toolbar::Paint(HDC dc, const RECT& clip)
{
    NMTBCUSTOMDRAW draw = {};
    draw.nmcd.dwDrawStage = CDDS_PREPAINT;
    draw.nmcd.hdc = dc;
    draw.nmcd.rc = clip;
    const int saved = SaveDC(dc);
    const LRESULT answer = Notify(m_owner, NM_CUSTOMDRAW, draw);
    if ((answer & CDRF_SKIPDEFAULT) != 0 || !Alive())
        return;
    HGDIOBJ font = SelectObject(dc, m_font);
    const int mode = SetBkMode(dc, TRANSPARENT);
    PaintRows(dc, clip, (answer & CDRF_NOTIFYITEMDRAW) != 0);
    SetBkMode(dc, mode);
    SelectObject(dc, font);
    RestoreDC(dc, saved); // the mark lies over what the owner has drawn itself and clipped away
    if (Alive())
        PaintInsertMark(dc);
    if ((answer & CDRF_NOTIFYPOSTPAINT) != 0 && Alive())
    {
        draw.nmcd.dwDrawStage = CDDS_POSTPAINT;
        Notify(m_owner, NM_CUSTOMDRAW, draw);
    }
}

void Toolbar::PaintRows(HDC dc, const RECT& clip, bool notifyItems)
{
    for (int row = m_column.FirstBelow(clip.top); Alive() && m_column.Has(row); ++row)
    {
        const RECT rect = m_column.RectOf(row);
        if (rect.top >= clip.bottom)
            return;
        if (m_column.At(row).IsSeparator())
            DrawEtchedLine(dc, rect);
        else if (!m_column.At(row).IsHidden())
            PaintItem(dc, row, notifyItems);
    }
}

NMTBCUSTOMDRAW Toolbar::DrawInfo(HDC dc, int index) const
{
    const ToolbarButton& button = m_column.At(index);
    const RECT rect = m_column.RectOf(index);
    NMTBCUSTOMDRAW draw = {};
    draw.nmcd.hdc = dc;
    draw.nmcd.rc = rect;
    draw.nmcd.dwItemSpec = static_cast<DWORD_PTR>(button.command);
    draw.nmcd.uItemState = ItemState(button, index == m_hot);
    draw.nmcd.lItemlParam = static_cast<LPARAM>(button.data);
    draw.clrText = GetSysColor(button.IsEnabled() ? COLOR_BTNTEXT : COLOR_GRAYTEXT);
    draw.clrMark = GetSysColor(COLOR_HIGHLIGHT);
    draw.clrTextHighlight = GetSysColor(COLOR_HIGHLIGHTTEXT);
    draw.clrBtnFace = GetSysColor(COLOR_BTNFACE);
    draw.clrBtnHighlight = GetSysColor(COLOR_BTNHIGHLIGHT);
    draw.clrHighlightHotTrack = GetSysColor(COLOR_HIGHLIGHT);
    draw.rcText = {0, 0, rect.right - rect.left, rect.bottom - rect.top};
    draw.nStringBkMode = TRANSPARENT;
    draw.nHLStringBkMode = OPAQUE;
    draw.iListGap = kMargin;
    return draw;
}

void Toolbar::PaintItem(HDC dc, int index, bool notify)
{
    NMTBCUSTOMDRAW draw = DrawInfo(dc, index);
    LRESULT answer = CDRF_DODEFAULT;
    if (notify)
    {
        draw.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
        answer = Notify(m_owner, NM_CUSTOMDRAW, draw);
    }
    if ((answer & CDRF_SKIPDEFAULT) != 0 || !Alive() || !m_column.Has(index))
        return;
    PaintItemContent(dc, index, draw, answer);
    if ((answer & CDRF_NOTIFYPOSTPAINT) != 0)
    {
        draw.nmcd.dwDrawStage = CDDS_ITEMPOSTPAINT;
        Notify(m_owner, NM_CUSTOMDRAW, draw);
    }
}

void Toolbar::PaintItemContent(HDC dc, int index, const NMTBCUSTOMDRAW& draw, LRESULT flags)
{
    const ToolbarButton& button = m_column.At(index);
    const RECT rect = draw.nmcd.rc;
    const bool hot = (draw.nmcd.uItemState & CDIS_HOT) != 0;
    const bool down = (draw.nmcd.uItemState & CDIS_SELECTED) != 0;
    if (hot && (flags & TBCDRF_HILITEHOTTRACK) != 0)
        Fill(dc, rect, draw.clrHighlightHotTrack);
    else if ((button.state & TBSTATE_CHECKED) != 0 && (flags & TBCDRF_NOMARK) == 0)
        Fill(dc, rect, draw.clrBtnHighlight);
    if ((hot || down) && (flags & TBCDRF_NOEDGES) == 0)
        FrameColors(dc, rect, down ? COLOR_BTNSHADOW : COLOR_BTNHIGHLIGHT, down ? COLOR_BTNHIGHLIGHT : COLOR_BTNSHADOW);
    const int offset = down && (flags & TBCDRF_NOOFFSET) == 0 ? 1 : 0;
    const SIZE image = ImageSize();
    ImageList_Draw(m_images, button.image, dc, rect.left + kMargin + offset,
                   rect.top + (rect.bottom - rect.top - image.cy) / 2 + offset, ILD_NORMAL);

    const std::u16string_view text = m_column.TextOf(button);
    RECT label = {rect.left + kMargin + image.cx + kMargin + offset, rect.top + offset, rect.right - 1 + offset,
                  rect.bottom + offset};
    SetTextColor(dc, draw.clrText);
    DrawTextW(dc, text.data(), static_cast<int>(text.size()), &label,
              DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

// --- insertion mark

RECT Toolbar::InsertMarkRect(const TBINSERTMARK& mark) const
{
    if (!m_column.Has(mark.iButton))
        return {};
    const RECT rect = m_column.RectOf(mark.iButton);
    // At the very top and bottom the mark is moved into view.
    const LONG reach = ScaledPixels(kMarkReach);
    const LONG end = m_column.RectOf(m_column.Count() - 1).bottom;
    const LONG edge = (mark.dwFlags & TBIMHT_AFTER) != 0 ? rect.bottom : rect.top;
    const LONG middle = std::max(std::min(edge, end - reach), reach);
    return {rect.left, middle - reach, rect.right, middle + reach};
}

void Toolbar::PaintInsertMark(HDC dc)
{
    const RECT rect = InsertMarkRect(m_mark);
    if (IsRectEmpty(&rect))
        return;
    const LONG thickness = ScaledPixels(kMarkThickness);
    const LONG top = (rect.top + rect.bottom - thickness) / 2;
    Fill(dc, {rect.left, rect.top, rect.left + thickness, rect.bottom}, m_markColor);
    Fill(dc, {rect.left, top, rect.right, top + thickness}, m_markColor);
    Fill(dc, {rect.right - thickness, rect.top, rect.right, rect.bottom}, m_markColor);
}

void Toolbar::SetInsertMark(const TBINSERTMARK* mark)
{
    UpdateSize();
    if (mark == nullptr || (mark->iButton != -1 && !m_column.Has(mark->iButton)) || SamePlace(*mark, m_mark))
        return;
    for (const TBINSERTMARK& place : {std::exchange(m_mark, *mark), *mark})
    {
        const RECT rect = InsertMarkRect(place);
        if (!IsRectEmpty(&rect))
            InvalidateRect(Window(), &rect, TRUE);
    }
}

} // namespace platform
