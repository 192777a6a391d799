// What the benchmarks on a display share: the programs to be measured, and an observer of what they paint.
#pragma once

#include <chrono>
#include <cstdint>
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
    /// What is painted from `start` on at `left` (screen pixels) or right of it, until a quiet time follows. Paints
    /// elsewhere do not count, but they do prolong the wait.
    PaintTimes Watch(Clock::time_point start, int left = 0);
    /// Moves the pointer as an input device does; the request is on its way when this returns.
    void MovePointer(int x, int y);
    /// Presses and releases a button by its X number.
    void Click(std::uint8_t button);
    void PressEscape();
    /// Becomes the desktop's settings manager (XSETTINGS), with this one setting.
    void PublishSetting(const std::string& name, std::int32_t value);
    /// Screen rectangles of the top-level windows that show.
    std::vector<xcb_rectangle_t> ShownWindows();

private:
    std::optional<xcb_rectangle_t> WaitForPaint(int timeoutMs);

    xcb_connection_t* m_connection;
    xcb_window_t m_root = 0;
    std::uint8_t m_damageEvent = 0;
};

} // namespace bench
