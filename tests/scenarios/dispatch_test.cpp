// What the launcher asks of the shell: commands of an item's menu, and notices of changes.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/shell_spy.h"
#include "tests/scenarios/staged_ui.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

#include <algorithm>

using CustomMenu::CustomBar;

namespace
{

class Dispatch : public testing::Test
{
protected:
    Dispatch()
    {
        m_desk.MakeFile("Games/chess");
        m_desk.MakeFile("readme");
        m_desk.Launch("100,700,0");
    }

    Desk m_desk;
};

TEST_F(Dispatch, AnItemsDefaultCommandIsInvokedWhereItWasClicked)
{
    m_desk.Click("Games");
    StagedMenu menu("open");
    CustomBar& child = m_desk.Level(1);
    const HWND window = child.m_hWnd;
    menu.onInvoke = [&]
    {
        EXPECT_EQ(g_launcher.g_operationBar, &child);
        EXPECT_FALSE(IsWindowEnabled(m_desk.Level(0).m_hWnd));
    };
    const POINT point = CentreOf(m_desk.ItemBounds("chess", 1));
    m_desk.Click("chess", 1);
    EXPECT_EQ(menu.queryFlags, static_cast<UINT>(CMF_DEFAULTONLY));
    ASSERT_EQ(menu.invocations.size(), 1u);
    const CMINVOKECOMMANDINFOEX& info = menu.invocations[0];
    EXPECT_EQ(info.cbSize, sizeof(CMINVOKECOMMANDINFOEX));
    EXPECT_EQ(info.fMask, 0x20000100u);
    EXPECT_EQ(info.hwnd, window);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(info.lpVerb), 3u) << "the command's offset";
    EXPECT_EQ(info.nShow, SW_SHOWNORMAL);
    EXPECT_EQ(info.ptInvoke.x, point.x);
    EXPECT_EQ(info.ptInvoke.y, point.y);
    EXPECT_EQ(info.lpParameters, nullptr);
    EXPECT_EQ(info.lpVerbW, nullptr);
    EXPECT_FALSE(m_desk.IsOpen());
}

TEST_F(Dispatch, AnOperationIsKnownForAsLongAsTheMenuIsDisabled)
{
    static std::vector<CustomBar*> known;
    known.clear();
    const auto procedure = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR)
    {
        if (message == WM_ENABLE)
            known.push_back(g_launcher.g_operationBar);
        return DefSubclassProc(window, message, wParam, lParam);
    };
    CustomBar& root = m_desk.Level(0);
    SetWindowSubclass(root.m_hWnd, procedure, 1, 0);
    const StagedMenu menu("open");
    root.OnItemCommand(ItemCommandMode::Launch, m_desk.IndexOf("readme"));
    EXPECT_EQ(known, (std::vector<CustomBar*>{&root, &root}));
    EXPECT_EQ(g_launcher.g_operationBar, nullptr);
}

TEST_F(Dispatch, MenuObjectAndFolderAreReleasedInThatOrder)
{
    StagedMenu menu("open");
    m_desk.Click("readme");
    EXPECT_EQ(menu.released, (Labels{"menu, its object", "its folder"}));
}

TEST_F(Dispatch, ADefaultCommandOfAnotherKindIsNotRunAsIfItOpened)
{
    struct Case
    {
        const char* verb;
        std::uint32_t flags; ///< added to the item's
        bool closes;         ///< a shell operation closes the menu, whatever it was
    };
    for (const Case& c :
         {Case{"delete", MIF_PROTECTED, false}, Case{"cut", MIF_PROTECTED, false}, Case{"properties", 0, true}})
    {
        const StagedFiles files;
        StagedMenu menu(c.verb);
        CustomBar& root = m_desk.Level(0);
        MenuItem& readme = root.m_items[m_desk.IndexOf("readme")];
        readme.flags |= c.flags;
        m_desk.Click("readme");
        EXPECT_TRUE(menu.invocations.empty()) << c.verb;
        EXPECT_EQ(files.executed.size(), c.closes ? 1u : 0u) << c.verb << ": properties are shown by other means";
        ASSERT_EQ(m_desk.IsOpen(), !c.closes) << c.verb;
        if (!c.closes)
            readme.flags &= ~c.flags;
    }
}

TEST_F(Dispatch, AnEmptyLevelsEntryCannotBeStarted)
{
    m_desk.MakeFolder("Empty");
    m_desk.Refresh(0);
    m_desk.Click("Empty");
    const StagedMenu menu("open");
    m_desk.Level(1).OnItemCommand(ItemCommandMode::Launch, 0);
    EXPECT_EQ(m_desk.Hot(1), "") << "nothing at all happens";
    EXPECT_TRUE(menu.invocations.empty());
}

TEST_F(Dispatch, ACommandWithoutAVerbIsInvoked)
{
    StagedMenu menu("");
    m_desk.Click("readme");
    EXPECT_EQ(menu.invocations.size(), 1u);
    EXPECT_FALSE(m_desk.IsOpen());
}

TEST(Notices, AreAskedForWhatChangesTheListOfTheFolderItself)
{
    AskedNotices().clear();
    Desk desk;
    desk.MakeFile("Games/chess");
    desk.Launch();
    desk.Click("Games");
    ASSERT_EQ(desk.Levels(), 2);
    ASSERT_EQ(AskedNotices().size(), 2u);
    for (int level = 0; level < 2; ++level)
    {
        const AskedNotice& asked = AskedNotices()[static_cast<std::size_t>(level)];
        EXPECT_EQ(asked.window, desk.Level(level).m_toolbar);
        EXPECT_EQ(asked.sources, 0x8003) << "interrupt level, shell level, new delivery";
        EXPECT_EQ(asked.events, 0x2001F) << "coming, going and renaming of files and folders";
        EXPECT_EQ(asked.message, 0x8002u);
        EXPECT_EQ(asked.entries, 1);
        EXPECT_FALSE(asked.recursive);
        std::string folder = Narrow(asked.folder);
        std::replace(folder.begin(), folder.end(), '\\', '/');
        EXPECT_EQ(folder, (level == 0 ? desk.Folder() : desk.Folder() / "Games").string());
    }
}

} // namespace
