// Desktop entries' actions and names, and the programs that open a file.
#include "platform/services/entry_service.h"

#include "platform/base/unique_fd.h"
#include "platform/desktop/content_type.h"
#include "platform/desktop/desktop_entry.h"
#include "platform/desktop/link_entry.h"

#include <gio/gdesktopappinfo.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace platform
{

namespace
{

constexpr char kGroup[] = G_KEY_FILE_DESKTOP_GROUP;
constexpr char kNameKey[] = G_KEY_FILE_DESKTOP_KEY_NAME;

std::string WithoutLinks(const char* path)
{
    char real[PATH_MAX];
    return realpath(path, real) != nullptr ? real : "";
}

GKeyFileOwner EntryAt(const std::string& path)
{
    return path.ends_with(".desktop") ? LoadDesktopEntry(path.c_str()) : nullptr;
}

std::string LocalisedText(GKeyFile* entry, const std::string& group, const char* key)
{
    const GTextOwner text(g_key_file_get_locale_string(entry, group.c_str(), key, nullptr, nullptr));
    return text != nullptr ? text.get() : "";
}

void Actions(const char* path, ChoiceReceiver receive, void* context)
{
    const GKeyFileOwner entry = EntryAt(WithoutLinks(path));
    if (entry == nullptr)
        return;
    const GStrvOwner actions(
        g_key_file_get_string_list(entry.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_ACTIONS, nullptr, nullptr));
    for (char** action = actions.get(); action != nullptr && *action != nullptr; ++action)
    {
        const std::string group = ActionGroup(*action);
        const std::string name = LocalisedText(entry.get(), group, kNameKey);
        const std::string icons = CleanIconName(LocalisedText(entry.get(), group, G_KEY_FILE_DESKTOP_KEY_ICON));
        if (!name.empty())
            receive(context, {*action, name.c_str(), icons.c_str()});
    }
}

void Tell(GAppInfo* program, ChoiceReceiver receive, void* context)
{
    const char* entry =
        G_IS_DESKTOP_APP_INFO(program) ? g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(program)) : nullptr;
    if (entry == nullptr)
        return;
    const GTextOwner icon(g_desktop_app_info_get_string(G_DESKTOP_APP_INFO(program), G_KEY_FILE_DESKTOP_KEY_ICON));
    const std::string icons = CleanIconName(icon != nullptr ? icon.get() : "");
    receive(context, {entry, g_app_info_get_display_name(program), icons.c_str()});
}

void Programs(const char* path, ChoiceReceiver receive, void* context)
{
    const std::string real = WithoutLinks(path);
    struct stat status;
    if (real.empty() || stat(real.c_str(), &status) != 0)
        return;
    const std::string type = ContentTypeOf(real, status);
    const GObjectOwner<GAppInfo> first(g_app_info_get_default_for_type(type.c_str(), FALSE));
    if (first != nullptr)
        Tell(first.get(), receive, context);
    GList* programs = g_app_info_get_recommended_for_type(type.c_str());
    for (GList* program = programs; program != nullptr; program = program->next)
        if (first == nullptr || !g_app_info_equal(first.get(), G_APP_INFO(program->data)))
            Tell(G_APP_INFO(program->data), receive, context);
    g_list_free_full(programs, g_object_unref);
}

/// The language whose name is to be changed: that of the name which is shown now, else the user's, without country;
/// "C" for the untranslated name.
std::string LanguageOfName(GKeyFile* entry)
{
    const GTextOwner shown(g_key_file_get_locale_for_key(entry, kGroup, kNameKey, nullptr));
    if (shown != nullptr)
        return shown.get();
    const std::string_view wanted = *g_get_language_names();
    const std::string_view language = wanted.substr(0, wanted.find_first_of("_.@"));
    const std::size_t modifier = wanted.find('@');
    std::string name(language);
    return name += modifier != wanted.npos ? wanted.substr(modifier) : "";
}

void SetShownName(GKeyFile* entry, const char* name)
{
    const std::string language = LanguageOfName(entry);
    const bool translated = language != "C" && language != "POSIX";
    if (translated)
        g_key_file_set_locale_string(entry, kGroup, kNameKey, language.c_str(), name);
    // An entry without an untranslated name is none.
    if (!translated || !g_key_file_has_key(entry, kGroup, kNameKey, nullptr))
        g_key_file_set_string(entry, kGroup, kNameKey, name);
}

/// Replaces what is at `path`, be it a link, in one step; an errno value on failure.
int ReplaceFile(const std::string& path, std::string_view content, mode_t mode)
{
    std::string temporary = path.substr(0, path.rfind('/') + 1) + ".orb-launcher-XXXXXX"; // hidden from menus
    UniqueFd file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file)
        return errno;
    const bool written = WriteAll(file.Get(), content) && fchmod(file.Get(), mode) == 0 && fsync(file.Get()) == 0;
    if (written && file.Close() && rename(temporary.c_str(), path.c_str()) == 0)
        return 0;
    const int error = errno;
    unlink(temporary.c_str());
    return error;
}

EntryRename Rename(const char* path, const char* newPath, const char* name, int* error)
{
    struct stat status;
    const GKeyFileOwner entry(g_key_file_new());
    constexpr auto kKeepAll = GKeyFileFlags(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
    if (stat(path, &status) != 0 || !S_ISREG(status.st_mode) ||
        !g_key_file_load_from_file(entry.get(), path, kKeepAll, nullptr) || !g_key_file_has_group(entry.get(), kGroup))
        return EntryRename::NoEntry;
    SetShownName(entry.get(), name);
    gsize size = 0;
    const GTextOwner content(g_key_file_to_data(entry.get(), &size, nullptr));
    *error = ReplaceFile(newPath, {content.get(), size}, (status.st_mode & 0777) | S_IRUSR | S_IWUSR);
    return *error == 0 ? EntryRename::Done : EntryRename::Failed;
}

/// The program that an entry starts; "" when it is not to be found.
std::string ProgramOf(GKeyFile* entry)
{
    char** words = nullptr;
    if (!g_shell_parse_argv(EntryText(entry, G_KEY_FILE_DESKTOP_KEY_EXEC).c_str(), nullptr, &words, nullptr))
        return {};
    const GStrvOwner owner(words);
    const GTextOwner program(g_find_program_in_path(words[0]));
    return program != nullptr ? program.get() : "";
}

bool Target(const char* path, char* target, std::size_t capacity)
{
    std::string found = WithoutLinks(path);
    const GKeyFileOwner entry = EntryAt(found);
    if (entry != nullptr)
    {
        const GTextOwner file(
            g_filename_from_uri(EntryText(entry.get(), G_KEY_FILE_DESKTOP_KEY_URL).c_str(), nullptr, nullptr));
        const std::string program = ProgramOf(entry.get());
        found = file != nullptr ? file.get() : program.empty() ? found : program;
    }
    return !found.empty() && g_strlcpy(target, found.c_str(), capacity) < capacity;
}

} // namespace

} // namespace platform

extern "C" __attribute__((visibility("default"))) const platform::EntryService orb_entry_service = {
    platform::Actions, platform::Programs, platform::Rename, platform::Target, platform::MakeLinkEntry};
