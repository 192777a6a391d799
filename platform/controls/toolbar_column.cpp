// A toolbar's buttons as a column of rows.
#include "platform/controls/toolbar_column.h"

#include <algorithm>

namespace platform
{

namespace
{

/// Extent of a separator that does not say its own.
constexpr int kDefaultSeparator = 8;

/// A small number in the place of the pointer would name a string of the control's own list, which it does not have.
std::u16string_view TextFrom(INT_PTR text)
{
    const bool isPointer = text != -1 && (static_cast<ULONG_PTR>(text) >> 16) != 0;
    return isPointer ? std::u16string_view(reinterpret_cast<LPCWSTR>(text)) : std::u16string_view();
}

} // namespace

const char16_t* TextPool::Add(std::u16string_view text)
{
    constexpr std::size_t kBlockSize = 8192;
    const std::size_t needed = text.size() + 1;
    if (needed > m_free)
    {
        m_free = std::max(kBlockSize, needed);
        m_next = m_blocks.emplace_back(std::make_unique_for_overwrite<char16_t[]>(m_free)).get();
    }
    char16_t* const copy = m_next;
    *std::copy(text.begin(), text.end(), copy) = u'\0';
    m_next += needed;
    m_free -= needed;
    return copy;
}

void TextPool::Clear()
{
    m_blocks.clear();
    m_free = 0;
}

void ToolbarColumn::Insert(int index, const TBBUTTON& button)
{
    index = std::clamp(index, 0, Count());
    const std::u16string_view text = TextFrom(button.iString);
    const bool append = index == Count();
    ToolbarButton& row = append ? m_buttons.emplace_back() : *m_buttons.emplace(m_buttons.begin() + index);
    row.image = button.iBitmap;
    row.command = button.idCommand;
    row.state = button.fsState;
    row.style = button.fsStyle;
    row.data = button.dwData;
    row.textLength = row.IsSeparator() ? 0 : static_cast<int>(text.size());
    row.text = m_texts.Add(text.substr(0, static_cast<std::size_t>(row.textLength)));
    if (!append)
    {
        m_unmeasured = std::min(m_unmeasured, index);
        m_bottoms.resize(std::min(m_bottoms.size(), static_cast<std::size_t>(index)));
    }
}

void ToolbarColumn::Remove(int index)
{
    const ToolbarButton removed = At(index);
    m_buttons.erase(m_buttons.begin() + index);
    m_bottoms.resize(std::min(m_bottoms.size(), static_cast<std::size_t>(index)));
    m_unmeasured = std::min(m_unmeasured, Count());
    if (removed.textWidth == m_widest)
    {
        m_widest = 0;
        m_unmeasured = 0;
    }
    if (m_buttons.empty())
        m_texts.Clear();
}

void ToolbarColumn::SetSize(int width, int itemHeight)
{
    if (itemHeight != m_itemHeight)
        m_bottoms.clear();
    m_width = width;
    m_itemHeight = itemHeight;
}

int ToolbarColumn::Extent(const ToolbarButton& button) const
{
    if (button.IsHidden())
        return 0;
    return !button.IsSeparator() ? m_itemHeight : button.image > 0 ? button.image : kDefaultSeparator;
}

void ToolbarColumn::LayOut(int index) const
{
    if (static_cast<std::size_t>(index) < m_bottoms.size())
        return;
    m_bottoms.reserve(m_buttons.size());
    int bottom = m_bottoms.empty() ? 0 : m_bottoms.back();
    for (std::size_t row = m_bottoms.size(); row < m_buttons.size(); ++row)
    {
        bottom += Extent(m_buttons[row]);
        m_bottoms.push_back(bottom);
    }
}

RECT ToolbarColumn::RectOf(int index) const
{
    if (!Has(index) || At(index).IsHidden())
        return {};
    LayOut(index);
    const int top = index > 0 ? m_bottoms[static_cast<std::size_t>(index - 1)] : 0;
    return {0, top, m_width, m_bottoms[static_cast<std::size_t>(index)]};
}

int ToolbarColumn::FirstBelow(int y) const
{
    LayOut(Count() - 1);
    return static_cast<int>(std::upper_bound(m_bottoms.begin(), m_bottoms.end(), y) - m_bottoms.begin());
}

int ToolbarColumn::HitTest(POINT point) const
{
    if (point.x < 0 || point.x >= m_width || point.y < 0)
        return -1;
    const int row = FirstBelow(point.y);
    if (!Has(row))
        return -1;
    // The first row's index has no negative; −1 says no more than "no item" there.
    return !At(row).IsSeparator() ? row : row > 0 ? -row : -1;
}

void ToolbarColumn::ForgetTextWidths()
{
    for (ToolbarButton& button : m_buttons)
        button.textWidth = -1;
    m_unmeasured = 0;
    m_widest = 0;
}

} // namespace platform
