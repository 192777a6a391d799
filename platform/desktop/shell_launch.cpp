// Opening a file: what it is decides how.
#include "platform/services/launch_service.h"

#include "platform/desktop/content_type.h"
#include "platform/desktop/desktop_entry.h"
#include "platform/desktop/entry_launch.h"
#include "platform/desktop/glib_owner.h"
#include "platform/desktop/spawn.h"

#include <gio/gdesktopappinfo.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform
{

namespace
{

using End = std::shared_ptr<LaunchEnd>;

std::string UriOf(const std::string& path)
{
    const GTextOwner uri(g_filename_to_uri(path.c_str(), nullptr, nullptr));
    return uri != nullptr ? uri.get() : "";
}

/// Why a path leads to no file.
std::string WhyUnreachable(const std::string& path, int error)
{
    struct stat status;
    const bool link = lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    switch (error)
    {
    case ELOOP:
        return "The link leads back to itself.";
    case ENOENT:
    case ENOTDIR:
        return link ? "What the link leads to is not there." : "It is not there any more.";
    case EACCES:
        return "You may not read it.";
    }
    return std::string(std::strerror(error)) + ".";
}

/// Whether the kernel can run the file: a program, or a script that says what runs it.
bool IsProgram(const std::string& path)
{
    char start[4] = {};
    const int file = access(path.c_str(), X_OK) == 0 ? open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1;
    if (file < 0)
        return false;
    const ssize_t size = read(file, start, sizeof start);
    close(file);
    return (size == 4 && std::memcmp(start, "\177ELF", 4) == 0) || (size >= 2 && std::memcmp(start, "#!", 2) == 0);
}

std::string RunProgram(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return SpawnDetached({path}, path.substr(0, slash == 0 ? 1 : slash));
}

/// The words of the command that opens the user's terminal; none when there is no terminal.
std::vector<std::string> TerminalWords()
{
    const char* variable = g_getenv("TERMINAL");
    for (const char* command : {"xdg-terminal-exec", variable != nullptr ? variable : "", "x-terminal-emulator"})
    {
        char** words = nullptr;
        if (!g_shell_parse_argv(command, nullptr, &words, nullptr))
            continue;
        const GStrvOwner owner(words);
        const GTextOwner program(g_find_program_in_path(words[0]));
        if (program != nullptr)
            return {words, words + g_strv_length(words)};
    }
    return {};
}

std::string RunTerminalIn(const std::string& folder)
{
    struct stat status;
    if (stat(folder.c_str(), &status) != 0)
        return WhyUnreachable(folder, errno);
    const std::vector<std::string> words = TerminalWords();
    return words.empty() ? "No terminal is installed." : SpawnDetached(words, folder);
}

/// Opens URIs with the application that is the default for `type`.
std::string OpenWithDefault(const std::string& type, const std::string& uri, const End& end)
{
    const GObjectOwner<GAppInfo> application(g_app_info_get_default_for_type(type.c_str(), FALSE));
    const char* entry = application != nullptr && G_IS_DESKTOP_APP_INFO(application.get())
                            ? g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(application.get()))
                            : nullptr;
    if (entry == nullptr)
    {
        const GTextOwner description(g_content_type_get_description(type.c_str()));
        return std::string("No application is set for what this is (") + description.get() + ").";
    }
    return LaunchEntry(entry, {uri}, end);
}

/// An entry of the type Link.
std::string OpenLinkEntry(GKeyFile* entry, const End& end)
{
    const std::string url = EntryText(entry, G_KEY_FILE_DESKTOP_KEY_URL);
    const GTextOwner scheme(g_uri_parse_scheme(url.c_str()));
    if (scheme == nullptr)
        return "It does not say where it leads.";
    if (std::strcmp(scheme.get(), "file") != 0)
        return OpenWithDefault(std::string("x-scheme-handler/") + scheme.get(), url, end);
    const GTextOwner path(g_filename_from_uri(url.c_str(), nullptr, nullptr));
    struct stat status;
    if (path == nullptr || stat(path.get(), &status) != 0)
        return "What it leads to is not there.";
    return OpenWithDefault(ContentTypeOf(path.get(), status), url, end);
}

std::string OpenEntry(const std::string& path, const End& end)
{
    const GKeyFileOwner entry = LoadDesktopEntry(path.c_str());
    if (entry != nullptr && EntryText(entry.get(), G_KEY_FILE_DESKTOP_KEY_TYPE) == G_KEY_FILE_DESKTOP_TYPE_LINK)
        return OpenLinkEntry(entry.get(), end);
    return LaunchEntry(path, {}, end);
}

std::string OpenPath(const std::string& path, const End& end)
{
    struct stat status;
    char real[PATH_MAX];
    if (stat(path.c_str(), &status) != 0 || realpath(path.c_str(), real) == nullptr)
        return WhyUnreachable(path, errno);
    const std::string target = real;
    if (S_ISREG(status.st_mode) && (path.ends_with(".desktop") || target.ends_with(".desktop")))
        return OpenEntry(target, end);
    if (S_ISREG(status.st_mode) && IsProgram(target))
        return RunProgram(target);
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
        return "It is neither a file nor a folder.";
    return OpenWithDefault(ContentTypeOf(target, status), UriOf(target), end);
}

/// Opens it with the program of an entry; an entry is opened itself, not the program that it stands for.
std::string OpenPathWith(const std::string& path, const char* entryPath, const End& end)
{
    char real[PATH_MAX];
    if (realpath(path.c_str(), real) == nullptr)
        return WhyUnreachable(path, errno);
    return LaunchEntry(entryPath, {UriOf(real)}, end);
}

std::string RunActionAt(const std::string& path, const char* action, const End& end)
{
    char real[PATH_MAX];
    if (realpath(path.c_str(), real) == nullptr)
        return WhyUnreachable(path, errno);
    return LaunchEntry(real, {}, end, action);
}

/// Calls `launch` with the launch's end; true when it gave no reason for a failure.
template <typename F>
bool Reported(LaunchReport report, char* reason, std::size_t reasonSize, F launch)
{
    const auto end = std::make_shared<LaunchEnd>(report);
    const std::string why = launch(end);
    g_strlcpy(reason, why.c_str(), reasonSize);
    return why.empty();
}

bool Open(const char* path, LaunchReport report, char* reason, std::size_t reasonSize)
{
    return Reported(
        report, reason, reasonSize, [&](const End& end) { return OpenPath(path, end); });
}

bool OpenWith(const char* path, const char* entryPath, LaunchReport report, char* reason, std::size_t reasonSize)
{
    return Reported(
        report, reason, reasonSize, [&](const End& end) { return OpenPathWith(path, entryPath, end); });
}

bool RunAction(const char* path, const char* action, LaunchReport report, char* reason, std::size_t reasonSize)
{
    return Reported(
        report, reason, reasonSize, [&](const End& end) { return RunActionAt(path, action, end); });
}

bool OpenTerminal(const char* folder, LaunchReport report, char* reason, std::size_t reasonSize)
{
    return Reported(
        report, reason, reasonSize, [&](const End&) { return RunTerminalIn(folder); });
}

} // namespace

} // namespace platform

extern "C" __attribute__((visibility("default"))) const platform::LaunchService orb_launch_service = {
    platform::Open, platform::OpenWith, platform::RunAction, platform::OpenTerminal};
