// Killed at any moment: every file is whole, in its old or its new place.
#include "tests/layer/file_work_desk.h"
#include "tests/layer/without_unnamed_files.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <iostream>
#include <poll.h>
#include <random>
#include <spawn.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <sys/wait.h>

using namespace shell_test;

extern char** environ;

namespace
{

namespace fs = std::filesystem;
using std::chrono::microseconds;

struct Run
{
    int status; ///< as waitpid has it
    microseconds length;
};

/// Runs the runner until it has begun, and then for so long at most. How it ended, and how long after it had begun.
Run RunFor(std::vector<std::string> arguments, std::optional<microseconds> limit)
{
    int begun[2];
    EXPECT_EQ(pipe2(begun, O_CLOEXEC), 0);
    arguments.insert(arguments.begin(), ORB_FILE_WORK_RUNNER);
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, begun[1], STDOUT_FILENO);
    pid_t process = 0;
    const int error = posix_spawn(&process, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(begun[1]);
    if (error != 0) // 0 would be all of this group
    {
        close(begun[0]);
        ADD_FAILURE() << argv[0] << ": " << std::strerror(error);
        return {-1, {}};
    }
    char byte;
    EXPECT_EQ(read(begun[0], &byte, 1), 1);
    close(begun[0]);
    const auto start = std::chrono::steady_clock::now();
    if (limit)
    {
        const auto handle = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
        pollfd ended{handle, POLLIN, 0};
        const timespec time{0, limit->count() * 1000};
        ppoll(&ended, 1, &time, nullptr);
        close(handle);
        kill(process, SIGKILL);
    }
    int status = 0;
    waitpid(process, &status, 0);
    return {status, std::chrono::duration_cast<microseconds>(std::chrono::steady_clock::now() - start)};
}

std::string NewContent(int number)
{
    // Sizes around a page, and one that takes a few pieces to copy.
    const std::size_t sizes[] = {0, 1, 4096, 5000, 300 << 10};
    return std::string(sizes[number % 5], static_cast<char>('a' + number));
}
const std::string kOldContent = "old";

constexpr int kFiles = 15;
std::string NameOf(int number)
{
    return (number % 3 == 0 ? "sub/file" : "file") + std::to_string(number);
}

struct Round
{
    Round(const fs::path& base, const std::string& workKind, const fs::path& target)
        : kind(workKind), source(base / "source/f"), folder(target / "target")
    {
        fs::remove_all(source);
        fs::remove_all(folder);
        fs::remove_all(Home() / "data/Trash");
        fs::create_directories(source / "sub");
        fs::create_directories(folder / "f");
        for (int i = 0; i < kFiles; ++i)
            Write(source / NameOf(i), NewContent(i));
        Write(folder / "f/file1", kOldContent);
    }

    std::vector<std::string> Arguments(const char* how) const { return {kind, how, source, folder}; }

    /// Where the work has put the files.
    fs::path NewPlace() const { return kind == "trash" ? Home() / "data/Trash/files/f" : folder / "f"; }

    void Check() const
    {
        for (int i = 0; i < kFiles; ++i)
        {
            const fs::path before = source / NameOf(i);
            const fs::path after = NewPlace() / NameOf(i);
            const bool isBefore = fs::exists(before);
            const bool isAfter = fs::exists(after) && !(i == 1 && ContentOf(after) == kOldContent);
            EXPECT_TRUE(isBefore || isAfter) << before << " is lost";
            EXPECT_TRUE(isBefore || kind != "copy");
            EXPECT_TRUE(!isBefore || ContentOf(before) == NewContent(i)) << before;
            EXPECT_TRUE(!isAfter || ContentOf(after) == NewContent(i)) << after;
        }
        EXPECT_TRUE(kind == "trash" || fs::exists(folder / "f/file1"));
    }

    std::string kind;
    fs::path source;
    fs::path folder;
};

/// Names that only work which was broken off leaves.
std::ptrdiff_t LeftOvers(const fs::path& folder)
{
    return std::count_if(
        fs::recursive_directory_iterator(folder), {},
        [](const fs::directory_entry& entry)
        { return entry.path().filename().native().starts_with(".orb-launcher-"); });
}

/// Kills at moments spread over the time that the work takes when it is left alone.
void KillManyTimes(const std::string& kind, const char* how, const fs::path& target, int rounds)
{
    const auto seed = static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed() + getpid());
    std::mt19937 random(seed);
    SCOPED_TRACE(kind + " " + how + ", seed " + std::to_string(seed));
    std::cout << kind << ' ' << how << ": seed " << seed << '\n';
    const auto base = NewFolder();
    const Round whole(base, kind, target);
    const Run run = RunFor(whole.Arguments(how), {});
    ASSERT_EQ(run.status, 0);
    whole.Check();
    int killed = 0;
    for (int i = 0; i < rounds && !testing::Test::HasFailure(); ++i)
    {
        const Round round(base, kind, target);
        const microseconds limit(
            std::uniform_int_distribution<long>(0, std::min(run.length.count(), 900'000L))(random));
        killed += RunFor(round.Arguments(how), limit).status != 0;
        round.Check();
        EXPECT_LE(LeftOvers(round.folder), 1);
        if (kind == "copy" && LeftOvers(round.folder) > 0)
        {
            EXPECT_EQ(RunFor(round.Arguments(how), {}).status, 0);
            EXPECT_EQ(LeftOvers(round.folder), 0) << "the next work in the folder cleans up";
        }
    }
    std::cout << killed << " of " << rounds << " were killed before their end\n";
    EXPECT_GT(killed, 0);
    fs::remove_all(target / "target");
}

} // namespace

TEST(FileWorkKilled, LosesNoFile)
{
    const ElsewhereFolder elsewhere;
    ASSERT_TRUE(elsewhere.IsElsewhere());
    for (const char* kind : {"copy", "move"})
        for (const char* how : {"unnamed", "named"})
        {
            KillManyTimes(kind, how, NewFolder(), 20);
            KillManyTimes(kind, how, elsewhere.Path(), 20);
        }
    KillManyTimes("trash", "unnamed", NewFolder(), 40);
}
