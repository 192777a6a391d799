// Where a popup menu and its rows are. Pure arithmetic: what the hands have measured in, rectangles out.
//
// Pixels at the display's scale. Rows are counted in the order of the menu's items; row rectangles are in the popup's
// client area, places of popups on the screen.
#pragma once

#include "windows.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace platform
{

struct PopupMetrics
{
    int rowHeight = 0;
    int separatorHeight = 0;
    int scrollHeight = 0; ///< of each of the two arrows of a menu that is too tall
    int pictureWidth = 0; ///< the column of pictures and check marks
    int margin = 0;       ///< left of the pictures, and between pictures and text
    int shortcutGap = 0;  ///< between the texts and their shortcuts, where there are any
    int rightRoom = 0;    ///< right of the text, for the sub-menu arrow
    int bottomRoom = 0;   ///< below the last row
};

struct PopupRow
{
    int text = 0;     ///< width of the text
    int shortcut = 0; ///< width of what stands behind the text's tab
    bool separator = false;
};

enum class PopupPart : std::uint8_t
{
    Nothing, ///< outside, or in the room below the last row
    Row,
    ScrollUp,
    ScrollDown,
};

struct PopupHit
{
    PopupPart part = PopupPart::Nothing;
    int row = -1;

    bool operator==(const PopupHit&) const = default;
};

class PopupLayout
{
public:
    PopupLayout() = default;
    /// `room` is the largest client area that there is place for.
    PopupLayout(std::span<const PopupRow> rows, const PopupMetrics& metrics, SIZE room);

    SIZE Client() const { return m_client; }
    bool Scrolls() const { return m_scrollHeight > 0; }
    /// The part of the client area in which rows show.
    RECT View() const;
    RECT ScrollArrow(PopupPart part) const;
    /// Left edge of the column of texts, and right edges of the texts and of their shortcuts.
    int TextLeft() const { return m_textLeft; }
    int TextRight() const { return m_textRight; }

    int Count() const { return static_cast<int>(m_bottoms.size()); }
    /// A row when the content is scrolled by `offset`; it may lie outside the view.
    RECT RowRect(int row, int offset) const;
    /// The first row that reaches below `y` of the content; the number of rows when none does.
    int FirstBelow(int y) const;
    PopupHit HitTest(POINT client, int offset) const;

    int LastOffset() const;
    /// The offset nearest to `offset` at which the whole row shows.
    int OffsetShowing(int row, int offset) const;
    /// One row further up (−1) or down (1), with a whole row at the top.
    int OffsetByRows(int offset, int rows) const;

private:
    int Top(int row) const { return row > 0 ? m_bottoms[static_cast<std::size_t>(row) - 1] : 0; }

    std::vector<int> m_bottoms; ///< in the content
    SIZE m_client{};
    int m_scrollHeight = 0; ///< 0 when all rows fit
    int m_textLeft = 0;
    int m_textRight = 0;
};

/// Where a popup of this size goes. `flags` are TrackPopupMenuEx's: how it lies to the point, and with an excluded
/// rectangle in which direction it gives way first. It is inside the work area wherever it fits, turned to the other
/// side of the point where that has the room.
RECT PlacePopup(SIZE size, POINT point, UINT flags, const std::optional<RECT>& exclude, const RECT& workArea);

/// Beside the row that opens it: on the right, or on the left where there is more room; `frame` is the border's width.
RECT PlaceSubPopup(SIZE size, const RECT& opener, int frame, const RECT& workArea);

} // namespace platform
