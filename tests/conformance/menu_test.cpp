// What the launcher and shell extensions rely on in menu objects.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace
{

using Text = std::basic_string<WCHAR>;

class MenuTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_NE(m_menu, nullptr); }
    void TearDown() override { DestroyMenu(m_menu); }

    void Append(UINT id, const Text& text) { ASSERT_TRUE(AppendMenuW(m_menu, MF_STRING, id, text.c_str())); }

    Text TextOf(UINT item, BOOL byPosition)
    {
        WCHAR buffer[64] = {};
        MENUITEMINFOW info = {};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_STRING;
        info.dwTypeData = buffer;
        info.cch = 64;
        EXPECT_TRUE(GetMenuItemInfoW(m_menu, item, byPosition, &info));
        EXPECT_EQ(Text(buffer).size(), info.cch);
        return buffer;
    }

    HMENU m_menu = CreatePopupMenu();
};

MENUITEMINFOW Info(UINT mask)
{
    MENUITEMINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = mask;
    return info;
}

} // namespace

TEST_F(MenuTest, ItemsAreFoundByPositionAndByCommand)
{
    Append(11, TEXT("Open"));
    ASSERT_TRUE(AppendMenuW(m_menu, MF_SEPARATOR, 0, nullptr));
    Append(12, TEXT("Delete"));
    EXPECT_EQ(GetMenuItemCount(m_menu), 3);
    EXPECT_EQ(GetMenuItemID(m_menu, 0), 11u);
    EXPECT_EQ(GetMenuItemID(m_menu, 1), 0u);
    EXPECT_EQ(GetMenuItemID(m_menu, 3), static_cast<UINT>(-1));
    EXPECT_EQ(TextOf(2, TRUE), TEXT("Delete"));
    EXPECT_EQ(TextOf(11, FALSE), TEXT("Open"));

    EXPECT_TRUE(DeleteMenu(m_menu, 1, MF_BYPOSITION));
    EXPECT_TRUE(DeleteMenu(m_menu, 11, MF_BYCOMMAND));
    EXPECT_FALSE(DeleteMenu(m_menu, 11, MF_BYCOMMAND));
    EXPECT_FALSE(DeleteMenu(m_menu, 5, MF_BYPOSITION));
    EXPECT_EQ(GetMenuItemCount(m_menu), 1);
    EXPECT_EQ(GetMenuItemID(m_menu, 0), 12u);
}

TEST_F(MenuTest, InsertionGoesBeforeTheNamedItem)
{
    Append(1, TEXT("first"));
    Append(2, TEXT("last"));
    Text text = TEXT("middle");
    MENUITEMINFOW info = Info(MIIM_ID | MIIM_STRING | MIIM_STATE | MIIM_DATA);
    info.wID = 3;
    info.dwTypeData = text.data();
    info.fState = MFS_CHECKED;
    info.dwItemData = 77;
    EXPECT_TRUE(InsertMenuItemW(m_menu, 2, FALSE, &info));
    info.wID = 4;
    EXPECT_TRUE(InsertMenuItemW(m_menu, 0, TRUE, &info));
    info.wID = 5;
    EXPECT_TRUE(InsertMenuItemW(m_menu, static_cast<UINT>(-1), TRUE, &info));
    const UINT expected[] = {4, 1, 3, 2, 5};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(GetMenuItemID(m_menu, i), expected[i]) << "position " << i;
    MENUITEMINFOW read = Info(MIIM_ID | MIIM_STATE | MIIM_DATA | MIIM_FTYPE);
    ASSERT_TRUE(GetMenuItemInfoW(m_menu, 3, FALSE, &read));
    EXPECT_EQ(read.wID, 3u);
    EXPECT_EQ(read.fState, static_cast<UINT>(MFS_CHECKED));
    EXPECT_EQ(read.dwItemData, 77u);
    EXPECT_EQ(read.fType, static_cast<UINT>(MFT_STRING));
}

TEST_F(MenuTest, AnItemChangesOnlyWhatTheMaskNames)
{
    Append(9, TEXT("Show it"));
    MENUITEMINFOW info = Info(MIIM_STATE);
    info.fState = MFS_CHECKED | MFS_GRAYED;
    EXPECT_TRUE(SetMenuItemInfoW(m_menu, 9, FALSE, &info));
    EXPECT_EQ(TextOf(9, FALSE), TEXT("Show it"));
    MENUITEMINFOW read = Info(MIIM_STATE);
    ASSERT_TRUE(GetMenuItemInfoW(m_menu, 0, TRUE, &read));
    EXPECT_EQ(read.fState, static_cast<UINT>(MFS_CHECKED | MFS_GRAYED));
    EXPECT_FALSE(SetMenuItemInfoW(m_menu, 10, FALSE, &info));
}

TEST_F(MenuTest, TextIsCutToTheBufferAndItsLengthIsToldWithoutOne)
{
    Append(9, TEXT("Properties"));
    MENUITEMINFOW info = Info(MIIM_STRING);
    ASSERT_TRUE(GetMenuItemInfoW(m_menu, 9, FALSE, &info));
    EXPECT_EQ(info.cch, 10u);
    WCHAR small[5] = {};
    info = Info(MIIM_STRING);
    info.dwTypeData = small;
    info.cch = 5;
    ASSERT_TRUE(GetMenuItemInfoW(m_menu, 9, FALSE, &info));
    EXPECT_EQ(Text(small), TEXT("Prop"));
    EXPECT_EQ(info.cch, 4u);
}

TEST_F(MenuTest, OneItemIsTheDefault)
{
    Append(11, TEXT("Open"));
    Append(12, TEXT("Edit"));
    EXPECT_EQ(GetMenuDefaultItem(m_menu, FALSE, 0), static_cast<UINT>(-1));
    EXPECT_TRUE(SetMenuDefaultItem(m_menu, 12, FALSE));
    EXPECT_EQ(GetMenuDefaultItem(m_menu, FALSE, 0), 12u);
    EXPECT_TRUE(SetMenuDefaultItem(m_menu, 0, TRUE));
    EXPECT_EQ(GetMenuDefaultItem(m_menu, TRUE, 0), 0u);
    EXPECT_FALSE(SetMenuDefaultItem(m_menu, 99, FALSE));
    MENUITEMINFOW info = Info(MIIM_STATE);
    info.fState = MFS_DEFAULT;
    EXPECT_TRUE(SetMenuItemInfoW(m_menu, 12, FALSE, &info));
    EXPECT_EQ(GetMenuDefaultItem(m_menu, FALSE, 0), 12u) << "it takes over";
    EXPECT_TRUE(SetMenuDefaultItem(m_menu, static_cast<UINT>(-1), FALSE));
    EXPECT_EQ(GetMenuDefaultItem(m_menu, FALSE, 0), static_cast<UINT>(-1));
}

TEST_F(MenuTest, SubMenusBelongToTheirParent)
{
    HMENU child = CreatePopupMenu();
    AppendMenuW(child, MF_STRING, 21, TEXT("Nested"));
    ASSERT_TRUE(AppendMenuW(m_menu, MF_POPUP, reinterpret_cast<UINT_PTR>(child), TEXT("More")));
    EXPECT_EQ(GetMenuItemID(m_menu, 0), static_cast<UINT>(-1)) << "an item that opens a menu has no command";
    MENUITEMINFOW info = Info(MIIM_SUBMENU);
    ASSERT_TRUE(GetMenuItemInfoW(m_menu, 0, TRUE, &info));
    EXPECT_EQ(info.hSubMenu, child);
    EXPECT_EQ(GetMenuItemCount(child), 1);
    EXPECT_TRUE(DeleteMenu(m_menu, 0, MF_BYPOSITION));
    EXPECT_EQ(GetMenuItemCount(child), -1);
}

TEST(Menu, DeadMenusAreRefused)
{
    HMENU menu = CreatePopupMenu();
    EXPECT_TRUE(DestroyMenu(menu));
    EXPECT_FALSE(DestroyMenu(menu));
    EXPECT_FALSE(AppendMenuW(menu, MF_STRING, 1, TEXT("x")));
    EXPECT_EQ(GetMenuItemCount(menu), -1);
}
