// DefWindowProcW: what a window does with the messages that it does not handle.
//
// Not done, because nothing here has them: menus in windows, minimising and maximising, icons, system commands, help.
#include "platform/windowing/window.h"
#include "platform/windowing/window_dc.h"

#include "windowsx.h"

namespace platform
{
namespace
{

constexpr LRESULT kHitBorder = 18; // HTBORDER

bool Contains(const RECT& rect, POINT point)
{
    return PtInRect(&rect, point) != FALSE;
}

void CalculateFrame(const Window& window, RECT& rect)
{
    if (window.HasFrame())
    {
        InflateRect(&rect, -1, -1);
        rect.right = std::max(rect.left, rect.right);
        rect.bottom = std::max(rect.top, rect.bottom);
    }
}

LRESULT HitTest(const Window& window, POINT point)
{
    if (!Contains(ScreenRect(window), point))
        return HTNOWHERE;
    const POINT origin = ClientOrigin(window);
    const RECT client{origin.x, origin.y, origin.x + Width(window.client), origin.y + Height(window.client)};
    return Contains(client, point) ? HTCLIENT : kHitBorder;
}

void DrawFrame(Window& window)
{
    if (!window.HasFrame())
        return;
    const RECT place = ScreenRect(window);
    const RECT root = RootOf(window).rect;
    const POINT client = ClientOrigin(window);
    Region frame = VisibleRegion(window, false);
    frame.Remove(Region(RECT{client.x - root.left, client.y - root.top, client.x - root.left + Width(window.client),
                             client.y - root.top + Height(window.client)}));
    const HDC dc = OpenContext(window, false, frame, frame);
    const RECT whole{0, 0, Width(place), Height(place)};
    FrameRect(dc, &whole, GetSysColorBrush(COLOR_WINDOWFRAME));
    CloseContext(dc);
}

LRESULT EraseBackground(const Window& window, HDC dc)
{
    const HBRUSH brush = window.windowClass->background;
    RECT area{};
    if (brush == nullptr || GetClipBox(dc, &area) == ERROR)
        return 0;
    FillRect(dc, &area, brush);
    return 1;
}

void Paint(HWND handle)
{
    PAINTSTRUCT paint{};
    if (BeginPaint(handle, &paint) != nullptr)
    {
        EndPaint(handle, &paint);
    }
    else
    {
        // Out of handles: what cannot be painted now must not be asked for again at once.
        ValidateRect(handle, nullptr);
    }
}

void ReportPlace(HWND handle, const WINDOWPOS& position)
{
    const Window* window = FindObject<Window>(handle);
    const bool clientMoved = (position.flags & SWP_NOMOVE) == 0;
    const bool clientSized = (position.flags & (SWP_NOSIZE | SWP_FRAMECHANGED)) != SWP_NOSIZE;
    if (window != nullptr && clientMoved)
        SendMessageW(handle, WM_MOVE, 0, MAKELPARAM(window->client.left, window->client.top));
    window = FindObject<Window>(handle);
    if (window != nullptr && clientSized)
        SendMessageW(handle, WM_SIZE, 0, MAKELPARAM(Width(window->client), Height(window->client)));
}

LRESULT AskParent(const Window& window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return window.IsChild() && window.parent != nullptr ? SendMessageW(window.parent->handle, message, wParam, lParam)
                                                        : 0;
}

LRESULT SetClassCursor(const Window& window, WPARAM wParam, LPARAM lParam)
{
    const HCURSOR own = window.windowClass->cursor; // taken now: the parent may destroy the window
    // A parent may want to say something about its children's area; it answers TRUE when it has.
    if (AskParent(window, WM_SETCURSOR, wParam, lParam) != 0)
        return TRUE;
    const HCURSOR cursor = LOWORD(lParam) == HTCLIENT ? own : nullptr;
    SetCursor(cursor != nullptr ? cursor : LoadCursorW(nullptr, IDC_ARROW));
    return FALSE;
}

/// What a control is to draw with whose parent has no wish of its own: the text's colour is set, the brush returned.
LRESULT ControlColors(UINT message, HDC dc)
{
    const bool edit = message == WM_CTLCOLOREDIT;
    SetTextColor(dc, GetSysColor(edit ? COLOR_WINDOWTEXT : COLOR_BTNTEXT));
    return reinterpret_cast<LRESULT>(GetSysColorBrush(edit ? COLOR_WINDOW : COLOR_BTNFACE));
}

LRESULT CopyText(const Window& window, WPARAM capacity, LPARAM buffer)
{
    auto* text = reinterpret_cast<LPWSTR>(buffer);
    if (capacity == 0 || text == nullptr)
        return 0;
    const std::size_t copied = window.text.copy(text, capacity - 1);
    text[copied] = 0;
    return static_cast<LRESULT>(copied);
}

void StoreText(Window& window, LPCWSTR text)
{
    window.text = text != nullptr ? text : u"";
    if (window.native != 0)
        screen::SetNativeTitle(window.native, window.text);
}

void SetRedraw(Window& window, bool redraw)
{
    window.redraw = redraw;
}

LRESULT HandleFrameMessage(Window& window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const HWND handle = window.handle;
    switch (message)
    {
    case WM_NCCREATE:
        if (const auto* create = reinterpret_cast<const CREATESTRUCTW*>(lParam))
            StoreText(window, IS_INTRESOURCE(create->lpszName) ? nullptr : create->lpszName);
        return TRUE;
    case WM_NCCALCSIZE:
        CalculateFrame(window, *reinterpret_cast<RECT*>(lParam));
        return 0;
    case WM_NCHITTEST:
        return HitTest(window, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
    case WM_NCPAINT:
        DrawFrame(window);
        return 0;
    case WM_NCACTIVATE:
        return TRUE;
    case WM_WINDOWPOSCHANGED:
        ReportPlace(handle, *reinterpret_cast<const WINDOWPOS*>(lParam));
        return 0;
    case WM_CLOSE:
        DestroyWindow(handle);
        return 0;
    case WM_ACTIVATE:
        if (LOWORD(wParam) != WA_INACTIVE)
            SetFocus(handle);
        return 0;
    case WM_SETREDRAW:
        SetRedraw(window, wParam != 0);
        return 0;
    default:
        return 0;
    }
}

LRESULT HandleInputMessage(Window& window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const HWND handle = window.handle;
    switch (message)
    {
    case WM_SETCURSOR:
        return SetClassCursor(window, wParam, lParam);
    case WM_MOUSEACTIVATE:
    {
        const LRESULT answer = AskParent(window, message, wParam, lParam);
        return answer != 0 ? answer : MA_ACTIVATE;
    }
    case WM_RBUTTONUP:
    {
        POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
        ClientToScreen(handle, &point);
        SendMessageW(handle, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(handle), MAKELPARAM(point.x, point.y));
        return 0;
    }
    case WM_CONTEXTMENU:
    case WM_MOUSEWHEEL:
        return AskParent(window, message, wParam, lParam);
    case WM_KEYUP:
        if (wParam == VK_APPS)
            SendMessageW(handle, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(handle), -1);
        return 0;
    case WM_SYSKEYDOWN:
        if (wParam == VK_F10 && GetKeyState(VK_SHIFT) < 0)
        {
            SendMessageW(handle, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(handle), -1);
        }
        else if (wParam == VK_F4 && GetKeyState(VK_MENU) < 0)
        {
            const Window& root = RootOf(window);
            PostMessageW((root.style & WS_DISABLED) == 0 ? root.handle : nullptr, WM_CLOSE, 0, 0);
        }
        return 0;
    case WM_CANCELMODE:
        if (GetCapture() == handle)
            ReleaseCapture();
        return 0;
    default:
        return 0;
    }
}

} // namespace
} // namespace platform

using namespace platform;

LRESULT DefWindowProcW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam)
{
    Window* window = RequireWindow(handle);
    if (window == nullptr)
        return 0;
    switch (message)
    {
    case WM_PAINT:
        Paint(handle);
        return 0;
    case WM_ERASEBKGND:
        return EraseBackground(*window, reinterpret_cast<HDC>(wParam));
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
        return ControlColors(message, reinterpret_cast<HDC>(wParam));
    case WM_SETTEXT:
        StoreText(*window, reinterpret_cast<LPCWSTR>(lParam));
        return TRUE;
    case WM_GETTEXT:
        return CopyText(*window, wParam, lParam);
    case WM_GETTEXTLENGTH:
        return static_cast<LRESULT>(window->text.size());
    case WM_SETCURSOR:
    case WM_MOUSEACTIVATE:
    case WM_RBUTTONUP:
    case WM_CONTEXTMENU:
    case WM_MOUSEWHEEL:
    case WM_KEYUP:
    case WM_SYSKEYDOWN:
    case WM_CANCELMODE:
        return HandleInputMessage(*window, message, wParam, lParam);
    default:
        return HandleFrameMessage(*window, message, wParam, lParam);
    }
}
