// What the launcher and shell extensions rely on in menu objects.
#include "message_log.h"

#include <cstdio>
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

namespace
{

/// A window that a menu is tracked for, and what it hears of it.
class TrackedMenu : public conformance::MessageTest
{
protected:
    TrackedMenu()
    {
        m_owner = Popup("owner");
        ShowWindow(m_owner, SW_SHOW);
        SetForegroundWindow(m_owner);
        Pump();
        AppendMenuW(m_menu, MF_STRING, 11, TEXT("&Open"));
        AppendMenuW(m_menu, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(m_menu, MF_STRING | MF_GRAYED, 12, TEXT("Cu&t"));
        AppendMenuW(m_sub, MF_STRING, 21, TEXT("&Editor"));
        AppendMenuW(m_sub, MF_STRING | MF_CHECKED, 22, TEXT("&Viewer"));
        AppendMenuW(m_menu, MF_POPUP, reinterpret_cast<UINT_PTR>(m_sub), TEXT("Open &with"));
        for (const UINT message : {WM_INITMENU, WM_INITMENUPOPUP, WM_UNINITMENUPOPUP, WM_ENTERMENULOOP, WM_EXITMENULOOP,
                                   WM_COMMAND, WM_MENUSELECT})
        {
            m_handlers[message] = [this, message](HWND, WPARAM wParam, LPARAM lParam)
            {
                Note(Describe(message, wParam, lParam));
                return std::optional<LRESULT>();
            };
        }
    }

    ~TrackedMenu() override
    {
        DestroyMenu(m_menu);
        DestroyWindow(m_owner);
    }

    /// Tracks the menu with these keys waiting in the queue.
    BOOL Track(std::vector<WPARAM> keys, UINT flags = TPM_RETURNCMD)
    {
        for (const WPARAM key : keys)
            PostMessageW(m_owner, WM_KEYDOWN, key, 1);
        Take();
        const BOOL result = TrackPopupMenuEx(m_menu, flags, 150, 150, m_owner, nullptr);
        Pump();
        return result;
    }

    HWND m_owner = nullptr;
    HMENU m_menu = CreatePopupMenu();
    HMENU m_sub = CreatePopupMenu();

private:
    std::string NameOfMenu(HMENU menu) const
    {
        return menu == m_menu ? "menu" : menu == m_sub ? "sub-menu" : menu == nullptr ? "none" : "unknown";
    }

    std::string Describe(UINT message, WPARAM wParam, LPARAM lParam) const
    {
        const std::string menu = NameOfMenu(reinterpret_cast<HMENU>(wParam));
        const std::string low = std::to_string(LOWORD(wParam));
        char flags[16];
        std::snprintf(flags, sizeof(flags), " %x", static_cast<unsigned>(HIWORD(wParam)));
        switch (message)
        {
        case WM_ENTERMENULOOP:
            return "enter loop " + low;
        case WM_EXITMENULOOP:
            return "exit loop " + low;
        case WM_INITMENU:
            return "init " + menu;
        case WM_INITMENUPOPUP:
            return "show " + menu + " of item " + std::to_string(LOWORD(lParam));
        case WM_UNINITMENUPOPUP:
            return "gone " + menu;
        case WM_MENUSELECT:
            return "select " + low + flags + " of " + NameOfMenu(reinterpret_cast<HMENU>(lParam));
        default:
            return "command " + low;
        }
    }
};

} // namespace

TEST_F(TrackedMenu, TheOwnerHearsOfEveryStepInOrder)
{
    EXPECT_EQ(Track({VK_DOWN, VK_DOWN, VK_DOWN, VK_RIGHT, VK_DOWN, VK_RETURN}), 22);
    EXPECT_MESSAGES(
        ({"enter loop 1", "init menu", "show menu of item 0", "select 11 80 of menu", "select 12 81 of menu",
          "select 3 90 of menu", "show sub-menu of item 3", "select 21 80 of sub-menu", "select 22 88 of sub-menu",
          "gone sub-menu", "gone menu", "select 0 ffff of none", "exit loop 1"}),
        Take());

    EXPECT_TRUE(Track({VK_DOWN, VK_RETURN}, 0));
    EXPECT_MESSAGES(({"enter loop 1", "init menu", "show menu of item 0", "select 11 80 of menu", "gone menu",
                      "select 0 ffff of none", "exit loop 1", "command 11"}),
                    Take());

    EXPECT_FALSE(Track({VK_UP, VK_RIGHT, VK_ESCAPE, VK_ESCAPE}));
    EXPECT_MESSAGES(
        ({"enter loop 1", "init menu", "show menu of item 0", "select 3 90 of menu", "show sub-menu of item 3",
          "select 21 80 of sub-menu", "gone sub-menu", "gone menu", "select 0 ffff of none", "exit loop 1"}),
        Take());
}

TEST_F(TrackedMenu, LettersChooseByTheirMark)
{
    PostMessageW(m_owner, WM_CHAR, 'o', 1);
    EXPECT_EQ(Track({}), 11);
    for (const char letter : {'W', 'v'})
        PostMessageW(m_owner, WM_CHAR, static_cast<WPARAM>(letter), 1);
    EXPECT_EQ(Track({}), 22) << "a sub-menu is entered";
}

TEST_F(TrackedMenu, OnlyOneMenuIsTrackedAtATime)
{
    m_handlers[WM_INITMENUPOPUP] = [&](HWND, WPARAM, LPARAM)
    {
        SetLastError(0);
        EXPECT_FALSE(TrackPopupMenuEx(m_menu, TPM_RETURNCMD, 10, 10, m_owner, nullptr));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_POPUP_ALREADY_ACTIVE));
        return std::optional<LRESULT>(0);
    };
    EXPECT_EQ(Track({VK_DOWN, VK_RETURN}), 11);
}

TEST_F(TrackedMenu, WhatIsNoMenuOrWindowIsRefused)
{
    const HMENU dead = CreatePopupMenu();
    DestroyMenu(dead);
    SetLastError(0);
    EXPECT_FALSE(TrackPopupMenuEx(dead, 0, 10, 10, m_owner, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_MENU_HANDLE));
    const HWND gone = Popup("gone");
    DestroyWindow(gone);
    SetLastError(0);
    EXPECT_FALSE(TrackPopupMenuEx(m_menu, 0, 10, 10, gone, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
}

TEST_F(TrackedMenu, TheOwnerKeepsTheFocusAndCanEndIt)
{
    const HWND focus = GetFocus();
    m_handlers[WM_MENUSELECT] = [&](HWND window, WPARAM wParam, LPARAM)
    {
        if (HIWORD(wParam) != 0xFFFF)
        {
            EXPECT_NE(GetCapture(), nullptr);
            EXPECT_EQ(GetFocus(), focus) << "the keyboard focus goes nowhere";
            SendMessageW(window, WM_CANCELMODE, 0, 0);
        }
        return std::optional<LRESULT>();
    };
    EXPECT_FALSE(Track({VK_DOWN, VK_RETURN}));
    EXPECT_EQ(GetCapture(), nullptr);

    m_handlers[WM_MENUSELECT] = [&](HWND, WPARAM wParam, LPARAM)
    {
        if (HIWORD(wParam) != 0xFFFF)
            EndMenu();
        return std::optional<LRESULT>();
    };
    EXPECT_FALSE(Track({VK_DOWN, VK_RETURN}));
}

TEST_F(TrackedMenu, ItEndsWithItsOwner)
{
    m_handlers[WM_MENUSELECT] = [&](HWND window, WPARAM, LPARAM)
    {
        DestroyWindow(window);
        return std::optional<LRESULT>();
    };
    EXPECT_FALSE(Track({VK_DOWN}));
    EXPECT_FALSE(IsWindow(m_owner));
}
