// Renaming items.
#include "platform/shell/rename_item.h"

#include "windows.h"

#include "platform/base/text.h"
#include "platform/base/xdg_folders.h"
#include "platform/files/applications_menu.h"
#include "platform/files/names.h"
#include "platform/files/rename_file.h"
#include "platform/services/desktop_module.h"
#include "platform/services/entry_service.h"
#include "platform/shell/failure_report.h"
#include "platform/shell/namespace.h"
#include "platform/shell/pumped_call.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace platform
{

namespace
{

constexpr std::chrono::milliseconds kPatience{5000}; ///< for the file system

/// Why a text cannot be a name; null when it can.
const char* WhyNoName(std::u16string_view text)
{
    const auto isControl = [](char16_t unit) { return unit < 0x20 || unit == 0x7F; };
    if (text.empty())
        return "A name has at least one character.";
    if (std::any_of(text.begin(), text.end(), isControl))
        return "A name cannot hold line breaks or other control characters.";
    if (Utf16FromUtf8(Utf8FromUtf16(text)) != text)
        return "The name is no valid text.";
    return nullptr;
}

const char* WhyNoFileName(const std::string& name)
{
    return IsFileName(name) ? nullptr : "A file cannot have this name.";
}

std::string ReasonOf(int error)
{
    switch (error)
    {
    case EEXIST:
        return "There is already an item of that name.";
    case ENAMETOOLONG:
        return "The name is too long.";
    case ENOENT:
        return "It is not there any more.";
    case EACCES:
    case EPERM:
        return "You may not change its folder.";
    case EROFS:
        return "It is on a file system that cannot be written to.";
    case ENOSPC:
    case EDQUOT:
        return "There is no space left.";
    case EINVAL:
        return "The file system does not allow this name.";
    case ETIMEDOUT:
        return "Its place does not answer.";
    }
    return std::string(std::strerror(error)) + ".";
}

std::u16string_view WithoutBlanksAround(std::u16string_view text)
{
    const std::size_t first = text.find_first_not_of(u' ');
    return first == text.npos ? std::u16string_view() : text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

struct Renamed
{
    bool isEntry = false;
    int error = 0;
};

/// Renames a desktop entry; nothing is done when it is none.
Renamed RenameEntry(const std::string& from, const std::string& to, const std::string& name)
{
    const auto* service = static_cast<const EntryService*>(DesktopModuleSymbol("orb_entry_service"));
    Renamed renamed{true, 0};
    const EntryRename outcome = service != nullptr
                                    ? service->rename(from.c_str(), to.c_str(), name.c_str(), &renamed.error)
                                    : EntryRename::NoEntry;
    renamed.isEntry = outcome != EntryRename::NoEntry;
    return renamed;
}

struct NewName
{
    std::string entryName; ///< "" for what is renamed as a file in any case
    std::string fileName;
    std::string folder;
    std::string oldFileName;
    std::string entry = folder + "/" + oldFileName; ///< where it is
    std::string newEntry = entry;                   ///< and where it is to be
};

std::shared_ptr<Renamed> DoRename(const NewName& to)
{
    if (!to.entryName.empty())
    {
        const Renamed renamed = RenameEntry(to.entry, to.newEntry, to.entryName);
        if (renamed.isEntry)
            return std::make_shared<Renamed>(renamed);
    }
    if (!IsFileName(to.fileName))
        return std::make_shared<Renamed>(Renamed{false, EINVAL});
    return std::make_shared<Renamed>(Renamed{false, RenameFile(to.folder, to.oldFileName, to.fileName)});
}

HRESULT GiveIdentifier(const ItemId& item, const Renamed& renamed, const NewName& to, std::u16string_view text,
                       LPITEMIDLIST* result)
{
    if (result == nullptr)
        return S_OK;
    ItemId now = item;
    const std::string_view name = renamed.isEntry ? to.oldFileName : to.fileName;
    now.name = name;
    *result = MakeItemList(now, renamed.isEntry ? std::u16string(text) : DisplayNameOfFile(name, item.kind));
    return *result != nullptr ? S_OK : E_OUTOFMEMORY;
}

/// A program of the applications menu is given its name by an entry of the user's own, which goes before everybody's.
void RenameInMenu(NewName& to, const ItemId& item)
{
    to.entry = MenuProgramPath(item.name);
    to.newEntry = IsUserEntry(to.entry) ? to.entry : UserEntryPath(MenuProgramId(item.name));
    to.oldFileName = MenuProgramName(MenuProgramId(item.name), to.newEntry);
    to.fileName.clear(); // should it be no entry any more, there is nothing to be renamed
    MakeFolders(UserEntryPath({}));
}

/// An entry's file is renamed by its shown name, except for a link with a hidden ending of its own.
bool IsRenamedAsEntry(const ItemId& item)
{
    return item.kind == ItemKind::DesktopEntry && HiddenEnding(item.name, item.kind) != kShortcutEnding;
}

} // namespace

std::u16string EditingName(const ItemId& item)
{
    if (item.kind == ItemKind::DesktopEntry || item.kind == ItemKind::Category)
        return item.DisplayName();
    const std::string_view ending = HiddenEnding(item.name, item.kind);
    return ShellNameFromFileName(item.name.substr(0, item.name.size() - ending.size()));
}

HRESULT RenameItem(HWND owner, const std::string& folder, const ItemId& item, std::u16string_view text, bool wholeName,
                   LPITEMIDLIST* result)
{
    const std::u16string shownName = item.DisplayName();
    const auto refuse = [&](const std::string& reason, HRESULT code)
    {
        ReportFailure(owner, FailureText(shownName, u"could not be renamed", reason));
        return code;
    };
    const bool inMenu = !MenuProgramPath(item.name).empty();
    if (item.kind == ItemKind::Category)
        return RefuseInMenu(owner, shownName, kWhyCategoriesStay);
    wholeName = wholeName && !inMenu;
    text = wholeName ? text : WithoutBlanksAround(text);
    if (const char* reason = WhyNoName(text))
        return refuse(reason, E_INVALIDARG);
    const std::string ending(wholeName ? std::string_view() : HiddenEnding(item.name, item.kind));
    NewName to{{}, FileNameFromShellName(text) + ending, folder, std::string(item.name)};
    if (!wholeName && IsRenamedAsEntry(item))
        to.entryName = Utf8FromUtf16(text);
    else if (const char* reason = WhyNoFileName(to.fileName))
        return refuse(reason, E_INVALIDARG);
    const bool unchanged = wholeName ? to.fileName == item.name : text == EditingName(item);
    Renamed renamed{!to.entryName.empty(), 0};
    if (inMenu && !unchanged)
        RenameInMenu(to, item);
    if (!unchanged)
    {
        const auto answer = CallPumpedWithin<Renamed>(kPatience, [to] { return DoRename(to); });
        renamed = answer != nullptr ? *answer : Renamed{false, ETIMEDOUT};
    }
    if (renamed.error != 0)
        return refuse(ReasonOf(renamed.error), ResultFromErrno(renamed.error));
    if (unchanged && !renamed.isEntry)
        to.fileName = to.oldFileName;
    return GiveIdentifier(item, renamed, to, text, result);
}

} // namespace platform
