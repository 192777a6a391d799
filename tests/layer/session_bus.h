// A session bus of the tests' own.
#pragma once

#include "tests/layer/shell_scratch.h"

#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace shell_test
{

/// A session bus of the tests' own, as long as the process: GIO keeps to the first one that it has met.
class SessionBus
{
public:
    static const SessionBus& Of()
    {
        static const SessionBus bus;
        return bus;
    }
    ~SessionBus()
    {
        if (getpid() != m_owner)
            return;        // a process that a test has forked
        if (m_process > 0) // -1 would be everybody's
        {
            kill(m_process, SIGTERM);
            waitpid(m_process, nullptr, 0);
        }
        std::filesystem::remove_all(m_folder);
    }
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    bool Ready() const
    {
        return m_process > 0 && WaitFor([this] { return std::filesystem::exists(m_folder / "socket"); });
    }
    std::string Address() const { return "unix:path=" + (m_folder / "socket").native(); }

private:
    SessionBus()
    {
        std::string name = (std::filesystem::temp_directory_path() / "orb-bus-XXXXXX").native();
        m_folder = mkdtemp(name.data());
        std::string address = "--address=" + Address();
        std::vector<char*> arguments;
        for (const char* argument : {"dbus-daemon", "--session", "--nofork", "--nopidfile", address.c_str()})
            arguments.push_back(const_cast<char*>(argument));
        arguments.push_back(nullptr);
        if (posix_spawnp(&m_process, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
            m_process = -1;
    }
    const pid_t m_owner = getpid();
    std::filesystem::path m_folder;
    pid_t m_process = -1;
};

} // namespace shell_test
