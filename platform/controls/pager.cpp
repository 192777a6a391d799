// The pager control.
#include "platform/controls/pager.h"

#include "platform/windowing/window_class.h"

#include <utility>

namespace platform
{

namespace
{

constinit SystemClass g_class{WC_PAGESCROLLERW, &Pager::Procedure, kErasedByParent};

[[gnu::constructor]] void OfferClass()
{
    OfferSystemClass(g_class);
}

constexpr int kDefaultButtonSize = 12;
constexpr UINT_PTR kScrollTimer = 1;
constexpr UINT kRepeatInterval = 50;       ///< milliseconds between steps
constexpr UINT kFirstRepeatInterval = 500; ///< from a press to its second step

WORD HeldKeys()
{
    const auto down = [](int key) { return GetKeyState(key) < 0; };
    return static_cast<WORD>((down(VK_SHIFT) ? 1 : 0) | (down(VK_CONTROL) ? 2 : 0) | (down(VK_MENU) ? 4 : 0));
}

} // namespace

Pager::~Pager()
{
    if (m_drops)
        m_drops->Forget();
}

LRESULT Pager::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message >= PGM_FIRST && message <= PGM_GETBUTTONSTATE)
        return HandlePager(message, lParam);
    switch (message)
    {
    case WM_CREATE:
        Create(*reinterpret_cast<const CREATESTRUCTW*>(lParam));
        return 0;
    case WM_DESTROY:
        if (m_drops)
            RevokeDragDrop(Window());
        return 0;
    case WM_NCCALCSIZE:
        ShrinkClientArea(*reinterpret_cast<RECT*>(lParam));
        return 0;
    case WM_NCHITTEST:
        return HitTest(PointFrom(lParam));
    case WM_NCPAINT:
        PaintButtons();
        return 0;
    case WM_ERASEBKGND:
        EraseWithParent(Window(), reinterpret_cast<HDC>(wParam));
        return 1;
    case WM_SIZE:
        Recalculate();
        return 0;
    case WM_NOTIFY:
    case WM_COMMAND:
        return SendMessageW(m_owner, message, wParam, lParam);
    case WM_CONTEXTMENU:
        // Passed on in the pager's own name, which is what its owner knows the child's menu by.
        return SendMessageW(m_owner, message, reinterpret_cast<WPARAM>(Window()), lParam);
    case WM_TIMER:
        OnTimer();
        return 0;
    case WM_MOUSEMOVE:
    case WM_MOUSELEAVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
        return HandleMouse(message, lParam);
    default:
        return Default(message, wParam, lParam);
    }
}

void Pager::Create(const CREATESTRUCTW& create)
{
    m_owner = create.hwndParent;
    m_autoScroll = (create.style & PGS_AUTOSCROLL) != 0;
    m_extent.button = kDefaultButtonSize;
    if ((create.style & PGS_DRAGNDROP) == 0)
        return;
    m_drops = ComReference<PagerDropTarget>::Adopt(new PagerDropTarget(*this));
    RegisterDragDrop(Window(), m_drops.Get()); // refused, it scrolls by the mouse alone
}

LRESULT Pager::HandlePager(UINT message, LPARAM lParam)
{
    switch (message)
    {
    case PGM_SETCHILD:
        SetChild(reinterpret_cast<HWND>(lParam));
        return 0;
    case PGM_RECALCSIZE:
        Recalculate();
        return 0;
    case PGM_SETPOS:
        SetPosition(static_cast<int>(lParam));
        return 0;
    case PGM_GETPOS:
        return m_position;
    case PGM_SETBUTTONSIZE:
        return SetButtonSize(static_cast<int>(lParam));
    case PGM_GETBUTTONSIZE:
        return m_extent.button;
    case PGM_GETBUTTONSTATE:
        return lParam == PGB_TOPORLEFT || lParam == PGB_BOTTOMORRIGHT ? m_states[static_cast<std::size_t>(lParam)] : 0;
    default:
        return 0;
    }
}

LRESULT Pager::HandleMouse(UINT message, LPARAM lParam)
{
    switch (message)
    {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        Press(ButtonAt(PointFrom(lParam)));
        return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
        Release();
        return 0;
    case WM_MOUSELEAVE:
        if (!m_isDraggedOver)
            HoverOver(kNone, true);
        return 0;
    default:
        HoverOver(ButtonAt(PointFrom(lParam)), true);
        return 0;
    }
}

// --- position

void Pager::SetChild(HWND child)
{
    m_child = child;
    m_position = 0;
    if (IsWindow(child))
        SetParent(child, Window());
    Recalculate();
}

void Pager::SetPosition(int position)
{
    m_position = position;
    Recalculate();
}

int Pager::SetButtonSize(int size)
{
    const int previous = std::exchange(m_extent.button, size > 0 ? size : 0);
    Recalculate();
    return previous;
}

int Pager::Height() const
{
    RECT rect;
    GetWindowRect(Window(), &rect);
    return rect.bottom - rect.top;
}

void Pager::Recalculate()
{
    if (!Alive())
        return;
    m_extent.height = Height();
    m_extent.content = m_extent.height;
    if (IsWindow(m_child))
    {
        NMPGCALCSIZE size = {};
        size.dwFlag = PGF_CALCHEIGHT;
        size.iHeight = m_extent.height;
        Notify(m_owner, PGN_CALCSIZE, size);
        m_extent.content = size.iHeight;
    }
    if (!Alive())
        return;
    m_position = m_extent.Clamp(m_position);
    UpdateButtons();
    PlaceChild();
}

void Pager::PlaceChild()
{
    // A child that has been given another parent meanwhile (a level being rebuilt) is left where it is.
    if (!Alive() || !IsWindow(m_child) || GetParent(m_child) != Window())
        return;
    RECT client;
    GetClientRect(Window(), &client);
    SetWindowPos(m_child, nullptr, 0, -m_position, client.right, m_extent.content, SWP_NOZORDER | SWP_NOACTIVATE);
}

// --- buttons

bool Pager::CanScroll(int button) const
{
    return button == PGB_TOPORLEFT ? m_position > 0 : m_position < m_extent.Limit();
}

int Pager::WantedState(int button) const
{
    if (!CanScroll(button))
    {
        // A button must not vanish under the cursor that has just reached the end with it.
        return IsShowing(button) && (m_hover == button || m_pressed == button) ? PGF_GRAYED : PGF_INVISIBLE;
    }
    return m_pressed == button ? PGF_DEPRESSED : m_hover == button ? PGF_HOT : PGF_NORMAL;
}

void Pager::UpdateButtons()
{
    if (!Alive())
        return;
    const std::array<int, 2> wanted = {WantedState(PGB_TOPORLEFT), WantedState(PGB_BOTTOMORRIGHT)};
    const std::array<int, 2> previous = std::exchange(m_states, wanted);
    RECT client;
    GetClientRect(Window(), &client);
    RECT expected = {0, 0, client.right, m_extent.height};
    ShrinkClientArea(expected);
    if (client.bottom != expected.bottom - expected.top ||
        (previous[0] == PGF_INVISIBLE) != (wanted[0] == PGF_INVISIBLE))
    {
        SetWindowPos(Window(), nullptr, 0, 0, 0, 0,
                     SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        PlaceChild();
    }
    if (Alive() && previous != wanted)
        PaintButtons();
}

void Pager::ShrinkClientArea(RECT& rect) const
{
    const LONG height = rect.bottom - rect.top;
    const LONG upper = IsShowing(PGB_TOPORLEFT) ? m_extent.button : 0;
    const LONG lower = IsShowing(PGB_BOTTOMORRIGHT) ? m_extent.button : 0;
    rect.top += upper < height ? upper : height;
    rect.bottom -= upper + lower < height ? lower : rect.bottom - rect.top;
}

RECT Pager::ButtonRect(int button) const
{
    RECT rect;
    GetWindowRect(Window(), &rect);
    const LONG width = rect.right - rect.left;
    const LONG height = rect.bottom - rect.top;
    if (!IsShowing(button))
        return {};
    return button == PGB_TOPORLEFT ? RECT{0, 0, width, m_extent.button}
                                   : RECT{0, height - m_extent.button, width, height};
}

int Pager::ButtonAt(POINT client) const
{
    POINT point = client;
    ClientToScreen(Window(), &point);
    RECT window;
    GetWindowRect(Window(), &window);
    point.x -= window.left;
    point.y -= window.top;
    for (const int button : {PGB_TOPORLEFT, PGB_BOTTOMORRIGHT})
    {
        const RECT rect = ButtonRect(button);
        if (PtInRect(&rect, point))
            return button;
    }
    return kNone;
}

LRESULT Pager::HitTest(POINT screen) const
{
    POINT client = screen;
    ScreenToClient(Window(), &client);
    // The buttons take the mouse as if they were client area; the rest is the child's.
    return ButtonAt(client) != kNone ? HTCLIENT : HTTRANSPARENT;
}

// --- scrolling

void Pager::Scroll(int button)
{
    RECT client;
    GetClientRect(Window(), &client);
    NMPGSCROLL scroll = {};
    scroll.fwKeys = HeldKeys();
    scroll.rcParent = client;
    scroll.iDir = button == PGB_TOPORLEFT ? PGF_SCROLLUP : PGF_SCROLLDOWN;
    scroll.iYpos = m_position;
    scroll.iScroll = client.bottom;
    Notify(m_owner, PGN_SCROLL, scroll);
    if (Alive())
        SetPosition(m_position + (button == PGB_TOPORLEFT ? -scroll.iScroll : scroll.iScroll));
}

void Pager::OnDragOver(POINT screen)
{
    if (!Alive())
        return;
    ScreenToClient(Window(), &screen);
    m_isDraggedOver = true;
    HoverOver(ButtonAt(screen), false);
}

void Pager::OnDragLeave()
{
    m_isDraggedOver = false;
    if (Alive())
        HoverOver(kNone, false);
}

void Pager::HoverOver(int button, bool byMouse)
{
    if (button == m_hover)
        return;
    m_hover = button;
    if (m_pressed == kNone)
        StopTimer();
    if (button != kNone)
    {
        TRACKMOUSEEVENT event = {sizeof(event), TME_LEAVE, Window(), 0};
        if (byMouse)
            TrackMouseEvent(&event);
        if (m_autoScroll && m_pressed == kNone && CanScroll(button))
            StartTimer(kRepeatInterval);
    }
    UpdateButtons();
}

void Pager::Press(int button)
{
    if (button == kNone || !CanScroll(button))
        return;
    m_pressed = button;
    SetCapture(Window());
    UpdateButtons();
    StartTimer(kFirstRepeatInterval);
    if (Alive())
        Scroll(button);
}

void Pager::Release()
{
    if (m_pressed == kNone)
        return;
    m_pressed = kNone;
    StopTimer();
    if (GetCapture() == Window())
        ReleaseCapture();
    if (m_hover != kNone && m_autoScroll && CanScroll(m_hover))
        StartTimer(kRepeatInterval);
    UpdateButtons();
}

void Pager::OnTimer()
{
    const int button = m_pressed != kNone ? m_pressed : m_hover;
    // A disabled window is not told that the mouse has left it.
    const bool enabled = IsWindowEnabled(GetAncestor(Window(), GA_ROOT));
    if (button == kNone || !CanScroll(button) || !enabled)
    {
        StopTimer();
        return;
    }
    Scroll(button);
    if (Alive() && (m_pressed != kNone || m_hover != kNone))
        StartTimer(kRepeatInterval);
}

void Pager::StartTimer(UINT milliseconds)
{
    if (Alive()) // without a window it would be nobody's, and never end
        SetTimer(Window(), kScrollTimer, milliseconds, nullptr);
}

void Pager::StopTimer()
{
    KillTimer(Window(), kScrollTimer);
}

} // namespace platform
