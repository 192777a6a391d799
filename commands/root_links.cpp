// The switches that link the user's own Start Menu and Desktop into the root level.
#include "app/launcher_state.h"
#include "app/options.h"
#include "menu/level_ref.h"
#include "prompts/remembered_prompt.h"
#include "resources/resource.h"
#include "support/resource_text.h"

namespace CustomMenu
{

namespace
{

/// The notice that what is linked are the real items. The user can silence it, for both links at once.
bool MayAddLink(HWND owner)
{
    return ShowRememberedPrompt(owner, MB_OKCANCEL | MB_ICONEXCLAMATION,
                                ResourceText(g_instance, STRING_LINK_NOTICE_CAPTION).c_str(), g_instance,
                                STRING_LINK_NOTICE, g_launcher.m_layoutRoot.c_str()) == IDOK;
}

void ToggleLink(CustomBar& root, std::uint32_t bit)
{
    const LevelRef held(root); // the notice dispatches messages
    if ((g_launcher.m_options & bit) == 0 && !MayAddLink(root.m_toolbar))
        return;
    g_launcher.m_options ^= bit;
    SaveOptions();
    root.m_refreshIndex = root.HotButton();
    root.RequestRefresh();
}

} // namespace

void CustomBar::ToggleStartMenuLink()
{
    ToggleLink(*this, OPTION_START_MENU);
}

void CustomBar::ToggleDesktopLink()
{
    ToggleLink(*this, OPTION_DESKTOP);
}

} // namespace CustomMenu
