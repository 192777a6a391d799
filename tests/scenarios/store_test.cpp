// A store that is damaged, locked, read-only, without room, or left by a killed program: the menu opens all the same,
// and nothing of the user's is lost or overwritten.
//
// The store is opened once in a process, so each story runs in a process of its own; what it leaves is looked at here.
// For the same reason this is a program apart, which never opens the store itself.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/notice_reader.h"
#include "tests/scenarios/privileges.h"
#include "tests/scenarios/staged_ui.h"

#include "app/launcher_state.h"
#include "app/options.h"
#include "commands/command_table.h"
#include "platform/registry/store.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace
{

/// The menu of three items, with what the store holds.
class OpenDesk : public Desk
{
public:
    OpenDesk() : Desk(WithStoreAsItIs())
    {
        for (const char* name : {"a", "b", "c"})
            MakeFile(name);
        Launch("100,700,0");
    }
};

class Store : public testing::Test
{
protected:
    Store()
    {
        // A process of its own each: the parent has not touched the registry in this folder, the child does.
        m_before = std::getenv("XDG_CONFIG_HOME");
        m_folder = fs::path(std::getenv("HOME")) / "store story";
        fs::remove_all(m_folder);
        setenv("XDG_CONFIG_HOME", m_folder.c_str(), 1);
        m_file = m_folder / "orb-launcher/registry.db";
    }
    ~Store() override
    {
        setenv("XDG_CONFIG_HOME", m_before.c_str(), 1);
        std::error_code ignored;
        fs::permissions(m_file.parent_path(), fs::perms::owner_all, ignored);
        fs::remove_all(m_folder);
    }

    /// Stores an arrangement that is not the names' order.
    void MakeStore(const Labels& names = {"c", "a", "b"})
    {
        platform::RegistryStore store(m_file);
        bool created = false;
        ASSERT_EQ(store.CreateKey(kRootLayout, created), ERROR_SUCCESS);
        const std::vector<std::uint8_t> order = Order(names);
        ASSERT_EQ(store.WriteValue(kRootLayout, TEXT("m_layout"), REG_BINARY, order), ERROR_SUCCESS);
    }

    std::vector<std::uint8_t> Stored()
    {
        platform::RegistryStore store(m_file);
        platform::RegistryValue value;
        store.ReadValue(kRootLayout, TEXT("m_layout"), value);
        return value.data;
    }

    void StoreOptions(std::uint32_t options)
    {
        platform::RegistryStore store(m_file);
        const auto* bytes = reinterpret_cast<const unsigned char*>(&options);
        ASSERT_EQ(store.WriteValue(kRootLayout, TEXT("options"), REG_DWORD, {bytes, sizeof options}), ERROR_SUCCESS);
    }

    std::uint32_t StoredOptions()
    {
        platform::RegistryStore store(m_file);
        platform::RegistryValue value;
        EXPECT_EQ(store.ReadValue(kRootLayout, TEXT("options"), value), ERROR_SUCCESS);
        std::uint32_t options = 0;
        EXPECT_EQ(value.data.size(), sizeof options);
        std::memcpy(&options, value.data.data(), std::min(sizeof options, value.data.size()));
        return options;
    }

    std::string Content(const fs::path& file)
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    fs::path Aside() const { return m_file.string() + ".damaged-1"; }

    /// Runs a story in a process of its own, which must end well.
    static void Alone(const std::function<void()>& story)
    {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
        {
            story();
            _exit(testing::Test::HasFailure() ? 1 : 0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the story's own process failed";
    }

    /// The menu opens with these items, and a person can move them.
    static void OpenAndMove(const Labels& expected)
    {
        OpenDesk desk;
        EXPECT_EQ(desk.Items(), expected);
        desk.Press(VK_DOWN);
        desk.PressWith(VK_SHIFT, {VK_DOWN});
        EXPECT_EQ(desk.Hot(), expected[0]);
        EXPECT_EQ(desk.Items().front(), expected[1]);
    }

    std::string m_before;
    fs::path m_folder;
    fs::path m_file;
};

TEST_F(Store, IsMadeByTheFirstMenuAndReadByTheNext)
{
    Alone([] { OpenAndMove({"a", "b", "c"}); });
    EXPECT_EQ(Stored(), Order({"b", "a", "c"}));
    Alone([] { OpenAndMove({"b", "a", "c"}); });
    EXPECT_EQ(Stored(), Order({"a", "b", "c"}));
}

TEST_F(Store, ADamagedOneIsSetAsideWhole)
{
    MakeStore();
    const std::string whole = Content(m_file);
    for (const std::string& bad : {whole.substr(0, whole.size() / 2), std::string("garbage"), std::string(5000, '\x5A'),
                                   whole.substr(0, 100) + std::string(whole.size() - 100, '\xFF')})
    {
        fs::remove(Aside());
        std::ofstream(m_file, std::ios::binary) << bad;
        Alone([] { OpenAndMove({"a", "b", "c"}); });
        EXPECT_TRUE(Content(Aside()) == bad) << bad.size() << " bytes are kept as they were";
        EXPECT_EQ(Stored(), Order({"b", "a", "c"})) << "and a new store serves";
    }
}

/// Another program in the middle of a long change to the store; ends when told to.
class LockingProgram
{
public:
    explicit LockingProgram(const fs::path& file)
    {
        int ready[2];
        int end[2];
        EXPECT_EQ(pipe(ready), 0);
        EXPECT_EQ(pipe(end), 0);
        m_process = fork();
        EXPECT_GE(m_process, 0);
        if (m_process == 0)
        {
            close(end[1]);
            sqlite3* database = nullptr;
            char byte = 'n';
            if (sqlite3_open(file.c_str(), &database) == SQLITE_OK &&
                sqlite3_exec(database, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr) == SQLITE_OK)
                byte = 'y';
            _exit(write(ready[1], &byte, 1) == 1 && read(end[0], &byte, 1) == 0 ? 0 : 1);
        }
        close(end[0]);
        close(ready[1]);
        m_end = end[1];
        char locked = 'n';
        EXPECT_EQ(read(ready[0], &locked, 1), 1);
        EXPECT_EQ(locked, 'y');
        close(ready[0]);
    }
    ~LockingProgram() { End(); }
    LockingProgram(const LockingProgram&) = delete;
    LockingProgram& operator=(const LockingProgram&) = delete;

    void End()
    {
        if (m_process <= 0)
            return;
        close(m_end);
        waitpid(std::exchange(m_process, 0), nullptr, 0);
    }

private:
    pid_t m_process = 0;
    int m_end = -1;
};

TEST_F(Store, ALockedOneIsLeftAlone)
{
    MakeStore();
    Alone(
        [&]
        {
            LockingProgram other(m_file);
            OpenDesk desk;
            EXPECT_EQ(desk.Items(), (Labels{"a", "b", "c"})) << "the menu opens, in the names' order";
            other.End();
            desk.Refresh();
            EXPECT_EQ(desk.Items(), (Labels{"c", "a", "b"})) << "the lock has gone, the order has not";
        });
    EXPECT_EQ(Stored(), Order({"c", "a", "b"}));
    EXPECT_FALSE(fs::exists(Aside()));
}

// The options had not been read, and a click on a separator wrote them without any bit but its own.
TEST_F(Store, AClickOnASeparatorKeepsTheOptionsThatALockHid)
{
    const Labels arranged{"c", "|", "a", "b"};
    constexpr std::uint32_t kOptions = 0x40000000 | OPTION_SHORT_DASHES;
    MakeStore(arranged);
    StoreOptions(kOptions);
    Alone(
        [&]
        {
            LockingProgram other(m_file);
            OpenDesk desk;
            EXPECT_EQ(desk.Items(), (Labels{"a", "b", "c"}));
            other.End();
            desk.Refresh();
            EXPECT_EQ(desk.Items(), arranged);
            desk.Click("|");
            EXPECT_EQ(g_launcher.m_options, OPTION_LONG_DASHES) << "the click counts for this menu";
            desk.Settle();
            EXPECT_EQ(desk.Items(), arranged);
        });
    EXPECT_EQ(StoredOptions(), kOptions);
    EXPECT_EQ(Stored(), Order(arranged));
}

TEST_F(Store, AReadOnlyOneIsLeftAlone)
{
    MakeStore();
    fs::permissions(m_file, fs::perms::owner_read);
    fs::permissions(m_file.parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
    const std::string before = Content(m_file);
    Alone(
        []
        {
            const BoundByPermissions bound;
            OpenDesk desk;
            EXPECT_EQ(desk.Items().size(), 3u);
            desk.Press(VK_DOWN);
            desk.Hold(VK_SHIFT);
            desk.Press(VK_DOWN);
            EXPECT_EQ(desk.Items().size(), 3u);
        });
    EXPECT_TRUE(Content(m_file) == before);
    fs::permissions(m_file.parent_path(), fs::perms::owner_all);
    EXPECT_EQ(std::distance(fs::directory_iterator(m_file.parent_path()), {}), 1) << "nothing beside it";
}

TEST_F(Store, WithoutRoomOnTheDiskTheOldOrderStays)
{
    Labels names;
    for (int i = 0; i < 200; ++i)
        names.push_back("item " + std::to_string(900 - i));
    MakeStore(names);
    Alone(
        [&]
        {
            // A limit on the size of files stands in for a disk without room.
            std::signal(SIGXFSZ, SIG_IGN);
            Desk desk{Desk::WithStoreAsItIs()};
            for (const std::string& name : names)
                desk.MakeFile(name);
            for (int i = 0; i < 20000; i += 4000)
                desk.MakeFile("filler " + std::to_string(i));
            const rlimit limit{1024, RLIM_INFINITY};
            ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
            desk.Launch("100,700,0");
            EXPECT_EQ(desk.Items().front(), "item 900");
            EXPECT_EQ(desk.Items().size(), 205u);
        });
    EXPECT_EQ(Stored(), Order(names));
    EXPECT_FALSE(fs::exists(Aside()));
}

/// The store of the machine, in which the silenced notice is recorded.
class MachineStore : public Store
{
protected:
    MachineStore() { setenv("XDG_CONFIG_DIRS", (m_folder / "machine").c_str(), 1); }
    ~MachineStore() override { setenv("XDG_CONFIG_DIRS", m_directories.c_str(), 1); }

    /// Somebody adds a link, silences the notice for good, takes the link away, and both once more.
    static void ExpectLinks(int notices)
    {
        fs::create_directories(fs::path(std::getenv("HOME")) / "Desktop");
        Desk desk{Desk::WithStoreAsItIs()};
        desk.MakeFile("a");
        desk.Launch("100,700,0");
        const BeforeTheBox person(
            [](HWND box)
            {
                Click(box, kCheckBox);
                Click(box, IDOK);
            });
        for (const Labels& expected : {Labels{"a", "Desktop"}, Labels{"a"}, Labels{"a", "Desktop"}, Labels{"a"}})
        {
            ChooseInMenu(desk, CustomMenu::IDM_ADD_DESKTOP, 0);
            Labels items = desk.Items();
            std::ranges::sort(items, std::greater<>());
            EXPECT_EQ(items, expected);
        }
        EXPECT_EQ(person.Shown(), notices);
    }

    const std::string m_directories = std::getenv("XDG_CONFIG_DIRS");
    const fs::path m_machine = m_folder / "machine/orb-launcher/registry.db";
};

TEST_F(MachineStore, DoesNotStandInTheWayOfALink)
{
    fs::create_directories(m_machine.parent_path());
    std::ofstream(m_machine) << "garbage";
    Alone([] { ExpectLinks(1); });
    EXPECT_TRUE(fs::exists(m_machine.string() + ".damaged-1"));
    // Now it is a good one, in which the notice is silenced.
    fs::permissions(m_machine, fs::perms::owner_read);
    Alone([] { ExpectLinks(0); });
    Alone(
        [&]
        {
            const LockingProgram other(m_machine);
            ExpectLinks(2); // nobody can tell that it is, nor record it
        });
    fs::remove_all(m_machine);
    fs::create_directories(m_machine);
    Alone([] { ExpectLinks(2); });
    fs::remove_all(m_machine.parent_path());
    fs::permissions(m_machine.parent_path().parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
    Alone(
        []
        {
            const BoundByPermissions bound;
            ExpectLinks(1); // the user's own overlay has it
        });
    Alone([] { ExpectLinks(0); });
}

TEST_F(Store, IsWholeWheneverTheProgramIsKilled)
{
    std::vector<std::uint8_t> sorted = Order({"a", "b", "c"});
    for (int round = 0; round < 20; ++round)
    {
        int moves[2];
        ASSERT_EQ(pipe(moves), 0);
        const pid_t child = fork();
        ASSERT_GE(child, 0) << "-1 would be everybody's";
        if (child == 0)
        {
            OpenDesk desk;
            desk.Press(VK_DOWN);
            desk.Hold(VK_SHIFT);
            for (int i = 0; i < 10000; ++i)
            {
                desk.Press(i % 2 == 0 ? VK_DOWN : VK_UP);
                if (write(moves[1], "m", 1) != 1)
                    _exit(1);
            }
            _exit(2);
        }
        close(moves[1]); // a child that dies too early ends the reading
        char byte = 0;
        for (int i = 0; i <= round; ++i)
            ASSERT_EQ(read(moves[0], &byte, 1), 1) << "the menu saves";
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        close(moves[0]);
        const std::vector<std::uint8_t> stored = Stored();
        EXPECT_TRUE(stored == sorted || stored == Order({"b", "a", "c"})) << "one of the two, never a mixture";
        EXPECT_FALSE(fs::exists(Aside()));
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(m_file.c_str(), &database), SQLITE_OK);
        const auto expectOk = [](void*, int, char** columns, char**)
        {
            EXPECT_STREQ(columns[0], "ok");
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(database, "PRAGMA integrity_check", expectOk, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(database);
    }
}

} // namespace
