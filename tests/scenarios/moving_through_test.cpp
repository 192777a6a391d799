// Moving through the menu: hovering, cascading, keys, closing.
#include "tests/scenarios/desk.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using Labels = std::vector<std::string>;

namespace
{

class MovingThrough : public testing::Test
{
protected:
    MovingThrough()
    {
        desk.MakeFile("Games/Arcade/pong");
        desk.MakeFile("Games/chess");
        desk.MakeFolder("Office");
        desk.MakeFile("readme");
        desk.Launch("100,700,0");
    }

    Desk desk;
};

TEST_F(MovingThrough, RestingOnAFolderOpensItAfterTheMenuDelay)
{
    desk.RestOn("Games");
    desk.Advance(390ms);
    EXPECT_EQ(desk.Levels(), 1);
    desk.Advance(20ms);
    ASSERT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Items(), (Labels{"Arcade", "chess"}));
    EXPECT_EQ(desk.Hot(0), "Games");
    EXPECT_EQ(desk.Hot(1), "") << "opened by mouse, nothing is highlighted";
    EXPECT_EQ(desk.Bounds(1).left, desk.ItemBounds("Games", 0).right);
    EXPECT_EQ(desk.Bounds(1).top, desk.ItemBounds("Games", 0).top);
}

TEST_F(MovingThrough, MovingOnReplacesTheSubLevel)
{
    desk.RestOn("Games");
    desk.Advance(500ms);
    ASSERT_EQ(desk.Levels(), 2);
    desk.RestOn("Arcade", 1);
    desk.Advance(500ms);
    ASSERT_EQ(desk.Levels(), 3);
    EXPECT_EQ(desk.Hot(0), "Games");
    desk.RestOn("Office", 0);
    desk.Advance(500ms);
    ASSERT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Items(), Labels{"(Empty)"});
    EXPECT_EQ(desk.Hot(0), "Office");
}

TEST_F(MovingThrough, RestingOnAPlainItemClosesTheSubLevel)
{
    desk.RestOn("Games");
    desk.Advance(500ms);
    desk.RestOn("readme", 0);
    EXPECT_EQ(desk.Levels(), 2);
    desk.Advance(500ms);
    EXPECT_EQ(desk.Levels(), 1);
    EXPECT_EQ(desk.Hot(), "readme");
}

TEST_F(MovingThrough, TheOpenerStaysHighlightedWhenTheMouseLeaves)
{
    desk.RestOn("Games");
    desk.Advance(500ms);
    desk.MoveTo({1500, 100});
    desk.Advance(100ms);
    EXPECT_EQ(desk.Hot(0), "Games");
    EXPECT_EQ(desk.Levels(), 2);
}

TEST_F(MovingThrough, ClicksOpenFoldersAtOnce)
{
    desk.Click("Games");
    EXPECT_EQ(desk.Levels(), 2);
    const HWND child = desk.Level(1).m_hWnd;
    desk.Click("Games", 0);
    ASSERT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Level(1).m_hWnd, child) << "a click on the open folder changes nothing";
    desk.Click("Office", 0);
    EXPECT_EQ(desk.Items(), Labels{"(Empty)"});
}

TEST_F(MovingThrough, KeysWalkOpenAndClose)
{
    desk.Press(VK_DOWN);
    EXPECT_EQ(desk.Hot(), "Games");
    desk.Press(VK_RIGHT);
    ASSERT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Hot(), "Arcade") << "opened by key, the first item is highlighted";
    desk.Press(VK_RETURN);
    ASSERT_EQ(desk.Levels(), 3);
    EXPECT_EQ(desk.Hot(), "pong");
    desk.Press(VK_LEFT);
    EXPECT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Hot(1), "Arcade");
    desk.Press(VK_ESCAPE);
    EXPECT_EQ(desk.Levels(), 1);
    desk.Press(VK_LEFT);
    EXPECT_TRUE(desk.IsOpen()) << "Left never ends the program";
    desk.Press(VK_ESCAPE);
    EXPECT_FALSE(desk.IsOpen());
}

TEST_F(MovingThrough, ShiftMovesAnItemAndTheOrderIsKept)
{
    desk.Press(VK_DOWN);
    desk.Hold(VK_SHIFT);
    desk.Press(VK_DOWN);
    desk.LetGo(VK_SHIFT);
    EXPECT_EQ(desk.Items(), (Labels{"Office", "Games", "readme"}));
    EXPECT_EQ(desk.Hot(), "Games");
    desk.Press(VK_DOWN);
    EXPECT_EQ(desk.Hot(), "readme");
    desk.Hold('S');
    EXPECT_EQ(desk.Hot(), "readme");
    desk.LetGo('S');
    EXPECT_EQ(desk.Items(), (Labels{"Office", "Games", "|", "readme"}));
    EXPECT_EQ(desk.Hot(), "readme");
}

TEST_F(MovingThrough, AnotherProgramClosesTheMenuUnlessItIsDisabled)
{
    desk.RestOn("Games");
    desk.Advance(500ms);
    desk.Level(0).EnableMenu(false);
    desk.SwitchToOtherProgram();
    EXPECT_EQ(desk.Levels(), 2) << "a menu that waits for its own operation stays";
    desk.Level(0).EnableMenu(true);
    desk.SwitchToOtherProgram();
    EXPECT_EQ(desk.Levels(), 0);
    EXPECT_FALSE(desk.IsOpen());
}

TEST(MovingAcross, SubLevelsOpenToTheLeftAndUpwardAtTheEdges)
{
    Desk desk("800x600+0+0");
    for (int i = 0; i < 10; ++i)
        desk.MakeFile("folder/item " + std::to_string(i));
    desk.MakeFile("zz");
    desk.Launch("800,600,1");
    desk.Click("folder");
    ASSERT_EQ(desk.Levels(), 2);
    EXPECT_EQ(desk.Bounds(1).right, desk.ItemBounds("folder", 0).left);
    EXPECT_EQ(desk.Bounds(1).bottom, desk.ItemBounds("folder", 0).bottom);
}

TEST(MovingAcross, StartsWhatIsClickedAndCloses)
{
    Desk desk;
    const std::filesystem::path proof = desk.Folder().parent_path() / "proof";
    std::filesystem::remove(proof);
    desk.MakeShortcut("prove.desktop", "Prove it", "touch " + proof.string());
    desk.Launch();
    ASSERT_EQ(desk.Items(), Labels{"Prove it"});
    desk.Click("Prove it");
    EXPECT_FALSE(desk.IsOpen());
    EXPECT_TRUE(desk.WaitFor([&] { return std::filesystem::exists(proof); }));
}

TEST(MovingAcross, AStartThatFailsIsExplainedAndEndsTheMenuAsAnyOther)
{
    for (const char* item : {"Broken", "nowhere", "loop"})
    {
        Desk desk;
        desk.MakeShortcut("broken.desktop", "Broken", "/nonexistent/program");
        std::filesystem::create_symlink("nothing here", desk.Folder() / "nowhere");
        std::filesystem::create_symlink("loop", desk.Folder() / "loop");
        desk.ExpectBoxes();
        desk.Launch();
        ASSERT_EQ(desk.Items(), (Labels{"Broken", "loop", "nowhere"}));
        desk.Click(item);
        EXPECT_EQ(desk.Boxes(), 1) << item;
        EXPECT_FALSE(desk.IsOpen()) << item;
    }
}

} // namespace
