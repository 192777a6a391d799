// What the person answers to popup menus, dialogs and pickers. None of them is shown: what would be is recorded.
#pragma once

#include "tests/scenarios/staged.h"

#include "support/wstring.h"

#include <shellapi.h>
#include <shlobj.h>

#include <functional>
#include <string>
#include <vector>

/// While it lives, popup menus are answered at once.
class StagedPopup : public Staged<StagedPopup>
{
public:
    struct Entry
    {
        int identifier; ///< 0 for a line
        std::string text;
        bool checked;
        SIZE picture; ///< pixels, 0 × 0 for none
    };

    int answer = 0;               ///< identifier of the chosen entry, 0 for none
    std::function<void()> onShow; ///< what happens while it shows

    // The last one.
    int shown = 0; ///< how many have been
    std::vector<Entry> entries;
    std::vector<int> Identifiers() const;
    UINT flags = 0;
    POINT point{};
    HWND owner = nullptr;
    bool hasExclusion = false;
    TPMPARAMS exclusion{};
};

class Desk;
/// Asks for an item's menu at (50, 60), in pixels of the screen, and chooses an entry, 0 for none.
void ChooseInMenu(Desk& desk, int identifier, int item, int level = 0);

/// While it lives, dialogs are answered at once.
class StagedDialog : public Staged<StagedDialog>
{
public:
    std::vector<std::string> answers; ///< typed into the edit and accepted, one after the other; then comes Cancel
    std::function<void()> onShow;     ///< what happens while it shows
    bool cannotShow = false;

    // The last one.
    int shown = 0; ///< how many have been
    UINT_PTR resource = 0;
    HWND owner = nullptr;
    bool takesDefaultFocus = false;
    std::string text; ///< of the edit, at first
    POINT place{};    ///< screen
    int repositioned = 0;
};

/// While it lives, files are picked, shortcuts saved and files deleted at once.
class StagedFiles : public Staged<StagedFiles>
{
public:
    std::string pick; ///< path that is picked; empty: cancelled
    bool controlIsDown = false;
    std::string failing;            ///< name of the one call that fails
    std::function<void()> onPick;   ///< what happens while the picker shows
    std::function<void()> onDelete; ///< what happens while files are deleted

    int pickers = 0; ///< how many have been shown
    FILEOPENDIALOGOPTIONS options = 0;
    std::string title;
    std::string okLabel;
    std::string startFolder;
    std::vector<std::string> targets;   ///< of shortcuts
    std::vector<std::string> shortcuts; ///< paths saved to
    std::vector<std::string> deleted;   ///< paths
    std::vector<SHFILEOPSTRUCTW> deletions;
    std::vector<SHELLEXECUTEINFOW> executed;
    std::vector<std::string> executedPaths;
};
