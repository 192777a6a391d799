// The fault sweep: each platform call of a step fails in turn, and the menu survives it.
//
// A step is run again and again; the n-th time its n-th call that can fail does. The sweep is over when a run makes
// fewer calls than n. Afterwards the menu must either work as ever or be cleanly gone, and nothing may be left open.
#include "tests/scenarios/dragging.h"
#include "tests/scenarios/failing.h"
#include "tests/scenarios/live_handle_counts.h"
#include "tests/scenarios/notice_reader.h"
#include "tests/scenarios/shell_spy.h"
#include "tests/scenarios/staged_ui.h"

#include "app/launcher_state.h"
#include "commands/command_table.h"
#include "platform/base/fault_points.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <string_view>

using namespace std::chrono_literals;

namespace
{

struct Step
{
    std::function<void(Desk&)> before;
    std::function<void(Desk&)> step;
    bool mayEnd = false; ///< the menu may be gone after it
    bool starts = false;
    /// Name of what comes or goes in the root's folder, if anything does: afterwards all is made as it was before.
    std::string changes = {};
};

void Open(Desk& desk)
{
    desk.Launch("100,700,0");
}

void OpenWithSubLevel(Desk& desk)
{
    Open(desk);
    desk.Click("folder");
}

class FaultSweep : public testing::TestWithParam<FaultMode>
{
protected:
    static void MakeItems(Desk& desk)
    {
        desk.ExpectBoxes();
        desk.MakeFile("folder/inside");
        desk.MakeFile("plain");
        desk.MakeShortcut("run.desktop", "run", "true");
        StoreOwnOrder(desk);
    }

    /// An arrangement of the user's own, so that a loss of it shows.
    static void StoreOwnOrder(Desk& desk) { desk.StoreOrder(kRootLayout, Order({"run.desktop", "plain", "folder"})); }

    /// False for a level that could not watch its toolbar's messages: it is shown and closed, no more.
    static bool Refreshes(Desk& desk)
    {
        const MessageCounter refreshes(desk.Level(0).m_hWnd, WM_APP_REFRESH);
        desk.Refresh(0);
        return refreshes.Count() > 0;
    }

    /// True when a start that failed in part has left the level without a folder, or without room for its items.
    static bool ShowsNothing(const Desk& desk)
    {
        return desk.Items(0) == Labels{"(Empty)"} || Faults::Failed() == "SystemParametersInfoW";
    }

    static void ExpectStarted(Desk& desk)
    {
        if (!Refreshes(desk))
            return;
        if (!ShowsNothing(desk))
            return ExpectUsable(desk);
        desk.Press(VK_ESCAPE);
        EXPECT_FALSE(desk.IsOpen()) << "the keyboard closes it";
    }

    /// True for a call that reads the folder or the store: what it did not tell has no place in the order any more.
    static bool MayLoseTheOrder(std::string_view call)
    {
        return call.starts_with("IShellFolder::") || call == "IEnumIDList::Next" || call == "CoTaskMemAlloc" ||
               call == "RegOpenKeyExW" || call == "RegQueryValueExW";
    }

    static Labels Sorted(Labels items)
    {
        std::sort(items.begin(), items.end());
        return items;
    }

    /// Everything that a person does with a menu works.
    static void ExpectUsable(Desk& desk)
    {
        while (desk.Levels() > 1)
        {
            const int levels = desk.Levels();
            desk.Press(VK_ESCAPE);
            ASSERT_EQ(desk.Levels(), levels - 1) << "the keyboard closes a sub-level";
        }
        desk.Refresh(0);
        if (MayLoseTheOrder(Faults::Failed()))
            EXPECT_EQ(Sorted(desk.Items(0)), (Labels{"folder", "plain", "run"})) << "after a refresh";
        else
            EXPECT_EQ(desk.Items(0), (Labels{"run", "plain", "folder"})) << "after a refresh";
        desk.Click("folder", 0);
        ASSERT_EQ(desk.Levels(), 2) << "a click opens the folder";
        EXPECT_EQ(desk.Items(1), Labels{"inside"});
        EXPECT_TRUE(IsWindowEnabled(desk.Level(0).m_hWnd));
        EXPECT_EQ(g_launcher.g_operationBar, nullptr);
        desk.Press(VK_ESCAPE);
        EXPECT_EQ(desk.Levels(), 1) << "the keyboard closes it";
        desk.Press(VK_ESCAPE);
        EXPECT_FALSE(desk.IsOpen());
    }

    /// Whatever has become of the one item, the others are where they were; and when it is as it was, so is the menu.
    static void ExpectArranged(Desk& desk, const std::string& changes)
    {
        EXPECT_TRUE(IsWindowEnabled(desk.Level(0).m_hWnd));
        EXPECT_EQ(g_launcher.g_operationBar, nullptr);
        EXPECT_EQ(desk.Level(0).m_contextIndex, -1);
        desk.Refresh(0);
        const Labels expected = Without({"run", "plain", "folder"}, changes);
        const Labels found = Without(desk.Items(0), changes);
        EXPECT_TRUE(found == expected || MayLoseTheOrder(Faults::Failed())) << "the others keep their places";
        std::filesystem::remove_all(desk.Folder() / changes);
        std::filesystem::remove(desk.Folder() / (changes + ".lnk"));
        desk.MakeFile("plain");
        StoreOwnOrder(desk);
        ExpectUsable(desk);
    }

    static Labels Without(Labels items, const std::string& changes)
    {
        std::erase_if(items,
                      [&](const std::string& item) { return item == changes || item == "plain" || item == "|"; });
        return items;
    }

    /// A root without its toolbar is an empty frame, which can be closed.
    static void ExpectCloses(Desk& desk)
    {
        PostMessageW(desk.Level(0).m_hWnd, WM_CLOSE, 0, 0);
        desk.Settle();
        EXPECT_FALSE(desk.IsOpen());
        EXPECT_EQ(desk.Levels(), 0);
    }

    static void ExpectCleanlyGone(Desk& desk, bool mayEnd)
    {
        EXPECT_TRUE(mayEnd) << "the menu is gone";
        EXPECT_EQ(desk.Levels(), 0);
        EXPECT_FALSE(desk.IsOpen());
    }

    /// One run with one fault; false when the step made fewer calls.
    static bool Run(const Step& step, int nth, FaultMode mode)
    {
        Desk desk;
        MakeItems(desk);
        step.before(desk);
        {
            const Faults faults(nth, mode);
            step.step(desk);
        }
        SCOPED_TRACE(Faults::Failed() + " failed, call " + std::to_string(nth));
        desk.Idle();
        if (!desk.IsOpen())
            ExpectCleanlyGone(desk, step.mayEnd);
        else if (desk.Level(0).m_toolbar == nullptr)
            ExpectCloses(desk);
        else if (step.starts)
            ExpectStarted(desk);
        else if (!step.changes.empty())
            ExpectArranged(desk, step.changes);
        else
            ExpectUsable(desk);
        return Faults::Reached();
    }

    static void Sweep(const Step& step, int atLeast)
    {
        Run(step, 1 << 30, GetParam()); // what is made once and kept is made now
        const HandleCounts before = CountHandles();
        int nth = 1;
        while (Run(step, nth, GetParam()) && !HasFatalFailure())
        {
            EXPECT_EQ(CountHandles(), before) << "left open after " << Faults::Failed() << " failed, call " << nth;
            ++nth;
        }
        EXPECT_GE(nth, atLeast) << "the sweep has swept little";
    }
};

TEST_P(FaultSweep, StartingUp)
{
    Sweep({[](Desk&) {}, Open, true, true}, 60);
}

TEST_P(FaultSweep, OpeningASubLevelByMouse)
{
    Sweep({Open,
           [](Desk& desk)
           {
               desk.RestOn("folder");
               desk.Advance(500ms);
           }},
          20);
}

TEST_P(FaultSweep, ReplacingASubLevelByKey)
{
    Sweep({OpenWithSubLevel, [](Desk& desk) { desk.Level(0).OnItemCommand(ItemCommandMode::OpenSubmenuByKey, 2); }},
          20);
}

TEST_P(FaultSweep, Refreshing)
{
    Sweep({[](Desk& desk)
           {
               desk.MakeFile("new");
               desk.Launch("100,700,0");
               desk.Press(VK_DOWN);
               std::filesystem::remove(desk.Folder() / "new");
           },
           [](Desk& desk) { desk.Refresh(); }},
          20);
}

TEST_P(FaultSweep, RefreshingBesideAnOpenSubLevel)
{
    Sweep({OpenWithSubLevel,
           [](Desk& desk)
           {
               desk.SendNotice(0);
               desk.Refresh(1);
           }},
          20);
}

TEST_P(FaultSweep, StartingAnItem)
{
    Sweep({Open, [](Desk& desk) { desk.Click("run"); }, true}, 8);
}

TEST_P(FaultSweep, ClosingALevel)
{
    Sweep({OpenWithSubLevel, [](Desk& desk) { desk.Press(VK_ESCAPE); }}, 1);
}

TEST_P(FaultSweep, CyclingTheSeparators)
{
    Sweep({Open,
           [](Desk& desk)
           {
               const RECT last = desk.ItemBounds("folder");
               desk.MoveTo({last.left + 5, last.bottom + 1});
               desk.PressMouse();
               desk.ReleaseMouse();
           }},
          10);
}

// --- arranging

void Choose(Desk& desk, int identifier)
{
    ChooseInMenu(desk, identifier, 1);
}

TEST_P(FaultSweep, DismissingAContextMenu)
{
    Sweep({Open, [](Desk& desk) { Choose(desk, 0); }}, 20);
}

TEST_P(FaultSweep, InsertingASeparator)
{
    Sweep({Open, [](Desk& desk) { Choose(desk, 5); }, false, false, "|"}, 25);
}

TEST_P(FaultSweep, InsertingAFolder)
{
    Sweep({Open,
           [](Desk& desk)
           {
               StagedMenu shell("open");
               shell.onInvoke = [&] { desk.MakeFolder("New folder"); };
               Choose(desk, 1);
           },
           false, false, "New folder"},
          25);
}

TEST_P(FaultSweep, InsertingAShortcut)
{
    Sweep({Open,
           [](Desk& desk)
           {
               StagedFiles files;
               files.pick = "/usr/share/target";
               desk.Level(0).InsertShortcut(1);
               desk.Settle();
           },
           false, false, "target"},
          25);
}

TEST_P(FaultSweep, Renaming)
{
    Sweep({Open,
           [](Desk& desk)
           {
               StagedMenu shell("rename");
               StagedDialog dialog;
               dialog.answers = {"renamed"};
               Choose(desk, StagedMenu::Identifier(0));
           },
           false, false, "renamed"},
          25);
}

TEST_P(FaultSweep, LinkingTheDesktop)
{
    Sweep({Open,
           [](Desk& desk)
           {
               Choose(desk, CustomMenu::IDM_ADD_DESKTOP); // the notice is accepted
               g_launcher.m_options = 0;
           }},
          60);
}

TEST_P(FaultSweep, LinkingTheStartMenuForGood)
{
    const auto forget = [] { RegDeleteTreeW(HKEY_LOCAL_MACHINE, TEXT("Software\\Quillfen")); };
    Sweep({[&](Desk& desk)
           {
               forget();
               Open(desk);
           },
           [](Desk& desk)
           {
               const BeforeTheBox person(
                   [](HWND box)
                   {
                       CheckDlgButton(box, kCheckBox, BST_CHECKED);
                       platform::headless::PressKey(VK_RETURN);
                       platform::headless::ReleaseKey(VK_RETURN);
                   });
               Choose(desk, CustomMenu::IDM_ADD_START_MENU);
               Choose(desk, CustomMenu::IDM_ADD_DESKTOP); // asks nothing any more
               Choose(desk, CustomMenu::IDM_ADD_START_MENU);
               g_launcher.m_options = 0;
           }},
          100);
    forget();
}

TEST_P(FaultSweep, Deleting)
{
    Sweep({Open,
           [](Desk& desk)
           {
               const StagedFiles files;
               desk.Level(0).DeleteItemFiles(1);
           },
           false, false, "plain"},
          5);
}

TEST_P(FaultSweep, Pasting)
{
    Sweep({Open,
           [](Desk& desk)
           {
               StagedMenu shell("open");
               shell.onInvoke = [&] { desk.MakeFile("pasted"); };
               desk.Level(0).PasteItems(1);
               desk.Settle();
           },
           false, false, "pasted"},
          20);
}

TEST_P(FaultSweep, CopyingAndShowingProperties)
{
    Sweep({Open,
           [](Desk& desk)
           {
               const StagedFiles files;
               StagedMenu shell("properties");
               desk.Level(0).CopyOrCutItem(1, "copy");
               Choose(desk, StagedMenu::Identifier(0));
           }},
          20);
}

// --- dragging

TEST_P(FaultSweep, DraggingWithinTheLevel)
{
    const auto drag = [](Desk& desk)
    {
        const RECT run = desk.ItemBounds("run");
        DragItem(desk, "plain",
                 {[=] { platform::headless::MoveMouse(run.left + 20, run.top + 2); },
                  [] { platform::headless::ReleaseButton(); }});
        desk.MoveTo({1, 1}); // without a drag it would be a click
        desk.ReleaseMouse();
        EXPECT_FALSE(platform::headless::ShownDragAction());
        EXPECT_TRUE(std::filesystem::exists(desk.Folder() / "plain"));
    };
    Sweep({Open, drag, false, false, "plain"}, 100);
}

TEST_P(FaultSweep, DroppingWhatAnotherProgramDrags)
{
    const auto drop = [](Desk& desk)
    {
        const std::filesystem::path file = desk.Folder().parent_path() / "notes";
        std::ofstream(file) << "text";
        platform::headless::OtherDrag drag;
        drag.offer.forms = {{"text/uri-list", "file://" + file.string() + "\r\n"}};
        drag.actions = platform::screen::kDragCopy | platform::screen::kDragLink;
        const POINT point = LowerHalf(desk, "run");
        platform::headless::StartOtherDrag(drag, point.x, point.y);
        desk.Advance(100ms);
        platform::headless::DropOtherDrag();
        desk.Settle();
        EXPECT_TRUE(std::filesystem::remove(file)) << "whatever becomes of it";
    };
    Sweep({Open, drop, false, false, "notes"}, 50);
}

INSTANTIATE_TEST_SUITE_P(Fails, FaultSweep, testing::Values(FaultMode::Once, FaultMode::FromThenOn),
                         [](const auto& info)
                         { return std::string(info.param == FaultMode::Once ? "Once" : "FromThenOn"); });

} // namespace
