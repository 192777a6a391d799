// Items dragged out of a level: when a press becomes a drag, what is dragged, and what becomes of the menu.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/failing.h"
#include "tests/scenarios/shell_spy.h"
#include "tests/scenarios/staged_drop.h"
#include "tests/scenarios/staged_ui.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using namespace CustomMenu;
using platform::screen::Button;

namespace
{

class DragOut : public testing::Test
{
protected:
    explicit DragOut(int more = 0)
    {
        for (int i = 0; i < more; ++i)
            m_desk.MakeFile("item " + std::to_string(10000 + i));
        m_desk.MakeFile("A");
        m_desk.MakeFile("B");
        m_desk.MakeFile("Games/chess");
        m_desk.StoreOrder(kRootLayout, Order({"A", "|", "B", "Games"}));
        m_desk.Launch("100,700,0");
        m_shell.data = &m_data;
    }

    /// The keyboard's state is the process's: the next story begins with no button down.
    ~DragOut() override
    {
        m_desk.ReleaseMouse(Button::Left);
        m_desk.ReleaseMouse(Button::Right);
    }

    CustomBar& Root() { return m_desk.Level(0); }
    void PressAt(POINT point, Button button = Button::Left)
    {
        m_desk.MoveTo({point.x - 1, point.y});
        m_desk.MoveTo(point);
        m_desk.PressMouse(button);
    }
    /// Presses on an item and moves by so much.
    void PressAndMove(const std::string& item, int dx, int dy, Button button = Button::Left)
    {
        const POINT point = CentreOf(m_desk.ItemBounds(item, 0));
        PressAt(point, button);
        m_desk.MoveTo({point.x + dx, point.y + dy});
    }

    Desk m_desk;
    StagedMenu m_shell{"open"};
    StagedData m_data;
    StagedDrag m_drag;
    StagedPopup m_popup; ///< a release that no drag has taken asks for the context menu
};

TEST_F(DragOut, BeginsBeyondTheThresholdByEitherButton)
{
    const int width = GetSystemMetrics(SM_CXDRAG);
    const int height = GetSystemMetrics(SM_CYDRAG);
    for (const Button button : {Button::Left, Button::Right})
    {
        const int before = m_drag.drags;
        PressAndMove("Games", width, height, button);
        EXPECT_EQ(m_drag.drags, before) << "exactly the threshold";
        PressAndMove("Games", width + 1, 0, button);
        EXPECT_EQ(m_drag.drags, before + 1);
        m_desk.MoveTo({m_desk.Bounds(0).left + 5, m_desk.Bounds(0).bottom - 5});
        EXPECT_EQ(m_drag.drags, before + 1) << "once for a press";
        m_desk.ReleaseMouse(button);
        PressAndMove("Games", 0, -height - 1, button);
        EXPECT_EQ(m_drag.drags, before + 2);
        m_desk.ReleaseMouse(button);
        m_desk.Press(VK_ESCAPE);
    }
}

TEST_F(DragOut, GivesTheShellsOwnDataObjectAndAllEffects)
{
    m_drag.onDrag = [&]
    {
        EXPECT_EQ(g_launcher.g_operationBar, &Root());
        EXPECT_EQ(Root().m_dragIndex, 2);
        EXPECT_TRUE(IsWindowEnabled(Root().m_hWnd)) << "hovering still opens folders";
    };
    PressAndMove("B", 20, 0);
    EXPECT_EQ(m_drag.drags, 1);
    EXPECT_EQ(m_drag.data, &m_data);
    EXPECT_EQ(m_drag.window, nullptr);
    EXPECT_FALSE(m_drag.hasSource);
    EXPECT_EQ(m_drag.allowed, 7u);
    EXPECT_EQ(m_data.asyncModes, std::vector<BOOL>{FALSE});
    EXPECT_EQ(g_launcher.g_operationBar, nullptr);
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "|", "B", "Games"})) << "whatever the effect";
    EXPECT_TRUE(m_shell.invocations.empty()) << "no click";
}

TEST_F(DragOut, NothingIsDraggedThatTheShellDoesNotKnow)
{
    PressAndMove("|", 20, 0);
    m_desk.ReleaseMouse();
    EXPECT_EQ(m_drag.drags, 0) << "a separator";
    Root().BeginItemDrag(-1);
    Root().BeginItemDrag(4);
    EXPECT_EQ(m_drag.drags, 0);
    m_shell.data = nullptr;
    PressAndMove("A", 20, 0);
    EXPECT_EQ(m_drag.drags, 0) << "the shell gives no data object";
    EXPECT_EQ(g_launcher.g_operationBar, nullptr);
}

TEST_F(DragOut, PlaceholderStaysWhereItIs)
{
    m_desk.MakeFolder("Void");
    m_desk.Refresh(0);
    Root().OnItemCommand(ItemCommandMode::OpenSubmenu, m_desk.IndexOf("Void", 0));
    const POINT point = CentreOf(m_desk.ItemBounds("(Empty)", 1));
    PressAt(point);
    EXPECT_TRUE(m_desk.Level(1).m_dragArmed);
    m_desk.MoveTo({point.x + 20, point.y});
    EXPECT_FALSE(m_desk.Level(1).m_dragArmed);
    EXPECT_EQ(m_drag.drags, 0);
}

TEST_F(DragOut, ReleaseBeforeTheMessageIsHandledEndsIt)
{
    PressAt(CentreOf(m_desk.ItemBounds("B", 0)), Button::Right);
    m_desk.ReleaseMouse(Button::Right);
    PostMessageW(Root().m_hWnd, WM_APP_BEGINDRAG, 2, 0);
    m_desk.Settle();
    EXPECT_EQ(m_drag.drags, 0);
}

TEST_F(DragOut, MoveWithNoButtonDisarms)
{
    const POINT point = CentreOf(m_desk.ItemBounds("B", 0));
    const auto send = [&](UINT message, WPARAM keys, int x)
    {
        POINT client{point.x + x, point.y};
        ScreenToClient(Root().m_toolbar, &client);
        SendMessageW(Root().m_toolbar, message, keys, MAKELPARAM(client.x, client.y));
    };
    send(WM_MOUSEMOVE, 0, 5); // the last position is another one
    send(WM_LBUTTONDOWN, MK_LBUTTON, 0);
    EXPECT_TRUE(Root().m_dragArmed);
    EXPECT_EQ(Root().m_dragStartButton, 2);
    send(WM_MOUSEMOVE, 0, 0);
    EXPECT_TRUE(Root().m_dragArmed) << "the same place again is no move";
    send(WM_MOUSEMOVE, 0, 1);
    EXPECT_FALSE(Root().m_dragArmed);
    send(WM_MOUSEMOVE, MK_LBUTTON, 30);
    m_desk.Settle();
    EXPECT_EQ(m_drag.drags, 0);
}

class DragOutOfALongLevel : public DragOut
{
protected:
    DragOutOfALongLevel() : DragOut(1800) {}
};

TEST_F(DragOutOfALongLevel, ItemsBeyondTheReachOfAMessagesHeightAreDraggedToo)
{
    SendMessageW(Root().m_pager, PGM_SETPOS, 0, 100000);
    const int last = m_desk.IndexOf("item 11799", 0);
    ASSERT_GT(Root().ButtonRect(last).top, 0x7FFF);
    m_drag.onDrag = [&] { EXPECT_EQ(Root().m_dragIndex, last); };
    PressAndMove("item 11799", 20, 0);
    EXPECT_EQ(m_drag.drags, 1);
}

TEST_F(DragOut, MenuComesBackWithItsDeepestLevel)
{
    m_desk.RestOn("Games", 0);
    m_desk.Advance(500ms);
    ASSERT_EQ(m_desk.Levels(), 2);
    m_drag.onDrag = [&] { SetActiveWindow(Root().m_hWnd); };
    PressAndMove("B", 20, 0, Button::Right);
    EXPECT_EQ(m_drag.drags, 1);
    EXPECT_EQ(GetActiveWindow(), m_desk.Level(1).m_hWnd);
    EXPECT_EQ(GetForegroundWindow(), m_desk.Level(1).m_hWnd);
    m_drag.onDrag = [&] { DestroyWindow(m_desk.Level(1).m_hWnd); };
    PressAndMove("A", 20, 0);
    EXPECT_EQ(GetActiveWindow(), Root().m_hWnd);
}

TEST_F(DragOut, MenuThatClosesUnderTheDragIsGoneAfterIt)
{
    const HWND window = Root().m_hWnd;
    m_drag.onDrag = [&]
    {
        m_desk.ReleaseMouse(Button::Right);
        DestroyWindow(window);
    };
    PressAndMove("B", 20, 0, Button::Right);
    EXPECT_EQ(m_drag.drags, 1);
    EXPECT_FALSE(m_desk.IsOpen());
    EXPECT_EQ(m_desk.Levels(), 0);
    EXPECT_EQ(g_launcher.g_operationBar, nullptr);
}

TEST_F(DragOut, ItemThatHasMovedWhileTheShellWasAskedIsTheOneDragged)
{
    m_shell.onBind = [&]
    {
        std::filesystem::remove(m_desk.Folder() / "A");
        m_desk.Refresh(0);
    };
    m_drag.onDrag = [&] { EXPECT_EQ(m_desk.Items(0).at(static_cast<std::size_t>(Root().m_dragIndex)), "B"); };
    PressAndMove("B", 20, 0);
    EXPECT_EQ(m_drag.drags, 1);
}

} // namespace
