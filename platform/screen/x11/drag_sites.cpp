// Who takes part in a drag: below a window manager's frame lies the window that says so.
#include "platform/screen/x11/drag_sites.h"

#include "platform/screen/x11/atoms.h"
#include "platform/screen/x11/connection.h"
#include "platform/screen/x11/drags.h"
#include "platform/screen/x11/windows.h"

#include <algorithm>

namespace platform::x11
{
namespace
{

// Levels of windows below a top-level one: frames within frames, and no further than the client.
constexpr int kDeepest = 4;

struct Candidate
{
    xcb_window_t topLevel;
    xcb_window_t window;
};

struct Questions
{
    xcb_get_property_cookie_t aware{};
    xcb_get_property_cookie_t proxy{};
    xcb_get_property_cookie_t state{};
    xcb_query_tree_cookie_t tree{};
};

xcb_get_property_cookie_t AskWord(xcb_window_t window, xcb_atom_t property)
{
    return xcb_get_property(Xcb(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
}

std::uint32_t TakeWord(xcb_get_property_cookie_t cookie)
{
    return CollectWord(cookie).value_or(0);
}

std::vector<xcb_window_t> TakeChildren(xcb_query_tree_cookie_t cookie)
{
    const auto reply = Collect(xcb_query_tree_reply, cookie);
    if (reply == nullptr)
        return {};
    const xcb_window_t* children = xcb_query_tree_children(reply.get());
    return {children, children + xcb_query_tree_children_length(reply.get())};
}

/// A proxy that does not name itself has been left behind by a program that ended.
DropSite MakeSite(xcb_window_t window, std::uint32_t version, xcb_window_t proxy)
{
    DropSite site{window, window, version};
    if (proxy != XCB_NONE)
    {
        const auto itself = AskWord(proxy, TheXdndAtoms()[Xdnd::Proxy]);
        const auto aware = AskWord(proxy, TheXdndAtoms()[Xdnd::Aware]);
        const bool valid = TakeWord(itself) == proxy;
        const std::uint32_t proxyVersion = TakeWord(aware);
        site = valid ? DropSite{window, proxy, proxyVersion} : site;
    }
    site.version = std::min(site.version, kXdndVersion);
    return site.version >= kOldestXdnd ? site : DropSite{};
}

Questions Ask(xcb_window_t window)
{
    Questions questions;
    questions.aware = AskWord(window, TheXdndAtoms()[Xdnd::Aware]);
    questions.proxy = AskWord(window, TheXdndAtoms()[Xdnd::Proxy]);
    questions.state = AskWord(window, AtomNamed("WM_STATE"));
    questions.tree = xcb_query_tree(Xcb(), window);
    return questions;
}

} // namespace

void DragSites::LookIntoAll()
{
    const std::vector<xcb_window_t> all = TakeChildren(xcb_query_tree(Xcb(), TheConnection().Root()));
    std::vector<xcb_get_window_attributes_cookie_t> cookies;
    for (const xcb_window_t window : all)
        cookies.push_back(xcb_get_window_attributes(Xcb(), window));
    std::vector<xcb_window_t> seen;
    for (std::size_t i = 0; i < all.size(); ++i)
    {
        const auto attributes = Collect(xcb_get_window_attributes_reply, cookies[i]);
        if (attributes != nullptr && attributes->map_state == XCB_MAP_STATE_VIEWABLE && FindNative(all[i]) == nullptr)
            seen.push_back(all[i]);
    }
    seen.push_back(TheConnection().Root());
    LookInto(seen);
}

/// Level by level, all windows of one level at once.
void DragSites::LookInto(const std::vector<xcb_window_t>& topLevels)
{
    std::vector<Candidate> level;
    for (const xcb_window_t window : topLevels)
    {
        m_sites[window] = {};
        level.push_back({window, window});
    }
    for (int depth = 0; depth < kDeepest && !level.empty(); ++depth)
    {
        std::vector<Questions> questions;
        for (const Candidate& candidate : level)
            questions.push_back(Ask(candidate.window));
        std::vector<Candidate> below;
        for (std::size_t i = 0; i < level.size(); ++i)
        {
            const std::uint32_t version = TakeWord(questions[i].aware);
            const xcb_window_t proxy = TakeWord(questions[i].proxy);
            const bool isClient = TakeWord(questions[i].state) != 0 || level[i].window == TheConnection().Root();
            const std::vector<xcb_window_t> children = TakeChildren(questions[i].tree);
            DropSite& site = m_sites[level[i].topLevel];
            if (site.window == 0 && (version != 0 || proxy != XCB_NONE))
                site = MakeSite(level[i].window, version, proxy);
            if (site.window == 0 && !isClient)
                for (const xcb_window_t child : children)
                    below.push_back({level[i].topLevel, child});
        }
        level = std::move(below);
    }
}

const DropSite& DragSites::SiteOf(xcb_window_t topLevel)
{
    const xcb_window_t window = topLevel != 0 ? topLevel : TheConnection().Root();
    if (!m_sites.contains(window))
        LookInto({window});
    return m_sites[window];
}

/// The id may come back as another window's.
void DragSites::OnWindowGone(xcb_window_t window)
{
    std::erase_if(
        m_sites, [&](const auto& entry)
        { return entry.first == window || entry.second.window == window || entry.second.listener == window; });
}

} // namespace platform::x11
