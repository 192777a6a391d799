// The linker sends the calls named here to the spy first (see CMakeLists.txt).
#include "tests/scenarios/shell_spy.h"

#include "platform/base/handle_table.h"
#include "platform/shell/com_object.h"

#include <algorithm>
#include <cstring>

namespace
{

StagedMenu* g_staged = nullptr;
IUnknown* g_instanceExplorer = nullptr;

constexpr UINT kOffset = 3; // of the one command

class FakeMenu final : public platform::ComObject<IContextMenu, IID_IContextMenu>
{
public:
    HRESULT STDMETHODCALLTYPE QueryContextMenu(HMENU menu, UINT position, UINT first, UINT last, UINT flags) override
    {
        if (first + kOffset > last)
            return E_FAIL;
        MENUITEMINFOW info{};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_ID | MIIM_STATE;
        info.wID = first + kOffset;
        info.fState = MFS_DEFAULT;
        InsertMenuItemW(menu, position, TRUE, &info);
        g_staged->queryFlags = flags;
        if (g_staged->onQuery)
            g_staged->onQuery();
        return kOffset + 1;
    }

    HRESULT STDMETHODCALLTYPE InvokeCommand(CMINVOKECOMMANDINFO* info) override
    {
        g_staged->invocations.emplace_back();
        std::memcpy(&g_staged->invocations.back(), info, info->cbSize);
        if (g_staged->onInvoke)
            g_staged->onInvoke();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetCommandString(UINT_PTR command, UINT type, UINT*, LPSTR name, UINT capacity) override
    {
        if (command != kOffset || type != GCS_VERBA || capacity != 256 || g_staged->verb.empty())
            return E_INVALIDARG;
        name[g_staged->verb.copy(name, capacity - 1)] = 0;
        return S_OK;
    }

private:
    ~FakeMenu() override
    {
        const bool menuIsGone = platform::LiveHandles(platform::HandleKind::Menu) == 0;
        g_staged->released.emplace_back(menuIsGone ? "menu, its object" : "the menu's object");
    }
};

class FakeFolder final : public platform::ComObject<IShellFolder, IID_IShellFolder>
{
public:
    HRESULT STDMETHODCALLTYPE GetUIObjectOf(HWND, UINT, PCUITEMID_CHILD_ARRAY items, REFIID, UINT*,
                                            void** result) override
    {
        if (items[0]->mkid.cb == 0)
            return E_INVALIDARG;
        *result = static_cast<IContextMenu*>(new FakeMenu);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE ParseDisplayName(HWND, IBindCtx*, LPWSTR, ULONG*, PIDLIST_RELATIVE*, ULONG*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE EnumObjects(HWND, SHCONTF, IEnumIDList**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE BindToObject(PCUIDLIST_RELATIVE, IBindCtx*, REFIID, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE BindToStorage(PCUIDLIST_RELATIVE, IBindCtx*, REFIID, void**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CompareIDs(LPARAM, PCUIDLIST_RELATIVE, PCUIDLIST_RELATIVE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateViewObject(HWND, REFIID, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetAttributesOf(UINT, PCUITEMID_CHILD_ARRAY, SFGAOF*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDisplayNameOf(PCUITEMID_CHILD, SHGDNF, STRRET*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetNameOf(HWND, PCUITEMID_CHILD, LPCWSTR, SHGDNF, PITEMID_CHILD*) override
    {
        return E_NOTIMPL;
    }

private:
    ~FakeFolder() override { g_staged->released.emplace_back("its folder"); }
};

} // namespace

std::vector<AskedNotice>& AskedNotices()
{
    static std::vector<AskedNotice> asked;
    return asked;
}

IUnknown* InstanceExplorer()
{
    return g_instanceExplorer;
}

StagedMenu::StagedMenu(std::string name) : verb(std::move(name))
{
    g_staged = this;
}

StagedMenu::~StagedMenu()
{
    g_staged = nullptr;
}

HRESULT RealBindToParent(LPCITEMIDLIST list, REFIID iid, void** parent,
                         LPCITEMIDLIST* last) __asm__("__real__Z14SHBindToParentPK10ITEMIDLISTRK4GUIDPPvPS1_");
HRESULT StagedBindToParent(LPCITEMIDLIST list, REFIID iid, void** parent,
                           LPCITEMIDLIST* last) __asm__("__wrap__Z14SHBindToParentPK10ITEMIDLISTRK4GUIDPPvPS1_");
HRESULT StagedBindToParent(LPCITEMIDLIST list, REFIID iid, void** parent, LPCITEMIDLIST* last)
{
    if (g_staged == nullptr)
        return RealBindToParent(list, iid, parent, last);
    *parent = static_cast<IShellFolder*>(new FakeFolder);
    *last = list;
    if (g_staged->onBind)
        g_staged->onBind();
    return S_OK;
}

ULONG RealNotifyRegister(HWND window, int sources, LONG events, UINT message, int entries,
                         const SHChangeNotifyEntry* entry) __asm__("__real__Z22SHChangeNotifyRegisterP6HWND__"
                                                                   "iijiPK19SHChangeNotifyEntry");
ULONG RecordedNotifyRegister(HWND window, int sources, LONG events, UINT message, int entries,
                             const SHChangeNotifyEntry* entry) __asm__("__wrap__Z22SHChangeNotifyRegisterP6HWND__"
                                                                       "iijiPK19SHChangeNotifyEntry");
ULONG RecordedNotifyRegister(HWND window, int sources, LONG events, UINT message, int entries,
                             const SHChangeNotifyEntry* entry)
{
    WCHAR path[MAX_PATH] = {};
    SHGetPathFromIDListW(entry->pidl, path);
    AskedNotices().push_back({window, sources, events, message, entries, path, entry->fRecursive});
    return RealNotifyRegister(window, sources, events, message, entries, entry);
}

void RealSetInstanceExplorer(IUnknown* reference) __asm__("__real__Z21SHSetInstanceExplorerP8IUnknown");
void RecordedSetInstanceExplorer(IUnknown* reference) __asm__("__wrap__Z21SHSetInstanceExplorerP8IUnknown");
void RecordedSetInstanceExplorer(IUnknown* reference)
{
    g_instanceExplorer = reference;
    RealSetInstanceExplorer(reference);
}
