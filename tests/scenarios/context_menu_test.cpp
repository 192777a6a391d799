// An item's context menu: what it offers, where it shows, and what a choice leads to.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/failing.h"
#include "tests/scenarios/live_handle_counts.h"
#include "tests/scenarios/shell_spy.h"
#include "tests/scenarios/staged_ui.h"

#include "app/launcher_state.h"
#include "commands/command_table.h"
#include "commands/menu_pictures.h"
#include "content/ordering.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using namespace CustomMenu;
using platform::screen::Button;
using Identifiers = std::vector<int>;

namespace
{

class ContextMenu : public testing::Test
{
protected:
    ContextMenu()
    {
        m_desk.MakeFile("Games/chess");
        m_desk.MakeFolder("Office");
        m_desk.MakeFile("notes");
        m_desk.MakeFile("readme");
    }

    CustomBar& Root() { return m_desk.Level(0); }
    void Open() { m_desk.Launch("100,700,0"); }
    void RightClick(const std::string& item, int level = -1)
    {
        m_desk.RestOn(item, level);
        m_desk.PressMouse(Button::Right);
        m_desk.ReleaseMouse(Button::Right);
    }
    /// Chooses an entry in the menu of an item.
    void Choose(int identifier, const std::string& item, int level = 0)
    {
        m_popup.answer = identifier;
        Ask(item, level);
    }
    void Ask(const std::string& item, int level = 0)
    {
        m_desk.Level(level).OnItemCommand(ItemCommandMode::ContextMenu, m_desk.IndexOf(item, level), 50, 60);
        m_desk.Settle();
    }
    /// As when another program has done something and the notice has come.
    void Refresh() { m_desk.Refresh(0); }
    MenuItem& Item(const std::string& item) { return Root().m_items[m_desk.IndexOf(item, 0)]; }

    Desk m_desk;
    StagedPopup m_popup;
    StagedMenu m_shell{"open"};
};

TEST_F(ContextMenu, OfARightClickShowsThereWithTheShellsEntriesFirst)
{
    Open();
    m_desk.RestOn("Office");
    const POINT mouse = CentreOf(m_desk.ItemBounds("Office"));
    const int index = m_desk.IndexOf("Office");
    m_popup.onShow = [&]
    {
        EXPECT_EQ(Root().m_contextIndex, index);
        EXPECT_FALSE(KillTimer(Root().m_hWnd, 1)) << "the hover timer is stopped";
        EXPECT_EQ(m_desk.Hot(), "Office");
        EXPECT_EQ(GetActiveWindow(), Root().m_hWnd);
    };
    RightClick("Office");
    ASSERT_EQ(m_popup.shown, 1);
    EXPECT_EQ(m_popup.Identifiers(), (Identifiers{StagedMenu::Identifier(0), 0, 1, 2, 3, 4, 5, 7, 0, 9, 10}));
    EXPECT_EQ(m_popup.entries[2].text, "Insert folder above");
    EXPECT_EQ(m_popup.flags, static_cast<UINT>(TPM_RETURNCMD));
    EXPECT_EQ(m_popup.point.x, mouse.x);
    EXPECT_EQ(m_popup.point.y, mouse.y);
    EXPECT_FALSE(m_popup.hasExclusion);
    EXPECT_EQ(m_popup.owner, Root().m_hWnd);
    EXPECT_EQ(m_shell.queryFlags, static_cast<UINT>(CMF_CANRENAME));
    EXPECT_EQ(Root().m_contextIndex, -1);
    EXPECT_TRUE(m_shell.invocations.empty()) << "dismissed";
    EXPECT_EQ(m_shell.released, (Labels{"menu, its object", "its folder"}));
    EXPECT_TRUE(m_desk.IsOpen());
}

TEST_F(ContextMenu, AskedForByKeyboardOpensAtTheHotItemWithoutCoveringIt)
{
    Open();
    const auto press = [&](bool menuKey)
    {
        if (menuKey)
            return m_desk.Press(VK_APPS);
        m_desk.PressWith(VK_SHIFT, {VK_F10});
    };
    for (const bool menuKey : {true, false})
    {
        Root().SetHotItem(-1);
        m_popup.shown = 0;
        press(menuKey);
        EXPECT_EQ(m_popup.shown, 0) << "no item is meant";
        m_desk.Press(VK_DOWN);
        m_desk.Press(VK_DOWN);
        press(menuKey);
        ASSERT_EQ(m_popup.shown, 1) << menuKey;
        const RECT button = m_desk.ItemBounds("Office");
        EXPECT_EQ(m_popup.point.x, button.left);
        EXPECT_EQ(m_popup.point.y, button.top);
        ASSERT_TRUE(m_popup.hasExclusion);
        EXPECT_EQ(m_popup.exclusion.cbSize, sizeof(TPMPARAMS));
        EXPECT_TRUE(EqualRect(&m_popup.exclusion.rcExclude, &button));
    }
    m_popup.answer = StagedMenu::Identifier(0);
    m_desk.Press(VK_APPS);
    ASSERT_EQ(m_shell.invocations.size(), 1u);
    EXPECT_EQ(m_shell.invocations[0].ptInvoke.x, -1);
    EXPECT_EQ(m_shell.invocations[0].ptInvoke.y, -1);
}

TEST_F(ContextMenu, ClosesTheLevelsBeyondItsOwn)
{
    Open();
    m_desk.Click("Games");
    ASSERT_EQ(m_desk.Levels(), 2);
    m_popup.onShow = [&] { EXPECT_EQ(m_desk.Levels(), 1); };
    Ask("notes");
    EXPECT_EQ(m_popup.shown, 1);
    EXPECT_EQ(m_desk.Hot(), "notes");
}

TEST_F(ContextMenu, OfASubLevelHasNoSwitchesOfTheRoot)
{
    Open();
    m_desk.Click("Games");
    Ask("chess", 1);
    EXPECT_EQ(m_popup.Identifiers(), (Identifiers{StagedMenu::Identifier(0), 0, 1, 2, 3, 4}));
    EXPECT_EQ(m_popup.owner, m_desk.Level(1).m_hWnd);
    EXPECT_EQ(m_desk.Levels(), 2);
}

TEST_F(ContextMenu, ShowsACheckMarkWhileALinkIsOn)
{
    for (const std::uint32_t options : {0u, 1u, 2u, 3u})
    {
        m_desk.StoreOptions(options);
        Open();
        Ask("notes");
        const auto& entries = m_popup.entries;
        EXPECT_EQ(entries[entries.size() - 2].checked, (options & 1) != 0) << options;
        EXPECT_EQ(entries.back().checked, (options & 2) != 0) << options;
        m_desk.End();
    }
}

TEST_F(ContextMenu, TakesOutWhatItDoesNotOffer)
{
    const int copy = StagedMenu::Identifier(2);
    m_shell.others = {"cut", "copy", "pintostartscreen", "DELETE", ""};
    Open();
    const auto shellEntries = [&]
    {
        Ask("notes");
        Identifiers found = m_popup.Identifiers();
        found.erase(std::find(found.begin(), found.end(), 0), found.end());
        return found;
    };
    EXPECT_EQ(shellEntries(), (Identifiers{14, 15, copy, 18, 19}));
    Item("notes").flags |= MIF_PROTECTED;
    EXPECT_EQ(shellEntries(), (Identifiers{14, copy, 19})) << "one without a verb stays";
    EXPECT_EQ(m_shell.queryFlags, static_cast<UINT>(CMF_NORMAL)) << "no rename";
    m_shell.others = {"cut", "cut", "PinToStartScreen", "delete"};
    EXPECT_EQ(shellEntries(), (Identifiers{14, 18})) << "after three it is good";
    m_shell.others = {"copy", "PinToStartScreen"};
    EXPECT_EQ(shellEntries(), (Identifiers{14, 15})) << "the last one as well";
}

TEST_F(ContextMenu, OfAnEmptyLevelOffersOnlyWhatMakesSomething)
{
    Open();
    m_desk.Click("Office");
    Ask("(Empty)", 1);
    EXPECT_EQ(m_popup.Identifiers(), (Identifiers{0, 1, 2, 3, 4}));
    EXPECT_TRUE(m_shell.released.empty()) << "the shell is not asked";
    m_desk.End();
    std::filesystem::remove_all(m_desk.Folder());
    std::filesystem::create_directories(m_desk.Folder());
    Open();
    Ask("(Empty)");
    EXPECT_EQ(m_popup.Identifiers(), (Identifiers{0, 1, 2, 3, 4, 0, 9, 10}));
}

TEST_F(ContextMenu, IsNotShownWhereTheShellHasNone)
{
    m_desk.StoreOrder(kRootLayout, EncodeOrder({}));
    Open();
    Root().InsertSeparator(Where::Above, 2);
    m_desk.Settle();
    Root().OnItemCommand(ItemCommandMode::ContextMenu, m_desk.IndexOf("|"), 5, 5);
    Root().OnItemCommand(ItemCommandMode::ContextMenu, -1, 5, 5);
    Root().OnItemCommand(ItemCommandMode::ContextMenu, 99, 5, 5);
    m_shell.refusesMenu = true;
    Ask("notes");
    m_shell.refusesMenu = false;
    m_shell.refusesToFill = true;
    Ask("notes");
    m_shell.refusesToFill = false;
    {
        const Failing full("CreatePopupMenu");
        Ask("notes");
    }
    EXPECT_EQ(m_popup.shown, 0);
    Ask("notes");
    EXPECT_EQ(m_popup.shown, 1);
}

class MenuPictures : public testing::TestWithParam<int>
{
};

TEST_P(MenuPictures, HaveTheSizeOfTheScaleAndBelongToTheMenuAlone)
{
    Desk desk("1920x1080+0+0", GetParam());
    desk.MakeFile("a");
    desk.MakeFile("b");
    desk.MakeFile("c");
    desk.Launch();
    const StagedMenu shell("open");
    StagedPopup popup;
    const HandleCounts before = CountHandles();
    desk.Level(0).OnItemCommand(ItemCommandMode::ContextMenu, 1, 5, 5);
    for (const StagedPopup::Entry& entry : popup.entries)
    {
        const bool pictured = entry.identifier >= 1 && entry.identifier <= 8;
        EXPECT_EQ(entry.picture.cx, pictured ? 16 * GetParam() / 96 : 0) << entry.text;
        EXPECT_EQ(entry.picture.cy, entry.picture.cx) << entry.text;
    }
    EXPECT_EQ(CountHandles(), before);
    for (const char* call : {"FindResourceW", "LoadResource", "CreateDIBSection"})
    {
        const Failing failing(call);
        desk.Level(0).OnItemCommand(ItemCommandMode::ContextMenu, 1, 5, 5);
        ASSERT_EQ(popup.entries[2].identifier, 1) << call;
        EXPECT_EQ(popup.entries[2].picture.cx, 0) << call << ": text only";
    }
}

INSTANTIATE_TEST_SUITE_P(Scale, MenuPictures, testing::Values(96, 120, 144, 192));

TEST(MenuPicture, IsPremultipliedAndTakesOnlyFullDepth)
{
    Desk desk;
    desk.Launch();
    const UniqueBitmap picture = MakeMenuPicture(116, 20);
    BITMAP data{};
    ASSERT_NE(GetObjectW(picture.Get(), sizeof(data), &data), 0);
    ASSERT_EQ(data.bmBitsPixel, 32);
    const auto* pixels = static_cast<const std::uint8_t*>(data.bmBits);
    bool partly = false;
    for (int i = 0; i < data.bmWidth * data.bmHeight; ++i, pixels += 4)
    {
        partly |= pixels[3] != 0 && pixels[3] != 255;
        EXPECT_LE(std::max({pixels[0], pixels[1], pixels[2]}), pixels[3]) << i;
    }
    EXPECT_TRUE(partly) << "edges are smooth";
    EXPECT_FALSE(MakeMenuPicture(9999, 16)) << "no such resource";
}

// --- what a choice leads to

TEST_F(ContextMenu, SeparatorsComeAndGoBesideTheItem)
{
    Open();
    Choose(IDM_INSERT_SEPARATOR_ABOVE, "notes");
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "Office", "|", "notes", "readme"}));
    EXPECT_EQ(m_desk.Hot(), "notes");
    Choose(IDM_INSERT_SEPARATOR_BELOW, "notes");
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "Office", "|", "notes", "|", "readme"}));
    EXPECT_EQ(m_desk.Hot(), "notes");
    Ask("notes");
    EXPECT_EQ(m_popup.Identifiers(), (Identifiers{14, 0, 1, 2, 3, 4, 6, 8, 0, 9, 10}));
    Choose(IDM_DELETE_SEPARATOR_BELOW, "notes");
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "Office", "|", "notes", "readme"}));
    EXPECT_EQ(m_desk.Hot(), "notes");
    Choose(IDM_DELETE_SEPARATOR_ABOVE, "notes");
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "Office", "notes", "readme"}));
    EXPECT_EQ(m_desk.Hot(), "notes");
    m_desk.End();
    Open();
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "Office", "notes", "readme"})) << "as stored";
}

TEST_F(ContextMenu, AShellCommandRunsWithTheMenuDisabledAndLeavesItOpen)
{
    m_shell.others = {"edit"};
    Open();
    m_shell.onInvoke = [&]
    {
        EXPECT_EQ(g_launcher.g_operationBar, &Root());
        EXPECT_FALSE(IsWindowEnabled(Root().m_hWnd));
    };
    Choose(StagedMenu::Identifier(1), "notes");
    ASSERT_EQ(m_shell.invocations.size(), 1u);
    EXPECT_EQ(m_shell.invocations[0].fMask, 0x20000100u);
    EXPECT_EQ(m_shell.invocations[0].hwnd, Root().m_hWnd);
    EXPECT_EQ(reinterpret_cast<UINT_PTR>(m_shell.invocations[0].lpVerb), 4u);
    EXPECT_EQ(m_shell.invocations[0].ptInvoke.x, 50);
    EXPECT_TRUE(m_desk.IsOpen());
    EXPECT_TRUE(IsWindowEnabled(Root().m_hWnd));
    EXPECT_EQ(g_launcher.g_operationBar, nullptr);
    EXPECT_EQ(m_desk.Hot(), "notes");
}

TEST_F(ContextMenu, DeletingTheLastItemHighlightsTheOneThatBecomesLast)
{
    m_shell.others = {"delete"};
    Open();
    m_shell.onInvoke = [&] { std::filesystem::remove(m_desk.Folder() / "readme"); };
    Choose(StagedMenu::Identifier(1), "readme");
    Refresh();
    EXPECT_EQ(m_desk.Hot(), "notes");
}

TEST_F(ContextMenu, PastingOnAFileGoesBesideItAndOnAFolderIntoIt)
{
    m_shell.others = {"Paste"};
    Open();
    m_shell.onInvoke = [&] { m_desk.MakeFile("pasted"); };
    Choose(StagedMenu::Identifier(1), "notes");
    EXPECT_EQ(m_shell.invokedVerbs, Labels{"paste"});
    EXPECT_EQ(m_desk.Items(), (Labels{"Games", "Office", "pasted", "notes", "readme"}));
    EXPECT_EQ(m_desk.Hot(), "pasted");
    m_shell.onInvoke = nullptr;
    Choose(StagedMenu::Identifier(1), "Office");
    EXPECT_EQ(m_shell.invokedVerbs.size(), 1u) << "by the shell's own command";
    EXPECT_EQ(m_shell.invocations.size(), 2u);
}

TEST_F(ContextMenu, PropertiesAreShownByTheirVerb)
{
    StagedFiles files;
    m_shell.others = {"properties"};
    Open();
    Choose(StagedMenu::Identifier(1), "notes");
    EXPECT_TRUE(m_shell.invocations.empty());
    ASSERT_EQ(files.executed.size(), 1u);
    EXPECT_EQ(files.executed[0].cbSize, sizeof(SHELLEXECUTEINFOW));
    EXPECT_EQ(files.executed[0].fMask, 0xCu);
    EXPECT_EQ(files.executed[0].nShow, SW_SHOW);
    EXPECT_EQ(files.executed[0].hwnd, nullptr);
    EXPECT_EQ(WString(files.executed[0].lpVerb), TEXT("properties"));
    EXPECT_EQ(m_desk.Hot(), "notes");
}

// --- what changes while the menu shows

TEST_F(ContextMenu, NothingIsDoneBesideAnItemThatIsGone)
{
    Open();
    Root().InsertSeparator(Where::Below, m_desk.IndexOf("notes"));
    m_desk.Settle();
    const std::vector<std::uint8_t> stored = m_desk.StoredBytes(kRootLayout);
    StagedFiles files;
    StagedDialog dialog;
    m_shell.others = {"rename"};
    m_popup.onShow = [&]
    {
        std::filesystem::rename(m_desk.Folder() / "notes", m_desk.Folder() / "Office/notes");
        Refresh();
    };
    for (const int chosen : {1, 2, 3, 4, 5, 6, 7, 8, StagedMenu::Identifier(1)})
    {
        Choose(chosen, "notes");
        EXPECT_EQ(m_desk.Items(), (Labels{"Games", "Office", "|", "readme"})) << chosen;
        EXPECT_EQ(files.pickers, 0);
        EXPECT_EQ(dialog.shown, 0);
        EXPECT_TRUE(m_shell.invocations.empty()) << chosen;
        std::filesystem::rename(m_desk.Folder() / "Office/notes", m_desk.Folder() / "notes");
        m_desk.StoreOrder(kRootLayout, stored);
        Refresh();
        ASSERT_EQ(m_desk.Items(), (Labels{"Games", "Office", "notes", "|", "readme"}));
    }
}

TEST_F(ContextMenu, AnItemThatHasMovedIsFollowed)
{
    Open();
    m_popup.onShow = [&]
    {
        m_desk.MakeFile("New/x");
        m_desk.MakeFile("another");
        Refresh();
        std::rotate(Root().m_items.begin(), Root().m_items.begin() + 2, Root().m_items.end());
        Root().SaveLayout();
        Refresh();
    };
    Choose(IDM_INSERT_SEPARATOR_BELOW, "notes");
    Labels items = m_desk.Items();
    const auto notes = std::find(items.begin(), items.end(), "notes");
    ASSERT_EQ(items[0], "notes") << "it was in another place";
    EXPECT_EQ(*(notes + 1), "|");
}

TEST_F(ContextMenu, AShellCommandIsDoneToTheItemItWasAskedFor)
{
    StagedFiles files;
    m_shell.others = {"properties"};
    Open();
    m_popup.onShow = [&]
    {
        std::filesystem::remove(m_desk.Folder() / "notes");
        Refresh();
    };
    Choose(StagedMenu::Identifier(1), "notes");
    EXPECT_EQ(files.executedPaths, Labels{(m_desk.Folder() / "notes").string()}) << "the shell says that it is gone";
    EXPECT_EQ(Root().m_refreshIndex, -1) << "nothing stands for it";
}

TEST_F(ContextMenu, OfALevelThatHasClosedLeadsToNothing)
{
    StagedFiles files;
    for (const int chosen : {1, 3, 5, 7, 14})
    {
        Open();
        m_popup.onShow = [&] { DestroyWindow(Root().m_hWnd); };
        m_popup.answer = chosen;
        Root().OnItemCommand(ItemCommandMode::ContextMenu, 1, 5, 5);
        EXPECT_EQ(m_desk.Levels(), 0) << chosen;
        EXPECT_EQ(files.pickers, 0);
        EXPECT_TRUE(m_shell.invocations.empty()) << chosen;
        m_desk.End();
    }
    Open();
    m_popup.shown = 0;
    m_shell.onQuery = [&] { DestroyWindow(Root().m_hWnd); };
    Root().OnItemCommand(ItemCommandMode::ContextMenu, 1, 5, 5);
    EXPECT_EQ(m_popup.shown, 0) << "closed before it was filled";
}

TEST_F(ContextMenu, OfAnItemThatGoesBeforeItIsFilledDoesNotShow)
{
    Open();
    m_shell.onQuery = [&]
    {
        std::filesystem::remove(m_desk.Folder() / "notes");
        Refresh();
    };
    Ask("notes");
    EXPECT_EQ(m_popup.shown, 0);
}

} // namespace
