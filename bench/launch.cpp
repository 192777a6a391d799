// Measures how long programs take from exec to their first complete frame, side by side.
//
// Each program is started in turn, round after round to and fro, on the display of $DISPLAY. A frame is complete at the
// last paint of the start-up: the one that a quiet time follows. The process is then killed and its peak memory noted.
//
// usage: launch ROUNDS ROWS-FILE    (rows as ReadRows takes them)
// Prints per row: name, median, quartiles and best in milliseconds, peak memory in KiB.
#include "bench/observer.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace
{

struct Result
{
    std::vector<double> times;
    long peakMemory = 0;
};

long PeakMemory(pid_t process)
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0)
            return std::strtol(line.c_str() + 6, nullptr, 10);
    return 0;
}

void Measure(const bench::Row& row, Result& result, bench::Observer& observer, bool count)
{
    if (!row.removeBefore.empty())
        std::filesystem::remove_all(row.removeBefore);
    const bench::Clock::time_point start = bench::Clock::now();
    const pid_t process = bench::Start(row);
    const double time = observer.Watch(start).last;
    const long peakMemory = PeakMemory(process);
    bench::Stop(process);
    observer.Settle();
    // The first round warms the caches and does not count, in memory either.
    if (!count || time < 0)
        return;
    result.times.push_back(time);
    result.peakMemory = std::max(result.peakMemory, peakMemory);
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
    const std::vector<bench::Row> rows = bench::ReadRows(argv[2]);
    std::vector<Result> results(rows.size());
    bench::Observer observer;
    for (int round = -1; round < rounds; ++round)
        for (std::size_t i = 0; i < rows.size(); ++i)
        {
            // To and fro: no row has always the same one before it.
            const std::size_t row = round % 2 == 0 ? i : rows.size() - 1 - i;
            Measure(rows[row], results[row], observer, round >= 0);
        }
    std::printf("%-34s %9s %9s %9s %9s %10s\n", "row", "median", "quartile", "3rd", "best", "peak KiB");
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        const std::vector<double>& times = results[i].times;
        std::printf("%-34s %9.1f %9.1f %9.1f %9.1f %10ld\n", rows[i].name.c_str(), bench::Quantile(times, 0.5),
                    bench::Quantile(times, 0.25), bench::Quantile(times, 0.75), bench::Quantile(times, 0),
                    results[i].peakMemory);
    }
    return 0;
}
