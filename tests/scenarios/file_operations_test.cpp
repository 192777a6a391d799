// Operations on a level's files: what the shell is asked for, where what comes of it goes, and what fails.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/shell_spy.h"
#include "tests/scenarios/staged_ui.h"

#include "app/launcher_state.h"
#include "commands/command_table.h"
#include "content/ordering.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;
using namespace CustomMenu;

namespace
{

class FileOperations : public testing::Test
{
protected:
    FileOperations()
    {
        m_desk.MakeFile("Games/chess");
        m_desk.MakeFile("notes");
        m_desk.MakeFile("readme");
        m_desk.Launch("100,700,0");
    }

    CustomBar& Root() { return m_desk.Level(0); }
    std::string Path(const std::string& name) { return (m_desk.Folder() / name).string(); }
    void Choose(int identifier, const std::string& item) { ChooseInMenu(m_desk, identifier, m_desk.IndexOf(item, 0)); }
    void PressOn(const std::string& item, unsigned key, bool control = false)
    {
        Root().SetHotItem(item.empty() ? -1 : m_desk.IndexOf(item, 0));
        control ? m_desk.PressWith(VK_CONTROL, {key}) : m_desk.Press(key);
    }
    void ExpectDisabledBy(CustomBar* operation)
    {
        EXPECT_FALSE(IsWindowEnabled(Root().m_hWnd));
        EXPECT_EQ(g_launcher.g_operationBar, operation);
    }
    void ExpectUsable()
    {
        EXPECT_TRUE(IsWindowEnabled(Root().m_hWnd));
        EXPECT_EQ(g_launcher.g_operationBar, nullptr);
        EXPECT_EQ(GetFocus(), Root().m_toolbar);
    }
    Desk m_desk;
};

// --- a new folder

class NewFolder : public FileOperations
{
protected:
    NewFolder()
    {
        m_shell.onInvoke = [this] { m_desk.MakeFolder("New folder"); };
    }
    StagedMenu m_shell{"open"};
};

TEST_F(NewFolder, IsMadeByTheShellAndGetsThePlaceThatWasMeant)
{
    const auto make = m_shell.onInvoke;
    m_shell.onInvoke = [&]
    {
        ExpectDisabledBy(&Root());
        make();
    };
    Choose(IDM_INSERT_FOLDER_ABOVE, "notes");
    ASSERT_EQ(m_shell.invocations.size(), 1u);
    EXPECT_EQ(m_shell.invokedVerbs, Labels{"NewFolder"});
    EXPECT_EQ(m_shell.invocations[0].cbSize, sizeof(CMINVOKECOMMANDINFO));
    EXPECT_EQ(m_shell.invocations[0].fMask, 0x100u);
    EXPECT_EQ(m_shell.invocations[0].hwnd, nullptr);
    EXPECT_EQ(m_shell.invocations[0].nShow, SW_SHOWNORMAL);
    EXPECT_EQ(m_shell.queryFlags, static_cast<UINT>(CMF_NORMAL));
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "New folder", "notes", "readme"}));
    EXPECT_EQ(m_desk.Hot(), "New folder");
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout), Order({"Games", "New folder", "notes", "readme"}));
    ExpectUsable();
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "New folder", "notes", "readme"})) << "after the notice as well";
}

TEST_F(NewFolder, WhoseNoticeComesWithinTheOperationGetsItsPlaceAllTheSame)
{
    // The refresh had put it at the highlight, and the level then showed it twice.
    for (const int entry : {IDM_INSERT_FOLDER_BELOW, IDM_INSERT_FOLDER_ABOVE})
    {
        m_shell.onInvoke = [&]
        {
            m_desk.MakeFolder("New folder");
            m_desk.Refresh(0);
        };
        Choose(entry, "notes");
        const bool below = entry == IDM_INSERT_FOLDER_BELOW;
        EXPECT_EQ(m_desk.Items(), (below ? Labels{"Games", "notes", "New folder", "readme"}
                                         : Labels{"Games", "New folder", "notes", "readme"}));
        fs::remove(Path("New folder"));
        m_desk.Refresh(0);
    }
}

TEST_F(NewFolder, ThatIsNotMadeChangesNothing)
{
    const Labels before = m_desk.Items();
    m_shell.onInvoke = nullptr;
    Choose(IDM_INSERT_FOLDER_ABOVE, "notes");
    EXPECT_EQ(m_desk.Items(), before);
    ExpectUsable();
    m_shell.onInvoke = [&] { m_desk.MakeFolder("New folder"); };
    m_shell.refusesToFill = true;
    ComPtr<IShellFolder> folder;
    LPCITEMIDLIST child = nullptr;
    ASSERT_TRUE(
        SUCCEEDED(SHBindToParent(Root().m_items[1].pidl.Get(), IID_IShellFolder, folder.ReceiveVoid(), &child)));
    Root().InsertNewFolder(*folder.Get(), 1);
    m_shell.refusesMenu = true;
    Root().InsertNewFolder(*folder.Get(), 1);
    m_desk.Settle();
    EXPECT_EQ(m_desk.Items(), before);
    EXPECT_EQ(m_shell.invocations.size(), 1u) << "only the first was filled";
    ExpectUsable();
}

TEST_F(NewFolder, InALevelThatClosesMeanwhileIsKept)
{
    m_desk.Click("Games");
    CustomBar& games = m_desk.Level(1);
    m_shell.onInvoke = [&]
    {
        m_desk.MakeFolder("Games/A folder");
        DestroyWindow(games.m_hWnd);
    };
    ChooseInMenu(m_desk, IDM_INSERT_FOLDER_BELOW, 0, 1);
    EXPECT_EQ(m_desk.Levels(), 1);
    ExpectUsable();
    m_desk.Click("Games");
    EXPECT_EQ(m_desk.Items(1), (Labels{"chess", "A folder"}));
}

// --- a new shortcut

class NewShortcut : public FileOperations
{
protected:
    NewShortcut() { m_files.pick = "/usr/share/Tools/Notes.txt"; }
    StagedFiles m_files;
};

TEST_F(NewShortcut, IsPickedAndSavedAndGetsThePlaceThatWasMeant)
{
    m_files.onPick = [&] { ExpectDisabledBy(nullptr); };
    PressOn("notes", VK_INSERT);
    EXPECT_EQ(m_files.options, 0x02009840u | 0x2) << "with the picker's own";
    EXPECT_EQ(m_files.title, "Insert Shortcut");
    EXPECT_EQ(m_files.okLabel, "Select");
    EXPECT_EQ(m_files.startFolder, "shell:Desktop");
    EXPECT_EQ(m_files.targets, Labels{"/usr/share/Tools/Notes.txt"});
    EXPECT_EQ(m_files.shortcuts, Labels{Path("Notes.txt.lnk")});
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "Notes.txt", "notes", "readme"}));
    EXPECT_EQ(m_desk.Hot(), "Notes.txt");
    ExpectUsable();
}

TEST_F(NewShortcut, ByKeyWithoutAnItemAndByMenuBelowTheLastComesLast)
{
    PressOn("", VK_INSERT);
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "notes", "readme", "Notes.txt"}));
    m_files.pick = "/opt/Tools";
    const StagedMenu shell("open");
    Choose(IDM_INSERT_SHORTCUT_BELOW, "Notes.txt");
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "notes", "readme", "Notes.txt", "Tools"}));
    EXPECT_EQ(m_desk.Hot(), "Tools");
}

TEST_F(NewShortcut, WithControlDownIsToAFolder)
{
    m_files.controlIsDown = true;
    PressOn("notes", VK_INSERT);
    EXPECT_EQ(m_files.options, 0x02009860u | 0x2);
    EXPECT_EQ(m_files.okLabel, "") << "the picker's own";
}

TEST_F(NewShortcut, ThatIsCancelledOrCannotBeMadeChangesNothing)
{
    const Labels before = m_desk.Items();
    for (const char* call : {"CoCreateInstance", "GetOptions", "SetOptions", "SHCreateItemFromParsingName", "GetResult",
                             "GetDisplayName", "CoCreateInstance of a link", "SetPath", "QueryInterface", "Save", ""})
    {
        m_files.failing = call;
        if (m_files.failing.empty())
            m_files.pick.clear();
        m_files.shortcuts.clear();
        PressOn("notes", VK_INSERT);
        EXPECT_EQ(m_desk.Items(), before) << call;
        EXPECT_EQ(m_files.shortcuts.size(), m_files.failing == "Save" ? 1u : 0u) << call;
        ExpectUsable();
    }
    EXPECT_EQ(m_files.pickers, 7) << "those that failed before showing it did not show it";
    m_files.pick = "/x";
    for (const int position : {-1, m_desk.Level(0).ItemCount() + 1})
        Root().InsertShortcut(position);
    EXPECT_EQ(m_files.pickers, 7);
}

TEST_F(NewShortcut, IsPickedThoughTheTextsOfThePickerCannotBeSet)
{
    for (const char* call : {"SetTitle", "SetOkButtonLabel", "SetFileName", "SetDefaultFolder"})
    {
        m_files.failing = call;
        PressOn("notes", VK_INSERT);
    }
    EXPECT_EQ(m_files.shortcuts.size(), 4u);
}

TEST_F(NewShortcut, StaysBesideItsItemWhateverComesMeanwhile)
{
    m_files.onPick = [&]
    {
        m_desk.MakeFile("a");
        fs::remove_all(Path("Games"));
        m_desk.Refresh(0);
        std::rotate(Root().m_items.begin(), Root().m_items.end() - 1, Root().m_items.end());
        Root().SaveLayout();
    };
    PressOn("readme", VK_INSERT);
    Labels items = m_desk.Items();
    const auto readme = std::find(items.begin(), items.end(), "readme");
    ASSERT_NE(readme, items.begin());
    EXPECT_EQ(*(readme - 1), "Notes.txt");
    EXPECT_EQ(m_desk.Hot(), "Notes.txt");
}

TEST_F(NewShortcut, ToAPathThatIsTooLongIsCut)
{
    m_files.pick = "/" + std::string(300, 'x');
    PressOn("notes", VK_INSERT);
    EXPECT_EQ(m_files.targets, Labels{m_files.pick.substr(0, 259)});
}

TEST_F(NewShortcut, WhoseItemHasGoneTakesThePlaceOfThatItem)
{
    m_files.onPick = [&]
    {
        fs::remove(Path("notes"));
        m_desk.Refresh(0);
    };
    PressOn("notes", VK_INSERT);
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "Notes.txt", "readme"}));
    EXPECT_EQ(m_desk.Hot(), "Notes.txt");
}

TEST_F(NewShortcut, OfAMenuThatClosesMeanwhileHarmsNothing)
{
    m_files.onPick = [&] { DestroyWindow(Root().m_hWnd); };
    PressOn("notes", VK_INSERT);
    EXPECT_FALSE(m_desk.IsOpen());
    EXPECT_EQ(m_desk.Levels(), 0);
}

// --- renaming

class Renaming : public FileOperations
{
protected:
    Renaming() { m_shell.others = {"rename"}; }
    void Rename(const std::string& item) { Choose(StagedMenu::Identifier(1), item); }
    StagedMenu m_shell{"open"};
    StagedDialog m_dialog;
};

TEST_F(Renaming, KeepsTheItemsPlace)
{
    m_dialog.onShow = [&] { ExpectDisabledBy(&Root()); };
    m_dialog.answers = {"zebra"};
    Rename("notes");
    EXPECT_EQ(m_dialog.resource, 102u);
    EXPECT_EQ(m_dialog.owner, nullptr);
    EXPECT_EQ(m_dialog.text, "notes");
    EXPECT_TRUE(m_dialog.takesDefaultFocus);
    EXPECT_EQ(m_dialog.place.x, 50);
    EXPECT_EQ(m_dialog.place.y, 60);
    EXPECT_EQ(m_dialog.repositioned, 1);
    EXPECT_EQ(m_shell.names, Labels{"zebra"});
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout), Order({"Games", "zebra", "readme"}));
    ExpectUsable();
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "zebra", "readme"}));
}

TEST_F(Renaming, ByKeyboardPutsTheDialogIntoTheCorner)
{
    StagedPopup popup;
    popup.answer = StagedMenu::Identifier(1);
    PressOn("notes", VK_APPS);
    EXPECT_EQ(m_dialog.place.x, -1);
    EXPECT_EQ(m_dialog.place.y, -1);
    EXPECT_EQ(m_dialog.repositioned, 1) << "and has it moved into the work area";
}

TEST_F(Renaming, AnInvalidNameIsSaidAndTheDialogStays)
{
    m_desk.ExpectBoxes();
    m_dialog.answers = {"", "a.", "a:b", std::string(256, 'x'), "good"};
    Rename("notes");
    EXPECT_EQ(m_desk.BoxTexts(), Labels(4, "Invalid Filename."));
    EXPECT_EQ(m_dialog.shown, 1);
    EXPECT_EQ(m_shell.names, Labels{"good"});
}

TEST_F(Renaming, CancelledOrRefusedChangesNothing)
{
    const Labels before = m_desk.Items();
    Rename("notes");
    EXPECT_TRUE(m_shell.names.empty());
    m_dialog.answers = {"readme"};
    Rename("notes");
    EXPECT_EQ(m_shell.names.size(), 1u) << "a name that is taken";
    m_shell.refusesNames = true;
    m_dialog.answers = {"other"};
    Rename("notes");
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items(), before);
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout), Order(before));
    ExpectUsable();
}

TEST_F(Renaming, TouchesNothingElseWhenTheItemIsGoneByThen)
{
    m_dialog.answers = {"zebra"};
    m_dialog.onShow = [&]
    {
        fs::remove(Path("notes"));
        m_desk.Refresh(0);
    };
    Rename("notes");
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "readme"}));
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout), Order({"Games", "readme"}));
    ExpectUsable();
}

TEST_F(Renaming, FollowsAnItemThatMovesMeanwhileAndHighlightsItAgain)
{
    // The dialog has taken the highlight, and the notice of the change keeps what it finds: none was left.
    m_dialog.answers = {"zebra"};
    m_dialog.onShow = [&]
    {
        fs::remove_all(Path("Games"));
        m_desk.Refresh(0);
        Root().SetHotItem(-1);
    };
    Rename("notes");
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items(), (Labels{"zebra", "readme"}));
    EXPECT_EQ(m_desk.Hot(), "zebra");
}

TEST_F(Renaming, InALevelThatClosesMeanwhileKeepsTheOrder)
{
    m_desk.StoreOrder(kRootLayout, Order({"readme", "notes", "Games"}));
    m_desk.Refresh(0);
    m_dialog.answers = {"zebra"};
    m_dialog.onShow = [&] { DestroyWindow(Root().m_hWnd); };
    Rename("notes");
    EXPECT_FALSE(m_desk.IsOpen());
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout), Order({"readme", "zebra", "Games"}));
}

TEST_F(Renaming, ADialogThatCannotBeShownIsAsGoodAsCancelled)
{
    m_desk.Click("Games");
    m_dialog.cannotShow = true;
    m_dialog.answers = {"zebra"};
    ChooseInMenu(m_desk, StagedMenu::Identifier(1), 0, 1);
    EXPECT_TRUE(m_shell.names.empty());
    EXPECT_EQ(g_launcher.g_operationBar, nullptr);
    EXPECT_TRUE(IsWindowEnabled(Root().m_hWnd));
}

// --- deleting

class Deleting : public FileOperations
{
protected:
    StagedFiles m_files;
};

TEST_F(Deleting, GivesTheShellTheItemsPath)
{
    m_files.onDelete = [&] { ExpectDisabledBy(&Root()); };
    PressOn("notes", VK_DELETE);
    ASSERT_EQ(m_files.deletions.size(), 1u);
    EXPECT_EQ(m_files.deleted, Labels{Path("notes")});
    EXPECT_EQ(m_files.deletions[0].hwnd, nullptr);
    EXPECT_EQ(m_files.deletions[0].wFunc, static_cast<UINT>(FO_DELETE));
    EXPECT_EQ(m_files.deletions[0].fFlags, 0x3040);
    EXPECT_EQ(m_files.deletions[0].pTo, nullptr);
    ExpectUsable();
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "readme"}));
    EXPECT_EQ(m_desk.Hot(), "readme");
}

TEST_F(Deleting, TheLastItemHighlightsTheOneThatBecomesLast)
{
    // The notice of the change kept the old highlight, beyond the last item.
    PressOn("readme", VK_DELETE);
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Hot(), "notes");
}

TEST_F(Deleting, DeletesWhatWasMeantThoughTheItemsChangeMeanwhile)
{
    Root().m_items[0].pidl2.Reset(ILClone(Root().m_items[1].pidl.Get()));
    m_files.onDelete = [&] { m_desk.Refresh(0); };
    PressOn("Games", VK_DELETE);
    EXPECT_EQ(m_files.deleted, (Labels{Path("Games"), Path("notes")}));
    EXPECT_EQ(m_desk.Items(), Labels{"readme"});
    ExpectUsable();
}

TEST_F(Deleting, WhatHasNoFileOrMayNotGoDeletesNothing)
{
    Root().m_items[1].flags |= MIF_PROTECTED;
    PressOn("notes", VK_DELETE);
    PressOn("", VK_DELETE);
    Root().DeleteItemFiles(-1);
    Root().DeleteItemFiles(99);
    Root().m_items[1].flags &= ~static_cast<std::uint32_t>(MIF_PROTECTED);
    Root().InsertSeparator(Where::Above, 1);
    m_desk.Settle();
    Root().DeleteItemFiles(m_desk.IndexOf("|"));
    EXPECT_TRUE(m_files.deletions.empty());
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "|", "notes", "readme"}));
    ExpectUsable();
}

TEST_F(Deleting, ThatFailsKeepsItemAndOrder)
{
    m_files.failing = "SHFileOperationW";
    PressOn("notes", VK_DELETE);
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "notes", "readme"}));
    ExpectUsable();
}

// --- the clipboard

class Clipboard : public FileOperations
{
protected:
    StagedMenu m_shell{"open"};
};

TEST_F(Clipboard, CopyAndCutAreTheShellsVerbs)
{
    PressOn("notes", 'C', true);
    PressOn("Games", 'X', true);
    EXPECT_EQ(m_shell.invokedVerbs, (Labels{"copy", "cut"}));
    for (const CMINVOKECOMMANDINFOEX& info : m_shell.invocations)
    {
        EXPECT_EQ(info.cbSize, sizeof(CMINVOKECOMMANDINFO));
        EXPECT_EQ(info.fMask, 0u);
        EXPECT_EQ(info.hwnd, nullptr);
        EXPECT_EQ(info.nShow, SW_SHOWNORMAL);
    }
    Root().m_items[1].flags |= MIF_PROTECTED;
    PressOn("notes", 'X', true);
    PressOn("notes", 'C');
    EXPECT_EQ(m_shell.invocations.size(), 2u);
    m_shell.refusesMenu = true;
    PressOn("notes", 'C', true);
    EXPECT_EQ(m_shell.invocations.size(), 2u);
    m_shell.refusesMenu = false;
    PressOn("notes", 'C', true);
    EXPECT_EQ(m_shell.invokedVerbs.back(), "copy") << "a protected item is copied";
}

TEST_F(Clipboard, PasteGoesIntoTheLevelAtTheItem)
{
    m_shell.onInvoke = [&]
    {
        EXPECT_TRUE(IsWindowEnabled(Root().m_hWnd));
        EXPECT_EQ(g_launcher.g_operationBar, nullptr);
        m_desk.MakeFile("p3");
        m_desk.MakeFile("p2");
        m_desk.MakeFile("p1");
    };
    PressOn("notes", 'V', true);
    EXPECT_EQ(m_shell.invokedVerbs, Labels{"paste"});
    EXPECT_EQ(m_shell.asked, Labels{m_desk.Folder().filename().string()});
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "p1", "notes", "readme", "p2", "p3"})) << "the first has the place";
    EXPECT_EQ(m_desk.Hot(), "p1");
    ExpectUsable();
}

TEST_F(Clipboard, PasteOnAFolderGoesIntoIt)
{
    m_shell.onInvoke = [&] { m_desk.MakeFile("Games/pasted"); };
    PressOn("Games", 'V', true);
    EXPECT_EQ(m_shell.asked, Labels{"Games"});
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "notes", "readme"}));
    EXPECT_EQ(m_desk.Hot(), "Games");
}

TEST_F(Clipboard, PasteWithoutAnItemGoesIntoTheLevelInTheStoredOrder)
{
    m_shell.onInvoke = [&] { m_desk.MakeFile("a"); };
    PressOn("", 'V', true);
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "notes", "readme", "a"}));
    m_shell.refusesMenu = true;
    PressOn("", 'V', true);
    EXPECT_EQ(m_shell.invocations.size(), 1u);
}

TEST_F(Clipboard, WhatIsPastedIntoALevelThatIsRefreshedOrClosesMeanwhileIsKept)
{
    m_shell.onInvoke = [&]
    {
        m_desk.MakeFile("a");
        m_desk.Refresh(0);
    };
    PressOn("readme", 'V', true);
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "notes", "a", "readme"}));
    m_shell.onInvoke = [&]
    {
        m_desk.MakeFile("b");
        DestroyWindow(Root().m_hWnd);
    };
    PressOn("Games", 'V', true);
    EXPECT_FALSE(m_desk.IsOpen());
    EXPECT_EQ(m_desk.Levels(), 0);
}

// --- what is in a level's folders

TEST_F(FileOperations, ALevelOfTwoFoldersNamesASharedSubFolderOnce)
{
    m_desk.MakeFile("Games/shared/x");
    m_desk.MakeFile("Games/file");
    m_desk.MakeFile("Office/shared/x");
    m_desk.MakeFile("Office/file");
    m_desk.Refresh(0);
    const auto list = [&](const std::string& item) { return Root().m_items[m_desk.IndexOf(item)].pidl.Get(); };
    auto* const level = new CustomBar(nullptr, -1, {list("Games"), list("Office")}, WString(), false);
    std::vector<WString> names = level->SnapshotFolderNames();
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<WString>{TEXT("chess"), TEXT("file"), TEXT("file"), TEXT("shared")}));
    level->Release();
}

} // namespace
