// Levels that close, and items that change, while something is under way with them.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/shell_spy.h"

#include "app/launcher_state.h"
#include "commands/operation_scope.h"
#include "platform/base/fault_points.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>

using namespace std::chrono_literals;
using CustomMenu::CustomBar;

namespace
{

/// Does something once, within the n-th platform call of a name.
class During
{
public:
    During(std::string_view call, std::function<void()> action, int nth = 1)
    {
        s_call = call;
        s_action = std::move(action);
        s_left = nth;
        platform::SetFaultHook(Hook);
    }
    ~During()
    {
        platform::SetFaultHook(nullptr);
        EXPECT_FALSE(s_action) << s_call << " was not called so often";
        s_action = nullptr;
    }
    During(const During&) = delete;
    During& operator=(const During&) = delete;

private:
    static bool Hook(const char* call)
    {
        if (s_action && call == s_call && --s_left == 0)
            std::exchange(s_action, nullptr)();
        return false;
    }

    static inline std::string s_call;
    static inline std::function<void()> s_action;
    static inline int s_left = 0;
};

/// Closes a level, window and all, within a notification of its toolbar.
class ClosedByNotification
{
public:
    ClosedByNotification(CustomBar& level, UINT code) { SetWindowSubclass(level.m_hWnd, Procedure, code, 0); }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR code, DWORD_PTR)
    {
        if (message != WM_NOTIFY || reinterpret_cast<NMHDR*>(lParam)->code != code)
            return DefSubclassProc(window, message, wParam, lParam);
        DestroyWindow(window);
        return 0;
    }
};

class Lifetime : public testing::Test
{
protected:
    Lifetime()
    {
        m_desk.MakeFile("Games/Arcade/pong");
        m_desk.MakeFile("Games/chess");
        m_desk.MakeFolder("Office");
        m_desk.MakeFile("readme");
        m_desk.Launch("100,700,0");
    }

    CustomBar& Root() { return m_desk.Level(0); }
    void Open(const std::string& item) { Root().OnItemCommand(ItemCommandMode::OpenSubmenu, m_desk.IndexOf(item, 0)); }
    void Rebuild()
    {
        Root().ReloadItems();
        Root().Build();
    }
    void DestroyDeepest() { DestroyWindow(m_desk.Level().m_hWnd); }

    Desk m_desk;
};

TEST_F(Lifetime, ALevelOutlivesItsOwnRefresh)
{
    // It was deleted while its items were read, and went on with the rebuild.
    m_desk.Click("Games");
    m_desk.SendNotice(1);
    {
        const During reading("IShellFolder::EnumObjects", [&] { DestroyDeepest(); });
        m_desk.Settle();
    }
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_EQ(GetFocus(), Root().m_toolbar);
}

TEST_F(Lifetime, AFolderIsReadToItsEndThoughItsLevelHasLetGoOfIt)
{
    // The level held the only reference, and let go of it where it was loaded anew in the meantime.
    for (const char* call : {"IShellFolder::EnumObjects", "IEnumIDList::Next", "IShellFolder::GetDisplayNameOf"})
    {
        const During reading(call, [&] { Root().ReloadItems(); });
        Root().ReloadItems();
    }
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items(0), (Labels{"Games", "Office", "readme"}));
}

TEST_F(Lifetime, ALevelOutlivesTheMovesAndPressesOnItsToolbar)
{
    m_desk.Click("Games");
    const POINT chess = CentreOf(m_desk.ItemBounds("chess", 1));
    {
        const ClosedByNotification closed(m_desk.Level(1), static_cast<UINT>(TBN_HOTITEMCHANGE));
        m_desk.MoveTo(chess);
    }
    EXPECT_EQ(m_desk.Levels(), 1);

    m_desk.Click("Games");
    m_desk.RestOn("chess", 1);
    const ClosedByNotification closed(m_desk.Level(1), static_cast<UINT>(NM_LDOWN));
    m_desk.PressMouse();
    m_desk.ReleaseMouse();
    EXPECT_EQ(m_desk.Levels(), 1);
}

TEST_F(Lifetime, AnOperationHoldsItsLevel)
{
    m_desk.Click("Games");
    {
        const CustomMenu::OperationScope operation(m_desk.Level(1));
        DestroyDeepest();
        EXPECT_EQ(m_desk.Levels(), 2) << "its window is gone";
    }
    EXPECT_EQ(m_desk.Levels(), 1);
    m_desk.Click("Games");
    {
        const CustomMenu::MenuDisabled disabled(m_desk.Level(1));
        EXPECT_FALSE(IsWindowEnabled(Root().m_hWnd));
        DestroyDeepest();
        EXPECT_EQ(m_desk.Levels(), 2) << "its window is gone";
    }
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_TRUE(IsWindowEnabled(Root().m_hWnd));
}

TEST_F(Lifetime, OperationsWithinOperationsAreToldApart)
{
    m_desk.Click("Games");
    const CustomMenu::OperationScope outer(Root());
    {
        const CustomMenu::OperationScope inner(m_desk.Level(1));
        EXPECT_EQ(g_launcher.g_operationBar, &m_desk.Level(1));
    }
    EXPECT_EQ(g_launcher.g_operationBar, &Root());
}

TEST_F(Lifetime, ALevelThatStartsAnItemMayBeClosedWhileTheBoxSaysWhyItCannot)
{
    m_desk.MakeShortcut("Games/broken.desktop", "Broken", "/nonexistent/program");
    m_desk.Click("Games");
    m_desk.ExpectBoxes();
    const HWND child = m_desk.Level(1).m_hWnd;
    bool asked = false;
    platform::headless::SetIdleHandler(
        [&]
        {
            // The box goes with the level that it belongs to.
            EXPECT_FALSE(std::exchange(asked, true));
            return PostMessageW(child, WM_CLOSE, 0, 0) != FALSE;
        });
    m_desk.Click("Broken", 1);
    platform::headless::SetIdleHandler(nullptr);
    EXPECT_TRUE(asked);
    EXPECT_EQ(g_launcher.g_operationBar, nullptr);
    EXPECT_EQ(m_desk.Levels(), 0);
    EXPECT_FALSE(m_desk.IsOpen());
}

// --- opening a sub-level

TEST_F(Lifetime, AFolderThatGetsAnotherPlaceWhileItOpensOpensThere)
{
    // The rectangle and the index were those of what had come to the folder's old place.
    {
        const During reading("IShellFolder::EnumObjects",
                             [&]
                             {
                                 m_desk.MakeFile("Alpha/x");
                                 Rebuild();
                             });
        Open("Games");
    }
    ASSERT_EQ(m_desk.Items(0), (Labels{"Games", "Office", "readme", "Alpha"}));
    ASSERT_EQ(m_desk.Levels(), 2);
    m_desk.Press(VK_ESCAPE);
    std::filesystem::remove_all(m_desk.Folder() / "Games");
    {
        const During reading("IShellFolder::EnumObjects", [&] { Rebuild(); });
        Open("Office");
    }
    ASSERT_EQ(m_desk.Items(0), (Labels{"Office", "readme", "Alpha"}));
    ASSERT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(Root().m_openIndex, 0);
    EXPECT_EQ(m_desk.Bounds(1).top, m_desk.ItemBounds("Office", 0).top);
    EXPECT_EQ(m_desk.Hot(0), "Office");
    m_desk.Press(VK_ESCAPE);
    EXPECT_EQ(Root().m_openIndex, -1) << "the level knew its place";
}

TEST_F(Lifetime, AFolderThatGoesWhileItOpensStaysClosed)
{
    for (const char* call : {"IShellFolder::EnumObjects", "CreateWindowExW"})
    {
        m_desk.MakeFile("Zoo/x");
        Rebuild();
        {
            const During opening(call,
                                 [&]
                                 {
                                     std::filesystem::remove_all(m_desk.Folder() / "Zoo");
                                     Rebuild();
                                 });
            Open("Zoo");
        }
        EXPECT_EQ(m_desk.Levels(), 1) << call;
        EXPECT_EQ(Root().m_openIndex, -1) << call;
    }
}

TEST_F(Lifetime, AMenuThatClosesWhileASubLevelOpensTakesItAlong)
{
    // It had no window yet that could be asked to close, and opened all the same.
    const std::function<void()> closings[] = {CustomMenu::CloseAllLevels, [&] { DestroyWindow(Root().m_hWnd); }};
    for (const auto& closing : closings)
        for (const char* call : {"IShellFolder::EnumObjects", "CreateWindowExW"})
        {
            {
                const During opening(call, closing);
                Open("Games");
            }
            m_desk.Settle();
            EXPECT_EQ(m_desk.Levels(), 0) << call;
            m_desk.End();
            m_desk.Launch("100,700,0");
        }
}

TEST_F(Lifetime, AnOpenerThatIsDestroyedMeanwhileOpensNothing)
{
    for (const char* call : {"IShellFolder::EnumObjects", "CreateWindowExW"})
    {
        m_desk.Click("Games");
        CustomBar& games = m_desk.Level(1);
        {
            const During opening(call, [&] { DestroyWindow(games.m_hWnd); });
            games.OnItemCommand(ItemCommandMode::OpenSubmenu, m_desk.IndexOf("Arcade", 1));
        }
        EXPECT_EQ(m_desk.Levels(), 1) << call;
    }
}

TEST_F(Lifetime, ASubLevelThatIsClosedAsItShowsIsGone)
{
    {
        // Its first place is asked for while it is built, its last before it is shown.
        const During showing(
            "GetMonitorInfoW", [&] { DestroyDeepest(); }, 2);
        Open("Games");
    }
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_EQ(Root().m_openIndex, -1);
    EXPECT_EQ(GetFocus(), Root().m_toolbar);
}

TEST_F(Lifetime, TheLaterOfTwoFoldersThatOpenAtOnceStays)
{
    {
        const During opening("IShellFolder::EnumObjects", [&] { Open("Office"); });
        Open("Games");
    }
    ASSERT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(m_desk.Items(1), Labels{"(Empty)"});
    EXPECT_EQ(m_desk.Hot(0), "Office");
}

TEST_F(Lifetime, TheHoverTimerOpensOnceAndIsGoneAfterwards)
{
    // Its own messages come again while the folder is read, and a mouse that moves on starts it anew.
    static HWND root;
    static int readings;
    root = Root().m_hWnd;
    readings = 0;
    m_desk.RestOn("Games");
    platform::SetFaultHook(
        [](const char* call)
        {
            if (std::string_view(call) == "IShellFolder::EnumObjects" && ++readings == 1)
            {
                SendMessageW(root, WM_TIMER, 1, 0);
                SetTimer(root, 1, 400, nullptr);
            }
            return false;
        });
    m_desk.Advance(400ms);
    platform::SetFaultHook(nullptr);
    EXPECT_EQ(readings, 1);
    EXPECT_EQ(m_desk.Levels(), 2);
    EXPECT_FALSE(KillTimer(root, 1));
}

TEST_F(Lifetime, ACreationThatFailsTakesNoReferenceOfOthers)
{
    // It released its own reference twice when the window had already got its last message.
    const std::uint32_t style = g_launcher.m_levelStyle;
    auto* const level = new CustomBar(nullptr, -1, {nullptr, nullptr}, WString(), false);
    level->AddRef();
    {
        const During toolbar(
            "CreateWindowExW", [&] { DestroyWindow(level->m_hWnd); }, 2);
        EXPECT_FALSE(level->Create(nullptr, nullptr, style, g_launcher.m_levelExStyle));
    }
    EXPECT_EQ(level->m_refCount, 1u);
    EXPECT_EQ(m_desk.Levels(), 2);
    level->Release();
    EXPECT_EQ(m_desk.Levels(), 1);
}

// --- the end

TEST_F(Lifetime, ARootThatIsClosedAloneLeavesNoLevelBehind)
{
    // Messages went to it after the program's state was gone.
    m_desk.Click("Games");
    m_desk.Click("Arcade", 1);
    PostMessageW(Root().m_hWnd, WM_CLOSE, 0, 0);
    m_desk.Settle();
    EXPECT_FALSE(m_desk.IsOpen());
    EXPECT_EQ(m_desk.Levels(), 2);
    m_desk.End();
    EXPECT_EQ(m_desk.Levels(), 0);
}

TEST_F(Lifetime, AToolbarsLastMessageIsTheLastThatItsLevelHears)
{
    m_desk.Click("Games");
    static int posts;
    const auto procedure = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) -> LRESULT
    {
        const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
        if (message == WM_NCDESTROY)
        {
            posts = 0;
            platform::SetFaultHook([](const char* call)
                                   { return std::string_view(call) == "PostMessageW" && ++posts; });
            SendMessageW(window, WM_APP_SHELLNOTIFY, 0, 0);
            platform::SetFaultHook(nullptr);
        }
        return result;
    };
    posts = -1;
    SetWindowSubclass(m_desk.Level(1).m_toolbar, procedure, 1, 0);
    DestroyDeepest();
    EXPECT_EQ(posts, 0);
}

// --- starting an item

TEST_F(Lifetime, TheItemThatIsStartedIsTheOneThatWasChosen)
{
    // Its identifier was read from the level's items, which a refresh may replace while the shell is asked.
    StagedMenu menu("open");
    menu.onBind = [&]
    {
        std::filesystem::remove(m_desk.Folder() / "readme");
        Rebuild();
    };
    Root().OnItemCommand(ItemCommandMode::Launch, m_desk.IndexOf("readme"));
    EXPECT_EQ(menu.invocations.size(), 1u);
    m_desk.Settle();
    EXPECT_FALSE(m_desk.IsOpen());
}

TEST_F(Lifetime, AMenuThatIsClosedBeforeTheShellAnswersStartsNothing)
{
    StagedMenu menu("open");
    menu.onQuery = [&] { DestroyWindow(Root().m_hWnd); };
    Root().OnItemCommand(ItemCommandMode::Launch, m_desk.IndexOf("readme"));
    EXPECT_TRUE(menu.invocations.empty());
    EXPECT_EQ(m_desk.Levels(), 0);
}

} // namespace
