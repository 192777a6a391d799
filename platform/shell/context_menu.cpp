// IContextMenu over the table of verbs.
#include "platform/shell/context_menu.h"

#include "windows.h"

#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/shell/com_object.h"
#include "platform/shell/namespace.h"

#include <algorithm>
#include <strings.h>

namespace platform
{

namespace
{

class ContextMenu final : public ComObject<IContextMenu, IID_IContextMenu>
{
public:
    ContextMenu(HWND owner, std::vector<VerbItem> items) : m_owner(owner), m_items(std::move(items)) {}

    HRESULT STDMETHODCALLTYPE QueryContextMenu(HMENU menu, UINT position, UINT first, UINT last, UINT flags) override;
    HRESULT STDMETHODCALLTYPE InvokeCommand(CMINVOKECOMMANDINFO* info) override;
    HRESULT STDMETHODCALLTYPE GetCommandString(UINT_PTR command, UINT type, UINT* reserved, LPSTR name,
                                               UINT capacity) override;

private:
    HWND m_owner;
    std::vector<VerbItem> m_items;
};

bool InsertVerb(HMENU menu, UINT position, UINT id, const Verb& verb)
{
    std::u16string text(verb.text);
    MENUITEMINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = MIIM_ID | MIIM_STRING | MIIM_STATE;
    info.wID = id;
    info.fState = verb.isDefault ? MFS_DEFAULT : 0;
    info.dwTypeData = text.data();
    return InsertMenuItemW(menu, position, TRUE, &info) != FALSE;
}

/// The verb that an invocation means: a command offset in place of the pointer, or a name.
const Verb* VerbOfInvocation(const CMINVOKECOMMANDINFO& info)
{
    const std::span<const Verb> verbs = ShellVerbs();
    if (IS_INTRESOURCE(info.lpVerb))
    {
        const auto offset = reinterpret_cast<std::uintptr_t>(info.lpVerb);
        return offset < verbs.size() ? &verbs[offset] : nullptr;
    }
    const auto named = [&](const Verb& verb) { return strcasecmp(std::string(verb.name).c_str(), info.lpVerb) == 0; };
    const auto found = std::find_if(verbs.begin(), verbs.end(), named);
    return found != verbs.end() ? &*found : nullptr;
}

HRESULT ContextMenu::QueryContextMenu(HMENU menu, UINT position, UINT first, UINT last, UINT flags)
{
    if (FaultPoint("IContextMenu::QueryContextMenu"))
        return E_OUTOFMEMORY;
    const std::span<const Verb> verbs = ShellVerbs();
    const VerbTarget target{m_owner, m_items};
    HRESULT used = 0; // the code of a success is one more than the highest offset inserted
    for (UINT offset = 0; offset < verbs.size() && first + offset <= last; ++offset)
    {
        const Verb& verb = verbs[offset];
        const bool wanted = (flags & CMF_DEFAULTONLY) == 0 || verb.isDefault;
        if (!wanted || !verb.offered(target, flags))
            continue;
        if (!InsertVerb(menu, position, first + offset, verb))
            return E_FAIL;
        ++position;
        used = static_cast<HRESULT>(offset + 1);
    }
    return used;
}

HRESULT ContextMenu::InvokeCommand(CMINVOKECOMMANDINFO* info)
{
    if (info == nullptr || info->cbSize < sizeof(CMINVOKECOMMANDINFO))
        return E_INVALIDARG;
    if (FaultPoint("IContextMenu::InvokeCommand"))
        return E_OUTOFMEMORY;
    const Verb* verb = VerbOfInvocation(*info);
    return verb != nullptr ? verb->run({info->hwnd != nullptr ? info->hwnd : m_owner, m_items}) : E_INVALIDARG;
}

HRESULT ContextMenu::GetCommandString(UINT_PTR command, UINT type, UINT*, LPSTR name, UINT capacity)
{
    const std::span<const Verb> verbs = ShellVerbs();
    if (command >= verbs.size() || name == nullptr || capacity <= verbs[command].name.size())
        return E_INVALIDARG;
    if (type != GCS_VERBA)
        return E_NOTIMPL;
    name[verbs[command].name.copy(name, capacity)] = 0;
    return S_OK;
}

} // namespace

IContextMenu* MakeContextMenu(HWND owner, std::vector<VerbItem> items)
{
    return new ContextMenu(owner, std::move(items));
}

} // namespace platform
