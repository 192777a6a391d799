// The tables of the shell's verbs.
#include "platform/shell/verbs.h"

#include "platform/files/applications_menu.h"
#include "platform/files/trusted_place.h"
#include "platform/shell/failure_report.h"

#include "shlobj.h"

#include <algorithm>
#include <sys/stat.h>

namespace platform
{

namespace
{

bool Always(const VerbTarget&, unsigned)
{
    return true;
}

bool IsCategory(const VerbItem& item)
{
    return item.kind == ItemKind::Category;
}

bool AreFiles(const VerbTarget& target, unsigned)
{
    return std::none_of(target.items.begin(), target.items.end(), IsCategory);
}

bool IsOne(const VerbTarget& target, unsigned)
{
    return target.items.size() == 1;
}

bool IsOneFolder(const VerbTarget& target, unsigned)
{
    return target.items.size() == 1 && LeadsToFolder(target.items.front());
}

/// Applications open other things; they are not opened by others.
bool IsOneDocument(const VerbTarget& target, unsigned)
{
    const ItemKind kind = target.items.front().kind;
    return target.items.size() == 1 && (kind == ItemKind::Folder || kind == ItemKind::File || kind == ItemKind::Link);
}

bool IsOneEntryOrLink(const VerbTarget& target, unsigned)
{
    const ItemKind kind = target.items.front().kind;
    return target.items.size() == 1 && (kind == ItemKind::DesktopEntry || kind == ItemKind::Link);
}

bool CanRename(const VerbTarget& target, unsigned menuFlags)
{
    return target.items.size() == 1 && (menuFlags & CMF_CANRENAME) != 0;
}

constexpr auto kPutsBeside = VerbEffect::PutsBeside;
constexpr auto kTakesAway = VerbEffect::TakesAway;

constexpr Verb kItemVerbs[] = {
    {"open", u"&Open", 0, AreFiles, OpenItems, nullptr, VerbPart::Entry, true},
    {"openas", u"Other &program\u2026", 0, IsOneDocument, OpenWithOther, nullptr, VerbPart::Programs},
    {"openterminal", u"Open in t&erminal", 0, IsOneFolder, OpenInTerminal},
    {"showinfolder", u"Show in &folder", 0, AreFiles, ShowInFolder},
    {"", u"", 1, IsOneEntryOrLink, nullptr, nullptr, VerbPart::Actions},
    {"cut", u"Cu&t", 2, AreFiles, CutItems, nullptr, VerbPart::Entry, false, kTakesAway},
    {"copy", u"&Copy", 2, AreFiles, CopyItems},
    {"paste", u"&Paste", 2, IsOne, PasteInto, CanPaste, VerbPart::Entry, false, kPutsBeside},
    {"link", u"Create &shortcut", 3, AreFiles, LinkItems, nullptr, VerbPart::Entry, false, kPutsBeside},
    {"delete", u"&Delete", 3, AreFiles, DeleteItems, nullptr, VerbPart::Entry, false, kTakesAway},
    {"rename", u"Rena&me", 3, CanRename, nullptr},
    {"properties", u"P&roperties", 4, AreFiles, ShowProperties},
};

constexpr Verb kBackgroundVerbs[] = {
    {"NewFolder", u"&New folder", 0, Always, NewFolderIn, nullptr, VerbPart::Entry, false, kPutsBeside},
    {"paste", u"&Paste", 1, Always, PasteInto, CanPaste, VerbPart::Entry, false, kPutsBeside},
    {"properties", u"P&roperties", 2, AreFiles, ShowProperties},
};

} // namespace

std::span<const Verb> ItemVerbs()
{
    return kItemVerbs;
}

std::span<const Verb> BackgroundVerbs()
{
    return kBackgroundVerbs;
}

const char* WhyMenuForbids(const Verb& verb, const VerbTarget& target)
{
    const auto ofAll = [](const VerbItem& item) { return item.inMenu && !IsUserEntry(item.path); };
    if (!AreFiles(target, 0))
        return kWhyCategoriesStay;
    if (verb.effect == VerbEffect::PutsBeside && target.items.front().inMenu)
        return kWhyNothingIsAdded;
    if (verb.effect == VerbEffect::TakesAway && std::any_of(target.items.begin(), target.items.end(), ofAll))
        return "It is installed for everybody, and cannot be taken away here.";
    return nullptr;
}

bool LeadsToFolder(const VerbItem& item)
{
    if (item.kind != ItemKind::Link)
        return item.kind == ItemKind::Folder;
    const Whereabouts target = TrustedWalk().Follow(item.path);
    return target.error == 0 && S_ISDIR(target.status.stx_mode);
}

} // namespace platform
