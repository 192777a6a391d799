// Items that a person drags within the menu, from press to release.
#include "tests/scenarios/desk.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace fs = std::filesystem;
namespace headless = platform::headless;
using namespace std::chrono_literals;
using Labels = std::vector<std::string>;
using platform::screen::Button;

namespace
{

class OwnDrag : public testing::Test
{
protected:
    OwnDrag()
    {
        for (const char* name : {"A", "B", "C", "D", "E", "Games/chess"})
            m_desk.MakeFile(name);
        m_desk.Launch("100,700,0");
    }

    POINT LowerHalf(const std::string& item, int level = 0)
    {
        const RECT rect = m_desk.ItemBounds(item, level);
        return {rect.left + 20, rect.bottom - 3};
    }
    /// The drag itself runs its own loop: what the person does next is done when the program waits.
    void Drag(const std::string& item, std::vector<std::function<void()>> steps, Button button = Button::Left)
    {
        const POINT point = CentreOf(m_desk.ItemBounds(item, 0));
        m_desk.MoveTo({point.x - 1, point.y});
        m_desk.MoveTo(point);
        m_desk.PressMouse(button);
        headless::SetIdleHandler(
            [steps = std::move(steps), next = std::size_t{0}]() mutable
            {
                if (next == steps.size() || !headless::ShownDragAction())
                    return false;
                steps[next++]();
                return true;
            });
        m_desk.MoveTo({point.x + 20, point.y});
        headless::SetIdleHandler(nullptr);
        m_desk.Settle();
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
             {[&] { headless::MoveMouse(to.x, to.y); }, [&] { image = headless::ShownDragImage(); },
              [&] { headless::ReleaseButton(button); }},
             button);
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
    Drag("B", {[&] { headless::MoveMouse(to.x, to.y); }, [] { headless::PressKey(VK_ESCAPE); }});
    m_desk.LetGo(VK_ESCAPE);
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "B", "C", "D", "E", "Games"}));
    EXPECT_TRUE(m_desk.IsOpen());
    m_desk.MoveTo({1, 1});
    m_desk.ReleaseMouse();
    EXPECT_TRUE(m_desk.IsOpen());
}

TEST_F(OwnDrag, ToAFolderThatItOpensMovesTheFile)
{
    const POINT games = CentreOf(m_desk.ItemBounds("Games", 0));
    POINT chess{};
    Drag("B", {[&] { headless::MoveMouse(games.x, games.y); }, [&] { m_desk.Advance(600ms); },
               [&]
               {
                   ASSERT_EQ(m_desk.Levels(), 2);
                   chess = LowerHalf("chess", 1);
                   headless::MoveMouse(chess.x, chess.y);
               },
               [] { headless::ReleaseButton(); }});
    EXPECT_TRUE(m_desk.WaitFor([&] { return m_desk.Levels() == 2 && m_desk.Items(1) == Labels{"chess", "B"}; }));
    EXPECT_TRUE(m_desk.WaitFor([&] { return m_desk.Items(0) == Labels{"A", "C", "D", "E", "Games"}; }));
    EXPECT_TRUE(fs::exists(m_desk.Folder() / "Games/B"));
    EXPECT_FALSE(fs::exists(m_desk.Folder() / "B"));
}

} // namespace
