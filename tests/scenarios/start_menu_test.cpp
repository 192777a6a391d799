// The Start Menu where the desktop has a menu file: programs in their categories.
#include "tests/scenarios/dragging.h"
#include "tests/scenarios/failing.h"
#include "tests/scenarios/staged_ui.h"

#include "app/options.h"
#include "commands/command_table.h"
#include "content/item_key.h"
#include "content/menu_item.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using namespace CustomMenu;

namespace
{

const WString kLevel = TEXT("Software\\Quillfen\\OrbLauncher\\Layout\\Start Menu");

/// A person with programs of their own beside everybody's. GLib looks but once where those are, so the menu file says
/// it.
class StartMenu : public testing::Test
{
protected:
    StartMenu()
    {
        fs::create_directories(m_menus);
        std::ofstream(m_menus / "applications.menu")
            << "<Menu><Name>Applications</Name><DefaultAppDirs/><AppDir>" << m_all.native() << "</AppDir>"
            << "<AppDir>" << m_own.native() << "</AppDir>"
            << "<Menu><Name>Play</Name><Include><Category>X-Play</Category></Include>"
            << "<Menu><Name>Old</Name><Include><Category>X-Old</Category></Include></Menu></Menu>"
            << "<Menu><Name>Work</Name><Include><Category>X-Work</Category></Include></Menu></Menu>";
        Install(m_all, "chess", "Chess", "X-Play");
        Install(m_all, "pong", "Pong", "X-Old");
        Install(m_all, "sums", "Sums", "X-Work");
        Install(m_own, "quake", "Quake", "X-Play");
        m_desk.StoreOptions(OPTION_START_MENU);
    }
    ~StartMenu() override
    {
        m_desk.End();
        fs::remove_all(m_menus);
        fs::remove_all(m_all);
        fs::remove_all(m_own);
    }

    static void Install(const fs::path& folder, const std::string& id, const std::string& name,
                        const std::string& category)
    {
        fs::create_directories(folder);
        std::ofstream(folder / (id + ".desktop"))
            << "[Desktop Entry]\nType=Application\nExec=true\nName=" << name << "\nCategories=" << category << ";\n";
    }
    void Open(const Labels& path)
    {
        m_desk.Launch();
        for (std::size_t i = 0; i < path.size(); ++i)
            m_desk.Click(path[i], static_cast<int>(i));
    }
    bool ComesToShow(const Labels& items)
    {
        return m_desk.WaitFor(
            [&]
            {
                Labels shown = m_desk.Items(); // what is new comes last
                std::sort(shown.begin(), shown.end());
                return shown == items;
            });
    }

    const fs::path m_home = std::getenv("HOME");
    const fs::path m_menus = m_home / "config/menus";
    const fs::path m_all = m_home / "all/applications";
    const fs::path m_own = m_home / "data/applications";
    Desk m_desk;
};

TEST_F(StartMenu, HoldsEverybodysAndOnesOwnProgramsInTheirCategories)
{
    Open({"Start Menu"});
    EXPECT_EQ(m_desk.Items(), (Labels{"Play", "Work"}));
    const MenuItem& play = m_desk.Level().m_items[0];
    EXPECT_EQ(play.flags, std::uint32_t{MIF_FOLDER | MIF_PROTECTED});
    EXPECT_TRUE(play.pidl2) << "a category in both halves is one item";
    m_desk.Click("Play");
    EXPECT_EQ(m_desk.Items(), (Labels{"Chess", "Old", "Quake"}));
    m_desk.Click("Old");
    EXPECT_EQ(m_desk.Items(), Labels{"Pong"});
}

TEST_F(StartMenu, KeepsItsOrder)
{
    Open({"Start Menu"});
    m_desk.MoveTo(CentreOf(m_desk.ItemBounds("Work")));
    m_desk.PressWith(VK_SHIFT, {VK_UP});
    ASSERT_EQ(m_desk.Items(), (Labels{"Work", "Play"}));
    m_desk.End();
    Open({"Start Menu"});
    EXPECT_EQ(m_desk.Items(), (Labels{"Work", "Play"}));
    const std::vector<std::uint8_t> stored = m_desk.StoredBytes(kLevel);
    ASSERT_EQ(stored.size(), 8u);
    const std::uint32_t key = ItemKey(TEXT("Work"));
    EXPECT_EQ(stored[0], key & 0xFF) << "by the name in the menu file, which is the same in every language";
}

TEST_F(StartMenu, FollowsProgramsThatComeAndGo)
{
    Open({"Start Menu", "Work"});
    m_desk.Idle();
    Install(m_all, "letters", "Letters", "X-Work");
    EXPECT_TRUE(ComesToShow({"Letters", "Sums"}));
    Install(m_own, "sums", "My sums", "X-Work");
    EXPECT_TRUE(ComesToShow({"Letters", "My sums"})) << "one's own goes before everybody's";
    fs::remove(m_own / "sums.desktop");
    fs::remove(m_all / "letters.desktop");
    EXPECT_TRUE(ComesToShow({"Sums"}));
    fs::remove(m_all / "sums.desktop");
    EXPECT_TRUE(ComesToShow({"(Empty)"}));
}

TEST_F(StartMenu, TellsOfAProgramThatIsGoneWhenItIsToStart)
{
    m_desk.ExpectBoxes();
    Open({"Start Menu", "Play"});
    const int chess = m_desk.IndexOf("Chess");
    ASSERT_GE(chess, 0);
    fs::remove(m_all / "chess.desktop");
    // At once: a click would let the level take the notice first.
    m_desk.Level().OnItemCommand(ItemCommandMode::Launch, chess);
    ASSERT_TRUE(m_desk.WaitFor([&] { return !m_desk.BoxTexts().empty(); }));
    EXPECT_NE(m_desk.BoxTexts().front().find("Chess\u201D could not be started"), std::string::npos);
}

TEST_F(StartMenu, RenamesAProgramForTheUserAlone)
{
    Open({"Start Menu", "Work"});
    StagedDialog dialog;
    dialog.answers = {"Rechnen"};
    StagedPopup popup;
    popup.onShow = [&]
    {
        for (const auto& entry : popup.entries)
            if (entry.text == "Rena&me")
                popup.answer = entry.identifier;
    };
    m_desk.Level().OnItemCommand(ItemCommandMode::ContextMenu, 0, 5, 5);
    EXPECT_EQ(dialog.text, "Sums");
    EXPECT_EQ(m_desk.Items(), Labels{"Rechnen"});
    m_desk.Refresh();
    EXPECT_EQ(m_desk.Items(), Labels{"Rechnen"}) << "although it is another half's now";
    EXPECT_TRUE(fs::exists(m_own / "sums.desktop"));
    std::ifstream everybodys(m_all / "sums.desktop");
    const std::string content{std::istreambuf_iterator<char>(everybodys), {}};
    EXPECT_EQ(content.find("Rechnen"), content.npos);
}

TEST_F(StartMenu, LetsNobodyWriteIntoACategory)
{
    m_desk.ExpectBoxes();
    Open({"Start Menu", "Play"});
    const Failing unseen("DialogBoxIndirectParamW"); // what they say will do
    ChooseInMenu(m_desk, IDM_INSERT_FOLDER_ABOVE, m_desk.IndexOf("Chess"), -1);
    EXPECT_EQ(m_desk.BoxTexts().size(), 1u);
    m_desk.Level().PasteItems(0);
    m_desk.Level().DeleteItemFiles(m_desk.IndexOf("Old"));
    m_desk.Level().CopyOrCutItem(m_desk.IndexOf("Old"), "cut");
    m_desk.Settle();
    EXPECT_EQ(m_desk.BoxTexts().size(), 4u);
    for (const std::string& text : m_desk.BoxTexts())
        EXPECT_NE(text.find("is part of the applications menu"), text.npos) << text;
    EXPECT_EQ(m_desk.Items(), (Labels{"Chess", "Old", "Quake"}));
    EXPECT_TRUE(IsWindowEnabled(m_desk.Level().m_hWnd));
}

// File managers moved the entry, and with it the program out of the menu.
TEST_F(StartMenu, GivesAProgramToWhoeverItIsDraggedToAndKeepsIt)
{
    namespace headless = platform::headless;
    namespace screen = platform::screen;
    m_desk.MakeFile("A");
    Open({"Start Menu", "Play"});
    const int play = m_desk.Levels() - 1;
    const RECT elsewhere{1000, 0, 1100, 100};
    headless::SetOtherTarget(
        headless::OtherTarget{elsewhere, screen::kDragCopy | screen::kDragMove | screen::kDragLink});
    DragItem(m_desk, "Old", {[] { ADD_FAILURE() << "a category is no file"; }}, screen::Button::Left, play);
    m_desk.ReleaseMouse();
    ASSERT_GT(m_desk.Levels(), play);
    int dragged = 0;
    for (const BYTE key : {BYTE{0}, BYTE{VK_SHIFT}})
    {
        m_desk.Advance(1s); // or the press would be the second of a double click
        const auto leave = [&]
        {
            if (key != 0)
                headless::PressKey(key);
            headless::MoveMouse(1050, 50);
        };
        const auto look = [&] { dragged += headless::ShownDragAction() == screen::kDragCopy; };
        DragItem(m_desk, "Quake", {leave, look, [] { headless::ReleaseButton(); }}, screen::Button::Left, play);
        m_desk.LetGo(VK_SHIFT);
    }
    EXPECT_EQ(dragged, 2);
    EXPECT_EQ(headless::DroppedOnOther("text/uri-list"), "file://" + (m_own / "quake.desktop").native() + "\r\n");
    m_desk.Advance(1s);
    const POINT below = LowerHalf(m_desk, "A", 0);
    DragItem(m_desk, "Quake", {[&] { headless::MoveMouse(below.x, below.y); }, [] { headless::ReleaseButton(); }},
             screen::Button::Left, play);
    EXPECT_TRUE(m_desk.WaitFor([&] { return m_desk.Items(0) == Labels{"A", "Quake", "Start Menu"}; }));
    EXPECT_TRUE(fs::is_symlink(m_desk.Folder() / "quake.desktop"));
    EXPECT_TRUE(fs::exists(m_own / "quake.desktop"));
}

} // namespace
