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
namespace fs = std::filesystem;

namespace
{

class LiveRefresh : public testing::Test
{
protected:
    LiveRefresh()
    {
        for (const char* name : {"b", "d", "f"})
            m_desk.MakeFile(name);
        m_desk.MakeFile("folder/inside");
        m_desk.MakeFolder("other");
    }

    Desk m_desk;
};

TEST_F(LiveRefresh, ANewcomerGoesBeforeTheHighlightedItem)
{
    m_desk.Launch();
    m_desk.Press(VK_DOWN);
    m_desk.Press(VK_DOWN);
    ASSERT_EQ(m_desk.Hot(), "d");
    m_desk.MakeFile("zz");
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items(), (Labels{"b", "zz", "d", "f", "folder", "other"}));
    EXPECT_EQ(m_desk.Hot(), "zz") << "the highlight keeps its place";
    EXPECT_EQ(m_desk.Level().m_lastMessagePos, 0xFFFFFFFF) << "the next hover is a move";
}

TEST_F(LiveRefresh, NewcomersWithoutAPlaceGoBehindTheOthersByName)
{
    m_desk.Launch();
    m_desk.MakeFile("a");
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items().back(), "a") << "nothing was highlighted";
    m_desk.RestOn("d");
    m_desk.MakeFile("2");
    m_desk.MakeFile("1");
    m_desk.Refresh(0);
    const Labels items = m_desk.Items();
    EXPECT_EQ(Labels(items.end() - 2, items.end()), (Labels{"1", "2"})) << "two came at once";
}

TEST_F(LiveRefresh, ManyNoticesAreOneRefresh)
{
    m_desk.Launch();
    MessageCounter refreshes(m_desk.Level().m_hWnd, WM_APP_REFRESH);
    for (int i = 0; i < 1000; ++i)
        m_desk.SendNotice(0);
    m_desk.Settle();
    EXPECT_EQ(refreshes.Count(), 1);
    m_desk.Refresh(0);
    EXPECT_EQ(refreshes.Count(), 2);
}

TEST_F(LiveRefresh, TheOpenSubLevelStaysAndItsOpenerIsFoundAgain)
{
    m_desk.Launch();
    m_desk.Click("folder");
    const HWND child = m_desk.Level(1).m_hWnd;
    fs::remove(m_desk.Folder() / "b");
    m_desk.MakeFile("folder/new");
    m_desk.Refresh(0);
    ASSERT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(m_desk.Level(0).m_openIndex, m_desk.IndexOf("folder", 0));
    EXPECT_EQ(m_desk.Hot(0), "folder");
    EXPECT_EQ(m_desk.Items(1), Labels{"inside"}) << "a change below is not this level's";
    EXPECT_EQ(GetFocus(), m_desk.Level(1).m_toolbar);
    SetFocus(m_desk.Level(0).m_toolbar);
    m_desk.Refresh(0);
    EXPECT_EQ(GetFocus(), m_desk.Level(1).m_toolbar) << "a refresh gives the keyboard to the deepest level";
    m_desk.Refresh(1);
    EXPECT_EQ(m_desk.Items(1), (Labels{"inside", "new"}));
    EXPECT_EQ(m_desk.Level(1).m_hWnd, child);
    EXPECT_EQ(m_desk.Hot(0), "folder");
}

TEST_F(LiveRefresh, AnOpenerThatVanishesLeavesItsSubLevelToItself)
{
    m_desk.Launch();
    m_desk.Click("folder");
    fs::remove_all(m_desk.Folder() / "folder");
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Level(0).m_openIndex, -1);
    m_desk.Refresh(1);
    EXPECT_EQ(m_desk.Items(1), Labels{"(Empty)"});
    m_desk.Press(VK_ESCAPE);
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_EQ(GetFocus(), m_desk.Level(0).m_toolbar);
}

TEST_F(LiveRefresh, TheHighlightReturnsToItsPosition)
{
    m_desk.Launch();
    m_desk.Press(VK_DOWN);
    m_desk.Press(VK_DOWN);
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Hot(), "d");
    EXPECT_EQ(m_desk.Level().m_refreshIndex, -1);
    m_desk.MoveTo({1500, 10});
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Hot(), "d") << "the keyboard's highlight, which the mouse has not touched";
}

TEST_F(LiveRefresh, AClosingLevelTakesNoNotices)
{
    m_desk.Launch();
    m_desk.Click("folder");
    CustomBar& child = m_desk.Level(1);
    child.AddRef();
    const HWND toolbar = child.m_toolbar;
    PostMessageW(toolbar, WM_APP_SHELLNOTIFY, 0, 0);
    PostMessageW(child.m_hWnd, WM_APP_SHELLNOTIFY, 0, 0);
    DestroyWindow(child.m_hWnd);
    child.RequestRefresh();
    EXPECT_FALSE(child.m_refreshPending);
    m_desk.Settle();
    EXPECT_FALSE(IsWindow(toolbar));
    child.Release();
    EXPECT_EQ(m_desk.Levels(), 1);
}

TEST_F(LiveRefresh, TheScrollPositionIsKept)
{
    for (int i = 0; i < 60; ++i)
        m_desk.MakeFile("item " + std::to_string(100 + i));
    m_desk.Launch();
    m_desk.RestOn("item 100");
    for (int i = 0; i < 5; ++i)
        m_desk.Wheel(-120);
    m_desk.MoveTo({1500, 10});
    const RECT before = m_desk.ItemBounds("item 120");
    const HWND pager = m_desk.Level().m_pager;
    m_desk.MakeFile("zzz");
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Level().m_pager, pager);
    EXPECT_EQ(m_desk.ItemBounds("item 120").top, before.top);
    EXPECT_EQ(m_desk.Items().back(), "zzz");
}

TEST_F(LiveRefresh, AFolderThatIsReplacedByAFileShowsNothingAndAForbiddenOneWhatItDid)
{
    m_desk.Launch();
    m_desk.Click("folder");
    const fs::path folder = m_desk.Folder() / "folder";
    fs::rename(folder, m_desk.Folder() / "aside");
    m_desk.MakeFile("folder");
    m_desk.Refresh(1);
    EXPECT_EQ(m_desk.Items(1), Labels{"(Empty)"});
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Levels(), 2);
    fs::remove(folder);
    fs::rename(m_desk.Folder() / "aside", folder);
    m_desk.Refresh(1);
    EXPECT_EQ(m_desk.Items(1), Labels{"inside"});

    fs::permissions(folder, fs::perms::none);
    {
        const BoundByPermissions bound;
        m_desk.Idle();
        m_desk.Refresh(1);
        EXPECT_EQ(m_desk.Items(1), Labels{"inside"});
    }
    fs::permissions(folder, fs::perms::owner_all);
    m_desk.Refresh(1);
    EXPECT_EQ(m_desk.Items(1), Labels{"inside"});
    EXPECT_EQ(m_desk.BoxTexts(), Labels{});
}

TEST_F(LiveRefresh, TheRootsOwnFolderMayVanishAndComeBack)
{
    m_desk.Launch();
    fs::remove_all(m_desk.Folder());
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items(), Labels{"(Empty)"});
    m_desk.MakeFile("again");
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items(), Labels{"again"});
}

TEST(DeepTrees, OpenToTheirEndAndCloseAtOnce)
{
    constexpr int kDepth = 200;
    Desk desk;
    fs::path path = desk.Folder();
    for (int i = 0; i < kDepth; ++i)
        path /= "d";
    fs::create_directories(path);
    desk.Launch("100,700,0");
    desk.Press(VK_DOWN);
    for (int i = 0; i < kDepth; ++i)
        desk.Press(VK_RIGHT);
    EXPECT_EQ(desk.Levels(), kDepth + 1);
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
        return m_desk.WaitFor([&] { return m_desk.Levels() > level && m_desk.Items(level) == items; });
    }

    Desk m_desk;
};

TEST_F(WatchedFolders, WhatOtherProgramsDoAppears)
{
    m_desk.MakeFile("b");
    m_desk.MakeFile("folder/inside");
    m_desk.Launch();
    m_desk.Click("folder");
    m_desk.Idle();
    m_desk.MakeFile("c");
    EXPECT_TRUE(Shows(0, {"b", "c", "folder"})) << "a file comes before the highlighted item";
    fs::rename(m_desk.Folder() / "c", m_desk.Folder() / "d");
    EXPECT_TRUE(Shows(0, {"b", "folder", "d"})) << "it is renamed";
    fs::remove(m_desk.Folder() / "b");
    EXPECT_TRUE(Shows(0, {"folder", "d"})) << "another goes";
    m_desk.MakeFolder("folder/sub");
    EXPECT_TRUE(Shows(1, {"inside", "sub"})) << "in the sub-level too";
    EXPECT_EQ(m_desk.Hot(0), "folder");
    fs::remove_all(m_desk.Folder() / "folder");
    EXPECT_TRUE(Shows(0, {"d"}));
    EXPECT_TRUE(Shows(1, {"(Empty)"}));
}

TEST_F(WatchedFolders, AChangeBetweenOpeningAndWatchingIsNotMissed)
{
    m_desk.MakeFile("a");
    m_desk.Launch();
    m_desk.MakeFile("b");
    EXPECT_TRUE(Shows(0, {"a", "b"}));
}

TEST_F(WatchedFolders, ThroughAnotherNameOfTheFolderToo)
{
    const fs::path real = m_desk.Folder().parent_path() / "real place";
    fs::remove_all(real);
    fs::rename(m_desk.Folder(), real);
    fs::create_directory_symlink(real, m_desk.Folder());
    std::ofstream(real / "a");
    m_desk.Launch();
    EXPECT_EQ(m_desk.Items(), Labels{"a"});
    m_desk.Idle();
    std::ofstream(real / "b");
    EXPECT_TRUE(Shows(0, {"a", "b"}));
    m_desk.End();
    fs::remove(m_desk.Folder());
    fs::remove_all(real);
}

TEST_F(WatchedFolders, ABurstOfChangesIsAHandfulOfReloads)
{
    m_desk.MakeFile("a");
    m_desk.MakeFile("folder/inside");
    m_desk.MakeFile("z");
    m_desk.Launch("100,700,0");
    m_desk.Click("folder");
    m_desk.Idle();
    // The watch is known to work once one change has come through.
    m_desk.MakeFile("zz");
    ASSERT_TRUE(Shows(0, {"a", "zz", "folder", "z"}));
    MessageCounter refreshes(m_desk.Level(0).m_hWnd, WM_APP_REFRESH);
    const HWND child = m_desk.Level(1).m_hWnd;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 1000; ++i)
    {
        m_desk.MakeFile("new " + std::to_string(1000 + i));
        if (i % 50 == 0)
            m_desk.Idle();
    }
    EXPECT_TRUE(m_desk.WaitFor([&] { return m_desk.Items(0).size() == 1004; }));
    // At most one notice every tenth of a second: a handful where the burst takes as long as it should.
    const auto tenths = (std::chrono::steady_clock::now() - start) / 100ms;
    EXPECT_LE(refreshes.Count(), tenths + 2);
    EXPECT_LE(refreshes.Count(), 100) << "whatever the machine";
    ASSERT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(m_desk.Level(1).m_hWnd, child);
    EXPECT_EQ(m_desk.Hot(0), "folder");
    EXPECT_EQ(m_desk.Level(0).m_openIndex, m_desk.IndexOf("folder", 0));
}

} // namespace
