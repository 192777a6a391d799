// One level of the menu.
//
// The class has its operations by subject in several folders: construction, building and messages here in menu/, items
// in content/, commands and keys in commands/, drag and drop in dragdrop/. This header declares them and holds no
// logic.
#pragma once

#include "content/change_watcher.h"
#include "content/menu_item.h"
#include "content/ordering.h"
#include "menu/window_impl.h"
#include "support/com_ptr.h"
#include "support/item_list.h"
#include "support/wstring.h"

#include <commctrl.h>
#include <shlobj.h>

#include <array>
#include <atomic>

/// Reload, rebuild and restore the highlight.
constexpr UINT WM_APP_REFRESH = WM_APP;
/// Start dragging the item of the button in wParam.
constexpr UINT WM_APP_BEGINDRAG = WM_APP + 1;
/// Something has changed in a folder that the level shows.
constexpr UINT WM_APP_SHELLNOTIFY = WM_APP + 2;

/// The timer that opens the sub-level of the item in m_pendingHover.
constexpr UINT_PTR kHoverTimer = 1;

/// What OnItemCommand does with an item.
enum class ItemCommandMode
{
    Select = 0,           ///< make it the hot item and scroll it into view; outside the items: clear the highlight
    OpenSubmenu = 1,      ///< open its sub-level with no item highlighted
    OpenSubmenuByKey = 2, ///< open its sub-level and highlight the first item
    ContextMenu = 3,      ///< show its context menu
    Launch = 4,           ///< run its default command and close every level
};

struct BannerSize;

namespace CustomMenu
{

/// The one or two folders that a level shows, absolute; either may be null.
using SourceFolders = std::array<ItemList, 2>;

class CustomBar final : public WindowImpl, public IDropTarget, public CShellItemChangeWatcher
{
public:
    /// `parent` is null and `parentIndex` −1 for the root. The folders are cloned. `layoutKey` is a registry key path
    /// under HKEY_CURRENT_USER, empty for a level that keeps no order. The level is owned by its reference count, which
    /// starts at 1, the creator's; from Create on it is the window's, given up with its last message.
    CustomBar(CustomBar* parent, int parentIndex, const std::array<LPCITEMIDLIST, 2>& folders, WString layoutKey,
              bool protectFolders);

    // IDropTarget; the count is the level's lifetime.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keyState, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragLeave() override;
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) override;

    // --- menu/: window, building, cascade
    /// Creates the level's window, which builds the level; null rectangle: the platform's default position. Gives up
    /// the reference that the level started with, so on failure the level is gone unless somebody else holds it.
    bool Create(HWND parent, const RECT* rect, DWORD style, DWORD exStyle);
    /// First call: makes the children. Then, and on every refresh: one button per item, size and place.
    void Build();
    /// `item` is the one at `index`. One without a sub-level closes what is open beyond this level.
    void OpenSubLevel(ItemCommandMode mode, int index, const MenuItem& item);
    /// Enables or disables every open level; on enabling also brings this one to the foreground.
    void EnableMenu(bool enable);
    /// Asks for a refresh unless one is pending or the level is closing.
    void RequestRefresh();
    /// What the level sees of its toolbar's messages before the toolbar does; `data` is the level.
    static LRESULT CALLBACK ToolbarSubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                                DWORD_PTR data);

    // --- content/: items and their order
    /// Rebuilds m_items from the level's folders and the stored order, and stores the result.
    void ReloadItems();
    /// Adds what `folder` knows as `childPidl`, or merges it into a folder item of the same name. `slot` says which of
    /// m_sourceFolders the folder is; −1: `folder` is the desktop and `childPidl`, absolute, comes from elsewhere.
    void AddShellItem(IShellFolder& folder, LPCITEMIDLIST childPidl, int slot, bool isStartMenu);
    /// Brings m_items into the stored order, its separators among them.
    void ApplyLayout();
    void SaveLayout();
    void InsertSeparator(Where where, int index);
    /// Gives what a file operation has created the display position `position` at the next reload. `before` and `after`
    /// are the in-folder parsing names of the level's folders just before and just after it.
    void InsertNewItemAt(std::vector<WString> before, std::vector<WString> after, int position);

    // --- commands/
    /// `index` may lie outside the items: then only Select does anything. (x, y) are screen coordinates; (−1, −1) for a
    /// context menu asked for by keyboard, (0, 0) where no point applies.
    void OnItemCommand(ItemCommandMode mode, int index, int x = 0, int y = 0);
    /// Always nonzero: the toolbar's own key handling is never used.
    LRESULT OnToolbarKeyDown(UINT virtualKey);
    /// In-folder parsing names of what lies in the level's folders; a sub-folder that both hold is named once.
    std::vector<WString> SnapshotFolderNames() const;
    // File operations. Each returns when the shell has done its part, successful or not, and runs nested message loops
    // meanwhile. A position is one in m_items, from 0 to their count.
    /// `folder` gets a folder that the shell names.
    void InsertNewFolder(IShellFolder& folder, int position);
    /// Lets the user pick a file, or with Ctrl down a folder, and makes a shortcut to it in the level's first folder.
    void InsertShortcut(int position);
    /// Asks for the new name at a point of the screen. `childId` is the item's identifier in `folder`; both are the
    /// caller's, who holds them.
    void RenameItem(int index, IShellFolder& folder, LPCITEMIDLIST childId, POINT point);
    /// Both files of a merged folder item.
    void DeleteItemFiles(int index);
    /// What is on the clipboard, into the folder item at `index` or, where there is none, the level's first folder.
    void PasteItems(int index);
    /// `verb` is "copy" or "cut".
    void CopyOrCutItem(int index, LPCSTR verb);
    /// Of an absolute item.
    static void ShowProperties(LPCITEMIDLIST item);
    // The root's links to the user's own folders.
    void ToggleStartMenuLink();
    void ToggleDesktopLink();

    // --- dragdrop/
    /// Drags the item while a mouse button is down; returns when the drag has ended.
    void BeginItemDrag(int index);

    int ItemCount() const { return static_cast<int>(m_items.size()); }
    bool HasItem(int index) const { return index >= 0 && index < ItemCount(); }
    bool IsRoot() const { return m_parent == nullptr; }
    bool UsesLargeIcons() const;
    /// Index of the button under the highlight, −1 when there is none.
    int HotButton() const;
    /// Index of the item that a button shows, −1 when there is no such button.
    int ItemOfButton(int button) const;
    LRESULT SendToolbar(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    void SetHotItem(int button) const;
    RECT ButtonRect(int button) const; ///< toolbar coordinates

    std::atomic<ULONG> m_refCount{1};
    bool m_refreshPending = false;    ///< a WM_APP_REFRESH is posted and not yet handled
    bool m_closing = false;           ///< the window goes, or need not come; walks over the levels skip this one
    int m_width = 0;                  ///< pixels, from the last sizing
    CustomBar* m_parent;              ///< the level that opened this one; not owned
    int m_parentIndex;                ///< index of the opening item in the parent
    int m_openIndex = -1;             ///< index of the item whose sub-level is open
    MenuItems m_items;                ///< in display order
    int m_contextIndex = 0;           ///< index of the item whose context menu shows; −1 from the first load on
    int m_refreshIndex = -1;          ///< where a newcomer goes at the next reload, and what is selected after it
    bool m_refreshByKeyboard = false; ///< keeps m_lastMessagePos through the refresh
    bool m_protectFolders;            ///< opened from the Start Menu link
    SourceFolders m_sourceFolders;
    WString m_layoutKey;
    HWND m_toolbar = nullptr;
    HWND m_insertMarkToolbar = nullptr; ///< shows where something dragged would go
    HWND m_pager = nullptr;             ///< only while the items are taller than the work area
    DWORD m_dropHoverTime = 0;          ///< message time at which a drag came onto m_dropHoverIndex
    int m_dropHoverIndex = -1;          ///< index of the item that a drag is over
    int m_dragIndex = -1;               ///< index of the item that the level drags or has dragged
    bool m_dropRightButton = false;     ///< of the drag over the level
    ComPtr<IShellFolder> m_folder;      ///< the last of m_sourceFolders
    ComPtr<IDataObject> m_dropData;     ///< of the drag over the level
    ComPtr<IDropTargetHelper> m_dropHelper;
    ComPtr<IDragSourceHelper2> m_dragHelper;
    DWORD m_lastMessagePos = 0; ///< a hover at this message position is ignored
    int m_pendingHover = 0;     ///< index of the item that the hover timer will open, −1 once it has
    bool m_dragArmed = false;   ///< a mouse button has gone down on the toolbar, and may become a drag
    POINT m_dragStartPoint{};   ///< where, in toolbar coordinates
    int m_dragStartButton = 0;  ///< on which of its buttons, negative for none
    UniqueBitmap m_banner;      ///< pre-rendered strip at the root's left edge
    RECT m_contentRect{};       ///< where the toolbar or pager sits, in client coordinates

private:
    ~CustomBar() override;

    bool ProcessWindowMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
    void OnFinalMessage() override;
    void OnShellItemChange(LONG, LPCITEMIDLIST, LPCITEMIDLIST) override {}

    // Message handlers: the result for the message's sender. They clear `handled`, which is set beforehand, to leave
    // the message to the default procedure.
    using MessageHandler = LRESULT (CustomBar::*)(WPARAM wParam, LPARAM lParam, bool& handled);
    struct MessageEntry;
    static const MessageEntry kMessageMap[];
    LRESULT OnCreate(WPARAM, LPARAM, bool& handled);
    LRESULT OnDestroy(WPARAM, LPARAM, bool& handled);
    LRESULT OnActivate(WPARAM wParam, LPARAM, bool& handled);
    LRESULT OnEraseBackground(WPARAM wParam, LPARAM, bool& handled);
    LRESULT OnActivateApp(WPARAM wParam, LPARAM, bool& handled);
    LRESULT OnMouseActivate(WPARAM, LPARAM, bool& handled);
    LRESULT OnContextMenu(WPARAM wParam, LPARAM lParam, bool& handled);
    LRESULT OnTimer(WPARAM wParam, LPARAM, bool& handled);
    LRESULT OnMouseWheel(WPARAM wParam, LPARAM, bool& handled);
    LRESULT OnNotify(WPARAM, LPARAM lParam, bool& handled);
    LRESULT OnRefresh(WPARAM, LPARAM, bool& handled);
    LRESULT OnBeginDrag(WPARAM wParam, LPARAM, bool& handled);
    LRESULT OnShellNotify(WPARAM, LPARAM, bool& handled);
    LRESULT OnPagerNotify(NMHDR& header, bool& handled);
    LRESULT OnToolbarNotify(NMHDR& header, bool& handled);
    LRESULT OnHotItemChange(const NMTBHOTITEM& change);
    LRESULT OnCustomDraw(NMTBCUSTOMDRAW& draw, bool& handled);
    LRESULT OnClick(const NMMOUSE& click);

    // --- painting
    void RenderBanner(const BannerSize& size);
};

// The walks over the chain of levels; each skips levels that are closing.

/// Focuses the toolbar of the deepest level, if there is one.
void FocusDeepestLevel();
/// Brings the deepest level to the foreground and makes it the active window.
void ActivateDeepestLevel();
/// Posts WM_CLOSE to the level. One whose window is yet to be made is marked as closing, and does not open.
void AskToClose(CustomBar& level);
/// Asks every level to close, deepest first.
void CloseAllLevels();
/// Destroys every level after `level` in the chain, deepest first; `kept` stays.
void DestroyLevelsAfter(const CustomBar& level, const CustomBar* kept = nullptr);
/// Destroys every level, deepest first.
void DestroyAllLevels();
/// Enables or disables every level, from the root on.
void EnableLevels(bool enable);

} // namespace CustomMenu
