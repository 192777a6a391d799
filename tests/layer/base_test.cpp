// Handles, clock, cache files and small system calls.
#include "platform/base/cache_folder.h"
#include "platform/base/clock.h"
#include "platform/base/deferred.h"
#include "platform/base/file_content.h"
#include "platform/base/handle_table.h"
#include "platform/base/last_error.h"
#include "platform/base/xdg_folders.h"

#include "windows.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

using namespace platform;

namespace
{

struct TestMenu : HandleObject
{
    static constexpr HandleKind kHandleKind = HandleKind::Menu;
    TestMenu() : HandleObject(kHandleKind) {}
};

/// A folder of this test's own, removed afterwards.
class ScratchFolder
{
public:
    ScratchFolder()
    {
        std::string name = testing::TempDir() + "/orb-base-XXXXXX";
        m_path = mkdtemp(name.data());
    }
    ~ScratchFolder() { std::filesystem::remove_all(m_path); }
    std::string operator/(const char* name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

} // namespace

TEST(Handles, NameTheirObjectUntilTaken)
{
    const std::uintptr_t value = InsertHandle(std::make_unique<TestMenu>());
    EXPECT_GE(value, 0x100u);
    EXPECT_EQ(LiveHandles(HandleKind::Menu), 1u);
    EXPECT_NE(FindObject<TestMenu>(reinterpret_cast<HMENU>(value)), nullptr);
    EXPECT_EQ(FindHandle(value - 0x100 + 0x100000), nullptr);
    EXPECT_EQ(FindHandle(0), nullptr);
    EXPECT_NE(TakeHandle(value), nullptr);
    EXPECT_EQ(FindHandle(value), nullptr);
    EXPECT_EQ(TakeHandle(value), nullptr);
    EXPECT_EQ(LiveHandles(HandleKind::Menu), 0u);
}

TEST(Handles, FreedValuesRest)
{
    std::uintptr_t last = 0;
    std::set<std::uintptr_t> used;
    for (int i = 0; i < 1000; ++i)
    {
        const std::uintptr_t value = InsertHandle(std::make_unique<TestMenu>());
        EXPECT_NE(value, last);
        last = value;
        used.insert(value);
        TakeHandle(value);
    }
    EXPECT_GT(used.size(), 32u) << "a stale handle must not meet a new object at once";
    EXPECT_LT(used.size(), 200u) << "but values are used again";
}

TEST(Handles, PermanentObjectsCannotBeClosedOrCounted)
{
    auto object = std::make_unique<TestMenu>();
    object->permanent = true;
    const std::uintptr_t value = InsertHandle(std::move(object));
    EXPECT_EQ(TakeHandle(value), nullptr);
    EXPECT_EQ(LiveHandles(HandleKind::Menu), 0u);
    FindHandle(value)->permanent = false;
    EXPECT_NE(TakeHandle(value), nullptr);
}

// A file that another program shortened after it had been mapped ended this one.
TEST(Files, StayAsTheyWereRead)
{
    const ScratchFolder scratch;
    const std::string path = scratch / "file";
    const std::string text(3 * 4096, 'x');
    std::ofstream(path) << text;
    const FileContent content(path);
    const UniqueFd file = OpenFile(path);
    std::filesystem::resize_file(path, 1);
    EXPECT_TRUE(content.Content() == text);
    EXPECT_EQ(FileContent(file).Content(), "x");
    char piece[8] = "";
    EXPECT_EQ(ReadAt(file.Get(), piece, sizeof piece, 0), 1u);
    EXPECT_EQ(ReadAt(file.Get(), piece, sizeof piece, 4096), 0u);
}

TEST(Files, OnlyRegularOnesAreOpened)
{
    const ScratchFolder scratch;
    ASSERT_EQ(mkfifo((scratch / "pipe").c_str(), 0600), 0);
    std::ofstream(scratch / "large");
    std::filesystem::resize_file(scratch / "large", (64 << 20) + 1);
    EXPECT_FALSE(OpenFile(scratch / "pipe")) << "nor waited for";
    EXPECT_FALSE(OpenFile(scratch / "."));
    EXPECT_FALSE(OpenFile(scratch / "missing"));
    EXPECT_TRUE(OpenFile(scratch / "large"));
    EXPECT_TRUE(FileContent(scratch / "large").Content().empty());
}

TEST(CacheFiles, AreReplacedWhole)
{
    const ScratchFolder scratch;
    const std::string path = scratch / "cache";
    const auto content = [&] { return std::string(FileContent(OpenCacheFile(path)).Content()); };
    EXPECT_EQ(content(), "");
    ASSERT_TRUE(ReplaceCacheFile(path, "first"));
    const UniqueFd first = OpenCacheFile(path);
    ASSERT_TRUE(ReplaceCacheFile(path, "second"));
    EXPECT_EQ(FileContent(first).Content(), "first") << "a file that is being read is not written into";
    EXPECT_EQ(content(), "second");
    EXPECT_FALSE(ReplaceCacheFile(scratch / "missing/cache", "x"));
    std::filesystem::create_directory(scratch / "folder");
    EXPECT_FALSE(ReplaceCacheFile(scratch / "folder", "x"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(scratch / "."), {}), 2) << "no temporary file is left";
}

// Anybody who could write there could tell the program what it shows and which files it reads.
TEST(CacheFiles, AreOnlyBelievedWhereNobodyElseCanWrite)
{
    const ScratchFolder scratch;
    const std::string path = scratch / "cache";
    ASSERT_TRUE(ReplaceCacheFile(path, "mine"));
    EXPECT_TRUE(OpenCacheFile(path));
    for (const mode_t mode : {0620, 0602})
    {
        chmod(path.c_str(), mode);
        EXPECT_FALSE(OpenCacheFile(path)) << std::oct << mode;
    }
    chmod(path.c_str(), 0644);
    EXPECT_TRUE(OpenCacheFile(path)) << "what others may read is no danger";

    const std::string folder = scratch / "base/orb-launcher";
    ASSERT_TRUE(MakeFolders(folder));
    const auto isTrusted = [&]
    {
        setenv("XDG_CACHE_HOME", (scratch / "base").c_str(), 1);
        _exit(CacheFolder() == folder ? 0 : CacheFolder().empty() ? 1 : 2);
    };
    EXPECT_EXIT(isTrusted(), testing::ExitedWithCode(0), "");
    for (const mode_t mode : {0770, 0702})
    {
        chmod(folder.c_str(), mode);
        EXPECT_EXIT(isTrusted(), testing::ExitedWithCode(1), "") << std::oct << mode;
    }
    chmod(folder.c_str(), 0755);
    EXPECT_EXIT(isTrusted(), testing::ExitedWithCode(0), "");
    constexpr uid_t kSomebodyElse = 65534;
    if (chown(folder.c_str(), kSomebodyElse, static_cast<gid_t>(-1)) != 0 ||
        chown(path.c_str(), kSomebodyElse, static_cast<gid_t>(-1)) != 0)
        GTEST_SKIP() << "needs root to give files to somebody else";
    EXPECT_EXIT(isTrusted(), testing::ExitedWithCode(1), "");
    EXPECT_FALSE(OpenCacheFile(path));
}

TEST(CacheFiles, FolderIsMadeWithItsParents)
{
    const ScratchFolder scratch;
    const std::string expected = scratch / "deep/cache/orb-launcher";
    // A process has one for all its life.
    EXPECT_EXIT(
        {
            setenv("XDG_CACHE_HOME", (scratch / "deep/cache").c_str(), 1);
            _exit(CacheFolder() == expected ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_TRUE(std::filesystem::is_directory(expected));
}

TEST(XdgFolders, RelativePathsCountAsNotSet)
{
    const auto withVariables = [](const char* home, const char* user, const char* system, auto check)
    {
        EXPECT_EXIT(
            {
                setenv("HOME", home, 1);
                for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
                    setenv(name, user, 1);
                for (const char* name : {"XDG_DATA_DIRS", "XDG_CONFIG_DIRS"})
                    setenv(name, system, 1);
                _exit(check() ? 0 : 1);
            },
            testing::ExitedWithCode(0), "");
    };
    using Folders = std::vector<std::string>;
    const auto usual = []
    {
        return HomeFolder() == "/home/orb" && DataHome() == "/home/orb/.local/share" &&
               ConfigHome() == "/home/orb/.config" && CacheHome() == "/home/orb/.cache" &&
               DataFolders() == Folders{DataHome(), "/usr/local/share", "/usr/share"} &&
               SystemConfigFolders() == Folders{"/etc/xdg"};
    };
    withVariables("/home/orb/", "", "", usual);
    withVariables("/home/orb", "own", "some:other", usual);
    withVariables(
        "/", "/own", "some:/a::/b/",
        []
        {
            return HomeFolder().empty() && DataHome() == "/own" && ConfigHome() == "/own" && CacheHome() == "/own" &&
                   DataFolders() == Folders{"/own", "/a", "/b"} && SystemConfigFolders() == Folders{"/a", "/b"};
        });
    withVariables("relative", "", "", [] { return HomeFolder() != "relative"; });
}

TEST(XdgFolders, AreMadeWithTheirParentsOrTellWhyNot)
{
    const ScratchFolder scratch;
    EXPECT_TRUE(MakeFolders(scratch / "a/b/c"));
    EXPECT_TRUE(MakeFolders(scratch / "a/b/c/"));
    EXPECT_TRUE(std::filesystem::is_directory(scratch / "a/b/c"));
    EXPECT_EQ(std::filesystem::status(scratch / "a").permissions(), std::filesystem::perms::owner_all);
    std::ofstream(scratch / "file").put('x');
    EXPECT_FALSE(MakeFolders(scratch / "file"));
    EXPECT_EQ(errno, ENOTDIR);
    EXPECT_FALSE(MakeFolders(scratch / "file/below"));
    EXPECT_EQ(errno, ENOTDIR);
    EXPECT_FALSE(MakeFolders(""));
}

// The watch of a folder that closes was still begun, beside the program just started.
TEST(DeferredWork, OnlyWhatMustNotBeLostIsDoneAtExit)
{
    const auto say = [](const char* text) { return [text] { std::fputs(text, stderr); }; };
    const auto leave = [&](bool pumpFirst)
    {
        Defer(AtExit::Drop, say("a"));
        Defer(AtExit::Do, say("B"));
        Defer(AtExit::Drop, say("c"));
        Defer(AtExit::Drop, say("d"));
        Defer(AtExit::Do, say("E"));
        Defer(AtExit::Drop, say("f"));
        while (pumpFirst && RunOneDeferred())
            continue;
        std::exit(0);
    };
    EXPECT_EXIT(leave(false), testing::ExitedWithCode(0), "^BE$");
    EXPECT_EXIT(leave(true), testing::ExitedWithCode(0), "^aBcdEf$");
}

TEST(SystemCalls, MulDivRoundsHalvesAway)
{
    EXPECT_EQ(MulDiv(4, 150, 100), 6);
    EXPECT_EQ(MulDiv(1, 1, 2), 1);
    EXPECT_EQ(MulDiv(-1, 1, 2), -1);
    EXPECT_EQ(MulDiv(1, -1, 2), -1);
    EXPECT_EQ(MulDiv(7, 1, -2), -4);
    EXPECT_EQ(MulDiv(5, 1, 0), -1);
    EXPECT_EQ(MulDiv(0x7FFFFFFF, 2, 1), -1);
    EXPECT_EQ(MulDiv(0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF), 0x7FFFFFFF);
}

TEST(SystemCalls, CreateDirectoryTellsWhyNot)
{
    const ScratchFolder scratch;
    const std::string path = scratch / "new";
    const std::u16string shellPath = [&]
    {
        std::u16string text(path.begin(), path.end());
        std::replace(text.begin(), text.end(), u'/', u'\\');
        return text;
    }();
    EXPECT_TRUE(CreateDirectoryW(shellPath.c_str(), nullptr));
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_FALSE(CreateDirectoryW(shellPath.c_str(), nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ALREADY_EXISTS));
    EXPECT_FALSE(CreateDirectoryW((shellPath + u"\\a\\b").c_str(), nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    std::ofstream(scratch / "file").put('x');
    EXPECT_FALSE(CreateDirectoryW((shellPath + u"\\..\\file").c_str(), nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ALREADY_EXISTS)) << "a file in the way counts as existing";
}

TEST(Resources, AProgramWithoutAnyFindsNothing)
{
    EXPECT_EQ(FindResourceW(nullptr, MAKEINTRESOURCEW(1), RT_BITMAP), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_RESOURCE_DATA_NOT_FOUND));
    WCHAR text[4] = {1, 1, 1, 1};
    EXPECT_EQ(LoadStringW(nullptr, 1, text, 4), 0);
    EXPECT_EQ(text[0], 0);
}
