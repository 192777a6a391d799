// What the benchmarks on a display share: the programs to be measured, and an observer of what they paint.
#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>
#include <xcb/xcb.h>

namespace bench
{

using Clock = std::chrono::steady_clock;

double MillisecondsSince(Clock::time_point start);

/// A program to be measured.
struct Row
{
    std::string name;
    std::string input;        ///< file that it gets as standard input
    std::string removeBefore; ///< folder that is removed before every start, for rows that start cold; may be empty
    std::vector<std::string> environment;
    std::vector<std::string> command;
};

/// Reads lines "name TAB input file or - TAB VAR=value;… or - TAB program TAB argument …". The variable "BEFORE=path"
/// becomes `removeBefore`.
std::vector<Row> ReadRows(const char* path);

/// Starts the program with nothing on standard output, nor, without $BENCH_VERBOSE, on standard error.
pid_t Start(const Row& row);
/// Kills a program that was started, and waits for its end.
void Stop(pid_t process);

/// Linear scale, nearest rank; −1 of no values.
double Quantile(std::vector<double> values, double q);

/// The times of one paint, in milliseconds from the moment that was given; −1 when nothing was painted.
struct PaintTimes
{
    double first = -1;
    double last = -1; ///< the last before the first quiet time: the picture is complete
    double area = 0;  ///< pixels of all painted rectangles, counted as often as painted
};

/// Part of the screen from one column of pixels to another, which does not belong to it.
struct Columns
{
    int from = 0;
    int to = std::numeric_limits<int>::max();
};

struct ShownWindow
{
    xcb_window_t id = 0;
    xcb_rectangle_t bounds{}; ///< screen pixels
};

xcb_atom_t AtomNamed(xcb_connection_t* connection, const std::string& name);

/// Hears of every paint on the display of $DISPLAY, through the DAMAGE extension on a connection of its own.
class Observer
{
public:
    static constexpr int kQuietMs = 250;
    static constexpr int kGiveUpMs = 6000;

    /// Ends the process when there is no display.
    Observer();
    ~Observer();
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;

    /// Waits until nothing has been painted for the quiet time.
    void Settle();
    /// Returns after the next paint.
    void AwaitPaint();
    /// What is painted from `start` on, by paints whose left edge is in `where`, until a quiet time follows. Others do
    /// not count, but they do prolong the wait.
    PaintTimes Watch(Clock::time_point start, Columns where = {});
    /// Moves the pointer as an input device does; the request is on its way when this returns.
    void MovePointer(int x, int y);
    /// Buttons are meant by their X numbers.
    void Press(std::uint8_t button);
    void Release(std::uint8_t button);
    void Click(std::uint8_t button);
    void PressEscape();
    /// Becomes the desktop's settings manager (XSETTINGS), with this one setting.
    void PublishSetting(const std::string& name, std::int32_t value);
    /// The top-level windows that show.
    std::vector<ShownWindow> ShownWindows();

private:
    void FakeInput(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);
    std::optional<xcb_rectangle_t> WaitForPaint(int timeoutMs);

    xcb_connection_t* m_connection;
    xcb_window_t m_root = 0;
    std::uint8_t m_damageEvent = 0;
};

} // namespace bench
