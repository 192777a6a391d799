// Between the launcher and the shell: what is asked is recorded, and an item's menu can be a staged one.
#pragma once

#include "tests/scenarios/staged.h"

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

/// While it lives, every item's shell menu holds one default command with the verb of the story, and what else the
/// story puts into it. Folders give and take names as they do, in the file system.
class StagedMenu : public Staged<StagedMenu>
{
public:
    explicit StagedMenu(std::string verb);
    /// Identifier that the launcher gives an entry: the default one is 0, the others follow.
    static int Identifier(int entry);

    std::string verb;                ///< empty: the shell tells none
    IDataObject* data = nullptr;     ///< of every item that is dragged; null: the shell gives none
    std::vector<std::string> others; ///< verbs of further entries
    bool refusesMenu = false;        ///< the items have no menu
    bool refusesToFill = false;
    bool refusesNames = false;
    std::function<void()> onBind;   ///< what happens while the shell finds the item's folder
    std::function<void()> onQuery;  ///< what happens while the shell fills the menu
    std::function<void()> onInvoke; ///< what happens while the command runs
    std::function<void()> onRename; ///< what happens before an item gets its new name
    UINT queryFlags = 0;
    std::vector<CMINVOKECOMMANDINFOEX> invocations; ///< as much of each as was passed
    std::vector<std::string> invokedVerbs;          ///< of those by name
    std::vector<std::string> asked;                 ///< names of the items whose menus were asked for
    std::vector<std::string> names;                 ///< that items were to get
    std::vector<std::string> released;              ///< what was let go, in order
};
