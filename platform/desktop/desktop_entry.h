// Reading desktop entries, broken ones included, of which GDesktopAppInfo tells nothing.
#pragma once

#include "platform/desktop/glib_owner.h"

#include <string>

namespace platform
{

/// The entry's key file; null when it cannot be read or is none.
GKeyFileOwner LoadDesktopEntry(const char* path);
/// The text of a key in the user's language; "" when it has none.
std::string LocalisedEntryText(GKeyFile* entry, const char* key);
/// The unlocalised text of a key; "" when it has none.
std::string EntryText(GKeyFile* entry, const char* key);
bool EntryFlag(GKeyFile* entry, const char* key);
/// An entry's icon as it may stand in a list of alternatives; theme names lose a superfluous extension.
std::string CleanIconName(std::string icon);
/// The group that describes one of the entry's actions.
std::string ActionGroup(const std::string& action);
/// Whether menus show the entry: neither hidden nor meant for another desktop.
bool EntryIsShown(GKeyFile* entry);

} // namespace platform
