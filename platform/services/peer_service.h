// Other programs of the desktop that show what is not ours to show: file manager, portal, file pickers. Over D-Bus.
//
// Every call waits for the other side, for a bounded time unless a person is asked, and belongs on a thread of its own.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform
{

enum class PickResult
{
    Picked,
    Cancelled,
    Unavailable, ///< nothing on this desktop can show a picker
    Failed,      ///< it came to no end
};

struct PickRequest
{
    const char* title;   ///< UTF-8; "" for the picker's own
    const char* okLabel; ///< with a mnemonic marked by '_'; "" for the picker's own
    const char* folder;  ///< where to begin; "" for the picker's choice
    bool pickFolder;
    std::uint32_t parent; ///< an X window, 0 for none
    /// Asked now and then; true ends the picking as cancelled.
    bool (*givenUp)(void* context);
    void* context;
};

struct PeerService
{
    /// Has the file manager show the file in its folder, or its properties (org.freedesktop.FileManager1). False when
    /// none answers within five seconds.
    bool (*showInFolder)(const char* path);
    bool (*showProperties)(const char* path);
    /// Whether the desktop has a chooser of programs (org.freedesktop.portal.OpenURI).
    bool (*hasProgramChooser)();
    /// Shows that chooser for the file. False when it cannot be shown.
    bool (*chooseProgram)(const char* path, std::uint32_t parent);
    /// Has the user pick an existing file or folder, whose path goes to `path`.
    PickResult (*pick)(const PickRequest& request, char* path, std::size_t capacity);
};

} // namespace platform

extern "C" const platform::PeerService orb_peer_service;
