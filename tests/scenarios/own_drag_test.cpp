// Items that a person drags within the menu, from press to release.
#include "tests/scenarios/dragging.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

#include <optional>

namespace fs = std::filesystem;
namespace headless = platform::headless;
using namespace std::chrono_literals;
using platform::screen::Button;

namespace
{

class OwnDrag : public testing::Test
{
protected:
    explicit OwnDrag(int more = 0)
    {
        for (int i = 0; i < more; ++i)
            m_desk.MakeFile("item " + std::to_string(100 + i));
        for (const char* name : {"A", "B", "C", "D", "E", "Games/chess"})
            m_desk.MakeFile(name);
        m_desk.Launch("100,700,0");
    }

    POINT LowerHalf(const std::string& item, int level = 0) { return ::LowerHalf(m_desk, item, level); }
    // Steps. An item is looked for when it is its turn.
    static DragStep To(POINT point)
    {
        return [point] { headless::MoveMouse(point.x, point.y); };
    }
    DragStep ToLowerHalf(const std::string& item, int level = 0)
    {
        return [=, this]
        {
            ASSERT_GT(m_desk.Levels(), level);
            To(LowerHalf(item, level))();
        };
    }
    DragStep Rest(std::chrono::milliseconds time)
    {
        return [=, this] { m_desk.Advance(time); };
    }
    void Drag(const std::string& item, std::vector<DragStep> steps, Button button = Button::Left)
    {
        DragItem(m_desk, item, std::move(steps), button);
    }

    Desk m_desk;
};

TEST_F(OwnDrag, WithinTheLevelMovesTheItemAndNothingElse)
{
    for (const Button button : {Button::Left, Button::Right})
    {
        const POINT to = LowerHalf(m_desk.Items()[3]);
        std::optional<platform::screen::DragImage> image;
        Drag(m_desk.Items()[1],
             {To(to), [&] { image = headless::ShownDragImage(); }, [&] { headless::ReleaseButton(button); }}, button);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->size.cx, 96);
        EXPECT_EQ(image->hotSpot.x, 48);
        EXPECT_EQ(image->hotSpot.y, 89);
        EXPECT_EQ(g_launcher.g_operationBar, nullptr);
        EXPECT_FALSE(headless::ShownDragAction()) << "the drag is over";
    }
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "D", "B", "C", "E", "Games"}));
    EXPECT_TRUE(m_desk.IsOpen()) << "no click and no context menu";
    EXPECT_TRUE(fs::exists(m_desk.Folder() / "B"));
}

TEST_F(OwnDrag, EscapeLeavesEverythingAsItWas)
{
    const POINT to = LowerHalf("D");
    m_desk.LetGo(VK_ESCAPE); // the keyboard's state is the process's
    Drag("B", {To(to), [] { headless::PressKey(VK_ESCAPE); }});
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "B", "C", "D", "E", "Games"}));
    EXPECT_TRUE(m_desk.IsOpen());
    m_desk.MoveTo({1, 1});
    m_desk.ReleaseMouse();
    EXPECT_TRUE(m_desk.IsOpen());
}

TEST_F(OwnDrag, ToAFolderThatItOpensMovesTheFile)
{
    const POINT games = CentreOf(m_desk.ItemBounds("Games", 0));
    Drag("B", {To(games), Rest(600ms), ToLowerHalf("chess", 1), kRelease});
    EXPECT_TRUE(m_desk.WaitFor([&] { return m_desk.Levels() == 2 && m_desk.Items(1) == Labels{"chess", "B"}; }));
    EXPECT_TRUE(m_desk.WaitFor([&] { return m_desk.Items(0) == Labels{"A", "C", "D", "E", "Games"}; }));
    EXPECT_TRUE(fs::exists(m_desk.Folder() / "Games/B"));
    EXPECT_FALSE(fs::exists(m_desk.Folder() / "B"));
}

TEST_F(OwnDrag, FolderIntoItselfIsRefusedAndStays)
{
    const POINT games = CentreOf(m_desk.ItemBounds("Games", 0));
    Drag("Games", {To(games), Rest(600ms), ToLowerHalf("chess", 1), kRelease});
    EXPECT_TRUE(fs::exists(m_desk.Folder() / "Games/chess"));
    EXPECT_EQ(m_desk.Items(0), (Labels{"A", "B", "C", "D", "E", "Games"}));
    EXPECT_EQ(g_launcher.g_operationBar, nullptr);
    EXPECT_TRUE(IsWindowEnabled(m_desk.Level(0).m_hWnd));
}

TEST_F(OwnDrag, ItemsThatGoUnderItMoveThePlace)
{
    Drag("B", {ToLowerHalf("D"),
               [&]
               {
                   for (const char* name : {"A", "C", "E"})
                       fs::remove(m_desk.Folder() / name);
                   m_desk.Refresh(0);
               },
               ToLowerHalf("Games"), kRelease});
    EXPECT_EQ(m_desk.Items(), (Labels{"D", "Games", "B"}));
}

// As with another program's drag, the mark was lost.
TEST_F(OwnDrag, GoesWhereItIsThoughTheItemsHaveJustChanged)
{
    Drag("B", {ToLowerHalf("D"), [&]
               {
                   fs::rename(m_desk.Folder() / "E", m_desk.Folder() / "F");
                   m_desk.Refresh(0);
                   ASSERT_EQ(m_desk.Items(), (Labels{"A", "B", "C", "D", "Games", "F"}));
                   headless::ReleaseButton();
               }});
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "C", "D", "B", "Games", "F"}));
}

TEST_F(OwnDrag, EndsWithTheMenuThatAnotherProgramCloses)
{
    const POINT to = LowerHalf("D");
    const HWND root = m_desk.Level(0).m_hWnd;
    Drag("B", {To(to),
               [&]
               {
                   PostMessageW(root, WM_CLOSE, 0, 0);
                   m_desk.Settle();
               },
               kRelease});
    EXPECT_FALSE(m_desk.IsOpen());
    EXPECT_EQ(m_desk.Levels(), 0);
    EXPECT_EQ(g_launcher.g_operationBar, nullptr);
    EXPECT_FALSE(headless::ShownDragAction());
    EXPECT_TRUE(fs::exists(m_desk.Folder() / "B"));
}

TEST_F(OwnDrag, LevelThatGoesUnderThePointerTakesNothing)
{
    const POINT games = CentreOf(m_desk.ItemBounds("Games", 0));
    Drag("B",
         {To(games), Rest(600ms), ToLowerHalf("chess", 1), [&] { DestroyWindow(m_desk.Level(1).m_hWnd); }, kRelease});
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_TRUE(fs::exists(m_desk.Folder() / "B"));
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "B", "C", "D", "E", "Games"}));
    EXPECT_EQ(GetActiveWindow(), m_desk.Level(0).m_hWnd);
}

TEST_F(OwnDrag, QuittingEndsItAndIsHeardAfterwards)
{
    m_desk.RestOn("B");
    m_desk.PressMouse();
    headless::SetIdleHandler(
        []
        {
            PostQuitMessage(7);
            return true;
        });
    m_desk.Level(0).BeginItemDrag(1);
    headless::SetIdleHandler(nullptr);
    EXPECT_FALSE(headless::ShownDragAction());
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT)
        DispatchMessageW(&message);
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 7u);
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "B", "C", "D", "E", "Games"}));
}

class OwnDragInALongLevel : public OwnDrag
{
protected:
    OwnDragInALongLevel() : OwnDrag(100) {}
};

TEST_F(OwnDragInALongLevel, ScrollsItAndGoesWhereTheMarkIs)
{
    RECT pager{};
    ASSERT_TRUE(GetWindowRect(m_desk.Level(0).m_pager, &pager));
    const HWND toolbar = m_desk.Level(0).m_toolbar;
    Labels expected = m_desk.Items();
    POINT point{};
    const std::string dragged = "B";
    std::string marked;
    Drag(dragged, {[&] { headless::MoveMouse((pager.left + pager.right) / 2, pager.bottom - 2); }, Rest(200ms),
                   [&]
                   {
                       EXPECT_GT(SendMessageW(m_desk.Level(0).m_pager, PGM_GETPOS, 0, 0), 0);
                       RECT shown{};
                       GetWindowRect(m_desk.Level(0).m_pager, &shown);
                       point = {(shown.left + shown.right) / 2, (shown.top + shown.bottom) / 2};
                       headless::MoveMouse(point.x, point.y);
                   },
                   [&]
                   {
                       TBINSERTMARK mark{};
                       SendMessageW(toolbar, TB_GETINSERTMARK, 0, reinterpret_cast<LPARAM>(&mark));
                       ASSERT_GE(mark.iButton, 0);
                       marked = m_desk.Items().at(static_cast<std::size_t>(mark.iButton));
                       const RECT rect = m_desk.ItemBounds(marked, 0);
                       EXPECT_TRUE(PtInRect(&rect, point)) << marked;
                       EXPECT_EQ(mark.dwFlags, point.y > (rect.top + rect.bottom) / 2 ? DWORD{TBIMHT_AFTER} : 0u);
                       std::erase(expected, dragged);
                       const auto at = std::find(expected.begin(), expected.end(), marked);
                       expected.insert(mark.dwFlags == TBIMHT_AFTER ? at + 1 : at, dragged);
                   },
                   kRelease});
    EXPECT_FALSE(marked.empty());
    EXPECT_EQ(m_desk.Items(), expected);
}

} // namespace
