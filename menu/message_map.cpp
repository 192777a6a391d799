// The message map of a level: from message to handler, and the handlers that are about the window itself.
#include "menu/custom_bar.h"

#include "menu/level_ref.h"

#include <windowsx.h>

namespace CustomMenu
{

namespace
{

/// −1 when the screen point is over no button.
int ButtonAt(const CustomBar& level, POINT point)
{
    ScreenToClient(level.m_toolbar, &point);
    return static_cast<int>(level.SendToolbar(TB_HITTEST, 0, reinterpret_cast<LPARAM>(&point)));
}

void FillRequestedSize(NMPGCALCSIZE& request, HWND toolbar)
{
    RECT rect{};
    GetWindowRect(toolbar, &rect);
    if (request.dwFlag & PGF_CALCWIDTH)
        request.iWidth = rect.right - rect.left;
    if (request.dwFlag & PGF_CALCHEIGHT)
        request.iHeight = rect.bottom - rect.top;
}

void RestoreHighlight(CustomBar& level)
{
    if (level.HasItem(level.m_openIndex))
    {
        level.SetHotItem(level.m_items[level.m_openIndex].order);
    }
    else if (level.m_refreshIndex != -1)
    {
        // The next hover counts as a movement even where the cursor rests.
        if (!level.m_refreshByKeyboard)
            level.m_lastMessagePos = 0xFFFFFFFF;
        level.OnItemCommand(ItemCommandMode::Select, level.m_refreshIndex);
        level.m_refreshIndex = -1;
        level.m_refreshByKeyboard = false;
    }
    else
    {
        level.SetHotItem(-1);
    }
}

} // namespace

struct CustomBar::MessageEntry
{
    UINT message;
    MessageHandler handler;
};

const CustomBar::MessageEntry CustomBar::kMessageMap[] = {
    {WM_NOTIFY, &CustomBar::OnNotify},
    {WM_ERASEBKGND, &CustomBar::OnEraseBackground},
    {WM_CREATE, &CustomBar::OnCreate},
    {WM_DESTROY, &CustomBar::OnDestroy},
    {WM_ACTIVATE, &CustomBar::OnActivate},
    {WM_ACTIVATEAPP, &CustomBar::OnActivateApp},
    {WM_MOUSEACTIVATE, &CustomBar::OnMouseActivate},
    {WM_CONTEXTMENU, &CustomBar::OnContextMenu},
    {WM_TIMER, &CustomBar::OnTimer},
    {WM_MOUSEWHEEL, &CustomBar::OnMouseWheel},
    {WM_APP_REFRESH, &CustomBar::OnRefresh},
    {WM_APP_BEGINDRAG, &CustomBar::OnBeginDrag},
    {WM_APP_SHELLNOTIFY, &CustomBar::OnShellNotify},
};

bool CustomBar::ProcessWindowMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result)
{
    // Handlers dispatch messages, which may close this level.
    const LevelRef self(*this);
    if (message == WM_NCCREATE)
        AddRef(); // the window's own reference, see OnFinalMessage
    for (const MessageEntry& entry : kMessageMap)
    {
        if (entry.message != message)
            continue;
        bool handled = true;
        result = (this->*entry.handler)(wParam, lParam, handled);
        return handled;
    }
    return false;
}

LRESULT CustomBar::OnCreate(WPARAM, LPARAM, bool&)
{
    Build();
    m_lastMessagePos = GetMessagePos();
    return 0;
}

LRESULT CustomBar::OnDestroy(WPARAM, LPARAM, bool&)
{
    m_closing = true;
    return 0;
}

LRESULT CustomBar::OnActivate(WPARAM wParam, LPARAM, bool&)
{
    if (LOWORD(wParam) != WA_INACTIVE)
        OnItemCommand(ItemCommandMode::Select, m_openIndex);
    return 0;
}

LRESULT CustomBar::OnActivateApp(WPARAM wParam, LPARAM, bool&)
{
    // A disabled menu waits for a shell operation of its own and stays.
    if (wParam == FALSE && IsWindowEnabled(m_hWnd))
        CloseAllLevels();
    return 0;
}

LRESULT CustomBar::OnMouseActivate(WPARAM, LPARAM, bool&)
{
    return m_openIndex < 0 ? MA_ACTIVATE : MA_NOACTIVATE;
}

LRESULT CustomBar::OnContextMenu(WPARAM wParam, LPARAM lParam, bool&)
{
    const HWND from = reinterpret_cast<HWND>(wParam);
    if (from == nullptr || (from != m_toolbar && from != m_pager))
        return 0;
    const POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    const bool byKeyboard = point.x == -1 && point.y == -1;
    const int button = byKeyboard ? HotButton() : ButtonAt(*this, point);
    OnItemCommand(ItemCommandMode::ContextMenu, ItemOfButton(button), point.x, point.y);
    return 0;
}

LRESULT CustomBar::OnNotify(WPARAM, LPARAM lParam, bool& handled)
{
    NMHDR& header = *reinterpret_cast<NMHDR*>(lParam);
    if (header.hwndFrom == m_pager)
        return OnPagerNotify(header, handled);
    if (header.hwndFrom == m_toolbar)
        return OnToolbarNotify(header, handled);
    handled = false;
    return 0;
}

LRESULT CustomBar::OnPagerNotify(NMHDR& header, bool& handled)
{
    switch (header.code)
    {
    case PGN_CALCSIZE:
        FillRequestedSize(reinterpret_cast<NMPGCALCSIZE&>(header), m_toolbar);
        break;
    case PGN_SCROLL:
        reinterpret_cast<NMPGSCROLL&>(header).iScroll = HIWORD(SendToolbar(TB_GETBUTTONSIZE));
        DestroyLevelsAfter(*this);
        break;
    default:
        handled = false;
        break;
    }
    return 0;
}

LRESULT CustomBar::OnToolbarNotify(NMHDR& header, bool& handled)
{
    switch (header.code)
    {
    case TBN_HOTITEMCHANGE:
        return OnHotItemChange(reinterpret_cast<NMTBHOTITEM&>(header));
    case TBN_GETOBJECT:
    {
        auto& request = reinterpret_cast<NMOBJECTNOTIFY&>(header);
        request.hResult = QueryInterface(*request.piid, &request.pObject);
        return 0;
    }
    case NM_CUSTOMDRAW:
        return OnCustomDraw(reinterpret_cast<NMTBCUSTOMDRAW&>(header), handled);
    case NM_CLICK:
        return OnClick(reinterpret_cast<NMMOUSE&>(header));
    case NM_KEYDOWN:
        return OnToolbarKeyDown(reinterpret_cast<NMKEY&>(header).nVKey);
    default:
        handled = false;
        return 0;
    }
}

LRESULT CustomBar::OnRefresh(WPARAM, LPARAM, bool&)
{
    m_refreshPending = false;
    ReloadItems();
    Build();
    FocusDeepestLevel();
    RestoreHighlight(*this);
    return 0;
}

LRESULT CustomBar::OnBeginDrag(WPARAM wParam, LPARAM, bool&)
{
    BeginItemDrag(static_cast<int>(wParam));
    return 0;
}

LRESULT CustomBar::OnShellNotify(WPARAM, LPARAM, bool&)
{
    m_refreshIndex = HotButton();
    RequestRefresh();
    return 0;
}

} // namespace CustomMenu
