// A toolbar's buttons as a column of rows: what is where, without a window.
#pragma once

#include "commctrl.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <string_view>
#include <vector>

namespace platform
{

struct ToolbarButton
{
    DWORD_PTR data = 0;
    const char16_t* text = nullptr; ///< in the column's text pool
    int textLength = 0;
    int textWidth = -1;      ///< pixels; negative until measured
    int image = I_IMAGENONE; ///< a separator's extent in pixels
    int command = 0;
    BYTE state = 0;
    BYTE style = BTNS_BUTTON;

    bool IsSeparator() const { return (style & BTNS_SEP) != 0; }
    bool IsHidden() const { return (state & TBSTATE_HIDDEN) != 0; }
    bool IsEnabled() const { return (state & TBSTATE_ENABLED) != 0; }
};

/// Null-terminated texts that stay where they are until all are dropped.
class TextPool
{
public:
    const char16_t* Add(std::u16string_view text);
    void Clear();

private:
    std::vector<std::unique_ptr<char16_t[]>> m_blocks;
    char16_t* m_next = nullptr; ///< in the last block
    std::size_t m_free = 0;     ///< units left there
};

/// Rows from the top, all of one width; items have the set height, a separator its own. Appending costs constant time,
/// and finding a row's place or the row of a place logarithmic time at most, so a level may have thousands of items.
/// Coordinates are client coordinates of the toolbar.
class ToolbarColumn
{
public:
    int Count() const { return static_cast<int>(m_buttons.size()); }
    bool Has(int index) const { return index >= 0 && index < Count(); }
    ToolbarButton& At(int index) { return m_buttons[static_cast<std::size_t>(index)]; }
    const ToolbarButton& At(int index) const { return m_buttons[static_cast<std::size_t>(index)]; }
    /// Null-terminated; valid as long as the column holds any button.
    static std::u16string_view TextOf(const ToolbarButton& button)
    {
        return {button.text, static_cast<std::size_t>(button.textLength)};
    }

    /// An index past the end appends. The text is copied.
    void Insert(int index, const TBBUTTON& button);
    void Remove(int index);

    void SetSize(int width, int itemHeight);
    int Width() const { return m_width; }
    int ItemHeight() const { return m_itemHeight; }
    /// Empty for a hidden button.
    RECT RectOf(int index) const;
    /// Index of the item at a point; negative when there is none, a separator's index negated.
    int HitTest(POINT point) const;
    /// Index of the first row that ends below `y`, Count() when all end above.
    int FirstBelow(int y) const;

    /// The widest text after `measure(text)` has been asked for each text that has not been measured yet.
    template <typename Measure>
    int WidestText(Measure&& measure);
    /// All texts have to be measured again (the font has changed).
    void ForgetTextWidths();

private:
    int Extent(const ToolbarButton& button) const;
    /// Brings m_bottoms up to date for the rows up to and including `index`.
    void LayOut(int index) const;

    std::deque<ToolbarButton> m_buttons; ///< grows without moving
    TextPool m_texts;
    int m_width = 0;
    int m_itemHeight = 0;
    int m_unmeasured = 0; ///< buttons before this one have been measured
    int m_widest = 0;
    mutable std::vector<int> m_bottoms; ///< of the first rows; the rest is laid out when asked for
};

template <typename Measure>
int ToolbarColumn::WidestText(Measure&& measure)
{
    for (; m_unmeasured < Count(); ++m_unmeasured)
    {
        ToolbarButton& button = At(m_unmeasured);
        if (button.textWidth < 0)
            button.textWidth = button.textLength > 0 ? measure(TextOf(button)) : 0;
        m_widest = button.textWidth > m_widest ? button.textWidth : m_widest;
    }
    return m_widest;
}

} // namespace platform
