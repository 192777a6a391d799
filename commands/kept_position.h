// A place between a level's items while they may be loaded anew.
#pragma once

#include "content/ordering.h"
#include "menu/custom_bar.h"

namespace CustomMenu
{

/// A place between the items that stays beside the item that it was before.
class KeptPosition
{
public:
    KeptPosition(const CustomBar& level, int position)
        : m_level(level),
          m_position(position),
          m_hasItem(level.HasItem(position)),
          m_key(m_hasItem ? level.m_items[position].key : 0)
    {
    }

    int Now() const
    {
        if (!m_hasItem)
            return m_position;
        const int found = FindAgain(m_level.m_items, m_position, m_key);
        return found >= 0 ? found : m_position;
    }

private:
    const CustomBar& m_level;
    int m_position;
    bool m_hasItem;
    std::uint32_t m_key;
};

} // namespace CustomMenu
