// What a popup menu looks like: the levels' rows, colours and arrows.
#include "platform/dialogs/popup_menu.h"

#include "platform/controls/control_object.h"
#include "platform/dialogs/popup_keys.h"
#include "platform/windowing/system_parameters.h"

#include <algorithm>

namespace platform
{

namespace
{

constexpr int kArrowSize = 4;      ///< of a sub-menu's arrow, at 96 DPI
constexpr int kSeparatorInset = 2; ///< pixels
constexpr BYTE kFaint = 0x80;      ///< opacity of a disabled item's picture
// Small numbers and −1 name pictures of the system's own, which only menus of windows have.
constexpr LONG_PTR kLastSystemBitmap = 11;

struct RowColors
{
    int background;
    int text;
};

RowColors ColorsOf(bool hot, bool enabled)
{
    if (!enabled)
        return {hot ? COLOR_3DLIGHT : COLOR_MENU, COLOR_GRAYTEXT};
    return hot ? RowColors{COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT} : RowColors{COLOR_MENU, COLOR_MENUTEXT};
}

void DrawSeparator(HDC dc, const RECT& row)
{
    const LONG middle = (row.top + row.bottom) / 2;
    const LONG thickness = std::max(1, ScaledPixels(1));
    const RECT line{row.left + kSeparatorInset, middle - thickness, row.right - kSeparatorInset, middle};
    const RECT light{line.left, middle, line.right, middle + thickness};
    FillRect(dc, &line, GetSysColorBrush(COLOR_BTNSHADOW));
    FillRect(dc, &light, GetSysColorBrush(COLOR_BTNHIGHLIGHT));
}

void DrawSubMenuArrow(HDC dc, const RECT& row, int color)
{
    const LONG size = ScaledPixels(kArrowSize);
    const LONG left = row.right - 2 * size;
    const LONG middle = (row.top + row.bottom) / 2;
    const POINT triangle[] = {{left, middle - size}, {left, middle + size}, {left + size, middle}};
    FillPolygon(dc, triangle, color);
}

/// A tick in the middle of the cell.
void DrawCheckMark(HDC dc, const RECT& cell, int color)
{
    const LONG unit = ScaledPixels(64); // four pixels in sixteenths
    const POINT middle{(cell.left + cell.right) / 2, (cell.top + cell.bottom) / 2};
    const auto at = [&](int x, int y) { return POINT{middle.x + x * unit / 64, middle.y + y * unit / 64}; };
    const POINT tick[] = {at(-5, -1), at(-2, 2), at(4, -4), at(4, -1), at(-2, 5), at(-5, 2)};
    FillPolygon(dc, tick, color);
}

void DrawFaintIcon(HDC dc, POINT at, IconImage image)
{
    for (std::uint32_t& pixel : image.pixels)
        pixel = pixel >> 1 & 0x7F7F7F7F;
    DrawIconImage(dc, at.x, at.y, image);
}

/// Middle of the cell, as the top-left corner of what is this large.
POINT Centered(const RECT& cell, int width, int height)
{
    return {(cell.left + cell.right - width) / 2, (cell.top + cell.bottom - height) / 2};
}

void DrawIcon(HDC dc, const RECT& cell, IconSource& source, bool enabled)
{
    const IconImage& image = source.Image();
    const POINT at = Centered(cell, image.width, image.height);
    if (enabled)
        DrawIconImage(dc, at.x, at.y, image);
    else
        DrawFaintIcon(dc, at, image);
}

void DrawBitmap(HDC dc, const RECT& cell, HBITMAP handle, bool enabled)
{
    BITMAP bitmap{};
    const HDC source = GetObjectW(handle, sizeof(bitmap), &bitmap) != 0 ? CreateCompatibleDC(dc) : nullptr;
    if (source == nullptr)
        return;
    HGDIOBJ previous = SelectObject(source, handle);
    const LONG height = std::min(bitmap.bmHeight, cell.bottom - cell.top);
    const POINT at = Centered(cell, bitmap.bmWidth, height);
    const BYTE alpha = bitmap.bmBitsPixel == 32 ? AC_SRC_ALPHA : 0;
    const BLENDFUNCTION blend{AC_SRC_OVER, 0, enabled ? BYTE{0xFF} : kFaint, alpha};
    if (previous != nullptr)
        AlphaBlend(dc, at.x, at.y, bitmap.bmWidth, height, source, 0, 0, bitmap.bmWidth, height, blend);
    SelectObject(source, previous);
    DeleteDC(source);
}

bool IsPicture(HBITMAP bitmap)
{
    const auto value = reinterpret_cast<LONG_PTR>(bitmap);
    return value > kLastSystemBitmap;
}

void DrawPicture(HDC dc, const MenuItem& item, const RECT& cell, int color)
{
    const bool checked = (item.state & MFS_CHECKED) != 0;
    const HBITMAP mark = checked ? item.checked : item.unchecked;
    if (item.icon != nullptr)
        DrawIcon(dc, cell, *item.icon, item.IsEnabled());
    else if (IsPicture(item.bitmap))
        DrawBitmap(dc, cell, item.bitmap, item.IsEnabled());
    else if (IsPicture(mark))
        DrawBitmap(dc, cell, mark, item.IsEnabled());
    else if (checked)
        DrawCheckMark(dc, cell, color);
    const bool framed = checked && (item.icon != nullptr || IsPicture(item.bitmap));
    if (framed)
        FrameRect(dc, &cell, GetSysColorBrush(color));
}

} // namespace

void PopupMenu::OnPaint()
{
    const HWND window = m_window;
    PAINTSTRUCT paint{};
    if (const HDC dc = BeginPaint(window, &paint))
        Paint(dc, paint.rcPaint);
    else
        ValidateRect(window, nullptr);
    EndPaint(window, &paint);
}

void PopupMenu::Paint(HDC dc, const RECT& clip)
{
    const HGDIOBJ font = SelectObject(dc, m_fonts.Of({}));
    const int mode = SetBkMode(dc, TRANSPARENT);
    const RECT view = m_layout.View();
    LONG painted = clip.top;
    for (int item = m_layout.FirstBelow(static_cast<int>(clip.top - view.top) + m_offset); Has(item); ++item)
    {
        const RECT row = m_layout.RowRect(item, m_offset);
        if (row.top >= clip.bottom || row.top >= view.bottom)
            break;
        PaintRow(dc, item, row);
        painted = row.bottom;
    }
    const RECT rest{0, painted, m_layout.Client().cx, m_layout.Client().cy};
    if (!IsRectEmpty(&rest))
        FillRect(dc, &rest, GetSysColorBrush(COLOR_MENU));
    if (m_layout.Scrolls())
    {
        PaintScrollArrow(dc, PopupPart::ScrollUp);
        PaintScrollArrow(dc, PopupPart::ScrollDown);
    }
    SetBkMode(dc, mode);
    SelectObject(dc, font);
}

void PopupMenu::PaintRow(HDC dc, int item, const RECT& row)
{
    const MenuItem& shown = At(item);
    if (shown.IsSeparator())
    {
        FillRect(dc, &row, GetSysColorBrush(COLOR_MENU));
        DrawSeparator(dc, row);
        return;
    }
    const RowColors colors = ColorsOf(item == m_hot, shown.IsEnabled());
    FillRect(dc, &row, GetSysColorBrush(colors.background));
    const LONG left = row.left + m_metrics.margin;
    const LONG top = (row.top + row.bottom - m_metrics.pictureWidth) / 2;
    DrawPicture(dc, shown, {left, top, left + m_metrics.pictureWidth, top + m_metrics.pictureWidth}, colors.text);
    SetTextColor(dc, GetSysColor(colors.text));
    PaintTexts(dc, shown, row);
    if (shown.subMenu != nullptr)
        DrawSubMenuArrow(dc, row, colors.text);
}

void PopupMenu::PaintTexts(HDC dc, const MenuItem& item, const RECT& row)
{
    constexpr UINT kFormat = DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS;
    SelectObject(dc, m_fonts.Of(item));
    RECT place{m_layout.TextLeft(), row.top, m_layout.TextRight(), row.bottom};
    const std::u16string_view text = ItemText(item.text);
    const std::u16string_view shortcut = ItemShortcut(item.text);
    if (!text.empty())
        DrawTextW(dc, text.data(), static_cast<int>(text.size()), &place, kFormat | DT_LEFT);
    if (!shortcut.empty())
        DrawTextW(dc, shortcut.data(), static_cast<int>(shortcut.size()), &place, kFormat | DT_RIGHT);
}

void PopupMenu::PaintScrollArrow(HDC dc, PopupPart part)
{
    const RECT rect = m_layout.ScrollArrow(part);
    FillRect(dc, &rect, GetSysColorBrush(COLOR_MENU));
    const bool up = part == PopupPart::ScrollUp;
    const bool more = up ? m_offset > 0 : m_offset < m_layout.LastOffset();
    const LONG size = std::max<LONG>((rect.bottom - rect.top) / 3, 1);
    const LONG middle = (rect.left + rect.right) / 2;
    const LONG tip = (rect.top + rect.bottom + (up ? -size : size)) / 2;
    const LONG base = up ? tip + size : tip - size;
    const POINT triangle[] = {{middle - size, base}, {middle + size, base}, {middle, tip}};
    FillPolygon(dc, triangle, more ? COLOR_MENUTEXT : COLOR_BTNSHADOW);
}

} // namespace platform
