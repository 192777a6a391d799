// File pickers that are programs, zenity and kdialog: they print the path, and say by their status how they ended.
#include "platform/desktop/file_picker.h"

#include "platform/desktop/spawn.h"
#include "platform/desktop/startup_notice.h"

#include <csignal>
#include <vector>

namespace platform
{

namespace
{

using Words = std::vector<std::string>;

Words ZenityWords(const PickRequest& request)
{
    Words words{"zenity", "--file-selection"};
    if (request.pickFolder)
        words.emplace_back("--directory");
    if (*request.title != '\0')
        words.push_back(std::string("--title=") + request.title);
    if (*request.folder != '\0')
        words.push_back(std::string("--filename=") + request.folder + "/");
    if (request.parent != 0)
        words.push_back("--attach=" + std::to_string(request.parent));
    return words;
}

Words KdialogWords(const PickRequest& request)
{
    Words words{"kdialog", request.pickFolder ? "--getexistingdirectory" : "--getopenfilename",
                *request.folder != '\0' ? request.folder : "."};
    if (*request.title != '\0')
        words.insert(words.end(), {"--title", request.title});
    if (request.parent != 0)
        words.insert(words.end(), {"--attach", std::to_string(request.parent)});
    return words;
}

/// `startupId`: by it the window manager knows that the user wants the picker, and gives it the keyboard.
GObjectOwner<GSubprocess> Start(const Words& words, const std::string& startupId)
{
    std::vector<const char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(word.c_str());
    arguments.push_back(nullptr);
    constexpr auto kFlags = GSubprocessFlags(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_SILENCE);
    const GObjectOwner<GSubprocessLauncher> launcher(g_subprocess_launcher_new(kFlags));
    g_subprocess_launcher_set_child_setup(launcher.get(), DetachChild, nullptr, nullptr);
    g_subprocess_launcher_setenv(launcher.get(), "DESKTOP_STARTUP_ID", startupId.c_str(), TRUE);
    g_subprocess_launcher_unsetenv(launcher.get(), "XDG_ACTIVATION_TOKEN");
    return GObjectOwner<GSubprocess>(g_subprocess_launcher_spawnv(launcher.get(), arguments.data(), nullptr));
}

struct Ending
{
    bool isThere = false;
    std::string output;
};

void OnEnd(GObject* process, GAsyncResult* result, gpointer data)
{
    auto& ending = *static_cast<Ending*>(data);
    GBytes* output = nullptr;
    g_subprocess_communicate_finish(G_SUBPROCESS(process), result, &output, nullptr, nullptr);
    if (output != nullptr)
    {
        gsize size = 0;
        const auto* text = static_cast<const char*>(g_bytes_get_data(output, &size));
        ending.output.assign(text != nullptr ? text : "", size);
        g_bytes_unref(output);
    }
    ending.isThere = true;
}

/// A path is ended by one line break; others are part of it.
Picked Outcome(GSubprocess* process, std::string output)
{
    constexpr int kCancelled = 1;
    const bool exited = g_subprocess_get_if_exited(process) != FALSE;
    const int status = exited ? g_subprocess_get_exit_status(process) : -1;
    if (output.ends_with('\n'))
        output.pop_back();
    if (status == 0 && output.starts_with('/'))
        return {PickResult::Picked, std::move(output)};
    return {status == kCancelled ? PickResult::Cancelled : PickResult::Failed, {}};
}

Picked RunPicker(const Words& words, const PickRequest& request)
{
    Ending ending;
    BusTalk talk([&] { return request.givenUp(request.context); });
    const std::string startupId = AnnounceStart(request.title, nullptr, words.front().c_str());
    const GObjectOwner<GSubprocess> process = Start(words, startupId);
    if (process == nullptr)
    {
        RetractStart(startupId);
        return {PickResult::Failed, {}};
    }
    g_subprocess_communicate_async(process.get(), nullptr, nullptr, OnEnd, &ending);
    if (!talk.Wait([&] { return ending.isThere; }))
    {
        g_subprocess_send_signal(process.get(), SIGTERM);
        return {PickResult::Cancelled, {}};
    }
    return Outcome(process.get(), std::move(ending.output));
}

} // namespace

Picked PickByProgram(const PickRequest& request)
{
    for (const Words& words : {ZenityWords(request), KdialogWords(request)})
    {
        const GTextOwner program(g_find_program_in_path(words.front().c_str()));
        if (program != nullptr)
            return RunPicker(words, request);
    }
    return {};
}

} // namespace platform
