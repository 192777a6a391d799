// The dialog that asks for an item's new name.
#pragma once

namespace CustomMenu
{

/// Shows the name in m_renameText of g_launcher, with its top left corner at m_renamePosition as far as the work area
/// has room. True when the user has accepted a valid name, which is then in m_renameText.
bool ShowRenameDialog();

} // namespace CustomMenu
