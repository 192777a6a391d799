// The registry's file: creation, damage, locks, missing rights, a full disk, a killed writer.
#include "platform/registry/hive.h"
#include "platform/registry/registry_file.h"
#include "platform/registry/store.h"

#include "windows.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using platform::Hive;
using platform::RegistryStore;
using platform::RegistryValue;

namespace fs = std::filesystem;

namespace
{

using Data = std::vector<unsigned char>;

std::string ReadFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteFile(const fs::path& path, std::string_view content)
{
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

class RegistryFile : public testing::Test
{
protected:
    RegistryFile()
    {
        std::string name = fs::temp_directory_path() / "orb-registry-XXXXXX";
        m_folder = mkdtemp(name.data());
        fs::permissions(m_folder, fs::perms::all);
        m_path = m_folder / "config" / "registry.db";
    }
    ~RegistryFile() override { fs::remove_all(m_folder); }

    /// A store file with one value, closed again.
    void MakeStore(const Data& data = {1, 2, 3})
    {
        RegistryStore store(m_path);
        bool created = false;
        ASSERT_EQ(store.CreateKey(u"Software\\Orb", created), ERROR_SUCCESS);
        ASSERT_EQ(store.WriteValue(u"Software\\Orb", u"layout", REG_BINARY, data), ERROR_SUCCESS);
    }

    LONG Save(RegistryStore& store, const Data& data)
    {
        bool created = false;
        const LONG status = store.CreateKey(u"Software\\Orb", created);
        return status == ERROR_SUCCESS ? store.WriteValue(u"Software\\Orb", u"layout", REG_BINARY, data) : status;
    }

    Data Load(RegistryStore& store)
    {
        RegistryValue value;
        m_status = store.ReadValue(u"software\\orb", u"LAYOUT", value);
        return value.data;
    }

    fs::path Aside(int n) const { return m_path.string() + ".damaged-" + std::to_string(n); }

    fs::path m_folder;
    fs::path m_path;
    LONG m_status = ERROR_SUCCESS;
};

/// Runs a statement on a file with SQLite itself; the first column of the first row.
class RawDatabase
{
public:
    explicit RawDatabase(const fs::path& path) { EXPECT_EQ(sqlite3_open(path.c_str(), &m_database), SQLITE_OK); }
    ~RawDatabase() { sqlite3_close(m_database); }
    RawDatabase(const RawDatabase&) = delete;
    RawDatabase& operator=(const RawDatabase&) = delete;

    std::string operator()(const char* sql)
    {
        std::string result;
        const auto first = [](void* to, int, char** columns, char**)
        {
            *static_cast<std::string*>(to) = columns[0] != nullptr ? columns[0] : "NULL";
            return 1;
        };
        sqlite3_exec(m_database, sql, first, &result, nullptr);
        return result;
    }

private:
    sqlite3* m_database = nullptr;
};

constexpr fs::perms kReadable = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
constexpr fs::perms kEnterable = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;

/// Becomes an ordinary user, for good: for the child process of a death test.
void DropPrivileges()
{
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && setuid(kNobody) != 0)
        _exit(99);
}

} // namespace

TEST_F(RegistryFile, ReadingCreatesNothing)
{
    RegistryStore store(m_path);
    EXPECT_EQ(store.FindKey(u"Software"), ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(Load(store).empty());
    EXPECT_EQ(store.DeleteTree(u"Software", true), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(store.FindKey(u""), ERROR_SUCCESS) << "the root is always there";
    EXPECT_FALSE(fs::exists(m_path.parent_path()));
}

TEST_F(RegistryFile, TheSchemaIsTheDocumentedOne)
{
    MakeStore({0xAB, 0x00, 0xCD});
    RawDatabase raw(m_path);
    EXPECT_EQ(raw("SELECT name FROM keys WHERE path = 'SOFTWARE\\ORB'"), "Orb") << "the spelling is kept";
    EXPECT_EQ(raw("SELECT hex(data) FROM keys JOIN \"values\" ON key = id WHERE path = 'SOFTWARE\\ORB'"
                  " AND folded = 'LAYOUT' AND \"values\".name = 'layout' AND type = 3"),
              "AB00CD");
}

TEST_F(RegistryFile, AnUnchangedValueIsNotWritten)
{
    MakeStore();
    const std::string before = ReadFile(m_path);
    RegistryStore store(m_path);
    EXPECT_EQ(Save(store, {1, 2, 3}), ERROR_SUCCESS);
    EXPECT_TRUE(ReadFile(m_path) == before) << "SQLite counts every commit in the file's header";
    EXPECT_EQ(store.WriteValue(u"Software\\Orb", u"layout", REG_NONE, Data{1, 2, 3}), ERROR_SUCCESS);
    EXPECT_FALSE(ReadFile(m_path) == before) << "another type is a change";
}

TEST_F(RegistryFile, AValueOfADeletedKeyIsNotWritten)
{
    MakeStore();
    RegistryStore store(m_path);
    EXPECT_EQ(store.DeleteTree(u"Software", true), ERROR_SUCCESS);
    EXPECT_EQ(store.WriteValue(u"Software\\Orb", u"layout", REG_BINARY, Data{1}), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RawDatabase{m_path}("SELECT count(*) FROM \"values\""), "0");
}

TEST_F(RegistryFile, AFileThatIsNoDatabaseIsSetAside)
{
    const std::string garbage(5000, 'x');
    WriteFile(m_path, garbage);
    RegistryStore store(m_path);
    EXPECT_TRUE(Load(store).empty());
    EXPECT_EQ(m_status, ERROR_FILE_NOT_FOUND) << "an empty store takes its place";
    EXPECT_EQ(ReadFile(Aside(1)), garbage);
    EXPECT_FALSE(fs::exists(m_path));

    EXPECT_EQ(Save(store, {7}), ERROR_SUCCESS);
    EXPECT_EQ(Load(store), Data{7});

    WriteFile(m_path, "short");
    RegistryStore later(m_path);
    EXPECT_EQ(Save(later, {8}), ERROR_SUCCESS) << "noticed on saving too";
    EXPECT_EQ(ReadFile(Aside(2)), "short");
    EXPECT_EQ(ReadFile(Aside(1)), garbage) << "nothing set aside is ever overwritten";
}

TEST_F(RegistryFile, AnotherProgramsDatabaseIsSetAside)
{
    fs::create_directories(m_path.parent_path());
    RawDatabase{m_path}("CREATE TABLE notes (text); INSERT INTO notes VALUES ('mine')");
    RegistryStore store(m_path);
    EXPECT_TRUE(Load(store).empty());
    EXPECT_EQ(Save(store, {7}), ERROR_SUCCESS);
    EXPECT_EQ(RawDatabase{Aside(1)}("SELECT text FROM notes"), "mine");
}

TEST_F(RegistryFile, AnEmptyFileIsAnEmptyStore)
{
    WriteFile(m_path, "");
    RegistryStore store(m_path);
    EXPECT_TRUE(Load(store).empty());
    EXPECT_EQ(m_status, ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Save(store, {7}), ERROR_SUCCESS);
    EXPECT_FALSE(fs::exists(Aside(1))) << "a start that was killed before its first commit leaves one";
}

// Cut and damaged at many places: never a crash, and what was there is either still read whole or lies aside whole.
TEST_F(RegistryFile, TruncationAndDamageLoseNothing)
{
    MakeStore(Data(20000, 0x5A));
    const std::string good = ReadFile(m_path);
    for (std::size_t step = 0; step < 24; ++step)
    {
        SCOPED_TRACE(step);
        std::string bad = good;
        if (step % 2 == 0)
            bad.resize(good.size() * step / 24);
        else
            bad.replace(good.size() * step / 24, 64, std::string(64, '\xEE'));
        fs::remove_all(m_path.parent_path());
        WriteFile(m_path, bad);
        RegistryStore store(m_path);
        const Data loaded = Load(store);
        const LONG saved = Save(store, {1});
        EXPECT_EQ(saved, ERROR_SUCCESS);
        EXPECT_EQ(Load(store), Data{1});
        EXPECT_TRUE(!loaded.empty() || bad.empty() || ReadFile(Aside(1)) == bad);
    }
}

// A save must not write around damage that nobody has read yet.
TEST_F(RegistryFile, DamageFarFromWhatIsSavedIsNoticed)
{
    MakeStore();
    {
        RegistryStore store(m_path);
        for (char16_t name = u'a'; name <= u'z'; ++name)
            store.WriteValue(u"Software\\Orb", std::u16string(1, name), REG_BINARY, Data(3000, 1));
    }
    std::string bad = ReadFile(m_path);
    constexpr std::size_t kPage = 4096; // SQLite's usual one
    ASSERT_GT(bad.size(), 20 * kPage);
    bad.replace(bad.size() / 2 / kPage * kPage, 8, 8, '\xEE'); // the head of a page in the midst
    WriteFile(m_path, bad);
    RegistryStore store(m_path);
    Save(store, {9}); // opens the key, which then goes aside with the file
    EXPECT_TRUE(fs::exists(Aside(1)) && ReadFile(Aside(1)) == bad);
    EXPECT_EQ(Save(store, {9}), ERROR_SUCCESS);
}

TEST_F(RegistryFile, ALockedStoreIsWaitedForBrieflyAndOnce)
{
    MakeStore();
    RegistryStore store(m_path);
    RawDatabase other(m_path);
    other("BEGIN EXCLUSIVE");
    const auto start = std::chrono::steady_clock::now();
    Load(store);
    EXPECT_EQ(m_status, ERROR_LOCK_VIOLATION);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(Save(store, {9}), ERROR_LOCK_VIOLATION);
    const auto taken = std::chrono::steady_clock::now() - start;
    EXPECT_GT(taken, std::chrono::milliseconds(100)) << "another launcher's save is worth waiting for";
    EXPECT_LT(taken, std::chrono::milliseconds(1500)) << "but not once for each call";
    other("ROLLBACK");
    EXPECT_EQ(Load(store), (Data{1, 2, 3})) << "nothing was lost or set aside";
    EXPECT_EQ(Save(store, {9}), ERROR_SUCCESS);
}

// A store that was locked while the menu opened, and free when the user clicked, lost what had not been read.
TEST_F(RegistryFile, WhatCouldNotBeReadIsNotOverwritten)
{
    MakeStore();
    RegistryStore store(m_path);
    const Data bits{0, 0, 1, 0};
    const auto saveOptions = [&](const Data& data)
    { return store.WriteValue(u"Software\\Orb", u"Options", REG_DWORD, data); };
    ASSERT_EQ(saveOptions(bits), ERROR_SUCCESS);
    const auto whileLocked = [&](auto read)
    {
        RawDatabase other(m_path);
        other("BEGIN EXCLUSIVE");
        EXPECT_EQ(read(), ERROR_LOCK_VIOLATION);
        other("ROLLBACK");
    };
    RegistryValue value;
    const auto readOptions = [&] { return store.ReadValue(u"SOFTWARE\\orb", u"options", value); };

    whileLocked(readOptions);
    EXPECT_EQ(saveOptions({7, 0, 0, 0}), ERROR_LOCK_VIOLATION);
    EXPECT_EQ(saveOptions(bits), ERROR_SUCCESS) << "which is what it is already";
    EXPECT_EQ(Save(store, {9}), ERROR_LOCK_VIOLATION) << "neither is what nobody has asked for since";
    EXPECT_EQ(Load(store), (Data{1, 2, 3}));
    EXPECT_EQ(Save(store, {9}), ERROR_SUCCESS) << "what has been read may be written";
    EXPECT_EQ(Save(store, {8}), ERROR_SUCCESS) << "more than once";
    EXPECT_EQ(saveOptions({7, 0, 0, 0}), ERROR_LOCK_VIOLATION) << "and the other one still not";
    EXPECT_EQ(readOptions(), ERROR_SUCCESS);
    EXPECT_EQ(value.data, bits);
    EXPECT_EQ(saveOptions({7, 0, 0, 0}), ERROR_SUCCESS);

    whileLocked([&] { return store.FindKey(u"Software\\Orb"); });
    EXPECT_EQ(saveOptions(bits), ERROR_LOCK_VIOLATION) << "a key that cannot be opened hides its values";
    EXPECT_EQ(store.WriteValue(u"Software\\Orb", u"new", REG_DWORD, bits), ERROR_SUCCESS) << "nothing is lost by that";
    EXPECT_EQ(store.WriteValue(u"Software\\Orb", u"new", REG_DWORD, Data{5}), ERROR_SUCCESS);
    EXPECT_EQ(store.DeleteTree(u"Software", true), ERROR_SUCCESS) << "deleting does not build on what was read";
}

// A save that finds the store locked is lost, and no other one with it.
TEST_F(RegistryFile, AFailedSaveDoesNotForbidTheNext)
{
    MakeStore();
    RegistryStore store(m_path);
    EXPECT_EQ(Load(store), (Data{1, 2, 3}));
    RawDatabase other(m_path);
    other("BEGIN EXCLUSIVE");
    EXPECT_EQ(Save(store, {9}), ERROR_LOCK_VIOLATION);
    other("ROLLBACK");
    EXPECT_EQ(Save(store, {9}), ERROR_SUCCESS);
}

// A place that cannot be looked at was taken for one without a store.
TEST_F(RegistryFile, AFolderThatMayNotBeEnteredIsNoEmptyStore)
{
    MakeStore();
    const auto asUser = [&]
    {
        fs::permissions(m_path.parent_path(), fs::perms::owner_all);
        DropPrivileges();
        RegistryStore store(m_path);
        Load(store);
        _exit(m_status == ERROR_ACCESS_DENIED ? 0 : 1);
    };
    if (geteuid() != 0)
        GTEST_SKIP() << "needs root to become somebody else than the folder's owner";
    EXPECT_EXIT(asUser(), testing::ExitedWithCode(0), "");
}

TEST_F(RegistryFile, AReadOnlyFolderIsReadAndLeftAlone)
{
    MakeStore();
    fs::permissions(m_path, kReadable);
    fs::permissions(m_path.parent_path(), kReadable | kEnterable);
    const std::string before = ReadFile(m_path);
    const auto asUser = [&]
    {
        DropPrivileges();
        RegistryStore store(m_path);
        const bool read = Load(store) == Data{1, 2, 3};
        const bool refused = Save(store, {9}) == ERROR_ACCESS_DENIED && !store.Writable();
        _exit((read ? 0 : 1) + (refused ? 0 : 2));
    };
    EXPECT_EXIT(asUser(), testing::ExitedWithCode(0), "");
    EXPECT_TRUE(ReadFile(m_path) == before);
    fs::permissions(m_path.parent_path(), fs::perms::all);
}

TEST_F(RegistryFile, AFileInTheFoldersPlaceIsRefused)
{
    WriteFile(m_path.parent_path(), "a file");
    RegistryStore store(m_path);
    EXPECT_TRUE(Load(store).empty());
    EXPECT_NE(Save(store, {9}), ERROR_SUCCESS);
    EXPECT_EQ(ReadFile(m_path.parent_path()), "a file");
    RegistryStore nowhere("");
    EXPECT_TRUE(Load(nowhere).empty());
    EXPECT_NE(Save(nowhere, {9}), ERROR_SUCCESS);
}

TEST_F(RegistryFile, AFullDiskFailsTheSaveAndKeepsTheOld)
{
    MakeStore();
    const auto onFullDisk = [&]
    {
        // A limit on the size of files stands in for a disk without room.
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{30000, RLIM_INFINITY};
        RegistryStore store(m_path);
        bool good = setrlimit(RLIMIT_FSIZE, &limit) == 0;
        good = good && Save(store, Data(1 << 20, 7)) != ERROR_SUCCESS;
        good = good && Load(store) == Data{1, 2, 3};
        good = good && Save(store, {4}) == ERROR_SUCCESS;
        _exit(good ? 0 : 1);
    };
    EXPECT_EXIT(onFullDisk(), testing::ExitedWithCode(0), "");
    RegistryStore store(m_path);
    EXPECT_EQ(Load(store), Data{4});
}

TEST_F(RegistryFile, AWriterKilledAtAnyMomentLeavesAWholeStore)
{
    MakeStore(Data(3000, 0));
    for (int round = 0; round < 20; ++round)
    {
        int saves[2];
        ASSERT_EQ(pipe(saves), 0);
        const pid_t child = fork();
        ASSERT_GE(child, 0) << "-1 would be everybody's";
        if (child == 0)
        {
            RegistryStore store(m_path);
            for (unsigned char i = 1;; ++i)
                if (Save(store, Data(3000, i)) != ERROR_SUCCESS || write(saves[1], "s", 1) != 1)
                    _exit(1);
        }
        // After a varying number of saves the next one is under way.
        char byte = 0;
        for (int i = 0; i <= round % 5; ++i)
            EXPECT_EQ(read(saves[0], &byte, 1), 1);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        close(saves[0]);
        close(saves[1]);

        RegistryStore store(m_path);
        const Data data = Load(store);
        ASSERT_EQ(data.size(), 3000u);
        EXPECT_EQ(std::count(data.begin(), data.end(), data[0]), 3000) << "old or new, never a mixture";
        EXPECT_EQ(RawDatabase{m_path}("PRAGMA integrity_check"), "ok");
    }
    EXPECT_FALSE(fs::exists(Aside(1)));
}

// Two processes that start at the same time on a machine that has no store yet.
TEST_F(RegistryFile, WritersAtTheSameTimeShareTheStore)
{
    constexpr int kWriters = 4;
    for (int round = 0; round < 5; ++round)
    {
        fs::remove_all(m_path.parent_path());
        std::vector<pid_t> children;
        for (int i = 0; i < kWriters; ++i)
        {
            const pid_t child = fork();
            ASSERT_GE(child, 0);
            if (child == 0)
            {
                RegistryStore store(m_path);
                bool created = false;
                const std::u16string key = u"Software\\Writer" + std::u16string(1, static_cast<char16_t>(u'0' + i));
                LONG status = ERROR_LOCK_VIOLATION;
                for (int attempt = 0; attempt < 50 && status == ERROR_LOCK_VIOLATION; ++attempt)
                {
                    Load(store);
                    status = store.CreateKey(key, created);
                }
                _exit(status == ERROR_SUCCESS ? 0 : 1);
            }
            children.push_back(child);
        }
        for (const pid_t child : children)
        {
            int status = 0;
            waitpid(child, &status, 0);
            EXPECT_EQ(status, 0);
        }
        EXPECT_FALSE(fs::exists(Aside(1))) << "a store that is being made is no damaged one";
        EXPECT_EQ(RawDatabase{m_path}("SELECT count(*) FROM keys WHERE name LIKE 'Writer%'"), std::to_string(kWriters));
    }
}

/// The machine's hive as somebody sees it who may only read it, with a store of their own.
class MachineHive : public RegistryFile
{
protected:
    static constexpr LPCWSTR kKey = u"Software\\Orb";

    /// Runs the work in a process of an ordinary user, which ends with the number that it returns.
    template <typename Work>
    void AsUser(Work work)
    {
        setenv("XDG_CONFIG_DIRS", (m_folder / "system").c_str(), 1);
        setenv("XDG_CONFIG_HOME", (m_folder / "user").c_str(), 1);
        fs::create_directories(m_folder / "user");
        fs::permissions(m_folder / "user", fs::perms::all);
        EXPECT_EXIT(
            {
                DropPrivileges();
                _exit(work());
            },
            testing::ExitedWithCode(0), "");
    }

    void SetUp() override
    {
        if (geteuid() != 0)
            GTEST_SKIP() << "needs root to become somebody else than the files' owner";
    }

    static LONG Write(LPCWSTR path, LPCWSTR name)
    {
        HKEY key = nullptr;
        const LONG status = RegCreateKeyW(HKEY_LOCAL_MACHINE, path, &key);
        const LONG written = status == ERROR_SUCCESS ? RegSetValueExW(key, name, 0, REG_NONE, nullptr, 0) : status;
        RegCloseKey(key);
        return written;
    }
    static bool Has(LPCWSTR path, LPCWSTR name)
    {
        HKEY key = nullptr;
        const bool found = RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) == ERROR_SUCCESS &&
                           RegQueryValueExW(key, name, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
        RegCloseKey(key);
        return found;
    }

    fs::path SystemFile() const { return m_folder / "system/orb-launcher/registry.db"; }
    fs::path UserFile() const { return m_folder / "user/orb-launcher/registry.db"; }
};

TEST_F(MachineHive, TakesWhatAnOrdinaryUserWritesIntoAnOverlayOfTheirOwn)
{
    {
        setenv("XDG_CONFIG_DIRS", (m_folder / "system").c_str(), 1);
        RegistryStore machine(SystemFile());
        bool created = false;
        machine.CreateKey(kKey, created); // makes folders that everybody may read
        machine.WriteValue(kKey, u"theirs", REG_NONE, {});
    }
    const std::string before = ReadFile(SystemFile());
    AsUser(
        []
        {
            const bool writes = Write(kKey, u"mine") == ERROR_SUCCESS && Has(kKey, u"mine") && Has(kKey, u"theirs") &&
                                Write(u"Software\\New", u"mine") == ERROR_SUCCESS && Has(u"Software\\New", u"mine");
            HKEY key = nullptr;
            RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_READ | KEY_WRITE, &key);
            const bool refuses = RegDeleteValueW(key, u"theirs") == ERROR_ACCESS_DENIED && Has(kKey, u"theirs");
            const bool forgets = RegDeleteTreeW(HKEY_LOCAL_MACHINE, u"Software\\New") == ERROR_SUCCESS &&
                                 !Has(u"Software\\New", u"mine");
            return (writes ? 0 : 1) + (refuses ? 0 : 2) + (forgets ? 0 : 4);
        });
    EXPECT_EQ(ReadFile(SystemFile()), before);
    const char* const names = "SELECT v.name FROM keys JOIN \"values\" v ON key = id WHERE path = "
                              "'VIRTUALSTORE\\MACHINE\\SOFTWARE\\ORB'";
    EXPECT_EQ(RawDatabase{UserFile()}(names), "mine") << "as docs/registry.md tells";
    // The same user with rights writes the hive itself, and the overlay is no longer in the way.
    Hive user(UserFile());
    Hive machine(SystemFile(), user, u"VirtualStore\\Machine");
    EXPECT_EQ(machine.WriteValue(kKey, u"mine", REG_BINARY, Data{1}), ERROR_SUCCESS);
    RegistryValue value;
    EXPECT_EQ(machine.ReadValue(kKey, u"mine", value), ERROR_SUCCESS);
    EXPECT_EQ(value.data, Data{1});
}

TEST_F(MachineHive, ThatIsNoneStillTakesThem)
{
    WriteFile(SystemFile(), std::string(5000, 'x'));
    const auto tick = []
    {
        const bool before = Has(kKey, u"114");
        return !before && Write(kKey, u"114") == ERROR_SUCCESS && Has(kKey, u"114") ? 0 : 1;
    };
    AsUser(tick);
    EXPECT_TRUE(fs::exists(SystemFile())) << "who may not write it cannot set it aside";
    AsUser([] { return Has(kKey, u"114") ? 0 : 1; });
    fs::remove(UserFile());
    fs::permissions(SystemFile(), fs::perms::none);
    AsUser(tick);
    fs::remove(UserFile());
    fs::permissions(m_folder / "system", fs::perms::none);
    AsUser(tick);
}
