// Moving through the menu: hovering, cascading, keys, closing.
#include "tests/scenarios/desk.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{

class MovingThrough : public testing::Test
{
protected:
    MovingThrough()
    {
        m_desk.MakeFile("Games/Arcade/pong");
        m_desk.MakeFile("Games/chess");
        m_desk.MakeFolder("Office");
        m_desk.MakeFile("readme");
        m_desk.Launch("100,700,0");
    }

    Desk m_desk;
};

TEST_F(MovingThrough, RestingOnAFolderOpensItAfterTheMenuDelay)
{
    m_desk.RestOn("Games");
    m_desk.Advance(390ms);
    EXPECT_EQ(m_desk.Levels(), 1);
    m_desk.Advance(20ms);
    ASSERT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(m_desk.Items(), (Labels{"Arcade", "chess"}));
    EXPECT_EQ(m_desk.Hot(0), "Games");
    EXPECT_EQ(m_desk.Hot(1), "") << "opened by mouse, nothing is highlighted";
    EXPECT_EQ(m_desk.Bounds(1).left, m_desk.ItemBounds("Games", 0).right);
    EXPECT_EQ(m_desk.Bounds(1).top, m_desk.ItemBounds("Games", 0).top);
}

TEST_F(MovingThrough, MovingOnReplacesTheSubLevel)
{
    m_desk.RestOn("Games");
    m_desk.Advance(500ms);
    ASSERT_EQ(m_desk.Levels(), 2);
    m_desk.RestOn("Arcade", 1);
    m_desk.Advance(500ms);
    ASSERT_EQ(m_desk.Levels(), 3);
    EXPECT_EQ(m_desk.Hot(0), "Games");
    m_desk.RestOn("Office", 0);
    m_desk.Advance(500ms);
    ASSERT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(m_desk.Items(), Labels{"(Empty)"});
    EXPECT_EQ(m_desk.Hot(0), "Office");
}

TEST_F(MovingThrough, RestingOnAPlainItemClosesTheSubLevel)
{
    m_desk.RestOn("Games");
    m_desk.Advance(500ms);
    m_desk.RestOn("readme", 0);
    EXPECT_EQ(m_desk.Levels(), 2);
    m_desk.Advance(500ms);
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_EQ(m_desk.Hot(), "readme");
}

TEST_F(MovingThrough, TheOpenerStaysHighlightedWhenTheMouseLeaves)
{
    m_desk.RestOn("Games");
    m_desk.Advance(500ms);
    m_desk.MoveTo({1500, 100});
    m_desk.Advance(100ms);
    EXPECT_EQ(m_desk.Hot(0), "Games");
    EXPECT_EQ(m_desk.Levels(), 2);
}

TEST_F(MovingThrough, ClicksOpenFoldersAtOnce)
{
    m_desk.Click("Games");
    EXPECT_EQ(m_desk.Levels(), 2);
    const HWND child = m_desk.Level(1).m_hWnd;
    m_desk.Click("Games", 0);
    ASSERT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(m_desk.Level(1).m_hWnd, child) << "a click on the open folder changes nothing";
    m_desk.Click("Office", 0);
    EXPECT_EQ(m_desk.Items(), Labels{"(Empty)"});
}

TEST_F(MovingThrough, KeysWalkOpenAndClose)
{
    m_desk.Press(VK_DOWN);
    EXPECT_EQ(m_desk.Hot(), "Games");
    m_desk.Press(VK_RIGHT);
    ASSERT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(m_desk.Hot(), "Arcade") << "opened by key, the first item is highlighted";
    m_desk.Press(VK_RETURN);
    ASSERT_EQ(m_desk.Levels(), 3);
    EXPECT_EQ(m_desk.Hot(), "pong");
    m_desk.Press(VK_LEFT);
    EXPECT_EQ(m_desk.Levels(), 2);
    EXPECT_EQ(m_desk.Hot(1), "Arcade");
    m_desk.Press(VK_ESCAPE);
    EXPECT_EQ(m_desk.Levels(), 1);
    m_desk.Press(VK_LEFT);
    EXPECT_TRUE(m_desk.IsOpen()) << "Left never ends the program";
    m_desk.Press(VK_ESCAPE);
    EXPECT_FALSE(m_desk.IsOpen());
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
