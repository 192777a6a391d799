// Measures how long programs take from exec to their first complete frame, side by side.
//
// Each program is started in turn, round after round, on the display of $DISPLAY. An observer of its own connection
// hears of every painted rectangle through the DAMAGE extension. A frame is complete at the last paint of the start-up:
// the one that a quiet time follows. The process is then killed and its peak memory noted.
//
// usage: launch ROUNDS ROWS-FILE    (a row: name TAB input file or - TAB VAR=value;… or - TAB program TAB argument …)
// VAR=value "BEFORE=path" names a folder that is removed before every start, for rows that start cold.
// Prints per row: name, median, quartiles and best in milliseconds, peak memory in KiB.
#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kQuietMs = 250;
constexpr int kGiveUpMs = 6000;

struct Row
{
    std::string name;
    std::string input;
    std::string removeBefore;
    std::vector<std::string> environment;
    std::vector<std::string> command;
    std::vector<double> times;
    long peakMemory = 0;
};

std::vector<std::string> Split(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::stringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

void ReadEnvironment(Row& row, const std::string& field)
{
    if (field == "-")
        return;
    for (const std::string& assignment : Split(field, ';'))
    {
        if (assignment.rfind("BEFORE=", 0) == 0)
            row.removeBefore = assignment.substr(7);
        else
            row.environment.push_back(assignment);
    }
}

std::vector<Row> ReadRows(const char* path)
{
    std::vector<Row> rows;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
    {
        const std::vector<std::string> fields = Split(line, '\t');
        if (fields.size() < 4)
            continue;
        Row row;
        row.name = fields[0];
        row.input = fields[1] == "-" ? "/dev/null" : fields[1];
        ReadEnvironment(row, fields[2]);
        row.command.assign(fields.begin() + 3, fields.end());
        rows.push_back(std::move(row));
    }
    return rows;
}

/// Hears of every paint on the screen.
class Observer
{
public:
    Observer() : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection))
            std::exit(1);
        const auto* const extension = xcb_get_extension_data(m_connection, &xcb_damage_id);
        m_damageEvent = static_cast<std::uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
        std::free(xcb_damage_query_version_reply(m_connection, xcb_damage_query_version(m_connection, 1, 1), nullptr));
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        xcb_damage_create(m_connection, xcb_generate_id(m_connection), root, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        Settle();
    }
    ~Observer() { xcb_disconnect(m_connection); }
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;

    /// Waits until nothing has been painted for the quiet time.
    void Settle()
    {
        xcb_flush(m_connection);
        while (WaitForPaint(kQuietMs))
        {
        }
    }

    /// Time of the last paint before the first quiet time, counted from `start`; −1 when nothing was painted.
    double LastPaint(Clock::time_point start)
    {
        double last = -1;
        while (Milliseconds(Clock::now() - start).count() < kGiveUpMs)
        {
            const bool painted = WaitForPaint(last < 0 ? kGiveUpMs : kQuietMs);
            if (!painted)
                break;
            last = Milliseconds(Clock::now() - start).count();
        }
        return last;
    }

private:
    bool WaitForPaint(int timeoutMs)
    {
        const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
        for (;;)
        {
            while (xcb_generic_event_t* const event = xcb_poll_for_event(m_connection))
            {
                const bool painted = (event->response_type & 0x7F) == m_damageEvent;
                std::free(event);
                if (painted)
                    return true;
            }
            const int left = static_cast<int>(Milliseconds(deadline - Clock::now()).count());
            if (left <= 0)
                return false;
            pollfd descriptor{xcb_get_file_descriptor(m_connection), POLLIN, 0};
            poll(&descriptor, 1, left);
        }
    }

    xcb_connection_t* m_connection;
    std::uint8_t m_damageEvent = 0;
};

[[noreturn]] void Exec(const Row& row)
{
    const int input = open(row.input.c_str(), O_RDONLY);
    const int output = open("/dev/null", O_WRONLY);
    dup2(input, 0);
    dup2(output, 1);
    if (std::getenv("BENCH_VERBOSE") == nullptr)
        dup2(output, 2);
    for (const std::string& assignment : row.environment)
        putenv(const_cast<char*>(assignment.c_str()));
    std::vector<char*> arguments;
    for (const std::string& argument : row.command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

long PeakMemory(pid_t process)
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
    {
        if (line.rfind("VmHWM:", 0) == 0)
            return std::strtol(line.c_str() + 6, nullptr, 10);
    }
    return 0;
}

void Measure(Row& row, Observer& observer, bool count)
{
    if (!row.removeBefore.empty())
        std::filesystem::remove_all(row.removeBefore);
    const Clock::time_point start = Clock::now();
    const pid_t process = fork();
    if (process == 0)
        Exec(row);
    const double time = observer.LastPaint(start);
    const long peakMemory = PeakMemory(process);
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
    observer.Settle();
    // The first round warms the caches and does not count, in memory either.
    if (!count || time < 0)
        return;
    row.times.push_back(time);
    row.peakMemory = std::max(row.peakMemory, peakMemory);
}

double Quantile(std::vector<double> values, double q)
{
    if (values.empty())
        return -1;
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(q * static_cast<double>(values.size() - 1) + 0.5)];
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
    {
        std::cerr << "usage: launch ROUNDS ROWS-FILE\n";
        return 2;
    }
    const int rounds = std::atoi(argv[1]);
    std::vector<Row> rows = ReadRows(argv[2]);
    Observer observer;
    for (int round = -1; round < rounds; ++round)
    {
        for (Row& row : rows)
            Measure(row, observer, round >= 0);
    }
    std::printf("%-34s %9s %9s %9s %9s %10s\n", "row", "median", "quartile", "3rd", "best", "peak KiB");
    for (const Row& row : rows)
    {
        std::printf("%-34s %9.1f %9.1f %9.1f %9.1f %10ld\n", row.name.c_str(), Quantile(row.times, 0.5),
                    Quantile(row.times, 0.25), Quantile(row.times, 0.75), Quantile(row.times, 0), row.peakMemory);
    }
    return 0;
}
