// What a level shows besides one folder's files: linked and merged folders, orders of sub-levels, icons.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/failing.h"
#include "tests/scenarios/privileges.h"

#include "app/launcher_state.h"
#include "app/options.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace fs = std::filesystem;

namespace
{

/// A person with a Desktop and a Start Menu, which the system adds to.
class LinkedFolders : public testing::Test
{
protected:
    LinkedFolders()
    {
        const char* const folders = std::getenv("XDG_DATA_DIRS");
        m_before = folders != nullptr ? folders : "";
        m_hadBefore = folders != nullptr;
        setenv("XDG_DATA_DIRS", (m_home / "system").c_str(), 1);
        for (const char* file : {"Desktop/on the desk", "data/applications/Games/own", "data/applications/mine",
                                 "system/applications/Games/common", "system/applications/theirs"})
        {
            fs::create_directories((m_home / file).parent_path());
            std::ofstream(m_home / file);
        }
    }
    ~LinkedFolders() override
    {
        m_desk.End();
        m_hadBefore ? setenv("XDG_DATA_DIRS", m_before.c_str(), 1) : unsetenv("XDG_DATA_DIRS");
        for (const char* folder : {"Desktop", "data/applications", "system"})
            fs::remove_all(m_home / folder);
    }

    const MenuItem& Item(const std::string& label, int level)
    {
        return m_desk.Level(level).m_items.at(static_cast<std::size_t>(m_desk.IndexOf(label, level)));
    }

    const fs::path m_home = std::getenv("HOME");
    std::string m_before;
    bool m_hadBefore = false;
    Desk m_desk;
};

TEST_F(LinkedFolders, AreShownAsTheOptionsSay)
{
    m_desk.MakeFile("a");
    const std::pair<std::uint32_t, Labels> cases[] = {
        {0, {"a"}},
        {OPTION_START_MENU, {"Start Menu", "a"}},
        {OPTION_DESKTOP, {"Desktop", "a"}},
        {OPTION_START_MENU | OPTION_DESKTOP, {"Desktop", "Start Menu", "a"}},
    };
    for (const auto& [options, items] : cases)
    {
        m_desk.StoreOrder(kRootLayout, {});
        m_desk.StoreOptions(options);
        m_desk.Launch();
        EXPECT_EQ(m_desk.Items(), items);
        m_desk.End();
    }
}

TEST_F(LinkedFolders, TheStartMenuIsTwoFoldersInOneDownToTheirSubFolders)
{
    m_desk.MakeFolder("own folder");
    m_desk.StoreOptions(OPTION_START_MENU | OPTION_DESKTOP);
    m_desk.Launch("100,700,0");
    constexpr std::uint32_t kLinked = MIF_FOLDER | MIF_LINKED | MIF_PROTECTED;
    EXPECT_EQ(Item("Desktop", 0).flags, kLinked);
    EXPECT_EQ(Item("Start Menu", 0).flags, kLinked | MIF_STARTMENU);
    EXPECT_EQ(Item("own folder", 0).flags, std::uint32_t{MIF_FOLDER});
    m_desk.Click("Start Menu");
    ASSERT_EQ(m_desk.Items(1), (Labels{"Games", "mine", "theirs"}));
    EXPECT_EQ(Item("Games", 1).flags, std::uint32_t{MIF_FOLDER | MIF_PROTECTED});
    EXPECT_EQ(Item("mine", 1).flags, 0u) << "only folders are protected";
    m_desk.Click("Games", 1);
    EXPECT_EQ(m_desk.Items(2), (Labels{"common", "own"}));
    EXPECT_FALSE(m_desk.Level(2).m_protectFolders) << "only the Start Menu's own level protects";
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout + TEXT("\\Start Menu\\Games")), Order({"common", "own"}));
    // Both folders are watched.
    m_desk.Idle();
    for (const char* folder : {"system", "data"})
    {
        const std::string name = std::string("late in ") + folder;
        const auto shows = [&]
        {
            const Labels items = m_desk.Items(1);
            return std::find(items.begin(), items.end(), name) != items.end();
        };
        std::ofstream(m_home / folder / "applications" / name);
        EXPECT_TRUE(m_desk.WaitFor(shows)) << name;
    }
    m_desk.Click("Desktop", 0);
    EXPECT_EQ(m_desk.Items(1), Labels{"on the desk"});
}

TEST_F(LinkedFolders, AFolderOfTheirNameTakesThemIn)
{
    m_desk.MakeFile("Start Menu/inside");
    m_desk.StoreOptions(OPTION_START_MENU);
    m_desk.Launch("100,700,0");
    ASSERT_EQ(m_desk.Items(), Labels{"Start Menu"});
    EXPECT_EQ(Item("Start Menu", 0).flags, std::uint32_t{MIF_FOLDER});
    m_desk.Click("Start Menu");
    EXPECT_EQ(m_desk.Items(1), (Labels{"Games", "inside", "theirs"})) << "never more than two folders";
}

TEST_F(LinkedFolders, OneThatCannotBeLocatedIsLeftOut)
{
    m_desk.StoreOptions(OPTION_START_MENU | OPTION_DESKTOP);
    const std::pair<int, Labels> cases[] = {{0, {"Start Menu"}}, {1, {"Desktop", "Start Menu"}}};
    for (const auto& [spared, items] : cases)
    {
        m_desk.StoreOrder(kRootLayout, {});
        const Failing location("SHGetFolderLocation", 1, spared);
        m_desk.Launch();
        EXPECT_EQ(m_desk.Items(), items);
        EXPECT_EQ(Item("Start Menu", 0).Is(MIF_STARTMENU), spared == 0) << "only the all-users one is left";
        EXPECT_EQ(static_cast<bool>(Item("Start Menu", 0).pidl2), spared == 0);
        m_desk.End();
    }
}

/// A failing call of the shell takes away only what it concerns, and is not reported.
class UntoldItems : public testing::Test
{
protected:
    UntoldItems()
    {
        m_desk.MakeShortcut("1.desktop", "First", "true");
        m_desk.MakeFolder("2");
    }

    Labels ItemsWithout(const char* call, int times = 1 << 30, int spared = 0)
    {
        const Failing failing(call, times, spared);
        m_desk.Launch();
        return m_desk.Items();
    }

    Desk m_desk;
};

TEST_F(UntoldItems, AnItemWithoutADisplayNameShowsItsParsingName)
{
    // Each item is asked for the one, then for the other.
    fs::remove(m_desk.Folder() / "2");
    EXPECT_EQ(ItemsWithout("IShellFolder::GetDisplayNameOf", 1, 1), Labels{"1.desktop"});
}

TEST_F(UntoldItems, AnItemWithoutAttributesIsNoFolder)
{
    EXPECT_EQ(ItemsWithout("IShellFolder::GetAttributesOf"), (Labels{"2", "First"}));
    EXPECT_EQ(m_desk.Level().m_items[0].flags, 0u);
}

TEST_F(UntoldItems, WithoutNamesListOrFolderTheLevelIsEmpty)
{
    for (const char* call :
         {"IShellFolder::GetDisplayNameOf", "IShellFolder::BindToObject", "IShellFolder::EnumObjects"})
    {
        EXPECT_EQ(ItemsWithout(call), Labels{"(Empty)"}) << call;
        EXPECT_EQ(!m_desk.Level().m_folder, call == std::string("IShellFolder::BindToObject")) << call;
        m_desk.End();
    }
}

TEST_F(UntoldItems, AnEnumerationThatEndsEarlyShowsWhatCameBefore)
{
    EXPECT_EQ(ItemsWithout("IEnumIDList::Next", 1, 1).size(), 1u);
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout).size(), 4u) << "and every load is stored";
}

TEST(Orders, OfSubLevelsAreKeptUnderTheNamesThatLeadThere)
{
    Desk desk;
    desk.MakeFile("Games/Arcade/pong");
    desk.MakeFile("Games/chess");
    desk.StoreOrder(kRootLayout + TEXT("\\Games"), Order({"chess", "Arcade"}));
    desk.Launch("100,700,0");
    desk.Click("Games");
    EXPECT_EQ(desk.Items(1), (Labels{"chess", "Arcade"}));
    desk.Click("Arcade", 1);
    EXPECT_EQ(desk.StoredBytes(kRootLayout + TEXT("\\Games\\Arcade")), Order({"pong"}));
    EXPECT_EQ(desk.StoredBytes(kRootLayout), Order({"Games"}));
}

TEST(Orders, WithoutARootNothingIsReadOrKept)
{
    Desk desk;
    desk.MakeFile("Games/chess");
    desk.MakeFile("a");
    desk.StoreOrder(kRootLayout, Order({"a", "Games"}));
    desk.StoreOptions(0x4);
    desk.Launch("100,700,0");
    ASSERT_EQ(desk.Items(), (Labels{"a", "Games"}));
    desk.Level().m_layoutKey.clear();
    g_launcher.m_layoutRoot.clear();
    desk.Refresh();
    EXPECT_EQ(desk.Items(), (Labels{"Games", "a"})) << "in the names' order";
    desk.Click("Games");
    EXPECT_EQ(desk.Level(1).m_layoutKey, WString());
    EXPECT_EQ(desk.StoredBytes(kRootLayout), Order({"a", "Games"}));
    g_launcher.m_options = 0x8;
    SaveOptions();
    LoadOptions();
    EXPECT_EQ(g_launcher.m_options, 0x8u);
    for (const LPCWSTR value : {TEXT("options"), TEXT("m_layout")})
        EXPECT_TRUE(desk.StoredBytes(WString(), value).empty()) << "nor kept anywhere else";
}

// A folder that could not be read for a moment was shown empty, and the next saving forgot its order.
TEST(Orders, OutliveAFolderThatCannotBeRead)
{
    Desk desk;
    for (const char* name : {"a", "b", "Games/chess"})
        desk.MakeFile(name);
    desk.StoreOrder(kRootLayout, Order({"b", "Games", "a"}));
    desk.Launch();
    desk.Idle();
    fs::permissions(desk.Folder(), fs::perms::none);
    {
        const BoundByPermissions bound;
        desk.SendNotice();
        desk.Idle();
        EXPECT_EQ(desk.Items(), (Labels{"b", "Games", "a"}));
        desk.Click("Games");
        EXPECT_EQ(desk.Levels(), 2) << "what is inside is harmless";
        desk.Press(VK_ESCAPE);
    }
    EXPECT_EQ(desk.StoredBytes(kRootLayout), Order({"b", "Games", "a"}));
    fs::permissions(desk.Folder(), fs::perms::owner_all);
    desk.Refresh();
    EXPECT_EQ(desk.Items(), (Labels{"b", "Games", "a"}));
}

TEST(Orders, AnItemThatComesBackIsANewcomerLikeAnyOther)
{
    Desk desk;
    for (const char* name : {"a", "b", "c"})
        desk.MakeFile(name);
    desk.StoreOrder(kRootLayout, Order({"b", "c", "a"}));
    desk.Launch();
    desk.Press(VK_DOWN);
    fs::remove(desk.Folder() / "a");
    // The order without it cannot be stored, so that its old place, the last, still is.
    {
        const Failing saving("RegSetValueExW");
        desk.Refresh();
    }
    ASSERT_EQ(desk.Items(), (Labels{"b", "c"}));
    ASSERT_EQ(desk.Hot(), "b");
    desk.MakeFile("a");
    desk.Refresh();
    EXPECT_EQ(desk.Items(), (Labels{"a", "b", "c"})) << "before the highlighted item";
}

TEST(Icons, AreCopiedOncePerKindAndSize)
{
    Desk desk;
    for (const char* name : {"one", "two", "folder/three", "folder/four"})
        desk.MakeFile(name);
    desk.Launch("100,700,0");
    const auto image = [&](const char* label, int level)
    { return desk.Level(level).m_items.at(static_cast<std::size_t>(desk.IndexOf(label, level))).image; };
    EXPECT_EQ(image("one", 0), image("two", 0));
    EXPECT_NE(image("one", 0), image("folder", 0));
    EXPECT_EQ(ImageList_GetImageCount(g_launcher.m_largeImages.Get()), 2);
    desk.SendNotice();
    desk.Click("folder");
    EXPECT_EQ(image("three", 1), image("one", 0));
    EXPECT_EQ(ImageList_GetImageCount(g_launcher.m_largeImages.Get()), 2) << "a reload copies nothing again";
    EXPECT_EQ(ImageList_GetImageCount(g_launcher.m_smallImages.Get()), 0);
    desk.Press(VK_ESCAPE);

    g_launcher.m_largeIcons = LARGE_ICONS_ROOT;
    desk.Click("folder");
    EXPECT_EQ(desk.Level(1).SendToolbar(TB_GETIMAGELIST), reinterpret_cast<LRESULT>(g_launcher.m_smallImages.Get()));
    EXPECT_EQ(ImageList_GetImageCount(g_launcher.m_smallImages.Get()), 1);
    EXPECT_EQ(ImageList_GetImageCount(g_launcher.m_largeImages.Get()), 2);
}

TEST(Icons, ALinkHasOneOfItsOwn)
{
    Desk desk;
    desk.MakeFile("target");
    fs::create_symlink("target", desk.Folder() / "link");
    desk.Launch();
    ASSERT_EQ(desk.Items(), (Labels{"link", "target"}));
    EXPECT_NE(desk.Level().m_items[0].image, desk.Level().m_items[1].image) << "with the arrow";
}

TEST(Icons, OneThatIsNotToBeHadIsAskedForAgain)
{
    for (const int failing : {1, 2})
    {
        Desk desk;
        desk.MakeFile("a");
        {
            // The first question is what kind of icon it is, the second is for the icon.
            const Failing question("SHGetFileInfoW", 1, failing - 1);
            desk.Launch();
        }
        EXPECT_EQ(desk.Level().m_items[0].image, 0);
        EXPECT_TRUE(g_launcher.IconCacheLarge.empty());
        desk.Refresh();
        EXPECT_EQ(g_launcher.IconCacheLarge.size(), 1u);
        EXPECT_EQ(ImageList_GetImageCount(g_launcher.m_largeImages.Get()), 1);
    }
}

} // namespace
