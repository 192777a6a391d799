// The tree of windows: parents, children, Z-order, and finding one's way in it.
#include "platform/windowing/window.h"

#include <algorithm>

namespace platform
{
namespace
{

bool IsTopmost(const Window& window)
{
    return (window.exStyle & WS_EX_TOPMOST) != 0;
}

std::size_t IndexIn(const std::vector<Window*>& list, const Window* window)
{
    return static_cast<std::size_t>(std::find(list.begin(), list.end(), window) - list.begin());
}

/// Index behind the topmost windows of a list that does not hold the window itself.
std::size_t FirstNotTopmost(const std::vector<Window*>& list)
{
    return static_cast<std::size_t>(std::find_if(
                                        list.begin(), list.end(), [](const Window* w) { return !IsTopmost(*w); }) -
                                    list.begin());
}

/// Where in `list` (which does not hold the window) it goes.
std::size_t PlaceInList(const std::vector<Window*>& list, Window& window, HWND insertAfter)
{
    const bool topLevel = window.parent == nullptr;
    if (topLevel && insertAfter == HWND_TOPMOST)
    {
        window.exStyle |= WS_EX_TOPMOST;
        return 0;
    }
    if (topLevel && (insertAfter == HWND_NOTOPMOST || insertAfter == HWND_BOTTOM))
        window.exStyle &= ~static_cast<DWORD>(WS_EX_TOPMOST);
    const std::size_t firstNotTopmost = topLevel ? FirstNotTopmost(list) : 0;
    const std::size_t top = IsTopmost(window) ? 0 : firstNotTopmost;
    if (insertAfter == HWND_BOTTOM)
        return list.size();
    const Window* above = FindObject<Window>(insertAfter);
    const std::size_t index = above != nullptr ? IndexIn(list, above) : list.size();
    if (index == list.size())
        return top;
    // A window cannot leave its group: the topmost stay above the others.
    return topLevel && IsTopmost(window) ? std::min(index + 1, firstNotTopmost) : std::max(index + 1, top);
}

bool IsTransparentToHits(HWND window, POINT point)
{
    return SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(point.x, point.y)) == HTTRANSPARENT;
}

HWND ChildAtPoint(const Window& window, POINT point)
{
    const POINT origin = ClientOrigin(window);
    const POINT inClient{point.x - origin.x, point.y - origin.y};
    const RECT area{0, 0, Width(window.client), Height(window.client)};
    if (!PtInRect(&area, inClient))
        return nullptr;
    for (const HWND handle : HandlesOf(window.children))
    {
        const Window* child = FindObject<Window>(handle);
        const bool candidate =
            child != nullptr && (child->style & WS_VISIBLE) != 0 && (child->style & WS_DISABLED) == 0;
        if (candidate && PtInRect(&child->rect, inClient))
            if (const HWND found = WindowAtPoint(handle, point))
                return found;
    }
    return nullptr;
}

} // namespace

std::vector<Window*>& TopLevels()
{
    static auto& windows = *new std::vector<Window*>;
    return windows;
}

std::vector<HWND> HandlesOf(const std::vector<Window*>& windows)
{
    std::vector<HWND> handles(windows.size());
    std::transform(windows.begin(), windows.end(), handles.begin(), &HandleOf);
    return handles;
}

std::vector<Window*>& SiblingsOf(const Window& window)
{
    return window.parent != nullptr ? window.parent->children : TopLevels();
}

Window& RootOf(Window& window)
{
    Window* root = &window;
    while (root->parent != nullptr)
        root = root->parent;
    return *root;
}

const Window& RootOf(const Window& window)
{
    return RootOf(const_cast<Window&>(window));
}

bool IsDescendant(const Window& window, const Window& ancestor)
{
    for (const Window* w = window.parent; w != nullptr; w = w->parent)
        if (w == &ancestor)
            return true;
    return false;
}

bool IsShown(const Window& window)
{
    for (const Window* w = &window; w != nullptr; w = w->parent)
        if ((w->style & WS_VISIBLE) == 0)
            return false;
    return true;
}

bool IsReachable(const Window& window)
{
    for (const Window* w = &window; w != nullptr; w = w->parent)
        if ((w->style & WS_DISABLED) != 0)
            return false;
    return true;
}

POINT ClientOrigin(const Window& window)
{
    POINT origin{};
    for (const Window* w = &window; w != nullptr; w = w->parent)
    {
        origin.x += w->client.left;
        origin.y += w->client.top;
    }
    return origin;
}

RECT ScreenRect(const Window& window)
{
    if (window.parent == nullptr)
        return window.rect;
    const POINT origin = ClientOrigin(*window.parent);
    return Moved(window.rect, origin.x, origin.y);
}

bool PutInZOrder(Window& window, HWND insertAfter)
{
    auto& list = SiblingsOf(window);
    const std::size_t before = IndexIn(list, &window);
    if (before != list.size())
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(before));
    const std::size_t place = PlaceInList(list, window, insertAfter);
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(place), &window);
    return place != before;
}

void RemoveFromZOrder(Window& window)
{
    std::erase(SiblingsOf(window), &window);
}

HWND WindowAtPoint(HWND root, POINT point)
{
    if (const Window* window = FindObject<Window>(root))
        if (const HWND child = ChildAtPoint(*window, point))
            return child;
    const Window* window = FindObject<Window>(root);
    const bool passedOver = window == nullptr || (window->parent != nullptr && IsTransparentToHits(root, point));
    return passedOver ? nullptr : root;
}

} // namespace platform

using namespace platform;

BOOL IsWindow(HWND window)
{
    return FindObject<Window>(window) != nullptr;
}

BOOL IsWindowVisible(HWND window)
{
    const Window* found = RequireWindow(window);
    return found != nullptr && IsShown(*found);
}

BOOL IsWindowEnabled(HWND window)
{
    const Window* found = RequireWindow(window);
    return found != nullptr && (found->style & WS_DISABLED) == 0;
}

BOOL IsChild(HWND parent, HWND window)
{
    const Window* ancestor = FindObject<Window>(parent);
    const Window* found = FindObject<Window>(window);
    return ancestor != nullptr && found != nullptr && IsDescendant(*found, *ancestor);
}

HWND GetParent(HWND window)
{
    const Window* found = RequireWindow(window);
    if (found == nullptr)
        return nullptr;
    return HandleOf(found->IsChild() ? found->parent : found->owner);
}

HWND GetAncestor(HWND window, UINT flags)
{
    Window* found = RequireWindow(window);
    if (found == nullptr)
        return nullptr;
    return flags == GA_ROOT ? RootOf(*found).handle : Fail<HWND>(ERROR_INVALID_PARAMETER, nullptr);
}

HWND GetDlgItem(HWND window, int id)
{
    const Window* found = RequireWindow(window);
    if (found == nullptr)
        return nullptr;
    for (const Window* child : found->children)
        if (static_cast<int>(child->id) == id)
            return child->handle;
    return Fail<HWND>(ERROR_CONTROL_ID_NOT_FOUND, nullptr);
}

int GetDlgCtrlID(HWND window)
{
    const Window* found = RequireWindow(window);
    return found != nullptr && found->IsChild() ? static_cast<int>(found->id) : 0;
}

HWND WindowFromPoint(POINT point)
{
    for (const Window* window : TopLevels())
        if ((window->style & WS_VISIBLE) != 0 && PtInRect(&window->rect, point))
            return WindowAtPoint(window->handle, point);
    return nullptr;
}
