// The menu follows its folders while it is open.
//
// Where only the launcher's own part matters the notices are invented; the stories of WatchedFolders wait for the real
// ones.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/privileges.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace std::chrono_literals;
using CustomMenu::CustomBar;
using Labels = std::vector<std::string>;
namespace fs = std::filesystem;

namespace
{

class LiveRefresh : public testing::Test
{
protected:
    LiveRefresh()
    {
        for (const char* name : {"b", "d", "f"})
            desk.MakeFile(name);
        desk.MakeFile("folder/inside");
        desk.MakeFolder("other");
    }

    void Notice(int level = 0)
    {
        desk.SendNotice(level);
        desk.Settle();
    }

    Desk desk;
};

TEST_F(LiveRefresh, ANewcomerGoesBeforeTheHighlightedItem)
{
    desk.Launch();
    desk.Press(VK_DOWN);
    desk.Press(VK_DOWN);
    ASSERT_EQ(desk.Hot(), "d");
    desk.MakeFile("zz");
    Notice();
    EXPECT_EQ(desk.Items(), (Labels{"b", "zz", "d", "f", "folder", "other"}));
    EXPECT_EQ(desk.Hot(), "zz") << "the highlight keeps its place";
    EXPECT_EQ(desk.Level().m_lastMessagePos, 0xFFFFFFFF) << "the next hover is a move";
}

TEST_F(LiveRefresh, NewcomersWithoutAPlaceGoBehindTheOthersByName)
{
    desk.Launch();
    desk.MakeFile("a");
    Notice();
    EXPECT_EQ(desk.Items().back(), "a") << "nothing was highlighted";
    desk.RestOn("d");
    desk.MakeFile("2");
    desk.MakeFile("1");
    Notice();
    const Labels items = desk.Items();
    EXPECT_EQ(Labels(items.end() - 2, items.end()), (Labels{"1", "2"})) << "two came at once";
}

TEST_F(LiveRefresh, RenamingAndDeletingAreFollowed)
{
    desk.Launch();
    desk.RestOn("f");
    fs::rename(desk.Folder() / "b", desk.Folder() / "c");
    Notice();
    EXPECT_EQ(desk.Items(), (Labels{"d", "f", "folder", "other", "c"}));
    for (const char* name : {"c", "d", "f"})
        fs::remove(desk.Folder() / name);
    fs::remove_all(desk.Folder() / "folder");
    fs::remove_all(desk.Folder() / "other");
    Notice();
    EXPECT_EQ(desk.Items(), Labels{"(Empty)"});
}

TEST_F(LiveRefresh, ManyNoticesAreOneRefresh)
{
    desk.Launch();
    MessageCounter refreshes(desk.Level().m_hWnd, WM_APP_REFRESH);
    for (int i = 0; i < 1000; ++i)
        desk.SendNotice(0);
    desk.Settle();
    EXPECT_EQ(refreshes.Count(), 1);
    Notice();
    EXPECT_EQ(refreshes.Count(), 2);
}

TEST_F(LiveRefresh, TheOpenSubLevelStaysAndItsOpenerIsFoundAgain)
{
    desk.Launch();
    desk.Click("folder");
    const HWND child = desk.Level(1).m_hWnd;
    fs::remove(desk.Folder() / "b");
    desk.MakeFile("folder/new");
    Notice(0);
    ASSERT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Level(0).m_openIndex, desk.IndexOf("folder", 0));
    EXPECT_EQ(desk.Hot(0), "folder");
    EXPECT_EQ(desk.Items(1), Labels{"inside"}) << "a change below is not this level's";
    EXPECT_EQ(GetFocus(), desk.Level(1).m_toolbar);
    SetFocus(desk.Level(0).m_toolbar);
    Notice(0);
    EXPECT_EQ(GetFocus(), desk.Level(1).m_toolbar) << "a refresh gives the keyboard to the deepest level";
    Notice(1);
    EXPECT_EQ(desk.Items(1), (Labels{"inside", "new"}));
    EXPECT_EQ(desk.Level(1).m_hWnd, child);
    EXPECT_EQ(desk.Hot(0), "folder");
}

TEST_F(LiveRefresh, AnOpenerThatVanishesLeavesItsSubLevelToItself)
{
    desk.Launch();
    desk.Click("folder");
    fs::remove_all(desk.Folder() / "folder");
    Notice(0);
    EXPECT_EQ(desk.Level(0).m_openIndex, -1);
    Notice(1);
    EXPECT_EQ(desk.Items(1), Labels{"(Empty)"});
    desk.Press(VK_ESCAPE);
    EXPECT_EQ(desk.Levels(), 1);
    EXPECT_EQ(GetFocus(), desk.Level(0).m_toolbar);
}

TEST_F(LiveRefresh, TheHighlightReturnsToItsPosition)
{
    desk.Launch();
    desk.Press(VK_DOWN);
    desk.Press(VK_DOWN);
    Notice();
    EXPECT_EQ(desk.Hot(), "d");
    EXPECT_EQ(desk.Level().m_refreshIndex, -1);
    desk.MoveTo({1500, 10});
    Notice();
    EXPECT_EQ(desk.Hot(), "d") << "the keyboard's highlight, which the mouse has not touched";
}

TEST_F(LiveRefresh, AClosingLevelTakesNoNotices)
{
    desk.Launch();
    desk.Click("folder");
    CustomBar& child = desk.Level(1);
    child.AddRef();
    const HWND toolbar = child.m_toolbar;
    PostMessageW(toolbar, WM_APP_SHELLNOTIFY, 0, 0);
    PostMessageW(child.m_hWnd, WM_APP_SHELLNOTIFY, 0, 0);
    DestroyWindow(child.m_hWnd);
    child.RequestRefresh();
    EXPECT_FALSE(child.m_refreshPending);
    desk.Settle();
    EXPECT_FALSE(IsWindow(toolbar));
    child.Release();
    EXPECT_EQ(desk.Levels(), 1);
}

TEST_F(LiveRefresh, TheScrollPositionIsKept)
{
    for (int i = 0; i < 60; ++i)
        desk.MakeFile("item " + std::to_string(100 + i));
    desk.Launch();
    desk.RestOn("item 100");
    for (int i = 0; i < 5; ++i)
        desk.Wheel(-120);
    desk.MoveTo({1500, 10});
    const RECT before = desk.ItemBounds("item 120");
    const HWND pager = desk.Level().m_pager;
    desk.MakeFile("zzz");
    Notice();
    EXPECT_EQ(desk.Level().m_pager, pager);
    EXPECT_EQ(desk.ItemBounds("item 120").top, before.top);
    EXPECT_EQ(desk.Items().back(), "zzz");
}

TEST_F(LiveRefresh, ARefreshKeepsToolbarAndStoresTheOrder)
{
    desk.Launch();
    const HWND toolbar = desk.Level().m_toolbar;
    const WString key = TEXT("Software\\Quillfen\\OrbLauncher\\Layout");
    const auto before = desk.StoredBytes(key);
    desk.MakeFile("zz");
    Notice();
    EXPECT_EQ(desk.Level().m_toolbar, toolbar);
    auto after = desk.StoredBytes(key);
    ASSERT_EQ(after.size(), before.size() + 4);
    after.resize(before.size());
    EXPECT_EQ(after, before);
}

TEST_F(LiveRefresh, AFolderThatIsReplacedByAFileOrForbiddenShowsNothingAndRecovers)
{
    desk.Launch();
    desk.Click("folder");
    const fs::path folder = desk.Folder() / "folder";
    fs::rename(folder, desk.Folder() / "aside");
    desk.MakeFile("folder");
    Notice(1);
    EXPECT_EQ(desk.Items(1), Labels{"(Empty)"});
    Notice(0);
    EXPECT_EQ(desk.Levels(), 2);
    fs::remove(folder);
    fs::rename(desk.Folder() / "aside", folder);
    Notice(1);
    EXPECT_EQ(desk.Items(1), Labels{"inside"});

    fs::permissions(folder, fs::perms::none);
    {
        const BoundByPermissions bound;
        Notice(1);
        EXPECT_EQ(desk.Items(1), Labels{"(Empty)"});
    }
    fs::permissions(folder, fs::perms::owner_all);
    Notice(1);
    EXPECT_EQ(desk.Items(1), Labels{"inside"});
    EXPECT_EQ(desk.BoxTexts(), Labels{});
}

TEST_F(LiveRefresh, TheRootsOwnFolderMayVanishAndComeBack)
{
    desk.Launch();
    fs::remove_all(desk.Folder());
    Notice();
    EXPECT_EQ(desk.Items(), Labels{"(Empty)"});
    desk.MakeFile("again");
    Notice();
    EXPECT_EQ(desk.Items(), Labels{"again"});
}

TEST(DeepTrees, OpenToTheirEndAndCloseAtOnce)
{
    constexpr int depth = 200;
    Desk desk;
    fs::path path = desk.Folder();
    for (int i = 0; i < depth; ++i)
        path /= "d";
    fs::create_directories(path);
    desk.Launch("100,700,0");
    desk.Press(VK_DOWN);
    for (int i = 0; i < depth; ++i)
        desk.Press(VK_RIGHT);
    EXPECT_EQ(desk.Levels(), depth + 1);
    EXPECT_EQ(desk.Items(), Labels{"(Empty)"});
    const RECT bounds = desk.Bounds();
    EXPECT_GE(bounds.left, 0);
    EXPECT_LE(bounds.right, 1920);
    desk.Level(0).OnItemCommand(ItemCommandMode::OpenSubmenu, 0);
    EXPECT_EQ(desk.Levels(), 2) << "opened again, it replaces the whole chain";
    desk.SwitchToOtherProgram();
    EXPECT_EQ(desk.Levels(), 0);
}

TEST(DeepTrees, ALinkToTheFolderItselfIsALinkAndNoSubMenu)
{
    Desk desk;
    desk.MakeFile("folder/inside");
    fs::create_directory_symlink(desk.Folder() / "folder", desk.Folder() / "folder/self");
    desk.Launch();
    desk.Click("folder");
    EXPECT_EQ(desk.Items(1), (Labels{"inside", "self"}));
    desk.RestOn("self", 1);
    desk.Advance(1000ms);
    EXPECT_EQ(desk.Levels(), 2);
}

// --- with the real notices

class WatchedFolders : public testing::Test
{
protected:
    bool Shows(int level, const Labels& items)
    {
        return desk.WaitFor([&] { return desk.Levels() > level && desk.Items(level) == items; });
    }

    Desk desk;
};

TEST_F(WatchedFolders, WhatOtherProgramsDoAppears)
{
    desk.MakeFile("b");
    desk.MakeFile("folder/inside");
    desk.Launch();
    desk.Click("folder");
    desk.Idle();
    desk.MakeFile("c");
    EXPECT_TRUE(Shows(0, {"b", "c", "folder"})) << "a file comes before the highlighted item";
    fs::rename(desk.Folder() / "c", desk.Folder() / "d");
    EXPECT_TRUE(Shows(0, {"b", "folder", "d"})) << "it is renamed";
    fs::remove(desk.Folder() / "b");
    EXPECT_TRUE(Shows(0, {"folder", "d"})) << "another goes";
    desk.MakeFolder("folder/sub");
    EXPECT_TRUE(Shows(1, {"inside", "sub"})) << "in the sub-level too";
    EXPECT_EQ(desk.Hot(0), "folder");
    fs::remove_all(desk.Folder() / "folder");
    EXPECT_TRUE(Shows(0, {"d"}));
    EXPECT_TRUE(Shows(1, {"(Empty)"}));
}

TEST_F(WatchedFolders, AChangeBetweenOpeningAndWatchingIsNotMissed)
{
    desk.MakeFile("a");
    desk.Launch();
    desk.MakeFile("b");
    EXPECT_TRUE(Shows(0, {"a", "b"}));
}

TEST_F(WatchedFolders, ThroughAnotherNameOfTheFolderToo)
{
    const fs::path real = desk.Folder().parent_path() / "real place";
    fs::remove_all(real);
    fs::rename(desk.Folder(), real);
    fs::create_directory_symlink(real, desk.Folder());
    std::ofstream(real / "a");
    desk.Launch();
    EXPECT_EQ(desk.Items(), Labels{"a"});
    desk.Idle();
    std::ofstream(real / "b");
    EXPECT_TRUE(Shows(0, {"a", "b"}));
    desk.End();
    fs::remove(desk.Folder());
    fs::remove_all(real);
}

TEST_F(WatchedFolders, ABurstOfChangesIsAHandfulOfReloads)
{
    desk.MakeFile("a");
    desk.MakeFile("folder/inside");
    desk.MakeFile("z");
    desk.Launch("100,700,0");
    desk.Click("folder");
    desk.Idle();
    // The watch is known to work once one change has come through.
    desk.MakeFile("zz");
    ASSERT_TRUE(Shows(0, {"a", "zz", "folder", "z"}));
    MessageCounter refreshes(desk.Level(0).m_hWnd, WM_APP_REFRESH);
    const HWND child = desk.Level(1).m_hWnd;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 1000; ++i)
    {
        desk.MakeFile("new " + std::to_string(1000 + i));
        if (i % 50 == 0)
            desk.Idle();
    }
    EXPECT_TRUE(desk.WaitFor([&] { return desk.Items(0).size() == 1004; }));
    // At most one notice every tenth of a second: a handful where the burst takes as long as it should.
    const auto tenths = (std::chrono::steady_clock::now() - start) / 100ms;
    EXPECT_LE(refreshes.Count(), tenths + 2);
    EXPECT_LE(refreshes.Count(), 100) << "whatever the machine";
    ASSERT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Level(1).m_hWnd, child);
    EXPECT_EQ(desk.Hot(0), "folder");
    EXPECT_EQ(desk.Level(0).m_openIndex, desk.IndexOf("folder", 0));
}

} // namespace
