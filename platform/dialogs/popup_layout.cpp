// The arithmetic of popup_layout.h.
#include "platform/dialogs/popup_layout.h"

#include <algorithm>

namespace platform
{

namespace
{

LONG Clamp(LONG start, LONG length, LONG low, LONG high)
{
    return std::max(low, std::min(start, high - length));
}

/// Start of a span at `at` that lies before it (−1), around it (0) or behind it (1). A span that would leave the bounds
/// turns to the other side, or moves inside.
LONG PlaceSpan(LONG at, LONG length, int side, LONG low, LONG high)
{
    const LONG before = at - length;
    const bool beforeFits = before >= low && at <= high;
    const bool behindFits = at >= low && at + length <= high;
    if (side > 0)
        return behindFits || !beforeFits ? Clamp(at, length, low, high) : before;
    if (side < 0)
        return beforeFits || !behindFits ? Clamp(before, length, low, high) : at;
    return Clamp(at - length / 2, length, low, high);
}

/// Start of a span beside [from, to), on the wanted side (1 behind, −1 before) or the other one; nothing when neither
/// has the room.
std::optional<LONG> Beside(LONG from, LONG to, LONG length, int side, LONG low, LONG high)
{
    const bool before = from - length >= low;
    const bool behind = to + length <= high;
    if (!before && !behind)
        return std::nullopt;
    const bool goesBehind = side < 0 ? !before : behind;
    return goesBehind ? to : from - length;
}

int SideOf(UINT flags, UINT centered, UINT before)
{
    return (flags & centered) != 0 ? 0 : (flags & before) != 0 ? -1 : 1;
}

RECT At(LONG left, LONG top, SIZE size)
{
    return {left, top, left + size.cx, top + size.cy};
}

} // namespace

PopupLayout::PopupLayout(std::span<const PopupRow> rows, const PopupMetrics& metrics, SIZE room)
{
    int text = 0;
    int shortcut = 0;
    int bottom = 0;
    m_bottoms.reserve(rows.size());
    for (const PopupRow& row : rows)
    {
        text = std::max(text, row.text);
        shortcut = std::max(shortcut, row.shortcut);
        bottom += row.separator ? metrics.separatorHeight : metrics.rowHeight;
        m_bottoms.push_back(bottom);
    }
    m_textLeft = metrics.margin + metrics.pictureWidth + metrics.margin;
    const int shortcuts = shortcut > 0 ? metrics.shortcutGap + shortcut : 0;
    m_client.cx = std::min<LONG>(m_textLeft + text + shortcuts + metrics.rightRoom, room.cx);
    m_textRight = std::max<int>(m_textLeft, m_client.cx - metrics.rightRoom);
    m_client.cy = std::min<LONG>(bottom + metrics.bottomRoom, room.cy);
    if (bottom > room.cy)
        m_scrollHeight = std::min<int>(metrics.scrollHeight, room.cy / 3);
}

RECT PopupLayout::View() const
{
    return {0, m_scrollHeight, m_client.cx, m_client.cy - m_scrollHeight};
}

RECT PopupLayout::ScrollArrow(PopupPart part) const
{
    const RECT view = View();
    return part == PopupPart::ScrollUp ? RECT{0, 0, m_client.cx, view.top}
                                       : RECT{0, view.bottom, m_client.cx, m_client.cy};
}

RECT PopupLayout::RowRect(int row, int offset) const
{
    const int shift = m_scrollHeight - offset;
    return {0, Top(row) + shift, m_client.cx, m_bottoms[static_cast<std::size_t>(row)] + shift};
}

int PopupLayout::FirstBelow(int y) const
{
    return static_cast<int>(std::upper_bound(m_bottoms.begin(), m_bottoms.end(), y) - m_bottoms.begin());
}

PopupHit PopupLayout::HitTest(POINT client, int offset) const
{
    if (client.x < 0 || client.x >= m_client.cx || client.y < 0 || client.y >= m_client.cy)
        return {};
    const RECT view = View();
    if (client.y < view.top)
        return {PopupPart::ScrollUp, -1};
    if (client.y >= view.bottom)
        return {PopupPart::ScrollDown, -1};
    const int row = FirstBelow(client.y - view.top + offset);
    return row < Count() ? PopupHit{PopupPart::Row, row} : PopupHit{};
}

int PopupLayout::LastOffset() const
{
    const RECT view = View();
    return Scrolls() ? std::max<int>(0, m_bottoms.back() - (view.bottom - view.top)) : 0;
}

int PopupLayout::OffsetShowing(int row, int offset) const
{
    const RECT view = View();
    const int lowest = m_bottoms[static_cast<std::size_t>(row)] - static_cast<int>(view.bottom - view.top);
    return std::clamp(std::min(std::max(offset, lowest), Top(row)), 0, LastOffset());
}

int PopupLayout::OffsetByRows(int offset, int rows) const
{
    if (!Scrolls())
        return 0;
    const int first = FirstBelow(offset);
    const bool cut = Top(first) < offset; // at the very end the topmost row may show in part
    const int target = std::clamp(first + rows + (cut && rows < 0 ? 1 : 0), 0, Count() - 1);
    return std::clamp(Top(target), 0, LastOffset());
}

RECT PlacePopup(SIZE size, POINT point, UINT flags, const std::optional<RECT>& exclude, const RECT& workArea)
{
    const int across = SideOf(flags, TPM_CENTERALIGN, TPM_RIGHTALIGN);
    const int along = SideOf(flags, TPM_VCENTERALIGN, TPM_BOTTOMALIGN);
    const LONG left = PlaceSpan(point.x, size.cx, across, workArea.left, workArea.right);
    const LONG top = PlaceSpan(point.y, size.cy, along, workArea.top, workArea.bottom);
    const RECT plain = At(left, top, size);
    RECT common{};
    if (!exclude || !IntersectRect(&common, &plain, &*exclude))
        return plain;
    const RECT& keepOut = *exclude;
    const auto above = Beside(keepOut.top, keepOut.bottom, size.cy, along, workArea.top, workArea.bottom);
    const auto aside = Beside(keepOut.left, keepOut.right, size.cx, across, workArea.left, workArea.right);
    // By default the horizontal alignment is the one that is kept.
    const bool givesWayDown = above && ((flags & TPM_VERTICAL) == 0 || !aside);
    if (givesWayDown)
        return At(left, *above, size);
    return aside ? At(*aside, top, size) : plain;
}

RECT PlaceSubPopup(SIZE size, const RECT& opener, int frame, const RECT& workArea)
{
    const LONG right = opener.right;
    const LONG leftwards = opener.left - size.cx;
    const bool moreRoomLeft = opener.left - workArea.left > workArea.right - opener.right;
    const bool goesLeft = right + size.cx > workArea.right && (leftwards >= workArea.left || moreRoomLeft);
    return At(Clamp(goesLeft ? leftwards : right, size.cx, workArea.left, workArea.right),
              Clamp(opener.top - frame, size.cy, workArea.top, workArea.bottom), size);
}

} // namespace platform
