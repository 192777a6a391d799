// The tables of the shell's verbs.
#include "platform/shell/verbs.h"

#include "platform/files/trusted_place.h"

#include "shlobj.h"

#include <sys/stat.h>

namespace platform
{

namespace
{

bool Always(const VerbTarget&, unsigned)
{
    return true;
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
    return target.items.size() == 1 && kind != ItemKind::DesktopEntry && kind != ItemKind::Other;
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

constexpr Verb kItemVerbs[] = {
    {"open", u"&Open", 0, Always, OpenItems, nullptr, VerbPart::Entry, true},
    {"openas", u"Other &program\u2026", 0, IsOneDocument, OpenWithOther, nullptr, VerbPart::Programs},
    {"openterminal", u"Open in t&erminal", 0, IsOneFolder, OpenInTerminal},
    {"showinfolder", u"Show in &folder", 0, Always, ShowInFolder},
    {"", u"", 1, IsOneEntryOrLink, nullptr, nullptr, VerbPart::Actions},
    {"cut", u"Cu&t", 2, Always, CutItems},
    {"copy", u"&Copy", 2, Always, CopyItems},
    {"paste", u"&Paste", 2, IsOne, PasteInto, CanPaste},
    {"link", u"Create &shortcut", 3, Always, LinkItems},
    {"delete", u"&Delete", 3, Always, DeleteItems},
    {"rename", u"Rena&me", 3, CanRename, nullptr},
    {"properties", u"P&roperties", 4, Always, ShowProperties},
};

constexpr Verb kBackgroundVerbs[] = {
    {"NewFolder", u"&New folder", 0, Always, NewFolderIn},
    {"paste", u"&Paste", 1, Always, PasteInto, CanPaste},
    {"properties", u"P&roperties", 2, Always, ShowProperties},
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

bool LeadsToFolder(const VerbItem& item)
{
    if (item.kind != ItemKind::Link)
        return item.kind == ItemKind::Folder;
    const Whereabouts target = TrustedWalk().Follow(item.path);
    return target.error == 0 && S_ISDIR(target.status.stx_mode);
}

} // namespace platform
