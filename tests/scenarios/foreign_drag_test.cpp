// What another program drags over the menu and drops there, from the screen's events to the files.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/staged_ui.h"

#include "app/launcher_state.h"

#include <gtest/gtest.h>

#include <fstream>

namespace fs = std::filesystem;
namespace headless = platform::headless;
namespace screen = platform::screen;
using namespace std::chrono_literals;
using namespace CustomMenu;

namespace
{

constexpr screen::DragActions kAll = screen::kDragCopy | screen::kDragMove | screen::kDragLink;

class ForeignDrag : public testing::Test
{
protected:
    ForeignDrag()
    {
        m_desk.MakeFile("A");
        m_desk.MakeFile("B");
        m_desk.MakeFile("Games/chess");
        fs::create_directories(m_elsewhere);
        std::ofstream(m_elsewhere / "notes") << "text";
        // A box that tells of the file work is to go by itself.
        headless::SetIdleHandler(nullptr);
    }
    ~ForeignDrag() override { fs::remove_all(m_elsewhere); }

    headless::OtherDrag Files(screen::DragActions actions = kAll)
    {
        headless::OtherDrag drag;
        drag.offer.forms = {{"text/uri-list", "file://" + (m_elsewhere / "notes").string() + "\r\n"}};
        drag.actions = actions;
        return drag;
    }
    POINT LowerHalf(const std::string& item, int level = 0)
    {
        const RECT rect = m_desk.ItemBounds(item, level);
        return {rect.left + 20, rect.bottom - 2};
    }
    void Start(headless::OtherDrag drag, POINT point, unsigned modifiers = 0)
    {
        headless::StartOtherDrag(std::move(drag), point.x, point.y, modifiers);
        m_desk.Settle();
    }
    void Move(POINT point)
    {
        headless::MoveOtherDrag(point.x, point.y);
        m_desk.Settle();
    }
    void Drop()
    {
        headless::DropOtherDrag();
        EXPECT_TRUE(m_desk.WaitFor([] { return headless::DoneForOther().has_value(); }));
    }
    bool ItemsBecome(const Labels& items, int level = 0)
    {
        return m_desk.WaitFor([&] { return m_desk.Levels() > level && m_desk.Items(level) == items; });
    }
    int MarkedButton(int level = 0)
    {
        TBINSERTMARK mark{};
        m_desk.Level(level).SendToolbar(TB_GETINSERTMARK, 0, reinterpret_cast<LPARAM>(&mark));
        return mark.iButton;
    }

    Desk m_desk;
    fs::path m_elsewhere = m_desk.Folder().parent_path() / "elsewhere";
};

TEST_F(ForeignDrag, OfAFileBecomesALinkWhereTheMarkIs)
{
    m_desk.Launch("100,700,0");
    Start(Files(), LowerHalf("A"));
    EXPECT_EQ(headless::AnswerToOther(), screen::kDragLink);
    EXPECT_EQ(MarkedButton(), 0);
    Drop();
    EXPECT_EQ(headless::DoneForOther(), screen::kDragLink);
    EXPECT_EQ(MarkedButton(), -1);
    ASSERT_TRUE(ItemsBecome({"A", "notes", "B", "Games"}));
    EXPECT_TRUE(fs::is_symlink(m_desk.Folder() / "notes"));
    EXPECT_TRUE(fs::exists(m_elsewhere / "notes"));
    EXPECT_TRUE(IsWindowEnabled(m_desk.Level(0).m_hWnd));
}

TEST_F(ForeignDrag, KeysCopyAndMove)
{
    m_desk.Launch("100,700,0");
    Start(Files(), LowerHalf("B"), screen::kControl);
    EXPECT_EQ(headless::AnswerToOther(), screen::kDragCopy);
    Drop();
    EXPECT_EQ(headless::DoneForOther(), screen::kDragCopy);
    ASSERT_TRUE(ItemsBecome({"A", "B", "notes", "Games"}));
    fs::remove(m_desk.Folder() / "notes");
    ASSERT_TRUE(ItemsBecome({"A", "B", "Games"}));
    Start(Files(), LowerHalf("A"), screen::kShift);
    EXPECT_EQ(headless::AnswerToOther(), screen::kDragMove);
    Drop();
    ASSERT_TRUE(ItemsBecome({"A", "notes", "B", "Games"}));
    EXPECT_FALSE(fs::exists(m_elsewhere / "notes"));
}

TEST_F(ForeignDrag, RightButtonAsksWithTheMenuDisabled)
{
    m_desk.Launch("100,700,0");
    StagedPopup popup;
    popup.answer = DROPEFFECT_COPY;
    popup.onShow = [&] { EXPECT_FALSE(IsWindowEnabled(m_desk.Level(0).m_hWnd)); };
    Start(Files(kAll | screen::kDragAsk), LowerHalf("A"));
    EXPECT_EQ(headless::AnswerToOther(), screen::kDragAsk);
    Drop();
    EXPECT_EQ(popup.shown, 1);
    EXPECT_EQ(headless::DoneForOther(), screen::kDragCopy);
    ASSERT_TRUE(ItemsBecome({"A", "notes", "B", "Games"}));
    popup.answer = 0;
    Start(Files(kAll | screen::kDragAsk), LowerHalf("B"));
    Drop();
    EXPECT_EQ(headless::DoneForOther(), 0u) << "the user has changed his mind";
}

TEST_F(ForeignDrag, OfTextIsRefusedAndOpensFoldersAllTheSameWhileItRests)
{
    m_desk.Launch("100,700,0");
    headless::OtherDrag text;
    text.offer.forms = {{"UTF8_STRING", "words"}};
    text.actions = kAll;
    Start(text, LowerHalf("Games"));
    EXPECT_EQ(headless::AnswerToOther(), 0u);
    EXPECT_EQ(MarkedButton(), 2);
    m_desk.Advance(600ms);
    ASSERT_EQ(m_desk.Levels(), 2) << "though nothing has moved";
    Move(LowerHalf("chess", 1));
    EXPECT_EQ(MarkedButton(0), -1) << "it has left the first level";
    EXPECT_EQ(MarkedButton(1), 0);
    headless::DropOtherDrag();
    m_desk.Settle();
    EXPECT_EQ(MarkedButton(1), -1);
    EXPECT_EQ(m_desk.Items(1), Labels{"chess"});
}

TEST_F(ForeignDrag, ThatEndsOrClosesTheMenuLeavesNothingBehind)
{
    m_desk.Launch("100,700,0");
    Start(Files(), LowerHalf("A"));
    headless::EndOtherDrag();
    m_desk.Settle();
    EXPECT_EQ(MarkedButton(), -1);
    EXPECT_EQ(m_desk.Level(0).m_dropData.Get(), nullptr);
    Start(Files(), LowerHalf("Games"));
    m_desk.Advance(600ms);
    Move(LowerHalf("chess", 1));
    DestroyWindow(m_desk.Level(1).m_hWnd);
    EXPECT_EQ(m_desk.Levels(), 1) << "nobody holds the level any more";
    Move(LowerHalf("A"));
    EXPECT_EQ(headless::AnswerToOther(), screen::kDragLink);
    DestroyWindow(m_desk.Level(0).m_hWnd);
    EXPECT_EQ(m_desk.Levels(), 0);
    headless::DropOtherDrag();
    m_desk.Settle();
    EXPECT_FALSE(fs::exists(m_desk.Folder() / "notes"));
}

TEST_F(ForeignDrag, ItemsThatChangeUnderItGetTheMarkAgain)
{
    m_desk.Launch("100,700,0");
    Start(Files(), LowerHalf("B"));
    fs::remove(m_desk.Folder() / "A");
    m_desk.Refresh(0);
    m_desk.Advance(100ms);
    EXPECT_EQ(MarkedButton(), 0) << "on what is under the resting drag: the menu stands on its lower edge";
    Drop();
    EXPECT_TRUE(ItemsBecome({"B", "notes", "Games"}));
}

// A level that was refreshed since the pointer last moved had lost its mark, and the drop did nothing.
TEST_F(ForeignDrag, IsDroppedWhereItIsThoughTheItemsHaveJustChanged)
{
    m_desk.Launch("100,700,0");
    Start(Files(), LowerHalf("A"));
    fs::rename(m_desk.Folder() / "B", m_desk.Folder() / "C");
    m_desk.Refresh(0);
    ASSERT_EQ(m_desk.Items(), (Labels{"A", "Games", "C"}));
    Drop();
    EXPECT_EQ(headless::DoneForOther(), screen::kDragLink);
    EXPECT_TRUE(ItemsBecome({"A", "notes", "Games", "C"}));
}

class DragOverALongLevel : public ForeignDrag
{
protected:
    DragOverALongLevel()
    {
        for (int i = 100; i < 200; ++i)
            m_desk.MakeFile("item " + std::to_string(i));
        m_desk.Launch("100,700,0");
        Start(Files(), CentreOf(m_desk.ItemBounds("item 110", 0)));
    }

    HWND Pager() { return m_desk.Level(0).m_pager; }
    int Position() { return static_cast<int>(SendMessageW(Pager(), PGM_GETPOS, 0, 0)); }
    RECT PagerBounds()
    {
        RECT bounds{};
        GetWindowRect(Pager(), &bounds);
        return bounds;
    }
    POINT LowerButton() { return {(PagerBounds().left + PagerBounds().right) / 2, PagerBounds().bottom - 2}; }
    POINT UpperButton() { return {LowerButton().x, PagerBounds().top + 2}; }
    int ItemHeight() { return HIWORD(m_desk.Level(0).SendToolbar(TB_GETBUTTONSIZE)); }
};

TEST_F(DragOverALongLevel, ScrollsWhileItRestsOnAButton)
{
    ASSERT_NE(Pager(), nullptr);
    EXPECT_GE(MarkedButton(), 0);
    Move(LowerButton());
    SendMessageW(Pager(), WM_MOUSELEAVE, 0, 0); // the other program has the mouse
    EXPECT_EQ(headless::AnswerToOther(), 0u) << "nothing is taken there";
    EXPECT_EQ(MarkedButton(), -1);
    m_desk.Advance(200ms);
    EXPECT_EQ(Position(), 4 * ItemHeight()) << "an item in 50 ms, as the mouse scrolls";
    Move(CentreOf(PagerBounds()));
    EXPECT_GE(MarkedButton(), 0);
    m_desk.Advance(200ms);
    EXPECT_EQ(Position(), 4 * ItemHeight());
    Move(UpperButton());
    m_desk.Advance(100ms);
    EXPECT_EQ(Position(), 2 * ItemHeight());
    headless::EndOtherDrag();
    m_desk.Settle();
    m_desk.Advance(500ms);
    EXPECT_EQ(Position(), 2 * ItemHeight()) << "not without a drag";
}

TEST_F(DragOverALongLevel, ScrollingClosesDeeperLevels)
{
    Move(CentreOf(m_desk.ItemBounds("Games", 0)));
    m_desk.Advance(600ms);
    ASSERT_EQ(m_desk.Levels(), 2);
    Move(LowerButton());
    m_desk.Advance(60ms);
    EXPECT_EQ(m_desk.Levels(), 1);
}

TEST_F(DragOverALongLevel, PagerThatGoesUnderItIsLeftAlone)
{
    Move(LowerButton());
    for (int i = 110; i < 200; ++i)
        fs::remove(m_desk.Folder() / ("item " + std::to_string(i)));
    m_desk.Refresh(0);
    ASSERT_EQ(Pager(), nullptr);
    m_desk.Advance(500ms);
    Move(LowerHalf("A"));
    EXPECT_EQ(headless::AnswerToOther(), screen::kDragLink);
    headless::EndOtherDrag();
    m_desk.Settle();
}

} // namespace
