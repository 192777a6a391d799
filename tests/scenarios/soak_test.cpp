// The soak: what a menu does all day, a great many times, with nothing left behind.
//
// ORB_SOAK is the number of rounds, 1000 when not set.
#include "tests/scenarios/dragging.h"
#include "tests/scenarios/live_handle_counts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

using namespace std::chrono_literals;

namespace
{

int Rounds()
{
    const char* const rounds = std::getenv("ORB_SOAK");
    const int number = rounds != nullptr ? std::atoi(rounds) : 1000;
    return number > 0 ? number : 1000;
}

/// Live handles must be as many at the end as after a few rounds, when everything made once has been made.
template <typename Round>
void Soak(Round round)
{
    for (int i = 0; i < 10; ++i)
        round(i);
    const HandleCounts before = CountHandles();
    for (int i = 10; i < Rounds() && !testing::Test::HasFailure(); ++i)
    {
        round(i);
        ASSERT_EQ(CountHandles(), before) << "round " << i;
    }
}

TEST(Soak, Refreshes)
{
    Desk desk;
    for (const char* name : {"a", "b", "c"})
        desk.MakeFile(name);
    desk.MakeFolder("folder");
    desk.Launch();
    MessageCounter refreshes(desk.Level().m_hWnd, WM_APP_REFRESH);
    Soak(
        [&](int round)
        {
            if (round % 4 == 0)
                desk.MakeFile("come and gone");
            desk.Refresh();
            ASSERT_EQ(desk.Items().size(), round % 4 < 2 ? 5u : 4u);
            if (round % 4 == 1)
                std::filesystem::remove(desk.Folder() / "come and gone");
        });
    EXPECT_EQ(refreshes.Count(), Rounds());
}

TEST(Soak, SubLevels)
{
    Desk desk;
    for (const char* name : {"one", "two"})
        desk.MakeFile(std::string(name) + "/deeper/" + name);
    desk.MakeFile("plain");
    desk.Launch("100,700,0");
    // One level is opened by mouse and one below it by key, which one by turns.
    Soak(
        [&](int round)
        {
            const std::string name = round % 2 == 0 ? "one" : "two";
            desk.RestOn(name, 0);
            desk.Advance(410ms);
            ASSERT_EQ(desk.Levels(), 2) << "round " << round;
            desk.Press(VK_DOWN);
            desk.Press(VK_RIGHT);
            ASSERT_EQ(desk.Items(2), Labels{name}) << "round " << round;
            desk.RestOn("plain", 0);
            desk.Advance(410ms);
            ASSERT_EQ(desk.Levels(), 1) << "round " << round;
        });
}

TEST(Soak, Drags)
{
    Desk desk;
    for (const char* name : {"A", "B", "Games/chess"})
        desk.MakeFile(name);
    desk.Launch("100,700,0");
    Soak(
        [&](int round)
        {
            // By turns to the other end, to nowhere, and away from a folder that it has opened.
            const POINT to = round % 3 == 1 ? POINT{1500, 50} : LowerHalf(desk, desk.Items(0)[2]);
            const std::string first = desk.Items(0)[0];
            const std::string last = desk.Items(0)[2];
            DragItem(desk, first,
                     {[&] { platform::headless::MoveMouse(to.x, to.y); },
                      [&] { desk.Advance(round % 3 == 2 ? 600ms : 50ms); },
                      [] { platform::headless::ReleaseButton(); }});
            ASSERT_EQ(desk.Items(0)[round % 3 == 1 ? 0 : 2], first) << "round " << round;
            ASSERT_EQ(desk.Levels(), 1) << "round " << round;
        });
}

} // namespace
