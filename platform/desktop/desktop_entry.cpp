// Reading desktop entries.
#include "platform/desktop/desktop_entry.h"

#include <string_view>

namespace platform
{

namespace
{

std::string TakeText(char* text)
{
    const GTextOwner owner(text);
    return text != nullptr ? text : "";
}

GStrvOwner EntryList(GKeyFile* entry, const char* key)
{
    return GStrvOwner(g_key_file_get_string_list(entry, G_KEY_FILE_DESKTOP_GROUP, key, nullptr, nullptr));
}

/// OnlyShowIn and NotShowIn, decided by the first of the current desktops that either of them names.
bool MeantForThisDesktop(GKeyFile* entry)
{
    const GStrvOwner only = EntryList(entry, G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN);
    const GStrvOwner never = EntryList(entry, G_KEY_FILE_DESKTOP_KEY_NOT_SHOW_IN);
    const char* variable = g_getenv("XDG_CURRENT_DESKTOP");
    const GStrvOwner desktops(g_strsplit(variable != nullptr ? variable : "", ":", -1));
    for (char** desktop = desktops.get(); *desktop != nullptr; ++desktop)
    {
        if (only != nullptr && g_strv_contains(only.get(), *desktop))
            return true;
        if (never != nullptr && g_strv_contains(never.get(), *desktop))
            return false;
    }
    return only == nullptr;
}

} // namespace

GKeyFileOwner LoadDesktopEntry(const char* path)
{
    GKeyFileOwner entry(g_key_file_new());
    const bool loaded = g_key_file_load_from_file(entry.get(), path, G_KEY_FILE_NONE, nullptr) != FALSE;
    return loaded && g_key_file_has_group(entry.get(), G_KEY_FILE_DESKTOP_GROUP) ? std::move(entry) : nullptr;
}

std::string LocalisedEntryText(GKeyFile* entry, const char* key)
{
    return TakeText(g_key_file_get_locale_string(entry, G_KEY_FILE_DESKTOP_GROUP, key, nullptr, nullptr));
}

std::string EntryText(GKeyFile* entry, const char* key)
{
    return TakeText(g_key_file_get_string(entry, G_KEY_FILE_DESKTOP_GROUP, key, nullptr));
}

bool EntryFlag(GKeyFile* entry, const char* key)
{
    return g_key_file_get_boolean(entry, G_KEY_FILE_DESKTOP_GROUP, key, nullptr) != FALSE;
}

std::string CleanIconName(std::string icon)
{
    if (icon.find('\n') != icon.npos || (icon.find('/') != icon.npos && !icon.starts_with('/')))
        return {};
    for (const std::string_view extension : {".png", ".svg", ".xpm"})
    {
        if (!icon.starts_with('/') && icon.size() > extension.size() && icon.ends_with(extension))
        {
            icon.resize(icon.size() - extension.size());
            break;
        }
    }
    return icon.starts_with('!') ? std::string() : icon;
}

std::string ActionGroup(const std::string& action)
{
    return "Desktop Action " + action;
}

bool EntryIsShown(GKeyFile* entry)
{
    return !EntryFlag(entry, G_KEY_FILE_DESKTOP_KEY_NO_DISPLAY) && !EntryFlag(entry, G_KEY_FILE_DESKTOP_KEY_HIDDEN) &&
           MeantForThisDesktop(entry);
}

} // namespace platform
