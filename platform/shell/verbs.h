// The shell's verbs: what the context menus of items and of folders' backgrounds offer.
#pragma once

#include "windef.h"

#include "platform/files/listed_file.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

struct VerbItem
{
    std::string path; ///< POSIX
    std::u16string displayName;
    ItemKind kind = ItemKind::File;
    bool inMenu = false; ///< a category of the applications menu, or a program in one
};

/// What a verb acts on.
struct VerbTarget
{
    HWND owner;                         ///< of what the verb shows; null for none
    const std::vector<VerbItem>& items; ///< at least one; of a background menu the folder alone
};

/// What a row of a table of verbs puts into the menu.
enum class VerbPart : std::uint8_t
{
    Entry,
    Actions,  ///< an entry for each of a desktop entry's own actions
    Programs, ///< the sub-menu "Open with", which is filled when it opens and ends with the row's own entry
};

/// What a verb changes about its target, which menu files may forbid.
enum class VerbEffect : std::uint8_t
{
    None,
    PutsBeside, ///< something new into the target, or into the folder that it is in
    TakesAway,  ///< the target from its place
};

struct Verb
{
    std::string_view name;    ///< canonical; independent of the language. Empty for a row that has no entry of its own
    std::u16string_view text; ///< of the menu entry
    int group;                ///< a separator stands between groups
    bool (*offered)(const VerbTarget& target, unsigned menuFlags);
    HRESULT (*run)(const VerbTarget& target);            ///< null for what whoever shows the menu does itself
    bool (*enabled)(const VerbTarget& target) = nullptr; ///< null: always
    VerbPart part = VerbPart::Entry;
    bool isDefault = false; ///< run by a double click
    VerbEffect effect = VerbEffect::None;
};

/// Every verb of an item and of a folder's background, in menu order. A verb's place in its table is its command
/// offset.
std::span<const Verb> ItemVerbs();
std::span<const Verb> BackgroundVerbs();

/// Why the applications menu does not let the verb do that to its target, a sentence; null when it does. Nothing can be
/// done to a category, and nothing put beside a program; only one of the user's own can be taken away.
const char* WhyMenuForbids(const Verb& verb, const VerbTarget& target);

/// Whether the item is a folder or a link to one, as far as can be told on trusted ground.
bool LeadsToFolder(const VerbItem& item);

// What the verbs do. Each tells the user what could not be done; E_FAIL then.
HRESULT OpenItems(const VerbTarget& target);
HRESULT OpenInTerminal(const VerbTarget& target);
HRESULT OpenWithOther(const VerbTarget& target);
HRESULT ShowInFolder(const VerbTarget& target);
HRESULT ShowProperties(const VerbTarget& target);
HRESULT CutItems(const VerbTarget& target);
HRESULT CopyItems(const VerbTarget& target);
HRESULT PasteInto(const VerbTarget& target);
HRESULT LinkItems(const VerbTarget& target);
HRESULT DeleteItems(const VerbTarget& target);
HRESULT NewFolderIn(const VerbTarget& target);

/// Whether there may be files to be pasted.
bool CanPaste(const VerbTarget& target);

/// Opens the item with the program of a desktop entry.
HRESULT OpenWithProgram(const VerbTarget& target, const std::string& entryPath);
/// Runs one of the actions of the item, a desktop entry.
HRESULT RunEntryAction(const VerbTarget& target, const std::string& action);

} // namespace platform
