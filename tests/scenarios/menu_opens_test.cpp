// Popping up: what shows, where, in which order, and what is remembered of it.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/failing.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace std::chrono_literals;

namespace
{

TEST(MenuOpens, ShowsTheFolderInNameOrderAndKeepsThatOrder)
{
    Desk desk;
    desk.MakeFile("b.txt");
    desk.MakeFile("Zebra.txt");
    desk.MakeFolder("apps");
    desk.MakeFile(".hidden");
    desk.Launch();
    EXPECT_EQ(desk.Items(), (Labels{"Zebra.txt", "apps", "b.txt"}));
    EXPECT_EQ(desk.Hot(), "");
    EXPECT_EQ(desk.StoredBytes(kRootLayout), Order({"Zebra.txt", "apps", "b.txt"}));
}

TEST(MenuOpens, AnEmptyFolderSaysSo)
{
    Desk desk;
    desk.StoreOrder(kRootLayout, Order({"|", "|"}));
    desk.Launch();
    EXPECT_EQ(desk.Items(), Labels{"(Empty)"});
    EXPECT_EQ(desk.StoredBytes(kRootLayout), std::vector<std::uint8_t>(4));
    desk.Click("(Empty)");
    EXPECT_TRUE(desk.IsOpen()) << "there is nothing to start";
}

TEST(MenuOpens, TheStoredOrderCountsAndItsLeftoversGo)
{
    Desk desk;
    for (const char* name : {"a", "b", "c"})
        desk.MakeFile(name);
    std::vector<std::uint8_t> stored = Order({"B", "gone", "|", "|", "A", "|"});
    stored.insert(stored.end(), {1, 2, 3});
    desk.StoreOrder(kRootLayout, stored, REG_SZ);
    desk.Launch();
    EXPECT_EQ(desk.Items(), (Labels{"b", "|", "a", "|", "c"}));
    EXPECT_EQ(desk.StoredBytes(kRootLayout), Order({"b", "|", "a", "|", "c"}));
    EXPECT_EQ(desk.StoredType(kRootLayout), static_cast<DWORD>(REG_BINARY));
}

TEST(MenuOpens, AHugeStoredValueIsReadToo)
{
    Desk desk;
    desk.MakeFile("a");
    desk.MakeFile("b");
    std::vector<std::uint8_t> stored(1 << 20, 0x5A);
    const std::vector<std::uint8_t> order = Order({"b", "a"});
    std::copy(order.begin(), order.end(), stored.end() - 8);
    desk.StoreOrder(kRootLayout, stored);
    desk.Launch();
    EXPECT_EQ(desk.Items(), (Labels{"b", "a"}));
    EXPECT_EQ(desk.StoredBytes(kRootLayout), order);
}

TEST(MenuOpens, OddNamesAreListedAndKept)
{
    Desk desk;
    const Labels names{
        "back\\slash",        "co:lon", "new\nline", "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D", "\xF0\x9F\x98\x80 smile",
        std::string(255, 'x')};
    for (const std::string& name : names)
        desk.MakeFile(name);
    desk.MakeFile("bad\xFF utf");
    desk.Launch();
    EXPECT_EQ(desk.Items().size(), names.size() + 1);
    const Labels first = desk.Items();
    const auto stored = desk.StoredBytes(kRootLayout);
    EXPECT_EQ(stored.size(), 4 * first.size());
    desk.Level().ReloadItems();
    EXPECT_EQ(desk.Items(), first);
    EXPECT_EQ(desk.StoredBytes(kRootLayout), stored);
}

TEST(MenuOpens, BesideAWindowOrAtTheCursor)
{
    Desk desk;
    desk.MakeFile("a");
    platform::headless::SetForeignWindow(0x400007, {200, 300, 401, 380});
    desk.Launch("0.5,1,2,0x400007");
    EXPECT_EQ(desk.Bounds().left, 300);
    EXPECT_EQ(desk.Bounds().top, 380);
}

TEST(MenuOpens, AtTheCursorWhenTheWindowIsDead)
{
    Desk desk;
    desk.MakeFile("a");
    platform::headless::MoveMouse(640, 480);
    desk.Launch("0.5,1,3,0x400007");
    EXPECT_EQ(desk.Bounds().right, 640) << "the alignment stays";
    EXPECT_EQ(desk.Bounds().top, 480);
}

TEST(MenuOpens, EverythingScales)
{
    for (const int dpi : {96, 144, 192})
    {
        Desk desk("3840x2160+0+0", dpi);
        desk.MakeFile("a");
        desk.MakeFile("b");
        desk.Launch("100,2000,0");
        int width = 0;
        int height = 0;
        ImageList_GetIconSize(g_launcher.m_largeImages.Get(), &width, &height);
        EXPECT_EQ(width, MulDiv(32, dpi, 96));
        EXPECT_GE(desk.ItemBounds("a").bottom - desk.ItemBounds("a").top, width);
        EXPECT_EQ(desk.ItemBounds("b").top, desk.ItemBounds("a").bottom);
        // The title is 20 points high, cell and all; the banner has room for it and three pixels on either side.
        EXPECT_NEAR(desk.Level().m_contentRect.left, 20 * dpi / 72 + 6, 1);
        for (const COLORREF color : {g_launcher.m_menuTextColor, g_launcher.m_highlightTextColor,
                                     g_launcher.m_menuColor, g_launcher.m_highlightColor})
            EXPECT_TRUE(GetRValue(color) != 0 && GetGValue(color) != 0 && GetBValue(color) != 0) << color;
    }
}

TEST(MenuOpens, TheOptionsChooseTheSeparatorsAndOddBitsSurvive)
{
    Desk desk;
    for (const char* name : {"a", "b"})
        desk.MakeFile(name);
    desk.StoreOptions(0x80030000);
    desk.StoreOrder(kRootLayout, Order({"a", "|", "b"}));
    desk.Launch();
    EXPECT_EQ(g_launcher.m_options, 0x80030000u);
    const RECT separator = desk.ItemBounds("|");
    EXPECT_EQ(separator.bottom - separator.top, 8);
    g_launcher.m_separatorHeight = 20;
    desk.SendNotice();
    EXPECT_EQ(desk.ItemBounds("b").top - desk.ItemBounds("a").bottom, 8) << "not before the refresh";
    desk.Settle();
    EXPECT_EQ(desk.ItemBounds("b").top - desk.ItemBounds("a").bottom, 20) << "as high as the picture";
}

TEST(MenuOpens, AClickBesideTheItemsCyclesTheSeparators)
{
    Desk desk;
    desk.MakeFile("a");
    desk.StoreOptions(0x4);
    desk.Launch();
    const RECT last = desk.ItemBounds("a");
    MessageCounter refreshes(desk.Level().m_hWnd, WM_APP_REFRESH);
    for (const std::uint32_t expected : {0x10004u, 0x20004u, 0x4u})
    {
        desk.MoveTo({last.left + 5, last.bottom + 1});
        platform::headless::PressButton();
        platform::headless::ReleaseButton();
        desk.Settle();
        EXPECT_EQ(g_launcher.m_options, expected);
        const auto stored = desk.StoredBytes(kRootLayout, TEXT("options"));
        ASSERT_EQ(stored.size(), 4u);
        EXPECT_EQ(DecodeOrder(stored.data(), 4).front(), expected);
        EXPECT_EQ(desk.StoredType(kRootLayout, TEXT("options")), static_cast<DWORD>(REG_DWORD));
    }
    EXPECT_EQ(refreshes.Count(), 3) << "each shows at once";
}

TEST(MenuOpens, AStyleWhosePictureCannotBeLoadedIsNoneAndIsNotKept)
{
    Desk desk;
    for (const char* name : {"a", "b"})
        desk.MakeFile(name);
    desk.StoreOptions(0x10004);
    desk.StoreOrder(kRootLayout, Order({"a", "|", "b"}));
    desk.Launch();
    const RECT last = desk.ItemBounds("b");
    desk.MoveTo({last.left + 5, last.bottom + 1});
    const MessageCounter refreshes(desk.Level().m_hWnd, WM_APP_REFRESH);
    {
        const Failing picture("FindResourceW");
        desk.PressMouse();
        desk.ReleaseMouse();
    }
    EXPECT_EQ(g_launcher.m_options, 0x4u);
    EXPECT_FALSE(g_launcher.m_separatorImage);
    EXPECT_EQ(g_launcher.m_separatorWidth, 100);
    EXPECT_EQ(g_launcher.m_separatorHeight, 8);
    EXPECT_EQ(DecodeOrder(desk.StoredBytes(kRootLayout, TEXT("options")).data(), 4).front(), 0x10004u);
    EXPECT_EQ(refreshes.Count(), 0);
}

TEST(MenuOpens, AFileInTheFoldersPlaceHoldsNothing)
{
    Desk desk;
    std::filesystem::remove_all(desk.Folder());
    std::ofstream(desk.Folder()) << "in the way";
    desk.Launch();
    EXPECT_EQ(desk.BoxTexts(), Labels{});
    EXPECT_EQ(desk.Items(), Labels{"(Empty)"});
    EXPECT_TRUE(std::filesystem::is_regular_file(desk.Folder())) << "nothing of the user's is touched";
}

TEST(MenuOpens, AMissingFolderIsCreated)
{
    Desk desk;
    std::filesystem::remove_all(desk.Folder());
    desk.Launch();
    EXPECT_TRUE(std::filesystem::is_directory(desk.Folder()));
    EXPECT_EQ(desk.Items(), Labels{"(Empty)"});
}

} // namespace
