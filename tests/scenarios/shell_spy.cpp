// The linker sends the calls named here to the spy first (see CMakeLists.txt).
#include "tests/scenarios/shell_spy.h"

#include "platform/base/handle_table.h"
#include "platform/base/text.h"
#include "platform/ole/com_object.h"
#include "support/com_ptr.h"
#include "support/item_list.h"

#include <shlwapi.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace
{

StagedMenu*& g_staged = StagedMenu::current;

IUnknown* g_instanceExplorer = nullptr;

constexpr UINT kOffset = 3; // of the default command

void AddEntry(HMENU menu, UINT position, UINT identifier, UINT state)
{
    MENUITEMINFOW info{};
    info.cbSize = sizeof(info);
    info.fMask = MIIM_ID | MIIM_STATE;
    info.wID = identifier;
    info.fState = state;
    InsertMenuItemW(menu, position, TRUE, &info);
}

class FakeMenu final : public platform::ComObject<IContextMenu, IID_IContextMenu>
{
public:
    HRESULT STDMETHODCALLTYPE QueryContextMenu(HMENU menu, UINT position, UINT first, UINT last, UINT flags) override
    {
        if (first + kOffset > last || g_staged->refusesToFill)
            return E_FAIL;
        AddEntry(menu, position, first + kOffset, MFS_DEFAULT);
        UINT added = 1;
        for (; added <= g_staged->others.size(); ++added)
            AddEntry(menu, position + added, first + kOffset + added, 0);
        g_staged->queryFlags = flags;
        if (g_staged->onQuery)
            g_staged->onQuery();
        return static_cast<HRESULT>(kOffset + added);
    }

    HRESULT STDMETHODCALLTYPE InvokeCommand(CMINVOKECOMMANDINFO* info) override
    {
        g_staged->invocations.emplace_back();
        std::memcpy(&g_staged->invocations.back(), info, info->cbSize);
        if (!IS_INTRESOURCE(info->lpVerb))
            g_staged->invokedVerbs.emplace_back(info->lpVerb);
        if (g_staged->onInvoke)
            g_staged->onInvoke();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetCommandString(UINT_PTR command, UINT type, UINT*, LPSTR name, UINT capacity) override
    {
        if (command < kOffset || command > kOffset + g_staged->others.size() || type != GCS_VERBA || capacity != 256)
            return E_INVALIDARG;
        const std::string& verb = command == kOffset ? g_staged->verb : g_staged->others[command - kOffset - 1];
        if (verb.empty())
            return E_NOTIMPL;
        name[verb.copy(name, capacity - 1)] = 0;
        return S_OK;
    }

private:
    ~FakeMenu() override
    {
        const bool menuIsGone = platform::LiveHandles(platform::HandleKind::Menu) == 0;
        g_staged->released.emplace_back(menuIsGone ? "menu, its object" : "the menu's object");
    }
};

std::filesystem::path PathOf(IShellFolder& folder, PCUITEMID_CHILD item)
{
    STRRET text;
    ShellString name;
    if (FAILED(folder.GetDisplayNameOf(item, SHGDN_FORPARSING, &text)) ||
        FAILED(StrRetToStrW(&text, item, name.Receive())))
        return {};
    std::string path = platform::Utf8FromUtf16(name.Get());
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

/// An item's real folder, but for the menus.
class FakeFolder final : public IncapableFolder<platform::ComObject<IShellFolder, IID_IShellFolder>>
{
public:
    explicit FakeFolder(ComPtr<IShellFolder> real) : m_real(std::move(real)) {}

    HRESULT STDMETHODCALLTYPE GetUIObjectOf(HWND, UINT, PCUITEMID_CHILD_ARRAY items, REFIID iid, UINT*,
                                            void** result) override
    {
        if (iid == IID_IDataObject)
            return g_staged->data != nullptr ? g_staged->data->QueryInterface(iid, result) : E_NOINTERFACE;
        if (items[0]->mkid.cb == 0 || g_staged->refusesMenu)
            return E_INVALIDARG;
        if (m_real)
            g_staged->asked.push_back(PathOf(*m_real.Get(), items[0]).filename());
        *result = static_cast<IContextMenu*>(new FakeMenu);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE CreateViewObject(HWND, REFIID, void** result) override
    {
        if (g_staged->refusesMenu)
            return E_NOTIMPL;
        *result = static_cast<IContextMenu*>(new FakeMenu);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDisplayNameOf(PCUITEMID_CHILD item, SHGDNF flags, STRRET* name) override
    {
        if (!m_real)
            return E_FAIL;
        return m_real->GetDisplayNameOf(item, flags & ~static_cast<SHGDNF>(SHGDN_FOREDITING), name);
    }
    HRESULT STDMETHODCALLTYPE SetNameOf(HWND, PCUITEMID_CHILD item, LPCWSTR name, SHGDNF,
                                        PITEMID_CHILD* result) override
    {
        g_staged->names.push_back(platform::Utf8FromUtf16(name));
        if (g_staged->onRename)
            g_staged->onRename();
        if (!m_real)
            return E_FAIL;
        const std::filesystem::path from = PathOf(*m_real.Get(), item);
        const std::filesystem::path to = from.parent_path() / g_staged->names.back();
        std::error_code failed;
        if (g_staged->refusesNames || exists(to))
            return E_FAIL;
        std::filesystem::rename(from, to, failed);
        std::u16string parsed(name);
        return failed ? E_FAIL : m_real->ParseDisplayName(nullptr, nullptr, parsed.data(), nullptr, result, nullptr);
    }

private:
    ~FakeFolder() override { g_staged->released.emplace_back("its folder"); }

    ComPtr<IShellFolder> m_real;
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

StagedMenu::StagedMenu(std::string name) : verb(std::move(name)) {}

int StagedMenu::Identifier(int entry)
{
    return 11 + static_cast<int>(kOffset) + entry;
}

STAGED_CALL(HRESULT, BindToParent, "14SHBindToParentPK10ITEMIDLISTRK4GUIDPPvPS1_", LPCITEMIDLIST list, REFIID iid,
            void** parent, LPCITEMIDLIST* last)
{
    if (g_staged == nullptr)
        return RealBindToParent(list, iid, parent, last);
    ComPtr<IShellFolder> real;
    if (FAILED(RealBindToParent(list, IID_IShellFolder, real.ReceiveVoid(), last)))
        *last = list;
    *parent = static_cast<IShellFolder*>(new FakeFolder(std::move(real)));
    if (g_staged->onBind)
        g_staged->onBind();
    return S_OK;
}

STAGED_CALL(ULONG, NotifyRegister, "22SHChangeNotifyRegisterP6HWND__iijiPK19SHChangeNotifyEntry", HWND window,
            int sources, LONG events, UINT message, int entries, const SHChangeNotifyEntry* entry)
{
    WCHAR path[MAX_PATH] = {};
    SHGetPathFromIDListW(entry->pidl, path);
    AskedNotices().push_back({window, sources, events, message, entries, path, entry->fRecursive});
    return RealNotifyRegister(window, sources, events, message, entries, entry);
}

STAGED_CALL(void, SetInstanceExplorer, "21SHSetInstanceExplorerP8IUnknown", IUnknown* reference)
{
    g_instanceExplorer = reference;
    RealSetInstanceExplorer(reference);
}
