// Desktop entries: by GDesktopAppInfo, or over D-Bus; and why one cannot be started.
#include "platform/desktop/entry_launch.h"

#include "platform/desktop/bus_activation.h"
#include "platform/desktop/bus_talk.h"
#include "platform/desktop/desktop_entry.h"
#include "platform/desktop/spawn.h"
#include "platform/desktop/startup_notice.h"

#include <gio/gdesktopappinfo.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string_view>
#include <system_error>
#include <thread>

namespace platform
{

namespace
{

constexpr char kGroup[] = G_KEY_FILE_DESKTOP_GROUP;
constexpr char kInvalidEntry[] = "It is not a valid desktop entry.";
constexpr char kExecKey[] = G_KEY_FILE_DESKTOP_KEY_EXEC;

std::string Quoted(const std::string& text)
{
    return "\u201C" + text + "\u201D";
}

std::string MessageOf(const GError* error)
{
    return error != nullptr ? error->message : "The reason is not known.";
}

bool IsInstalled(const std::string& program)
{
    const GTextOwner path(g_find_program_in_path(program.c_str()));
    return path != nullptr;
}

/// Why GDesktopAppInfo would have nothing to do with the entry; "" when no reason is found.
std::string WhyUnusable(GKeyFile* entry)
{
    const std::string type = EntryText(entry, G_KEY_FILE_DESKTOP_KEY_TYPE);
    if (type != G_KEY_FILE_DESKTOP_TYPE_APPLICATION)
        return "It is no application but " + (type.empty() ? "of no type." : "of the type " + Quoted(type) + ".");
    const std::string needed = EntryText(entry, G_KEY_FILE_DESKTOP_KEY_TRY_EXEC);
    if (!needed.empty() && !IsInstalled(needed))
        return "The program " + Quoted(needed) + " is not installed.";
    const std::string command = EntryText(entry, kExecKey);
    if (command.empty())
        return "It does not say which program to run.";
    GError* error = nullptr;
    char** words = nullptr;
    if (!g_shell_parse_argv(command.c_str(), nullptr, &words, &error))
    {
        const GErrorOwner owner(error);
        return "Its command line is malformed: " + MessageOf(error) + ".";
    }
    const GStrvOwner owner(words);
    return IsInstalled(words[0]) ? "" : "The program " + Quoted(words[0]) + " is not installed.";
}

/// The command by which the user's terminal runs another command; "" to leave the choice to GIO.
std::string TerminalCommand()
{
    if (IsInstalled("xdg-terminal-exec"))
        return "xdg-terminal-exec ";
    return IsInstalled("x-terminal-emulator") ? "x-terminal-emulator -e " : "";
}

/// Puts the entry's own path where its command line asks for it: an entry made from memory has lost it.
std::string WithEntryPath(std::string command, const std::string& path)
{
    const GTextOwner quoted(g_shell_quote(path.c_str()));
    std::string text;
    for (const char* c = quoted.get(); *c != '\0'; ++c)
        text.append(*c == '%' ? "%%" : std::string(1, *c));
    for (std::size_t at = 0; (at = command.find('%', at)) != command.npos && at + 1 < command.size();)
    {
        const bool wanted = command[at + 1] == 'k';
        command.replace(at, 2, wanted ? text : command.substr(at, 2));
        at += wanted ? text.size() : 2;
    }
    return command;
}

/// The entry for starting by a command line: never over D-Bus, and in the user's own terminal if it wants one.
/// `changed` says that it is not what the file holds.
GObjectOwner<GDesktopAppInfo> InfoForCommand(GKeyFile* entry, const std::string& path, bool changed)
{
    const bool inTerminal = EntryFlag(entry, G_KEY_FILE_DESKTOP_KEY_TERMINAL);
    const std::string terminal = inTerminal ? TerminalCommand() : "";
    const bool onBus = EntryFlag(entry, G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE);
    if (terminal.empty() && !onBus && !changed)
        return GObjectOwner<GDesktopAppInfo>(g_desktop_app_info_new_from_filename(path.c_str()));
    const std::string command = terminal + WithEntryPath(EntryText(entry, kExecKey), path);
    g_key_file_set_string(entry, kGroup, kExecKey, command.c_str());
    g_key_file_set_boolean(entry, kGroup, G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE, FALSE);
    g_key_file_set_boolean(entry, kGroup, G_KEY_FILE_DESKTOP_KEY_TERMINAL, inTerminal && terminal.empty());
    return GObjectOwner<GDesktopAppInfo>(g_desktop_app_info_new_from_keyfile(entry));
}

/// The identifier of a start that was announced; "" when the entry does not ask for that.
std::string Announce(GKeyFile* entry, const char* program)
{
    if (!EntryFlag(entry, G_KEY_FILE_DESKTOP_KEY_STARTUP_NOTIFY))
        return {};
    const std::string name = LocalisedEntryText(entry, G_KEY_FILE_DESKTOP_KEY_NAME);
    const std::string icon = LocalisedEntryText(entry, G_KEY_FILE_DESKTOP_KEY_ICON);
    return AnnounceStart(name.c_str(), icon.c_str(), program);
}

std::string LaunchInfo(GDesktopAppInfo* info, const std::vector<std::string>& uris, const std::string& startupId)
{
    BusTalk talk; // GIO tells the session bus of what it has started
    if (talk.BusIsStuck())
        return "The session bus does not answer.";
    GList* list = nullptr;
    for (const std::string& uri : uris)
        list = g_list_append(list, const_cast<char*>(uri.c_str()));
    const auto context = MakeLaunchContext(startupId);
    GError* error = nullptr;
    const bool started =
        g_desktop_app_info_launch_uris_as_manager(info, list, context.get(), kDetachedSpawnFlags, DetachChild, nullptr,
                                                  nullptr, nullptr, &error) != FALSE;
    g_list_free(list);
    const GErrorOwner owner(error);
    return started ? "" : MessageOf(error);
}

/// Has the entry run the command of one of its actions.
void TakeCommandOfAction(GKeyFile* entry, const std::string& action)
{
    const GTextOwner command(g_key_file_get_string(entry, ActionGroup(action).c_str(), kExecKey, nullptr));
    g_key_file_set_string(entry, kGroup, kExecKey, command != nullptr ? command.get() : "");
}

/// Starts the entry's command line, or that of one of its actions. `startupId` is of an announcement that was made
/// already, "" for none; one announcement serves the whole start and is taken back when it fails.
std::string RunCommand(const std::string& path, const std::vector<std::string>& uris, const std::string& action,
                       std::string startupId)
{
    const GKeyFileOwner entry = LoadDesktopEntry(path.c_str());
    if (entry != nullptr && !action.empty())
        TakeCommandOfAction(entry.get(), action);
    std::string reason = entry != nullptr ? WhyUnusable(entry.get()) : kInvalidEntry;
    if (reason.empty())
    {
        const GObjectOwner<GDesktopAppInfo> info = InfoForCommand(entry.get(), path, !action.empty());
        if (info != nullptr && startupId.empty())
            startupId = Announce(entry.get(), g_app_info_get_executable(G_APP_INFO(info.get())));
        reason = info != nullptr ? LaunchInfo(info.get(), uris, startupId) : kInvalidEntry;
    }
    if (!reason.empty())
        RetractStart(startupId);
    return reason;
}

/// What the launching thread and the waiting one share.
struct Outcome
{
    std::mutex mutex;
    std::condition_variable known;
    bool isKnown = false;
    bool isAwaited = true;
    std::string reason;
};

/// Runs `launch` on a thread of its own and waits for its failure, but only so long; one that comes later is told by
/// `end`, which is kept until then.
std::string LaunchOnThread(std::chrono::milliseconds patience, std::function<std::string()> launch,
                           std::shared_ptr<LaunchEnd> end)
{
    const auto outcome = std::make_shared<Outcome>();
    const auto run = [launch, end = std::move(end), outcome]
    {
        std::string reason = launch();
        const std::lock_guard lock(outcome->mutex);
        if (!outcome->isAwaited)
            end->Fail(std::move(reason));
        else
            outcome->reason = std::move(reason);
        outcome->isKnown = true;
        outcome->known.notify_one();
    };
    try
    {
        std::thread(run).detach();
    }
    catch (const std::system_error&)
    {
        return launch();
    }
    std::unique_lock lock(outcome->mutex);
    outcome->known.wait_for(lock, patience, [&] { return outcome->isKnown; });
    outcome->isAwaited = false;
    return outcome->reason;
}

} // namespace

std::string LaunchEntry(const std::string& entryPath, const std::vector<std::string>& uris,
                        const std::shared_ptr<LaunchEnd>& end, const std::string& action)
{
    constexpr std::chrono::milliseconds kUntilStarted{1000};
    constexpr std::chrono::milliseconds kUntilActivated{150}; // the application's own start may take seconds
    const GKeyFileOwner entry = LoadDesktopEntry(entryPath.c_str());
    if (entry == nullptr || !EntryFlag(entry.get(), G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE))
        return LaunchOnThread(
            kUntilStarted, [=] { return RunCommand(entryPath, uris, action, {}); }, end);
    const std::string startupId = Announce(entry.get(), nullptr);
    const auto launch = [=]
    {
        return ActivateOverBus({entryPath, uris, action, startupId}) ? std::string()
                                                                     : RunCommand(entryPath, uris, action, startupId);
    };
    return LaunchOnThread(kUntilActivated, launch, end);
}

} // namespace platform
