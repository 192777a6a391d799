// Who takes part in a drag: from the top-level window under the pointer to the window that XDND's messages are for.
#pragma once

#include "platform/screen/x11/drag_source.h"

#include <map>

namespace platform::x11
{

class DragSites
{
public:
    /// Looks into all top-level windows that are there now: a few round trips for all of them together.
    void LookIntoAll();
    /// `topLevel`: a child of the root, or 0 for the bare root. One that has come since LookIntoAll is looked into now.
    const DropSite& SiteOf(xcb_window_t topLevel);
    void OnWindowGone(xcb_window_t window);

private:
    void LookInto(const std::vector<xcb_window_t>& topLevels);

    std::map<xcb_window_t, DropSite> m_sites; ///< by top-level window
};

} // namespace platform::x11
