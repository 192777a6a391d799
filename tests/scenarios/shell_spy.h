// Between the launcher and the shell: what is asked is recorded, and an item's menu can be a staged one.
#pragma once

#include "support/wstring.h"

#include <shlobj.h>

#include <functional>
#include <string>
#include <vector>

/// One call of SHChangeNotifyRegister.
struct AskedNotice
{
    HWND window;
    int sources;
    LONG events;
    UINT message;
    int entries;
    WString folder; ///< of the first entry
    BOOL recursive; ///< of the first entry
};

/// The calls since the program began; a story clears them.
std::vector<AskedNotice>& AskedNotices();

/// What the program has last handed to SHSetInstanceExplorer.
IUnknown* InstanceExplorer();

/// While it lives, every item's shell menu holds one default command with the verb of the story.
class StagedMenu
{
public:
    explicit StagedMenu(std::string verb);
    ~StagedMenu();
    StagedMenu(const StagedMenu&) = delete;
    StagedMenu& operator=(const StagedMenu&) = delete;

    std::string verb;
    std::function<void()> onBind;   ///< what happens while the shell finds the item's folder
    std::function<void()> onQuery;  ///< what happens while the shell fills the menu
    std::function<void()> onInvoke; ///< what happens while the command runs
    UINT queryFlags = 0;
    std::vector<CMINVOKECOMMANDINFOEX> invocations;
    std::vector<std::string> released; ///< what was let go, in order
};
