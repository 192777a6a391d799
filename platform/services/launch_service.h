// Opening files the way the user's desktop does: desktop entries, default applications, programs. Done by GIO.
#pragma once

#include <cstddef>

namespace platform
{

struct LaunchReport
{
    /// Called once, on any thread, when nothing of the launch is left to be done in this process. `failure` is the
    /// reason, a sentence in UTF-8, why a launch that was taken for started has failed after all; else "".
    void (*finished)(void* context, const char* failure);
    void* context;
};

/// Paths are absolute. On failure each returns false with the reason, a sentence in UTF-8, in `reason`. True means
/// started, or asked for over D-Bus with nothing said against it so far. `report.finished` is called in either case.
struct LaunchService
{
    /// Opens the file at `path`.
    bool (*open)(const char* path, LaunchReport report, char* reason, std::size_t reasonSize);
    /// Opens it with the program of a desktop entry.
    bool (*openWith)(const char* path, const char* entryPath, LaunchReport report, char* reason,
                     std::size_t reasonSize);
    /// Runs one of the actions of the desktop entry at `path`, or that a link there leads to.
    bool (*runAction)(const char* path, const char* action, LaunchReport report, char* reason, std::size_t reasonSize);
    /// Opens the desktop's terminal in a folder.
    bool (*openTerminal)(const char* folder, LaunchReport report, char* reason, std::size_t reasonSize);
};

} // namespace platform

extern "C" const platform::LaunchService orb_launch_service;
