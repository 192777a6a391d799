// Window subclassing: a chain of procedures in front of a window's own.
#include "platform/base/fault_points.h"
#include "commctrl.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace platform
{

namespace
{

struct Link
{
    SUBCLASSPROC procedure;
    UINT_PTR id;
    DWORD_PTR data;
    bool removed = false;
};

struct Chain
{
    WNDPROC original = nullptr;
    std::vector<Link> links; ///< the last one is called first
    int running = 0;         ///< messages on their way through
    bool hasRemoved = false; ///< some links are to be dropped
    bool windowGone = false;
};

/// One message on its way through a chain. Links below `next` have still to see it; a link that is added meanwhile
/// goes to the end and so does not see it.
struct Passage
{
    HWND window;
    Chain* chain;
    std::size_t next;
    Passage* outer;
};

constinit Passage* g_innermost = nullptr;

LRESULT CALLBACK RunChain(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// A handful at most: a search from the front is the quickest.
std::vector<std::pair<HWND, Chain*>>& Chains()
{
    static auto& chains = *new std::vector<std::pair<HWND, Chain*>>;
    return chains;
}

Chain* FindChain(HWND window)
{
    const auto& chains = Chains();
    const auto found =
        std::find_if(chains.begin(), chains.end(), [&](const auto& entry) { return entry.first == window; });
    return found != chains.end() ? found->second : nullptr;
}

Link* FindLink(Chain& chain, SUBCLASSPROC procedure, UINT_PTR id)
{
    const auto found =
        std::find_if(chain.links.begin(), chain.links.end(),
                     [&](const Link& link) { return !link.removed && link.procedure == procedure && link.id == id; });
    return found != chain.links.end() ? &*found : nullptr;
}

LRESULT Continue(Passage& passage, UINT message, WPARAM wParam, LPARAM lParam)
{
    Chain& chain = *passage.chain;
    if (chain.windowGone)
        return 0;
    const std::size_t before = passage.next;
    while (passage.next > 0 && chain.links[passage.next - 1].removed)
        --passage.next;
    LRESULT result = 0;
    if (passage.next > 0)
    {
        const Link link = chain.links[--passage.next];
        result = link.procedure(passage.window, message, wParam, lParam, link.id, link.data);
    }
    else
    {
        result = CallWindowProcW(chain.original, passage.window, message, wParam, lParam);
    }
    // A link may pass the message on more than once.
    passage.next = before;
    return result;
}

void Forget(HWND window, Chain& chain)
{
    std::erase_if(Chains(), [&](const auto& entry) { return entry.first == window; });
    chain.windowGone = true;
}

/// Drops removed links once nothing runs, and the chain with its last link.
void CleanUp(HWND window, Chain* chain)
{
    if (chain->running > 0 || !(chain->hasRemoved || chain->windowGone))
        return;
    std::erase_if(chain->links, [](const Link& link) { return link.removed; });
    if (chain->links.empty() && !chain->windowGone)
    {
        // Somebody who replaced the procedure afterwards will still call RunChain, which then passes on.
        if (GetWindowLongPtrW(window, GWLP_WNDPROC) != reinterpret_cast<LONG_PTR>(RunChain))
            return;
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(chain->original));
        Forget(window, *chain);
    }
    chain->hasRemoved = false;
    if (chain->windowGone)
        delete chain;
}

LRESULT CALLBACK RunChain(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Chain* chain = FindChain(window);
    if (chain == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    Passage passage{window, chain, chain->links.size(), g_innermost};
    g_innermost = &passage;
    ++chain->running;
    const LRESULT result = Continue(passage, message, wParam, lParam);
    --chain->running;
    g_innermost = passage.outer;
    if (message == WM_NCDESTROY && !chain->windowGone)
        Forget(window, *chain);
    CleanUp(window, chain);
    return result;
}

Chain* Attach(HWND window)
{
    const LONG_PTR original = GetWindowLongPtrW(window, GWLP_WNDPROC);
    if (original == 0)
        return nullptr;
    auto* chain = new Chain;
    chain->original = reinterpret_cast<WNDPROC>(original);
    Chains().emplace_back(window, chain);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(RunChain));
    return chain;
}

} // namespace

} // namespace platform

using namespace platform;

BOOL SetWindowSubclass(HWND window, SUBCLASSPROC procedure, UINT_PTR id, DWORD_PTR data)
{
    if (procedure == nullptr || !IsWindow(window) || FaultPoint("SetWindowSubclass"))
        return FALSE;
    Chain* chain = FindChain(window);
    if (chain == nullptr && (chain = Attach(window)) == nullptr)
        return FALSE;
    if (Link* link = FindLink(*chain, procedure, id))
        link->data = data;
    else
        chain->links.push_back({procedure, id, data});
    return TRUE;
}

BOOL RemoveWindowSubclass(HWND window, SUBCLASSPROC procedure, UINT_PTR id)
{
    Chain* chain = FindChain(window);
    Link* link = chain != nullptr ? FindLink(*chain, procedure, id) : nullptr;
    if (link == nullptr)
        return FALSE;
    link->removed = true;
    chain->hasRemoved = true;
    CleanUp(window, chain);
    return TRUE;
}

LRESULT DefSubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    // The innermost passage is this window's, unless a link calls for a window whose message it is not handling.
    return g_innermost != nullptr && g_innermost->window == window ? Continue(*g_innermost, message, wParam, lParam)
                                                                   : 0;
}
