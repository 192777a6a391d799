// Starting when something is not as it should be: what is reported, how often, and what still works.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/failing.h"
#include "tests/scenarios/privileges.h"

#include "app/launcher_state.h"
#include "content/layout_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace
{

TEST(Starting, WithoutTheBannersPictureThereIsOneBoxAndAPlainMenu)
{
    Desk desk;
    desk.MakeFile("a");
    desk.ExpectBoxes();
    {
        const Failing picture("FindResourceW", 1);
        desk.Launch("100,700,0");
    }
    EXPECT_EQ(desk.BoxTexts(), Labels{"Error opening #111"});
    EXPECT_EQ(desk.Boxes(), 1);
    EXPECT_EQ(desk.Items(), Labels{"a"});
    EXPECT_EQ(desk.ItemBounds("a").left, desk.Bounds().left + 1) << "the items begin at the border";
}

TEST(Starting, WithoutASeparatorPictureSeparatorsAreSolidAndUnpainted)
{
    Desk desk;
    desk.MakeFile("a");
    desk.StoreOptions(0x20001);
    {
        // The banner's picture is the first one loaded, the separator's the second.
        const Failing picture("FindResourceW", 1, 1);
        desk.Launch();
    }
    EXPECT_EQ(desk.BoxTexts(), Labels{});
    EXPECT_FALSE(g_launcher.m_separatorImage);
    EXPECT_EQ(g_launcher.m_options, 1u) << "the style goes, the other bits stay";
}

TEST(Starting, AFolderThatCannotBeMadeIsReportedAndSoIsTheMenuThatNeedsIt)
{
    Desk desk;
    const std::filesystem::path home = desk.Folder().parent_path();
    std::filesystem::remove_all(home);
    std::ofstream(home) << "in the way";
    desk.ExpectBoxes();
    desk.Launch();
    EXPECT_FALSE(desk.IsOpen());
    EXPECT_EQ(desk.BoxTexts(), Labels{"Error opening \\OrbLauncher"});
    desk.End();
    EXPECT_EQ(desk.BoxTexts(), (Labels{"Error opening \\OrbLauncher", "Error opening menu window"}));
    EXPECT_EQ(desk.Boxes(), 2) << "each was seen";
    EXPECT_TRUE(std::filesystem::is_regular_file(home)) << "nothing of the user's is touched";
    std::filesystem::remove(home);
    std::filesystem::create_directories(home);
}

TEST(Starting, WithoutAPlaceForTheFolderNothingIsMadeOpenedOrStored)
{
    // An empty path opened the shell's topmost folder and stored its order as the user's.
    const std::vector<std::uint8_t> order{1, 2, 3, 4};
    Desk desk;
    desk.StoreOrder(kRootLayout, order);
    desk.ExpectBoxes();
    {
        const Failing place("SHGetKnownFolderPath");
        desk.Launch();
    }
    EXPECT_EQ(g_launcher.m_folderPath, TEXT("\\OrbLauncher")) << "nothing that the shell knows";
    EXPECT_FALSE(desk.IsOpen());
    desk.End();
    EXPECT_EQ(desk.BoxTexts(), (Labels{"Error opening \\OrbLauncher", "Error opening menu window"}));
    EXPECT_FALSE(std::filesystem::exists("/OrbLauncher"));
    EXPECT_EQ(desk.StoredBytes(kRootLayout), order);
}

TEST(Starting, AFolderThatMayNotBeMadeIsReportedByItsPath)
{
    Desk desk;
    const std::filesystem::path home = desk.Folder().parent_path();
    std::filesystem::remove_all(desk.Folder());
    std::filesystem::permissions(home, std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    desk.ExpectBoxes();
    {
        const BoundByPermissions bound;
        desk.Launch();
    }
    std::filesystem::permissions(home, std::filesystem::perms::owner_all);
    std::string path = "Error opening " + desk.Folder().string();
    std::replace(path.begin(), path.end(), '/', '\\');
    EXPECT_EQ(desk.BoxTexts(), (Labels{path, path})) << "it cannot be created, and then not be found";
    EXPECT_FALSE(desk.IsOpen());
    desk.End();
    EXPECT_EQ(desk.BoxTexts().back(), "Error opening menu window");
}

TEST(Starting, AWindowThatCannotBeMadeIsReportedAtTheEnd)
{
    Desk desk;
    desk.MakeFile("a");
    desk.ExpectBoxes();
    {
        const Failing window("CreateWindowExW", 1);
        desk.Launch();
    }
    EXPECT_FALSE(desk.IsOpen());
    EXPECT_EQ(desk.Levels(), 0);
    desk.End();
    EXPECT_EQ(desk.BoxTexts(), Labels{"Error opening menu window"});
}

TEST(Starting, ATallMenuWithoutItsPagerKeepsItsToolbarInPlace)
{
    Desk desk;
    for (int i = 0; i < 60; ++i)
        desk.MakeFile("item " + std::to_string(100 + i));
    {
        // The third window, after the level's and its toolbar.
        const Failing pager("CreateWindowExW", 1, 2);
        desk.Launch();
    }
    EXPECT_EQ(desk.Level(0).m_pager, nullptr);
    RECT toolbar{};
    GetWindowRect(desk.Level(0).m_toolbar, &toolbar);
    MapWindowPoints(nullptr, desk.Level(0).m_hWnd, reinterpret_cast<POINT*>(&toolbar), 2);
    EXPECT_EQ(toolbar.left, desk.Level(0).m_contentRect.left) << "beside the banner";
}

TEST(Starting, AButtonThatCannotBeMadeLeavesTheOthersTheirItems)
{
    Desk desk;
    for (const char* name : {"a", "b", "c"})
        desk.MakeFile(name);
    {
        const Failing button("TB_INSERTBUTTONW", 1);
        desk.Launch();
    }
    for (int index : {1, 2})
        EXPECT_EQ(desk.Level(0).ItemOfButton(desk.Level(0).m_items[index].order), index);
}

TEST(Starting, AMenuWithoutItsToolbarGoesWhenAnotherProgramComes)
{
    Desk desk;
    desk.MakeFile("a");
    {
        // The level's window is the first one, its toolbar the second.
        const Failing toolbar("CreateWindowExW", 1, 1);
        desk.Launch();
    }
    ASSERT_TRUE(desk.IsOpen());
    EXPECT_EQ(desk.Level(0).m_toolbar, nullptr);
    desk.SwitchToOtherProgram();
    EXPECT_FALSE(desk.IsOpen());
    EXPECT_EQ(desk.Levels(), 0);
}

TEST(Starting, OptionsOfOddSizesAreReadAsFarAsTheyGo)
{
    const std::pair<std::vector<std::uint8_t>, std::uint32_t> cases[] = {
        {{0x04}, 0x04},
        {{0x04, 0x80}, 0x8004},
        {{0x04, 0, 2, 0, 0xFF, 0xFF, 0xFF, 0xFF}, 0x20004},
        {{}, 0},
    };
    for (const auto& [bytes, expected] : cases)
    {
        Desk desk;
        desk.MakeFile("a");
        const UniqueRegistryKey key = OpenOrCreateUserKey(kRootLayout);
        RegSetValueExW(key.Get(), TEXT("options"), 0, REG_SZ, bytes.data(), static_cast<DWORD>(bytes.size()));
        desk.Launch();
        EXPECT_EQ(g_launcher.m_options, expected) << bytes.size() << " bytes";
    }
}

TEST(Starting, ManyThousandsOfItemsShowAndScrollToTheLast)
{
    constexpr int kCount = 10000;
    Desk desk("1280x1024+0+0");
    for (int i = 0; i < kCount; ++i)
        desk.MakeFile("item " + std::to_string(10000 + i));
    desk.Launch("0,1024,0");
    ASSERT_EQ(desk.Items().size(), static_cast<std::size_t>(kCount));
    ASSERT_NE(desk.Level().m_pager, nullptr);
    EXPECT_EQ(desk.Bounds().bottom - desk.Bounds().top, 1024 + 2) << "the work area and its frame";

    desk.Level().OnItemCommand(ItemCommandMode::Select, kCount - 1);
    const RECT last = desk.ItemBounds("item 19999");
    EXPECT_GE(last.top, 0);
    EXPECT_LE(last.bottom, 1024);
    EXPECT_EQ(desk.Hot(), "item 19999");
    desk.RestOn("item 19990");
    EXPECT_EQ(desk.Hot(), "item 19990") << "the mouse finds items far down";
    desk.Wheel(120);
    desk.RestOn("item 19980");
    EXPECT_EQ(desk.Hot(), "item 19980");
}

} // namespace
