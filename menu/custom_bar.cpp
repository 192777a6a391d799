// A level's life: construction, window, destruction.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "menu/button_ids.h"

#include <algorithm>

namespace CustomMenu
{

namespace
{

constexpr LPCWSTR kWindowClass = TEXT("CustomBar");

void RegisterLevelClass(WNDPROC procedure)
{
    WNDCLASSEXW levelClass{};
    levelClass.cbSize = sizeof(levelClass);
    if (GetClassInfoExW(g_instance, kWindowClass, &levelClass))
        return;
    levelClass = {};
    levelClass.cbSize = sizeof(levelClass);
    levelClass.style = CS_DROPSHADOW;
    levelClass.lpfnWndProc = procedure;
    levelClass.hInstance = g_instance;
    levelClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    levelClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<UINT_PTR>(COLOR_MENU + 1));
    levelClass.lpszClassName = kWindowClass;
    RegisterClassExW(&levelClass);
}

} // namespace

CustomBar::CustomBar(CustomBar* parent, int parentIndex, const std::array<LPCITEMIDLIST, 2>& folders, WString layoutKey,
                     bool protectFolders)
    : m_parent(parent), m_parentIndex(parentIndex), m_protectFolders(protectFolders), m_layoutKey(std::move(layoutKey))
{
    for (std::size_t slot = 0; slot < folders.size(); ++slot)
        if (folders[slot] != nullptr)
            m_sourceFolders[slot].Reset(ILClone(folders[slot]));
    if (!g_launcher.m_desktopFolder)
        SHGetDesktopFolder(g_launcher.m_desktopFolder.Receive());
    g_launcher.m_levels.push_back(this);
    if (SUCCEEDED(CoCreateInstance(CLSID_DragDropHelper, nullptr, CLSCTX_INPROC_SERVER, IID_IDropTargetHelper,
                                   m_dropHelper.ReceiveVoid())))
        m_dropHelper->QueryInterface(IID_IDragSourceHelper2, m_dragHelper.ReceiveVoid());
}

CustomBar::~CustomBar()
{
    StopWatching();
    std::vector<CustomBar*>& levels = g_launcher.m_levels;
    const bool parentLives = std::find(levels.begin(), levels.end(), m_parent) != levels.end();
    if (parentLives && m_parent->m_openIndex == m_parentIndex)
        m_parent->m_openIndex = -1;
    levels.erase(std::remove(levels.begin(), levels.end(), this), levels.end());
    FocusDeepestLevel();
}

bool CustomBar::Create(HWND parent, const RECT* rect, DWORD style, DWORD exStyle)
{
    RegisterLevelClass(GetWindowProc());
    const RECT place = rect != nullptr ? *rect : RECT{CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT};
    const int width = rect != nullptr ? place.right - place.left : CW_USEDEFAULT;
    const int height = rect != nullptr ? place.bottom - place.top : CW_USEDEFAULT;
    const bool created = CreateWindowExW(exStyle, kWindowClass, nullptr, style, place.left, place.top, width, height,
                                         parent, nullptr, g_instance, static_cast<WindowImpl*>(this)) != nullptr;
    Release(); // the creator's reference; the window has one of its own
    return created;
}

void CustomBar::OnFinalMessage()
{
    Release();
}

bool CustomBar::UsesLargeIcons() const
{
    return (g_launcher.m_largeIcons & (IsRoot() ? LARGE_ICONS_ROOT : LARGE_ICONS_SUB_LEVELS)) != 0;
}

void CustomBar::RequestRefresh()
{
    if (m_refreshPending || m_closing)
        return;
    m_refreshPending = true;
    PostMessageW(m_hWnd, WM_APP_REFRESH, 0, 0);
}

LRESULT CustomBar::SendToolbar(UINT message, WPARAM wParam, LPARAM lParam) const
{
    return SendMessageW(m_toolbar, message, wParam, lParam);
}

void CustomBar::SetHotItem(int button) const
{
    SendToolbar(TB_SETHOTITEM, static_cast<WPARAM>(button));
}

int CustomBar::HotButton() const
{
    return static_cast<int>(SendToolbar(TB_GETHOTITEM));
}

int CustomBar::ItemOfButton(int button) const
{
    TBBUTTON data{};
    if (button < 0 || !SendToolbar(TB_GETBUTTON, static_cast<WPARAM>(button), reinterpret_cast<LPARAM>(&data)))
        return -1;
    return IndexOfCommand(data.dwData);
}

RECT CustomBar::ButtonRect(int button) const
{
    RECT rect{};
    SendToolbar(TB_GETITEMRECT, static_cast<WPARAM>(button), reinterpret_cast<LPARAM>(&rect));
    return rect;
}

} // namespace CustomMenu
