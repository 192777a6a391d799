// Guards around modal operations that the launcher starts.
#pragma once

#include "app/launcher_state.h"
#include "menu/level_ref.h"

#include <utility>

namespace CustomMenu
{

/// The whole menu takes no input and stays when another application becomes active. At the end it is enabled again and
/// the level brought to the foreground, whatever the outcome. Holds the level.
class MenuDisabled
{
public:
    explicit MenuDisabled(CustomBar& level) : m_held(level), m_level(level) { m_level.EnableMenu(false); }
    ~MenuDisabled() { m_level.EnableMenu(true); }
    MenuDisabled(const MenuDisabled&) = delete;
    MenuDisabled& operator=(const MenuDisabled&) = delete;

private:
    LevelRef m_held;
    CustomBar& m_level;
};

/// The level is known as the one on which an operation or a drag of the launcher's own is under way. Holds the level.
class OperationScope
{
public:
    explicit OperationScope(CustomBar& level) : m_held(level), m_outer(std::exchange(g_launcher.g_operationBar, &level))
    {
    }
    ~OperationScope() { g_launcher.g_operationBar = m_outer; }
    OperationScope(const OperationScope&) = delete;
    OperationScope& operator=(const OperationScope&) = delete;

private:
    LevelRef m_held;
    CustomBar* m_outer;
};

} // namespace CustomMenu
