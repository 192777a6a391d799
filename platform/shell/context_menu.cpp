// IContextMenu over a table of verbs.
//
// Command offsets: the verbs by their place in the table, then the actions of a desktop entry, then the programs that
// open the item. The ranges are fixed, so that an offset means the same in every query and however late a sub-menu is
// filled.
#include "platform/shell/context_menu.h"

#include "windows.h"

#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/dialogs/menu.h"
#include "platform/icons/shell_icon.h"
#include "platform/ole/com_object.h"
#include "platform/shell/failure_report.h"
#include "platform/shell/item_programs.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <strings.h>

namespace platform
{

namespace
{

constexpr UINT kFirstAction = 32;
constexpr UINT kMostActions = 32;
constexpr UINT kFirstProgram = kFirstAction + kMostActions;
constexpr UINT kMostPrograms = 256;
constexpr UINT kOffsets = kFirstProgram + kMostPrograms;

/// What a menu is about. Sub-menus that are still to be filled share it.
struct Subject
{
    HWND owner;
    std::vector<VerbItem> items;
    std::span<const Verb> verbs;
    std::optional<std::vector<ItemChoice>> actions{}; ///< once they were asked for
    std::optional<ItemPrograms> programs{};
};

/// A menu being filled, with the identifiers that it may use.
struct Filling
{
    HMENU menu;
    UINT position;
    UINT first;
    UINT last;
    bool complete = true;
    UINT used = 0; ///< one more than the highest offset inserted

    bool HasRoom(UINT offset) const { return offset <= last - first; }
    void Insert(MENUITEMINFOW info, std::u16string text, std::shared_ptr<IconSource> icon = {})
    {
        info.cbSize = sizeof info;
        info.dwTypeData = text.data();
        if (!InsertMenuItemW(menu, position, TRUE, &info))
        {
            complete = false;
            return;
        }
        if (icon != nullptr)
            if (const MenuPlace place = FindMenuItem(menu, position, true))
                place.Item().icon = std::move(icon);
        ++position;
    }
    void InsertEntry(UINT offset, std::u16string text, UINT state, std::shared_ptr<IconSource> icon = {})
    {
        if (!HasRoom(offset))
            return;
        MENUITEMINFOW info = {};
        info.fMask = MIIM_ID | MIIM_STRING | MIIM_STATE;
        info.wID = first + offset;
        info.fState = state;
        Insert(info, std::move(text), std::move(icon));
        used = std::max(used, offset + 1);
    }
    void InsertSeparator()
    {
        MENUITEMINFOW info = {};
        info.fMask = MIIM_FTYPE;
        info.fType = MFT_SEPARATOR;
        Insert(info, {});
    }
};

/// A text that holds no mnemonics.
std::u16string Literal(std::u16string_view text)
{
    std::u16string escaped;
    for (const char16_t unit : text)
        escaped.append(unit == u'&' ? 2 : 1, unit);
    return escaped;
}

std::shared_ptr<IconSource> PictureOf(const ItemChoice& choice)
{
    return choice.icon.empty() ? nullptr : ShellIcon(choice.icon, GetSystemMetrics(SM_CXSMICON), false);
}

void InsertChoices(Filling& filling, const std::vector<ItemChoice>& choices, UINT firstOffset, UINT most)
{
    for (std::size_t i = 0; i < std::min<std::size_t>(choices.size(), most); ++i)
        filling.InsertEntry(firstOffset + static_cast<UINT>(i), Literal(choices[i].text), 0, PictureOf(choices[i]));
}

void FillPrograms(Subject& subject, UINT other, Filling filling)
{
    if (!subject.programs)
        subject.programs = ProgramsFor(subject.items.front().path);
    const ItemPrograms& programs = *subject.programs;
    InsertChoices(filling, programs.programs, kFirstProgram, kMostPrograms);
    if (programs.canChooseOther && !programs.programs.empty())
        filling.InsertSeparator();
    if (programs.canChooseOther)
        filling.InsertEntry(other, std::u16string(subject.verbs[other].text), 0);
    else if (programs.programs.empty())
        filling.InsertEntry(other, u"No program known", MFS_GRAYED);
}

/// The sub-menu "Open with", which asks for the programs when it is about to show.
void InsertProgramMenu(Filling& filling, const std::shared_ptr<Subject>& subject, UINT other)
{
    if (!filling.HasRoom(other))
        return;
    const HMENU subMenu = CreatePopupMenu();
    auto* object = FindObject<Menu>(subMenu);
    if (object == nullptr)
    {
        filling.complete = false;
        return;
    }
    object->fill = [subject, other, first = filling.first, last = filling.last](HMENU menu) {
        FillPrograms(*subject, other, {menu, 0, first, last});
    };
    MENUITEMINFOW info = {};
    info.fMask = MIIM_SUBMENU | MIIM_STRING;
    info.hSubMenu = subMenu;
    filling.Insert(info, u"Open &with");
    if (!filling.complete)
        DestroyMenu(subMenu);
    const UINT reserved = std::min(kOffsets, filling.last - filling.first + 1);
    filling.used = std::max(filling.used, reserved);
}

void InsertVerb(Filling& filling, const std::shared_ptr<Subject>& subject, UINT offset)
{
    const Verb& verb = subject->verbs[offset];
    if (verb.part == VerbPart::Programs)
    {
        InsertProgramMenu(filling, subject, offset);
        return;
    }
    if (verb.part == VerbPart::Actions)
    {
        InsertChoices(filling, *subject->actions, kFirstAction, kMostActions);
        return;
    }
    const VerbTarget target{subject->owner, subject->items};
    const bool enabled = WhyMenuForbids(verb, target) == nullptr && (verb.enabled == nullptr || verb.enabled(target));
    filling.InsertEntry(offset, std::u16string(verb.text),
                        (verb.isDefault ? MFS_DEFAULT : 0) | (enabled ? 0 : MFS_GRAYED));
}

class ContextMenu final : public ComObject<IContextMenu, IID_IContextMenu>
{
public:
    explicit ContextMenu(Subject subject) : m_subject(std::make_shared<Subject>(std::move(subject))) {}

    HRESULT STDMETHODCALLTYPE QueryContextMenu(HMENU menu, UINT position, UINT first, UINT last, UINT flags) override;
    HRESULT STDMETHODCALLTYPE InvokeCommand(CMINVOKECOMMANDINFO* info) override;
    HRESULT STDMETHODCALLTYPE GetCommandString(UINT_PTR command, UINT type, UINT* reserved, LPSTR name,
                                               UINT capacity) override;

private:
    bool Offers(const Verb& verb, UINT flags);
    HRESULT Run(UINT offset, const VerbTarget& target) const;
    UINT OffsetOfName(LPCSTR name) const;

    std::shared_ptr<Subject> m_subject;
};

bool ContextMenu::Offers(const Verb& verb, UINT flags)
{
    Subject& subject = *m_subject;
    const bool wanted = (flags & CMF_DEFAULTONLY) == 0 || verb.isDefault;
    if (!wanted || !verb.offered({subject.owner, subject.items}, flags))
        return false;
    if (verb.part != VerbPart::Actions)
        return true;
    if (!subject.actions)
        subject.actions = ActionsOf(subject.items.front().path);
    return !subject.actions->empty();
}

HRESULT ContextMenu::QueryContextMenu(HMENU menu, UINT position, UINT first, UINT last, UINT flags)
{
    if (FaultPoint("IContextMenu::QueryContextMenu"))
        return E_OUTOFMEMORY;
    const int count = GetMenuItemCount(menu);
    if (count < 0 || last < first)
        return E_INVALIDARG;
    Filling filling{menu, std::min(position, static_cast<UINT>(count)), first, last};
    const std::span<const Verb> verbs = m_subject->verbs;
    std::optional<int> group;
    for (UINT offset = 0; offset < verbs.size() && filling.complete; ++offset)
    {
        if (!Offers(verbs[offset], flags))
            continue;
        if (group && *group != verbs[offset].group && filling.HasRoom(offset))
            filling.InsertSeparator();
        group = verbs[offset].group;
        InsertVerb(filling, m_subject, offset);
    }
    return filling.complete ? static_cast<HRESULT>(filling.used) : E_FAIL;
}

/// The offset of a canonical name, letter case ignored; kOffsets for others.
UINT ContextMenu::OffsetOfName(LPCSTR name) const
{
    const std::span<const Verb> verbs = m_subject->verbs;
    const auto named = [&](const Verb& verb)
    { return !verb.name.empty() && strcasecmp(std::string(verb.name).c_str(), name) == 0; };
    const auto found = std::find_if(verbs.begin(), verbs.end(), named);
    return found != verbs.end() ? static_cast<UINT>(found - verbs.begin()) : kOffsets;
}

HRESULT ContextMenu::Run(UINT offset, const VerbTarget& target) const
{
    const Subject& subject = *m_subject;
    if (offset < subject.verbs.size())
    {
        const Verb& verb = subject.verbs[offset];
        if (const char* reason = WhyMenuForbids(verb, target)) // of what is asked for by name, nobody saw the entry
            return RefuseInMenu(target.owner, target.items.front().displayName, reason);
        return verb.run != nullptr ? verb.run(target) : E_NOTIMPL;
    }
    const std::size_t action = offset - kFirstAction;
    if (subject.actions && offset >= kFirstAction &&
        action < std::min<std::size_t>(subject.actions->size(), kMostActions))
        return RunEntryAction(target, (*subject.actions)[action].id);
    const std::size_t program = offset - kFirstProgram;
    if (subject.programs && offset >= kFirstProgram && program < subject.programs->programs.size())
        return OpenWithProgram(target, subject.programs->programs[program].id);
    return E_INVALIDARG;
}

HRESULT ContextMenu::InvokeCommand(CMINVOKECOMMANDINFO* info)
{
    if (info == nullptr || info->cbSize < sizeof(CMINVOKECOMMANDINFO))
        return E_INVALIDARG;
    if (FaultPoint("IContextMenu::InvokeCommand"))
        return E_OUTOFMEMORY;
    const auto subject = m_subject; // messages may be dispatched meanwhile, and this object released
    const UINT offset = IS_INTRESOURCE(info->lpVerb) ? static_cast<UINT>(reinterpret_cast<std::uintptr_t>(info->lpVerb))
                                                     : OffsetOfName(info->lpVerb);
    return Run(offset, {info->hwnd != nullptr ? info->hwnd : subject->owner, subject->items});
}

HRESULT ContextMenu::GetCommandString(UINT_PTR command, UINT type, UINT*, LPSTR name, UINT capacity)
{
    const std::span<const Verb> verbs = m_subject->verbs;
    if (command >= verbs.size() || name == nullptr)
        return E_INVALIDARG;
    const std::string_view verb = verbs[command].name;
    if (verb.empty() || capacity <= verb.size())
        return E_INVALIDARG;
    if (type != GCS_VERBA)
        return E_NOTIMPL;
    name[verb.copy(name, capacity)] = 0;
    return S_OK;
}

} // namespace

IContextMenu* MakeContextMenu(HWND owner, std::vector<VerbItem> items)
{
    return new ContextMenu({owner, std::move(items), ItemVerbs()});
}

IContextMenu* MakeBackgroundMenu(HWND owner, VerbItem folder)
{
    return new ContextMenu({owner, {std::move(folder)}, BackgroundVerbs()});
}

} // namespace platform
