// Starting things: what the started program finds, and what is said when nothing can be started.
#include "tests/layer/session_bus.h"
#include "tests/layer/shell_scratch.h"

#include "windows.h"

#include "platform/services/desktop_module.h"
#include "platform/services/launch_service.h"
#include "tests/headless/headless.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

using namespace shell_test;

namespace
{

/// Opens a file; returns the reason for a failure, "" on success. `ended` counts the ends told.
std::string Open(const std::filesystem::path& path, std::atomic<int>* ended = nullptr)
{
    static std::atomic<int> ignored;
    const auto* service =
        static_cast<const platform::LaunchService*>(platform::DesktopModuleSymbol("orb_launch_service"));
    if (service == nullptr)
        return "the desktop module is missing";
    char reason[512] = "";
    const auto finished = [](void* count, const char*) { ++*static_cast<std::atomic<int>*>(count); };
    service->open(path.c_str(), {finished, ended != nullptr ? ended : &ignored}, reason, sizeof reason);
    return reason;
}

class ShellLaunch : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        InstallFolderViewer();
        // The bus reads them when it starts.
        std::filesystem::create_directories(Home() / "data/dbus-1/services");
        const auto offer = [](const std::string& name, const std::string& go)
        {
            Write(Home() / "data/dbus-1/services" / (name + ".service"),
                  "[D-BUS Service]\nName=" + name + "\nExec=" + ORB_BUS_APPLICATION + " " + name + " " +
                      BusReport().native() + " " + go + "\n");
        };
        offer("org.example.Orb-Test", "");
        offer("org.example.Orb-Late", Go().native());
        // One for all: for a moment GIO keeps to the bus of before, also to one that it could not have.
        ASSERT_TRUE(SessionBus::Of().Ready());
        setenv("DBUS_SESSION_BUS_ADDRESS", SessionBus::Of().Address().c_str(), 1);
    }
    static void TearDownTestSuite() { setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1); }

    /// What the applications on the bus tell, and what the late one waits for.
    static std::filesystem::path BusReport() { return Home() / "bus-report"; }
    static std::filesystem::path Go() { return Home() / "go"; }

    void SetUp() override
    {
        m_folder = NewFolder();
        m_report = m_folder / "report";
        // Tells what it was started as, whole or not at all.
        Write(m_folder / "tell.sh",
              "#!/bin/sh\n{\nfor a in \"$@\"; do echo \"arg $a\"; done\n"
              "echo \"cwd $PWD\"\necho \"sid $(cut -d' ' -f6 /proc/$$/stat)\"\necho \"pid $$\"\n"
              "echo \"id $DESKTOP_STARTUP_ID$XDG_ACTIVATION_TOKEN\"\n"
              "grep -E 'SigBlk|SigIgn' /proc/self/status\n"
              "for f in /proc/$$/fd/*; do echo \"fd ${f##*/} $(readlink \"$f\")\"; done\n} > '" +
                  m_report.native() + ".part'\nmv '" + m_report.native() + ".part' '" + m_report.native() + "'\n",
              0755);
    }

    std::filesystem::path Entry(const std::string& lines)
    {
        const auto path = m_folder / "entry.desktop";
        Write(path, "[Desktop Entry]\nType=Application\nName=A Tool\nIcon=tool\n" + lines);
        return path;
    }

    std::string Tell() const { return "\"" + (m_folder / "tell.sh").native() + "\""; }

    /// The report's lines, once it is there.
    std::string Report() const
    {
        if (!WaitFor([this] { return std::filesystem::exists(m_report); }))
            return "the program was not started";
        return ContentOf(m_report);
    }

    std::filesystem::path m_folder;
    std::filesystem::path m_report;
};

/// A display of its own, on which it hears what is announced.
class StartupListener
{
public:
    StartupListener()
    {
        int ready[2];
        if (pipe(ready) != 0)
            return;
        const std::string descriptor = std::to_string(ready[1]);
        std::vector<char*> arguments;
        for (const char* argument : {"Xvfb", "-displayfd", descriptor.c_str(), "-nolisten", "tcp", "-noreset"})
            arguments.push_back(const_cast<char*>(argument));
        arguments.push_back(nullptr);
        if (posix_spawnp(&m_process, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
            m_process = -1;
        close(ready[1]);
        char number[16] = "";
        if (m_process > 0 && read(ready[0], number, sizeof number - 1) > 0)
        {
            std::string display = ":";
            display += std::to_string(std::atoi(number));
            setenv("DISPLAY", display.c_str(), 1);
            m_connection = xcb_connect(nullptr, nullptr);
            const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
            const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(m_connection, root, XCB_CW_EVENT_MASK, &mask);
            m_begin = Atom("_NET_STARTUP_INFO_BEGIN");
        }
        close(ready[0]);
    }
    ~StartupListener()
    {
        unsetenv("DISPLAY");
        if (m_connection != nullptr)
            xcb_disconnect(m_connection);
        if (m_process > 0)
        {
            kill(m_process, SIGTERM);
            waitpid(m_process, nullptr, 0);
        }
    }
    StartupListener(const StartupListener&) = delete;
    StartupListener& operator=(const StartupListener&) = delete;

    bool Ready() const { return m_connection != nullptr; }
    /// The words that the messages sent so far begin with.
    std::vector<std::string> Kinds() const
    {
        Atom("WM_NAME"); // its reply comes behind every event before
        std::vector<std::string> kinds;
        while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection))
        {
            const auto* message = reinterpret_cast<xcb_client_message_event_t*>(event);
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE && message->type == m_begin)
            {
                const std::string text(message->data.data8, message->data.data8 + 20);
                kinds.push_back(text.substr(0, text.find(':')));
            }
            std::free(event);
        }
        return kinds;
    }

private:
    xcb_atom_t Atom(std::string_view name) const
    {
        const auto cookie = xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
        xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(m_connection, cookie, nullptr);
        const xcb_atom_t atom = reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return atom;
    }

    pid_t m_process = -1;
    xcb_connection_t* m_connection = nullptr;
    xcb_atom_t m_begin = 0;
};

/// Does what the menu does with an item.
HRESULT Invoke(const std::filesystem::path& path, LPCSTR verb = MAKEINTRESOURCEA(0))
{
    CMINVOKECOMMANDINFOEX info{};
    info.cbSize = sizeof info;
    info.fMask = CMIC_MASK_PTINVOKE;
    info.lpVerb = verb;
    return Bound(path).Menu()->InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&info));
}

std::string ValueOf(const std::string& report, const std::string& key)
{
    std::istringstream lines(report);
    for (std::string line; std::getline(lines, line);)
    {
        if (line.starts_with(key + " ") || line.starts_with(key + ":"))
        {
            const std::size_t start = line.find_first_not_of(" \t", key.size() + 1);
            return start != line.npos ? line.substr(start) : "";
        }
    }
    return "(no " + key + ")";
}

} // namespace

TEST_F(ShellLaunch, AStartedProgramIsOnItsOwn)
{
    const auto path = m_folder / "path with %s";
    std::filesystem::create_directory(path);
    setenv("DESKTOP_STARTUP_ID", "ours", 1);
    setenv("XDG_ACTIVATION_TOKEN", "ours", 1);
    const int leaked = open("/dev/zero", O_RDONLY); // without close-on-exec, as a careless library leaves one
    std::signal(SIGUSR1, SIG_IGN);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);

    std::atomic<int> ended = 0;
    EXPECT_EQ(
        Open(Entry("Exec=" + Tell() + " plain \"two words\" %% %i %c %k %f %U\nPath=" + path.native() + "\n"), &ended),
        "");
    sigprocmask(SIG_UNBLOCK, &blocked, nullptr);
    std::signal(SIGUSR1, SIG_DFL);
    close(leaked);
    const std::string text = Report();
    EXPECT_TRUE(text.starts_with("arg plain\narg two words\narg %\narg --icon\narg tool\narg A Tool\narg " +
                                 (m_folder / "entry.desktop").native() + "\ncwd "))
        << text;
    EXPECT_EQ(ValueOf(text, "cwd"), path.native());
    EXPECT_NE(ValueOf(text, "sid"), std::to_string(getsid(0)));
    EXPECT_EQ(ValueOf(text, "id"), "") << "no X server, so no identifier, least of all ours";
    EXPECT_EQ(ValueOf(text, "SigBlk"), "0000000000000000");
    EXPECT_EQ(ValueOf(text, "SigIgn"), "0000000000000000");
    EXPECT_EQ(ValueOf(text, "fd 0"), "/dev/null");
    EXPECT_EQ(ValueOf(text, "fd 2"), "/dev/null");
    EXPECT_EQ(text.find("/dev/zero"), text.npos) << text;
    EXPECT_TRUE(WaitFor([&] { return ended == 1; }));
    unsetenv("DESKTOP_STARTUP_ID");
    unsetenv("XDG_ACTIVATION_TOKEN");
}

TEST_F(ShellLaunch, ProgramsAndLinksToThemRun)
{
    std::filesystem::create_symlink("tell.sh", m_folder / "link.lnk");
    EXPECT_EQ(Open(m_folder / "link.lnk"), "");
    const std::string text = Report();
    EXPECT_EQ(ValueOf(text, "cwd"), m_folder.native());
    EXPECT_NE(ValueOf(text, "sid"), std::to_string(getsid(0)));
    std::filesystem::remove(m_report);
    setenv("XDG_ACTIVATION_TOKEN", "of another start", 1);
    EXPECT_EQ(Open(m_folder / "tell.sh"), "");
    EXPECT_EQ(ValueOf(Report(), "id"), "");
    unsetenv("XDG_ACTIVATION_TOKEN");
}

TEST_F(ShellLaunch, ALinkToADesktopEntryRunsIt)
{
    Entry("Exec=" + Tell() + " through\n");
    std::filesystem::create_symlink("entry.desktop", m_folder / "link.lnk");
    EXPECT_EQ(Open(m_folder / "link.lnk"), "");
    EXPECT_EQ(ValueOf(Report(), "arg"), "through");
}

TEST_F(ShellLaunch, TerminalProgramsRunInTheUsersTerminal)
{
    const auto terminal = Home() / "bin/x-terminal-emulator";
    Write(terminal, "#!/bin/sh\ntest \"$1\" = -e && shift && exec \"$@\" in-terminal\n", 0755);
    EXPECT_EQ(Open(Entry("Exec=" + Tell() + " %k %%\nTerminal=true\n")), "");
    const std::string text = Report();
    EXPECT_TRUE(text.starts_with("arg " + (m_folder / "entry.desktop").native() + "\narg %\narg in-terminal\n"))
        << text;
    std::filesystem::remove(terminal);
}

TEST_F(ShellLaunch, AnActivatableApplicationIsAskedOverTheBus)
{
    const std::string name = "org.example.Orb-Test";
    m_report = BusReport();
    std::filesystem::remove(m_report);
    const auto entry = m_folder / (name + ".desktop");
    Write(entry,
          "[Desktop Entry]\nType=Application\nName=On the Bus\nExec=" + Tell() + " by-command\nDBusActivatable=true\n");
    std::atomic<int> ended = 0;
    EXPECT_EQ(Open(entry, &ended), "");
    EXPECT_EQ(Report(), "Activate /org/example/Orb_Test ({},)\n");
    EXPECT_TRUE(WaitFor([&] { return ended == 1; })) << "the process was held until the answer";

    // What the bus cannot have started is started by its command line.
    const auto unknown = m_folder / "org.example.Unknown.desktop";
    std::filesystem::rename(entry, unknown);
    m_report = m_folder / "report";
    EXPECT_EQ(Open(unknown), "");
    EXPECT_EQ(ValueOf(Report(), "arg"), "by-command");
}

TEST_F(ShellLaunch, DocumentsOpenWithTheirApplication)
{
    const auto odd = m_folder / "o%dd #nam\xFF";
    std::filesystem::create_directory(odd);
    EXPECT_EQ(Open(odd), "");
    EXPECT_EQ(ValueOf(Report(), "arg"), odd.native());
}

// An application that refused after the wait for its answer left the user without a word.
TEST_F(ShellLaunch, AFailureThatComesLateIsToldToo)
{
    std::filesystem::remove(Go());
    const auto entry = m_folder / "org.example.Orb-Late.desktop";
    std::filesystem::rename(Entry("Exec=no-such-program-here\nDBusActivatable=true\n"), entry);
    EXPECT_EQ(Invoke(entry), S_OK) << "nothing was said against it so far";
    EXPECT_EQ(GetActiveWindow(), nullptr);
    Write(Go(), "");
    int boxes = 0;
    int waits = 0;
    platform::headless::SetIdleHandler(
        [&]
        {
            boxes += GetActiveWindow() != nullptr ? 1 : 0;
            platform::headless::PressKey(VK_RETURN);
            platform::headless::ReleaseKey(VK_RETURN);
            if (boxes != 0 || ++waits == 5000)
                PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
            poll(nullptr, 0, 2);
            return true;
        });
    MSG message;
    while (boxes == 0 && waits < 5000 && GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    platform::headless::SetIdleHandler(nullptr);
    EXPECT_EQ(boxes, 1);
}

// A start that fell back from the bus to its command line was announced twice, and the first never taken back.
TEST_F(ShellLaunch, AStartIsAnnouncedOnceAndTakenBackWhenItFails)
{
    const StartupListener listener;
    if (!listener.Ready())
        GTEST_SKIP() << "needs Xvfb";
    const auto start = [&](const std::string& exec)
    {
        const auto entry = m_folder / "org.example.Unknown.desktop";
        std::filesystem::rename(Entry("Exec=" + exec + "\nDBusActivatable=true\nStartupNotify=true\n"), entry);
        return Open(entry);
    };
    EXPECT_NE(start("no-such-program-here"), "");
    EXPECT_EQ(listener.Kinds(), (std::vector<std::string>{"new", "remove"}));
    EXPECT_EQ(start(Tell()), "");
    EXPECT_EQ(listener.Kinds(), (std::vector<std::string>{"new"}));
    const auto identifier = [&]
    {
        const std::string id = ValueOf(Report(), "id");
        std::filesystem::remove(m_report);
        EXPECT_EQ(id.substr(0, id.size() / 2), id.substr(id.size() / 2)) << "told in either variable";
        return id.substr(0, id.find("_TIME"));
    };
    const std::string first = identifier();
    EXPECT_TRUE(first.starts_with("orb-launcher-"));
    EXPECT_EQ(start(Tell()), "");
    EXPECT_NE(identifier(), first) << "within one tick of the server's clock too";
}

TEST_F(ShellLaunch, AnActivatableApplicationHearsOfItsAnnouncement)
{
    const StartupListener listener;
    if (!listener.Ready())
        GTEST_SKIP() << "needs Xvfb";
    m_report = BusReport();
    std::filesystem::remove(m_report);
    const auto entry = m_folder / "org.example.Orb-Test.desktop";
    std::filesystem::rename(Entry("Exec=" + Tell() + "\nDBusActivatable=true\nStartupNotify=true\n"), entry);
    EXPECT_EQ(Open(entry), "");
    const std::string told = Report();
    for (const char* key : {"desktop-startup-id", "activation-token"})
        EXPECT_NE(told.find(std::string(key) + "': <'orb-launcher-"), told.npos) << told;
    EXPECT_EQ(listener.Kinds(), (std::vector<std::string>{"new"}));
}

TEST_F(ShellLaunch, FailuresAreExplained)
{
    const auto expect = [&](const std::filesystem::path& path, const std::string& part)
    {
        std::atomic<int> ended = 0;
        const std::string reason = Open(path, &ended);
        EXPECT_NE(reason.find(part), reason.npos) << path << ": " << (reason.empty() ? "(started)" : reason);
        EXPECT_TRUE(WaitFor([&] { return ended == 1; })) << path;
    };
    std::filesystem::create_symlink("nowhere", m_folder / "dangling");
    std::filesystem::create_symlink("loop", m_folder / "loop");
    mkfifo((m_folder / "pipe").c_str(), 0600);
    Write(m_folder / "nonsense.desktop", "no key file");
    Write(m_folder / "unknown.q7z9", std::string("\x01\x02\x00\x03", 4));
    Write(m_folder / "noformat.sh", "#!/nonexistent/interpreter\n", 0755);
    expect(m_folder / "dangling", "not there");
    expect(m_folder / "loop", "leads back to itself");
    expect(m_folder / "gone", "not there any more");
    expect(m_folder / "pipe", "neither a file nor a folder");
    expect(m_folder / "nonsense.desktop", "not a valid desktop entry");
    expect(m_folder / "unknown.q7z9", "No application");
    expect(m_folder / "noformat.sh", "noformat.sh");
    expect(Entry("Exec=no-such-program-here\n"), "\u201Cno-such-program-here\u201D is not installed");
    expect(Entry("Exec=true\nTryExec=no-such-trial\n"), "\u201Cno-such-trial\u201D is not installed");
    expect(Entry("Exec=\"unclosed\n"), "malformed");
    expect(Entry(""), "which program");
    expect(Entry("Exec=true\nPath=/nonexistent/folder\n"), "/nonexistent/folder");
    expect(Entry("Exec=no-such-program-here\nDBusActivatable=true\n"), "not installed");
    Write(m_folder / "typeless.desktop", "[Desktop Entry]\nExec=true\nName=x\n");
    expect(m_folder / "typeless.desktop", "no application");
    Write(m_folder / "url.desktop", "[Desktop Entry]\nType=Link\nURL=file:///nonexistent/file\n");
    expect(m_folder / "url.desktop", "not there");
    Write(m_folder / "nourl.desktop", "[Desktop Entry]\nType=Link\n");
    expect(m_folder / "nourl.desktop", "where it leads");
}
