// Native windows: creating, showing, placing, and putting pictures into them.
#include "platform/screen/x11/windows.h"

#include "platform/screen/x11/drags.h"
#include "platform/screen/x11/focus.h"

#include <algorithm>

namespace platform::x11
{
namespace
{

constexpr std::uint8_t kDepth = 24;

struct Windows
{
    std::vector<NativeWindowState> all;
    xcb_gcontext_t gc = 0;
    xcb_visualid_t visual = 0;
    xcb_colormap_t colormap = 0; ///< 0: the root's
};

Windows& TheWindows()
{
    static Windows& windows = *new Windows;
    return windows;
}

/// A visual with the pixels that surfaces have: 24 bits, red highest.
xcb_visualid_t FindVisual()
{
    const xcb_screen_t& screen = TheConnection().Screen();
    xcb_visualid_t found = 0;
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth))
    {
        auto visual = xcb_depth_visuals_iterator(depth.data);
        for (; depth.data->depth == kDepth && visual.rem > 0; xcb_visualtype_next(&visual))
        {
            const bool fits = visual.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.data->red_mask == 0xFF0000;
            if (fits && (found == 0 || visual.data->visual_id == screen.root_visual))
                found = visual.data->visual_id;
        }
    }
    return found;
}

bool ChooseVisual()
{
    Windows& windows = TheWindows();
    if (windows.visual == 0)
    {
        windows.visual = FindVisual();
        if (windows.visual != 0 && windows.visual != TheConnection().Screen().root_visual)
        {
            windows.colormap = xcb_generate_id(Xcb());
            xcb_create_colormap(Xcb(), XCB_COLORMAP_ALLOC_NONE, windows.colormap, TheConnection().Root(),
                                windows.visual);
        }
    }
    return windows.visual != 0;
}

int WidthOf(const RECT& rect)
{
    return std::max<int>(rect.right - rect.left, 1); // the server knows no empty windows
}

int HeightOf(const RECT& rect)
{
    return std::max<int>(rect.bottom - rect.top, 1);
}

void CreateX(const NativeWindowState& window)
{
    const bool popup = window.kind == screen::WindowKind::Popup;
    std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_BUTTON_PRESS |
                           XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_ENTER_WINDOW |
                           XCB_EVENT_MASK_LEAVE_WINDOW | XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    events |= popup ? 0 : XCB_EVENT_MASK_FOCUS_CHANGE;
    const Windows& windows = TheWindows();
    const xcb_colormap_t colormap =
        windows.colormap != 0 ? windows.colormap : TheConnection().Screen().default_colormap;
    // No background: the server leaves the pixels alone until the picture comes, so nothing flashes.
    const std::uint32_t values[] = {XCB_BACK_PIXMAP_NONE, 0, XCB_GRAVITY_NORTH_WEST, popup, events, colormap};
    xcb_create_window(Xcb(), kDepth, window.id, TheConnection().Root(), static_cast<std::int16_t>(window.bounds.left),
                      static_cast<std::int16_t>(window.bounds.top), static_cast<std::uint16_t>(WidthOf(window.bounds)),
                      static_cast<std::uint16_t>(HeightOf(window.bounds)), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      windows.visual,
                      XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_OVERRIDE_REDIRECT |
                          XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                      values);
}

xcb_gcontext_t GraphicsContext(xcb_window_t window)
{
    Windows& windows = TheWindows();
    if (windows.gc == 0)
    {
        windows.gc = xcb_generate_id(Xcb());
        const std::uint32_t noExposures = 0;
        xcb_create_gc(Xcb(), windows.gc, window, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    }
    return windows.gc;
}

void Configure(xcb_window_t window, std::uint16_t mask, std::initializer_list<std::int32_t> values)
{
    std::uint32_t raw[4] = {};
    std::copy(values.begin(), values.end(), raw);
    xcb_configure_window(Xcb(), window, mask, raw);
}

/// True when the size is a new one.
bool TakeBounds(NativeWindowState& window, const RECT& bounds)
{
    const bool resized = WidthOf(bounds) != WidthOf(window.bounds) || HeightOf(bounds) != HeightOf(window.bounds);
    window.bounds = bounds;
    if (resized)
    {
        auto pixels = std::make_shared<PixelBuffer>(WidthOf(bounds), HeightOf(bounds));
        window.pixels = pixels->Pixels().pixels != nullptr ? std::move(pixels) : window.pixels;
    }
    return resized;
}

} // namespace

NativeWindowState* FindNative(xcb_window_t id)
{
    for (NativeWindowState& window : TheWindows().all)
        if (window.id == id && id != 0)
            return &window;
    return nullptr;
}

bool AnyShown()
{
    const auto& all = TheWindows().all;
    return std::any_of(all.begin(), all.end(), [](const NativeWindowState& window) { return window.shown; });
}

bool PointIsInPopup(POINT point)
{
    const auto& all = TheWindows().all;
    return std::any_of(all.begin(), all.end(),
                       [&](const NativeWindowState& w)
                       {
                           const RECT& b = w.bounds;
                           const bool inside =
                               point.x >= b.left && point.x < b.right && point.y >= b.top && point.y < b.bottom;
                           return w.kind == screen::WindowKind::Popup && w.shown && inside;
                       });
}

void Repaint(NativeWindowState& window, const RECT& rect)
{
    const Surface& pixels = window.pixels->Pixels();
    const RECT inside{std::max<LONG>(rect.left, 0), std::max<LONG>(rect.top, 0),
                      std::min<LONG>(rect.right, pixels.width), std::min<LONG>(rect.bottom, pixels.height)};
    if (inside.left < inside.right && inside.top < inside.bottom)
        window.pixels->Send(window.id, GraphicsContext(window.id), inside);
}

void RepaintAll()
{
    for (NativeWindowState& window : TheWindows().all)
        if (window.shown && !window.mapPending)
            Repaint(window, {0, 0, window.pixels->Pixels().width, window.pixels->Pixels().height});
}

void FocusManaged(NativeWindowState& window)
{
    window.keyboardWanted = !window.viewable;
    if (!window.viewable)
        return;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window.id;
    message.type = TheConnection()[Atom::NetActiveWindow];
    message.data.data32[0] = 2; // as a pager asks: at the user's wish
    xcb_send_event(Xcb(), 0, TheConnection().Root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    IgnoreErrors(xcb_set_input_focus_checked(Xcb(), XCB_INPUT_FOCUS_POINTER_ROOT, window.id, XCB_CURRENT_TIME));
}

void PutPopupsBelow(xcb_window_t frame)
{
    for (const NativeWindowState& window : TheWindows().all)
    {
        if (window.kind == screen::WindowKind::Popup && window.shown)
        {
            const std::uint32_t values[] = {frame, XCB_STACK_MODE_BELOW};
            // Fails where the frame has a window around it in turn; then the stacking is as the manager wants it.
            IgnoreErrors(xcb_configure_window_checked(
                Xcb(), window.id, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values));
        }
    }
}

void RaisePopups()
{
    for (const NativeWindowState& window : TheWindows().all)
        if (window.kind == screen::WindowKind::Popup && window.shown)
            Configure(window.id, XCB_CONFIG_WINDOW_STACK_MODE, {XCB_STACK_MODE_ABOVE});
}

} // namespace platform::x11

namespace platform::screen
{

using namespace x11;

NativeWindow CreateNativeWindow(const WindowOptions& options)
{
    if (!TheConnection().IsOpen() || !ChooseVisual())
        return 0;
    TheConnection().SendSecondBatch();
    NativeWindowState window;
    window.id = xcb_generate_id(Xcb());
    window.kind = options.kind;
    window.bounds = options.bounds;
    window.placed = {options.bounds.left, options.bounds.top};
    window.pixels = std::make_shared<PixelBuffer>(WidthOf(window.bounds), HeightOf(window.bounds));
    if (window.pixels->Pixels().pixels == nullptr)
        return 0;
    CreateX(window);
    SetProperties(window, options);
    TheWindows().all.push_back(std::move(window));
    return TheWindows().all.back().id;
}

void DestroyNativeWindow(NativeWindow window)
{
    if (FindNative(window) == nullptr)
        return;
    ShowNativeWindow(window, false);
    xcb_destroy_window(Xcb(), window);
    HandleWindowGone(window);
    std::erase_if(TheWindows().all, [&](const NativeWindowState& candidate) { return candidate.id == window; });
}

void ShowNativeWindow(NativeWindow window, bool show)
{
    NativeWindowState* found = FindNative(window);
    if (found == nullptr || found->shown == show)
        return;
    found->shown = show;
    found->mapPending = show;
    found->waiting.clear();
    if (show)
        return;
    found->viewable = false;
    if (!AnyShown())
    {
        // Before the window goes, so that no moment is left in which the keyboard belongs to nobody.
        ReleaseKeyboard();
    }
    xcb_unmap_window(Xcb(), window);
    if (found->kind == WindowKind::Managed)
    {
        // ICCCM 4.1.4: a window that is withdrawn also says so to the root window.
        xcb_unmap_notify_event_t message{};
        message.response_type = XCB_UNMAP_NOTIFY;
        message.event = TheConnection().Root();
        message.window = window;
        xcb_send_event(Xcb(), 0, TheConnection().Root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
    }
    HandleOwnWindowHidden(window);
}

void PlaceNativeWindow(NativeWindow window, const RECT& bounds)
{
    NativeWindowState* found = FindNative(window);
    if (found == nullptr)
        return;
    const RECT before = found->bounds;
    const bool resized = TakeBounds(*found, bounds);
    if (resized && found->kind == WindowKind::Managed)
        SetFixedSize(*found);
    if (resized || bounds.left != before.left || bounds.top != before.top)
    {
        found->placed = {bounds.left, bounds.top};
        Configure(window,
                  XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                  {bounds.left, bounds.top, WidthOf(bounds), HeightOf(bounds)});
    }
}

void NotePlacement(NativeWindow window, const RECT& bounds)
{
    if (NativeWindowState* found = FindNative(window))
        TakeBounds(*found, bounds);
}

void StackNativeWindow(NativeWindow window, NativeWindow above)
{
    const NativeWindowState* found = FindNative(window);
    const NativeWindowState* sibling = FindNative(above);
    if (found == nullptr)
        return;
    // A managed window's place among others is the window manager's business, and no sibling of ours.
    if (sibling != nullptr && sibling->kind == WindowKind::Popup && found->kind == WindowKind::Popup)
    {
        Configure(window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                  {static_cast<std::int32_t>(above), XCB_STACK_MODE_BELOW});
    }
    else if (sibling == nullptr)
    {
        Configure(window, XCB_CONFIG_WINDOW_STACK_MODE, {XCB_STACK_MODE_ABOVE});
    }
}

void SetNativeTitle(NativeWindow window, std::u16string_view title)
{
    if (FindNative(window) != nullptr)
        SetTitle(window, title);
}

void RingBell()
{
    if (xcb_connection_t* xcb = Xcb())
        xcb_bell(xcb, 0); // at the volume that the user has chosen
}

const Surface& WindowSurface(NativeWindow window)
{
    static const Surface& none = *new Surface;
    const NativeWindowState* found = FindNative(window);
    return found != nullptr ? found->pixels->Pixels() : none;
}

std::shared_ptr<void> KeepSurface(NativeWindow window)
{
    const NativeWindowState* found = FindNative(window);
    return found != nullptr ? found->pixels : nullptr;
}

void Present(NativeWindow window, std::span<const RECT> damage)
{
    NativeWindowState* found = FindNative(window);
    if (found == nullptr || !found->shown)
        return;
    if (found->mapPending)
    {
        found->waiting.insert(found->waiting.end(), damage.begin(), damage.end());
        return;
    }
    for (const RECT& rect : damage)
        Repaint(*found, rect);
}

void Commit()
{
    if (!TheConnection().IsOpen())
        return;
    for (NativeWindowState& window : TheWindows().all)
    {
        if (std::exchange(window.mapPending, false))
        {
            window.mapSequence = static_cast<std::uint16_t>(xcb_map_window(Xcb(), window.id).sequence);
            for (const RECT& rect : std::exchange(window.waiting, {}))
                Repaint(window, rect);
        }
    }
    TakeWantedKeyboard();
    xcb_flush(Xcb());
}

void Finish()
{
    if (!TheConnection().IsOpen())
        return;
    DeselectRawEvents();
    Commit();
    Collect(xcb_get_input_focus_reply, xcb_get_input_focus(Xcb()));
}

} // namespace platform::screen
