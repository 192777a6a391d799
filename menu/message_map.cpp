// The message map of a level: from message to handler, and the handlers that are about the window itself.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "menu/commands.h"

#include <windowsx.h>

namespace CustomMenu
{

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
    {WM_APP_SHELLNOTIFY, &CustomBar::OnShellNotify},
};

bool CustomBar::ProcessWindowMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result)
{
    for (const MessageEntry& entry : kMessageMap)
        if (entry.message == message)
            return (this->*entry.handler)(wParam, lParam, result);
    return false;
}

bool CustomBar::OnCreate(WPARAM, LPARAM, LRESULT& result)
{
    Build();
    m_lastMessagePos = GetMessagePos();
    // A level without its toolbar would be an empty frame that takes no key: rather none.
    result = m_toolbar != nullptr ? 0 : -1;
    return true;
}

bool CustomBar::OnDestroy(WPARAM, LPARAM, LRESULT& result)
{
    m_closing = true;
    result = 0;
    return true;
}

bool CustomBar::OnActivate(WPARAM wParam, LPARAM, LRESULT& result)
{
    if (LOWORD(wParam) != WA_INACTIVE)
        OnItemCommand(ItemCommandMode::Select, m_openIndex >= 0 ? m_openIndex : -1);
    result = 0;
    return true;
}

bool CustomBar::OnActivateApp(WPARAM wParam, LPARAM, LRESULT& result)
{
    // A disabled menu waits for a shell operation of its own and stays.
    if (wParam == FALSE && IsWindowEnabled(m_hWnd))
        CloseAllLevels();
    result = 0;
    return true;
}

bool CustomBar::OnMouseActivate(WPARAM, LPARAM, LRESULT& result)
{
    result = m_openIndex < 0 ? MA_ACTIVATE : MA_NOACTIVATE;
    return true;
}

bool CustomBar::OnContextMenu(WPARAM wParam, LPARAM lParam, LRESULT& result)
{
    const HWND from = reinterpret_cast<HWND>(wParam);
    result = 0;
    if (from == nullptr || (from != m_toolbar && from != m_pager))
        return false;
    const POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    int button = -1;
    if (point.x == -1 && point.y == -1)
    {
        button = HotIndex();
    }
    else
    {
        POINT client = point;
        ScreenToClient(m_toolbar, &client);
        button = static_cast<int>(SendToolbar(TB_HITTEST, 0, reinterpret_cast<LPARAM>(&client)));
    }
    TBBUTTON data{};
    if (button >= 0 && SendToolbar(TB_GETBUTTON, static_cast<WPARAM>(button), reinterpret_cast<LPARAM>(&data)))
        OnItemCommand(ItemCommandMode::ContextMenu, IndexOfCommand(data.dwData), point.x, point.y);
    return true;
}

bool CustomBar::OnNotify(WPARAM, LPARAM lParam, LRESULT& result)
{
    NMHDR& header = *reinterpret_cast<NMHDR*>(lParam);
    if (m_pager != nullptr && header.hwndFrom == m_pager)
        return OnPagerNotify(header, result);
    if (m_toolbar != nullptr && header.hwndFrom == m_toolbar)
        return OnToolbarNotify(header, result);
    return false;
}

bool CustomBar::OnPagerNotify(NMHDR& header, LRESULT& result)
{
    result = 0;
    if (header.code == PGN_CALCSIZE)
    {
        auto& request = reinterpret_cast<NMPGCALCSIZE&>(header);
        RECT toolbar{};
        GetWindowRect(m_toolbar, &toolbar);
        if (request.dwFlag & PGF_CALCWIDTH)
            request.iWidth = toolbar.right - toolbar.left;
        if (request.dwFlag & PGF_CALCHEIGHT)
            request.iHeight = toolbar.bottom - toolbar.top;
        return true;
    }
    if (header.code == PGN_SCROLL)
    {
        reinterpret_cast<NMPGSCROLL&>(header).iScroll = HIWORD(SendToolbar(TB_GETBUTTONSIZE));
        DestroyLevelsAfter(*this);
        return true;
    }
    return false;
}

bool CustomBar::OnToolbarNotify(NMHDR& header, LRESULT& result)
{
    result = 0;
    bool handled = true;
    switch (header.code)
    {
    case TBN_HOTITEMCHANGE:
        result = OnHotItemChange(reinterpret_cast<NMTBHOTITEM&>(header));
        break;
    case TBN_GETOBJECT:
    {
        auto& request = reinterpret_cast<NMOBJECTNOTIFY&>(header);
        request.hResult = QueryInterface(*request.piid, &request.pObject);
        break;
    }
    case NM_CUSTOMDRAW:
        result = OnCustomDraw(reinterpret_cast<NMTBCUSTOMDRAW&>(header), handled);
        break;
    case NM_CLICK:
        OnClick(reinterpret_cast<NMMOUSE&>(header));
        break;
    case NM_KEYDOWN:
        result = OnToolbarKeyDown(reinterpret_cast<NMKEY&>(header).nVKey);
        break;
    default:
        handled = false;
        break;
    }
    return handled;
}

bool CustomBar::OnRefresh(WPARAM, LPARAM, LRESULT& result)
{
    m_refreshPending = false;
    ReloadItems();
    Build();
    FocusDeepestLevel();
    RestoreHighlight();
    result = 0;
    return true;
}

void CustomBar::RestoreHighlight()
{
    if (HasItem(m_openIndex))
    {
        SetHotItem(m_items[m_openIndex].order);
    }
    else if (m_refreshIndex != -1)
    {
        // The next hover counts as a movement even where the cursor rests.
        if (!m_refreshByKeyboard)
            m_lastMessagePos = 0xFFFFFFFF;
        OnItemCommand(ItemCommandMode::Select, m_refreshIndex);
        m_refreshIndex = -1;
        m_refreshByKeyboard = false;
    }
    else
    {
        SetHotItem(-1);
    }
}

bool CustomBar::OnShellNotify(WPARAM, LPARAM, LRESULT& result)
{
    m_refreshIndex = HotIndex();
    RequestRefresh();
    result = 0;
    return true;
}

} // namespace CustomMenu
