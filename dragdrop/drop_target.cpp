// A level as a drop target: what is dragged over it, and dropped into its folder or among its items.
//
// The folder's own drop target does the work, the level gives what has come its place. Meanwhile messages are
// dispatched: the level may be closing and its items be others afterwards.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "commands/kept_position.h"
#include "commands/operation_scope.h"
#include "dragdrop/drag_rules.h"
#include "dragdrop/synchronous_data.h"

namespace CustomMenu
{

namespace
{

POINT PointOf(POINTL point)
{
    return {point.x, point.y};
}

bool LauncherDrags()
{
    return g_launcher.g_operationBar != nullptr;
}

void Narrow(CustomBar& level, DWORD keyState, DWORD& effect)
{
    level.m_dropRightButton = (keyState & MK_RBUTTON) != 0;
    effect = NarrowEffect(effect, keyState, LauncherDrags());
}

bool Accepts(const CustomBar& level)
{
    if (!level.m_folder)
        return false;
    FORMATETC format{};
    format.cfFormat = g_launcher.m_shellIdListFormat;
    format.dwAspect = DVASPECT_CONTENT;
    format.lindex = -1;
    format.tymed = TYMED_HGLOBAL;
    return level.m_dropData->QueryGetData(&format) == S_OK;
}

void SetMark(HWND toolbar, int button, DWORD side)
{
    TBINSERTMARK mark{button, side};
    SendMessageW(toolbar, TB_SETINSERTMARK, 0, reinterpret_cast<LPARAM>(&mark));
}

/// Index of the item under a point of the screen, which gets the mark; −1 for none, and no mark.
int MarkItemAt(const CustomBar& level, POINT point)
{
    ScreenToClient(level.m_toolbar, &point);
    const int button = static_cast<int>(level.SendToolbar(TB_HITTEST, 0, reinterpret_cast<LPARAM>(&point)));
    if (button < 0)
    {
        SetMark(level.m_toolbar, -1, 0);
        return -1;
    }
    SetMark(level.m_toolbar, button, MarkSide(level.ButtonRect(button), point.y));
    return level.ItemOfButton(button);
}

void OpenAfterRest(CustomBar& level, int index)
{
    const auto now = static_cast<DWORD>(GetMessageTime());
    if (!level.HasItem(index) || index != level.m_dropHoverIndex)
    {
        level.m_dropHoverIndex = index;
        level.m_dropHoverTime = now;
        return;
    }
    if (HasRested(level.m_dropHoverTime, now, g_launcher.m_menuShowDelay) && index != level.m_openIndex &&
        level.m_items[index].Is(MIF_FOLDER))
        level.OnItemCommand(ItemCommandMode::OpenSubmenu, index);
}

/// The position that the mark means, −1 for none; takes the mark away.
int TakeInsertPosition(CustomBar& level)
{
    if (level.m_insertMarkToolbar == nullptr)
        return -1;
    TBINSERTMARK mark{-1, 0};
    SendMessageW(level.m_insertMarkToolbar, TB_GETINSERTMARK, 0, reinterpret_cast<LPARAM>(&mark));
    const int position = InsertPosition(mark, level.m_items);
    if (position >= 0)
        SetMark(std::exchange(level.m_insertMarkToolbar, nullptr), -1, 0);
    return position;
}

/// What the level itself drags is only moved among its items, whatever the effect.
void MoveWithinLevel(CustomBar& level, int position)
{
    if (!level.HasItem(level.m_dragIndex))
        return;
    const int moved = MoveItem(level.m_items, level.m_dragIndex, position);
    DestroyLevelsAfter(level);
    level.SaveLayout();
    level.m_refreshIndex = moved;
    level.RequestRefresh();
}

/// Something dropped, as the folder's drop target gets it.
struct Dropped
{
    IDataObject& data;
    DWORD keyState;
    POINTL point;
    bool rightButton;
};

/// False when the folder takes nothing.
bool OfferToFolder(IDropTarget& folder, const Dropped& dropped, DWORD& effect)
{
    DWORD offered = effect;
    if (FAILED(folder.DragEnter(&dropped.data, dropped.keyState, dropped.point, &offered)))
        return false;
    // What the user is to be asked about stays as it is.
    DWORD asked = effect;
    folder.DragOver(dropped.keyState, dropped.point, dropped.rightButton ? &asked : &effect);
    return true;
}

struct FolderNames
{
    std::vector<WString> before;
    std::vector<WString> after;
};

FolderNames LetFolderTake(CustomBar& level, IDropTarget& folder, const Dropped& dropped, DWORD& effect)
{
    CustomBar* const operating = g_launcher.g_operationBar;
    const MenuDisabled disabled(level);
    const OperationScope operation(operating != nullptr ? *operating : level);
    FolderNames names;
    names.before = level.SnapshotFolderNames();
    folder.Drop(&dropped.data, dropped.keyState, dropped.point, &effect);
    names.after = level.SnapshotFolderNames();
    return names;
}

/// False when nothing was handed to the folder.
bool DropIntoFolder(CustomBar& level, const Dropped& dropped, int position, DWORD& effect)
{
    // References of its own: the level lets go of its folder when it is loaded anew.
    ComPtr<IShellFolder> folder;
    ComPtr<IDropTarget> target;
    if (!level.m_folder || FAILED(level.m_folder->QueryInterface(IID_IShellFolder, folder.ReceiveVoid())) ||
        FAILED(folder->CreateViewObject(level.m_hWnd, IID_IDropTarget, target.ReceiveVoid())))
        return false;
    const KeptPosition kept(level, position);
    const std::vector<std::uint8_t> order = EncodeOrder(level.m_items);
    if (!OfferToFolder(*target.Get(), dropped, effect))
        return false;
    const ComPtr<IDataObjectAsyncCapability> async = TakeSynchronously(dropped.data);
    FolderNames names = LetFolderTake(level, *target.Get(), dropped, effect);
    DestroyLevelsAfter(level);
    // The folder's notice makes the level load what has come. Where it has been handled within the drop, the buttons no
    // longer are the items.
    const bool reloaded = EncodeOrder(level.m_items) != order;
    position = kept.Now();
    level.InsertNewItemAt(std::move(names.before), std::move(names.after), position);
    level.m_refreshIndex = position;
    if (reloaded)
        level.RequestRefresh();
    return true;
}

} // namespace

HRESULT STDMETHODCALLTYPE CustomBar::QueryInterface(REFIID iid, void** object)
{
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IDropTarget))
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IDropTarget*>(this);
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE CustomBar::AddRef()
{
    return ++m_refCount;
}

ULONG STDMETHODCALLTYPE CustomBar::Release()
{
    const ULONG count = --m_refCount;
    if (count == 0)
        delete this;
    return count;
}

HRESULT STDMETHODCALLTYPE CustomBar::DragEnter(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect)
{
    const LevelRef self(*this);
    SetWindowPos(m_hWnd, HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOREDRAW | SWP_NOACTIVATE | SWP_NOOWNERZORDER | SWP_NOSENDCHANGING);
    Narrow(*this, keyState, *effect);
    POINT screen = PointOf(point);
    if (m_dropHelper)
        m_dropHelper->DragEnter(m_hWnd, data, &screen, *effect);
    m_insertMarkToolbar = nullptr;
    m_dropHoverIndex = -1;
    if (data != m_dropData.Get())
    {
        data->AddRef();
        *m_dropData.Receive() = data;
    }
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CustomBar::DragOver(DWORD keyState, POINTL point, DWORD* effect)
{
    const LevelRef self(*this);
    Narrow(*this, keyState, *effect);
    // What is refused still moves the mark and opens folders.
    if (!Accepts(*this))
        *effect = DROPEFFECT_NONE;
    POINT screen = PointOf(point);
    if (m_dropHelper)
        m_dropHelper->DragOver(&screen, *effect);
    m_insertMarkToolbar = m_toolbar;
    OpenAfterRest(*this, MarkItemAt(*this, screen));
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CustomBar::DragLeave()
{
    const LevelRef self(*this);
    if (m_dropHelper)
        m_dropHelper->DragLeave();
    if (m_insertMarkToolbar != nullptr)
        SetMark(std::exchange(m_insertMarkToolbar, nullptr), -1, 0);
    m_dropData.Reset();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CustomBar::Drop(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect)
{
    const LevelRef self(*this);
    // The button is up by now: which one it was is known from before.
    const bool rightButton = m_dropRightButton;
    *effect = rightButton ? kAllEffects : NarrowEffect(*effect, keyState, LauncherDrags());
    const Dropped dropped{*data, KeyStateForFolder(rightButton, LauncherDrags()), point, rightButton};
    m_dropData.Reset();
    POINT screen = PointOf(point);
    if (m_dropHelper)
        m_dropHelper->Drop(data, &screen, *effect);
    const int position = TakeInsertPosition(*this);
    if (position >= 0 && g_launcher.g_operationBar == this)
        MoveWithinLevel(*this, position);
    else if (position < 0 || !DropIntoFolder(*this, dropped, position, *effect))
        *effect = DROPEFFECT_NONE; // a source that was told of a move would delete what it has dragged
    return S_OK;
}

} // namespace CustomMenu
