// Holding on to a level while code runs that may close it.
#pragma once

#include "menu/custom_bar.h"

namespace CustomMenu
{

/// A reference to a level for the length of a scope. Whatever dispatches messages may close any level; with the
/// reference its memory stays, its window may be gone (m_closing).
class LevelRef
{
public:
    explicit LevelRef(CustomBar& level) : m_level(level) { m_level.AddRef(); }
    ~LevelRef() { m_level.Release(); }
    LevelRef(const LevelRef&) = delete;
    LevelRef& operator=(const LevelRef&) = delete;

private:
    CustomBar& m_level;
};

} // namespace CustomMenu
