// Measures an open menu on the display of $DISPLAY: how soon a sub-menu or an item's context menu opens, a change of
// the folder shows and the highlight moves, how it scrolls, how drags within it and over it are followed, and what the
// menu costs while nothing happens.
//
// usage: live submenu  DELAY ROUNDS ROWS-FILE           (rows as ReadRows takes them)
//        live change   FOLDER ROUNDS ROWS-FILE
//        live highlight ITEMS ROUNDS ROWS-FILE
//        live wheel    ROUNDS ROWS-FILE
//        live context  ROUNDS ROWS-FILE
//        live pickup   ROUNDS ROWS-FILE
//        live drag     ROUNDS ROWS-FILE
//        live incoming ROUNDS ROWS-FILE
//        live idle     SECONDS ROWS-FILE
// submenu: the menu has two items, a sub-menu and a plain one, of which resting on the first opens and on the second
//   closes it. DELAY, in milliseconds, is what the programs are configured to wait before that; it is published as
//   the desktop's setting and taken off the times. What is left runs from the motion event, so it is a little more
//   than from the end of the delay.
// change: a file is made in FOLDER, alone or right after another.
// highlight: the pointer moves between two neighbours of ITEMS items.
// wheel: the wheel is turned by a notch over the middle of a menu that is too long for the screen.
// context: the right button is clicked on an item; the times run to the frame of its context menu.
// pickup: an item is dragged beyond the threshold by one motion, the first drag of each of ROUNDS menus; the times run
//   from that motion to the picture under the pointer.
// drag: an item is dragged to and fro; the times run from the motion to the insertion mark's frame.
// incoming: another program drags to and fro over the menu; from its message to the answer, and to the mark's frame.
// highlight, drag and incoming write a line "moves FROM TO COUNT" to standard error: between which times (seconds since
//   the epoch) how many were made.
// idle: processor time and context switches of all threads of a menu that is left alone.
#include "bench/foreign_drag.h"
#include "bench/observer.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <thread>
#include <unistd.h>

namespace
{

using bench::Clock;
using bench::Columns;
using bench::Observer;
using bench::PaintTimes;
using bench::Row;

constexpr std::uint8_t kLeftButton = 1;
constexpr std::uint8_t kRightButton = 3;
constexpr std::uint8_t kWheelDown = 5;
constexpr int kPlaces = 20; // that a menu is divided into for drags, from the top
constexpr int kDraggedOver = 8;
constexpr int kFarAway = 1; // pixels from the screen's top left corner: no menu is there

struct OpenMenu
{
    OpenMenu(const Row& row, Observer& observer) : m_observer(observer)
    {
        observer.MovePointer(kFarAway, kFarAway);
        process = bench::Start(row);
        observer.Watch(Clock::now());
        for (const bench::ShownWindow& shown : observer.ShownWindows())
            if (shown.bounds.height > bounds.height)
            {
                window = shown.id;
                bounds = shown.bounds;
            }
        if (bounds.height == 0)
        {
            std::cerr << row.name << ": no menu shows\n";
            std::exit(1);
        }
    }
    ~OpenMenu()
    {
        bench::Stop(process);
        m_observer.Settle();
    }
    OpenMenu(const OpenMenu&) = delete;
    OpenMenu& operator=(const OpenMenu&) = delete;

    /// Moves the pointer to the middle of an item, by the menu's height. The horizontal place changes with each call,
    /// since a program may pass over a motion event with the position of the last one that it has seen.
    void PointAt(int item, int items)
    {
        m_sideStep = !m_sideStep;
        m_observer.MovePointer(Pointer(), MiddleOf(item, items));
    }
    int MiddleOf(int item, int items) const { return bounds.y + bounds.height * (2 * item + 1) / (2 * items); }
    /// The horizontal place that PointAt has given the pointer.
    int Pointer() const { return bounds.x + bounds.width * 3 / 4 + m_sideStep; }
    /// Where a sub-menu begins; it may cover the menu's border.
    int Right() const { return bounds.x + bounds.width - 1; }
    /// Where paints of whole rows begin, and not the picture under the pointer.
    Columns LeftPart() const { return {bounds.x, bounds.x + bounds.width / 4}; }

    pid_t process = 0;
    xcb_window_t window = 0;
    xcb_rectangle_t bounds{};

private:
    Observer& m_observer;
    bool m_sideStep = false;
};

/// Makes what a program answers with a sub-menu, a repaint or the like, and returns when and what was painted.
using Round = std::function<PaintTimes()>;

/// The first round warms the caches and does not count.
void Report(const std::string& name, int rounds, double delay, const Round& round)
{
    std::vector<double> first;
    std::vector<double> last;
    std::vector<double> area;
    for (int i = -1; i < rounds; ++i)
    {
        const PaintTimes times = round();
        if (i < 0 || times.first < 0)
            continue;
        first.push_back(times.first - delay);
        last.push_back(times.last - delay);
        area.push_back(times.area);
    }
    std::printf("%-40s %5zu %8.2f %8.2f %8.2f %8.2f %9.0f\n", name.c_str(), first.size(), bench::Quantile(first, 0.5),
                bench::Quantile(last, 0.5), bench::Quantile(last, 0.75), bench::Quantile(last, 0),
                bench::Quantile(area, 0.5));
    std::fflush(stdout);
}

void PrintHeading()
{
    std::printf("%-40s %5s %8s %8s %8s %8s %9s\n", "row", "times", "first", "complete", "3rd", "best", "pixels");
}

int MeasureSubMenu(Observer& observer, int delay, int rounds, const std::vector<Row>& rows)
{
    observer.PublishSetting("Gtk/MenuPopupDelay", delay);
    PrintHeading();
    for (const Row& row : rows)
    {
        OpenMenu menu(row, observer);
        Report(row.name, rounds, delay,
               [&]
               {
                   menu.PointAt(1, 2);
                   observer.Settle();
                   const Clock::time_point start = Clock::now();
                   menu.PointAt(0, 2);
                   return observer.Watch(start, {menu.Right()});
               });
    }
    return 0;
}

int MeasureChange(Observer& observer, const std::filesystem::path& folder, int rounds, const std::vector<Row>& rows)
{
    PrintHeading();
    for (const Row& row : rows)
    {
        OpenMenu menu(row, observer);
        menu.PointAt(5, 40); // a new item is put where the highlight is
        const auto paintAfterMaking = [&](const char* name)
        {
            const Clock::time_point start = Clock::now();
            std::ofstream(folder / name).flush();
            return observer.Watch(start);
        };
        const auto tidy = [&]
        {
            std::filesystem::remove(folder / "new one");
            std::filesystem::remove(folder / "another");
            observer.Settle();
            observer.Settle();
        };
        observer.Settle();
        Report(row.name, rounds, 0,
               [&]
               {
                   const PaintTimes times = paintAfterMaking("new one");
                   tidy();
                   return times;
               });
        Report(row.name + ", on another's heels", rounds, 0,
               [&]
               {
                   std::ofstream(folder / "new one").flush();
                   observer.AwaitPaint();
                   const PaintTimes times = paintAfterMaking("another");
                   tidy();
                   return times;
               });
    }
    return 0;
}

double SecondsSinceEpoch()
{
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

/// Reports what follows moves between two neighbours, whose number each round is given, and says when they were made.
void ReportMoves(const std::string& name, int rounds, int item, const std::function<PaintTimes(int)>& move)
{
    const double from = SecondsSinceEpoch();
    Report(name, rounds, 0, [&] { return move(item ^= 1); });
    std::fprintf(stderr, "moves %.6f %.6f %d\n", from, SecondsSinceEpoch(), rounds + 1);
}

int MeasureHighlight(Observer& observer, int items, int rounds, const std::vector<Row>& rows)
{
    PrintHeading();
    for (const Row& row : rows)
    {
        OpenMenu menu(row, observer);
        menu.PointAt(items / 2, items);
        observer.Settle();
        ReportMoves(row.name, rounds, items / 2,
                    [&](int item)
                    {
                        const Clock::time_point start = Clock::now();
                        menu.PointAt(item, items);
                        return observer.Watch(start);
                    });
    }
    return 0;
}

/// Drags an item of the menu by one motion beyond the threshold; returns when that was made.
Clock::time_point PickUp(Observer& observer, OpenMenu& menu)
{
    menu.PointAt(kDraggedOver, kPlaces);
    observer.Press(kLeftButton);
    observer.Settle();
    const Clock::time_point start = Clock::now();
    menu.PointAt(kDraggedOver + 1, kPlaces);
    return start;
}

void LetGo(Observer& observer)
{
    observer.PressEscape();
    observer.Release(kLeftButton);
    observer.Settle();
}

int MeasurePickUp(Observer& observer, int rounds, const std::vector<Row>& rows)
{
    PrintHeading();
    for (const Row& row : rows)
        Report(row.name, rounds, 0,
               [&]
               {
                   OpenMenu menu(row, observer);
                   const Clock::time_point start = PickUp(observer, menu);
                   const PaintTimes times = observer.Watch(start, {menu.LeftPart().to});
                   LetGo(observer);
                   return times;
               });
    return 0;
}

int MeasureDrag(Observer& observer, int rounds, const std::vector<Row>& rows)
{
    PrintHeading();
    for (const Row& row : rows)
    {
        OpenMenu menu(row, observer);
        PickUp(observer, menu);
        observer.Settle();
        ReportMoves(row.name, rounds, kDraggedOver,
                    [&](int place)
                    {
                        const Clock::time_point start = Clock::now();
                        menu.PointAt(place, kPlaces);
                        return observer.Watch(start, menu.LeftPart());
                    });
        LetGo(observer);
    }
    return 0;
}

int MeasureIncoming(Observer& observer, int rounds, const std::vector<Row>& rows)
{
    PrintHeading();
    for (const Row& row : rows)
    {
        OpenMenu menu(row, observer);
        bench::ForeignDrag drag(menu.window);
        const auto moveTo = [&](int place)
        {
            const Clock::time_point start = Clock::now();
            drag.MoveTo(menu.Pointer(), menu.MiddleOf(place, kPlaces));
            return start;
        };
        ReportMoves(row.name + ", answer", rounds, kDraggedOver,
                    [&](int place)
                    {
                        const Clock::time_point start = moveTo(place);
                        drag.AwaitStatus();
                        const double time = bench::MillisecondsSince(start);
                        observer.Settle();
                        return PaintTimes{time, time};
                    });
        ReportMoves(row.name + ", mark", rounds, kDraggedOver,
                    [&](int place)
                    {
                        const PaintTimes times = observer.Watch(moveTo(place), menu.LeftPart());
                        drag.AwaitStatus();
                        return times;
                    });
    }
    return 0;
}

int MeasureWheel(Observer& observer, int rounds, const std::vector<Row>& rows)
{
    PrintHeading();
    for (const Row& row : rows)
    {
        OpenMenu menu(row, observer);
        menu.PointAt(0, 1);
        Report(row.name, rounds, 0,
               [&]
               {
                   observer.Settle();
                   const Clock::time_point start = Clock::now();
                   observer.Click(kWheelDown);
                   return observer.Watch(start);
               });
    }
    return 0;
}

int MeasureContextMenu(Observer& observer, int rounds, const std::vector<Row>& rows)
{
    PrintHeading();
    for (const Row& row : rows)
    {
        OpenMenu menu(row, observer);
        Report(row.name, rounds, 0,
               [&]
               {
                   menu.PointAt(1, 3);
                   observer.Settle();
                   const Clock::time_point start = Clock::now();
                   observer.Click(kRightButton);
                   const PaintTimes times = observer.Watch(start, {menu.Pointer()});
                   observer.PressEscape();
                   observer.Settle();
                   return times;
               });
    }
    return 0;
}

struct Cost
{
    long ticks = 0;
    long switches = 0;
};

/// Of all threads of a process so far.
Cost CostOf(pid_t process)
{
    Cost cost;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task"))
    {
        std::ifstream status(thread.path() / "status");
        for (std::string line; std::getline(status, line);)
            if (line.find("ctxt_switches:") != std::string::npos)
                cost.switches += std::atol(line.c_str() + line.find(':') + 1);
    }
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string stat;
    std::getline(file, stat);
    // proc(5): after the name in parentheses comes field 3; user and system time are fields 14 and 15.
    std::istringstream fields(stat.substr(stat.rfind(')') + 2));
    std::string field;
    for (int number = 3; number <= 15 && fields >> field; ++number)
        cost.ticks += number >= 14 ? std::atol(field.c_str()) : 0;
    return cost;
}

int MeasureIdle(Observer& observer, int seconds, const std::vector<Row>& rows)
{
    std::printf("%-40s %8s %9s\n", "row", "CPU ms", "switches");
    for (const Row& row : rows)
    {
        OpenMenu menu(row, observer);
        menu.PointAt(0, 2);
        observer.Settle();
        observer.Settle();
        const Cost before = CostOf(menu.process);
        std::this_thread::sleep_for(std::chrono::seconds(seconds));
        const Cost after = CostOf(menu.process);
        std::printf("%-40s %8ld %9ld\n", row.name.c_str(), (after.ticks - before.ticks) * 1000 / sysconf(_SC_CLK_TCK),
                    after.switches - before.switches);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string mode = argc > 1 ? argv[1] : "";
    using Measure = int (*)(Observer&, int, const std::vector<Row>&);
    const std::map<std::string, Measure> measuresByNumber = {
        {"idle", MeasureIdle},     {"wheel", MeasureWheel}, {"context", MeasureContextMenu},
        {"pickup", MeasurePickUp}, {"drag", MeasureDrag},   {"incoming", MeasureIncoming},
    };
    const auto byNumber = measuresByNumber.find(mode);
    if (argc != (byNumber != measuresByNumber.end() ? 4 : 5))
    {
        std::cerr << "usage: live MODE ...  (see the file's head)\n";
        return 2;
    }
    const std::vector<Row> rows = bench::ReadRows(argv[argc - 1]);
    const int rounds = std::atoi(argv[3]);
    Observer observer;
    if (byNumber != measuresByNumber.end())
        return byNumber->second(observer, std::atoi(argv[2]), rows);
    if (mode == "submenu")
        return MeasureSubMenu(observer, std::atoi(argv[2]), rounds, rows);
    if (mode == "change")
        return MeasureChange(observer, argv[2], rounds, rows);
    return MeasureHighlight(observer, std::atoi(argv[2]), rounds, rows);
}
