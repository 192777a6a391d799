// Change notices, on real folders and in real time.
#include "tests/layer/shell_scratch.h"

#include "windows.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <functional>
#include <utility>

using namespace shell_test;

namespace
{

constexpr UINT notice = WM_APP + 2;
constexpr LONG menuEvents =
    SHCNE_RENAMEITEM | SHCNE_CREATE | SHCNE_DELETE | SHCNE_MKDIR | SHCNE_RMDIR | SHCNE_RENAMEFOLDER;

int g_notices = 0;

LRESULT CALLBACK CountNotices(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    g_notices += message == notice;
    return DefWindowProcW(window, message, wParam, lParam);
}

/// A window registered for one folder's changes, as a menu level is.
class ShellWatch : public testing::Test
{
protected:
    void SetUp() override
    {
        WNDCLASSEXW windowClass{};
        windowClass.cbSize = sizeof windowClass;
        windowClass.lpfnWndProc = CountNotices;
        windowClass.lpszClassName = TEXT("WatchTest");
        RegisterClassExW(&windowClass);
        window =
            CreateWindowExW(0, TEXT("WatchTest"), TEXT(""), WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
        ASSERT_NE(window, nullptr);
        folder = NewFolder();
        g_notices = 0;
    }

    void TearDown() override
    {
        SHChangeNotifyDeregister(id);
        DestroyWindow(window);
    }

    void Register(const std::filesystem::path& path)
    {
        const List list = Parse(path);
        const SHChangeNotifyEntry entry{list.get(), FALSE};
        id = SHChangeNotifyRegister(window, SHCNRF_InterruptLevel | SHCNRF_ShellLevel | SHCNRF_NewDelivery, menuEvents,
                                    notice, 1, &entry);
        ASSERT_NE(id, 0u);
    }

    /// Registers and waits until the watch is known to work: a file made before is noticed only when it is looked for.
    void RegisterAndSettle(const std::filesystem::path& path)
    {
        Items(path);
        Register(path);
        RunDeferred();
        ASSERT_TRUE(WaitFor(
            [&]
            {
                Write(path / "probe", "");
                std::filesystem::remove(path / "probe");
                return Noticed();
            }));
        Settle(path);
    }

    /// Serves notices until none has come for a while.
    void Settle(const std::filesystem::path& path)
    {
        for (int quiet = 0; quiet < 100; ++quiet)
        {
            if (Noticed())
            {
                quiet = 0;
                Items(path);
            }
            poll(nullptr, 0, 2);
        }
        g_notices = 0;
    }

    /// Dispatches what was posted; whether a notice was among it since the last call.
    static bool Noticed()
    {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        {
            DispatchMessageW(&message);
        }
        return std::exchange(g_notices, 0) != 0;
    }

    HWND window = nullptr;
    ULONG id = 0;
    std::filesystem::path folder;
};

} // namespace

TEST_F(ShellWatch, ComingGoingAndRenamingAreNoticed)
{
    RegisterAndSettle(folder);
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"a file comes", [&] { Write(folder / "file", ""); }},
        {"it is renamed", [&] { std::filesystem::rename(folder / "file", folder / "other"); }},
        {"it goes", [&] { std::filesystem::remove(folder / "other"); }},
        {"a folder comes", [&] { std::filesystem::create_directory(folder / "sub"); }},
        {"an entry comes", [&] { Write(folder / "a.desktop", "[Desktop Entry]\nName=One\n"); }},
        {"its name changes", [&] { Write(folder / "a.desktop", "[Desktop Entry]\nName=Two\n"); }},
        {"a link comes", [&] { std::filesystem::create_symlink("/", folder / "link"); }},
        {"a folder goes", [&] { std::filesystem::remove(folder / "sub"); }},
    };
    for (const auto& [what, change] : changes)
    {
        change();
        EXPECT_TRUE(WaitFor(Noticed)) << what;
        Items(folder);
        Settle(folder);
    }
}

TEST_F(ShellWatch, WhatDoesNotShowIsNotNoticed)
{
    Write(folder / "file", "");
    std::filesystem::create_directory(folder / "sub");
    RegisterAndSettle(folder);
    Write(folder / "file", "other content");
    Write(folder / ".hidden", "");
    Write(folder / "backup~", "");
    Write(folder / "sub/inside", "");
    int quiet = 0;
    EXPECT_FALSE(WaitFor([&] { return Noticed() || ++quiet > 300; }) && quiet <= 300);
}

TEST_F(ShellWatch, ABurstIsToldAFewTimes)
{
    RegisterAndSettle(folder);
    int reloads = 0;
    for (int i = 0; i < 1000; ++i)
    {
        Write(folder / ("file" + std::to_string(i)), "");
        if (Noticed())
        {
            ++reloads;
            Items(folder); // a menu reads the folder anew
        }
    }
    EXPECT_TRUE(WaitFor(
        [&]
        {
            if (Noticed())
            {
                ++reloads;
                return Items(folder).size() == 1000;
            }
            return false;
        }))
        << "the last change must be told as well";
    EXPECT_LE(reloads, 30);
}

TEST_F(ShellWatch, OneNoticeAtATimeWaitsToBeServed)
{
    RegisterAndSettle(folder);
    Write(folder / "first", "");
    ASSERT_TRUE(WaitFor(Noticed));
    Write(folder / "second", "");
    int quiet = 0;
    EXPECT_FALSE(WaitFor([&] { return Noticed() || ++quiet > 150; }) && quiet <= 150) << "the first was not served yet";
    Items(folder);
    EXPECT_TRUE(WaitFor(Noticed)) << "the second was put off, not lost";
}

TEST_F(ShellWatch, AChangeBeforeTheWatchStartsIsNotLost)
{
    // The folder's time must be old enough to tell: file times are coarse.
    const timespec past[] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    utimensat(AT_FDCWD, folder.c_str(), past, 0);
    Items(folder);
    Register(folder);
    Write(folder / "in between", "");
    EXPECT_FALSE(Noticed());
    RunDeferred();
    EXPECT_TRUE(WaitFor(Noticed));
}

TEST_F(ShellWatch, AFolderReachedThroughALinkIsWatched)
{
    const auto alias = folder.parent_path() / "alias";
    std::filesystem::create_directory_symlink(folder, alias);
    RegisterAndSettle(alias);
    Write(folder / "by its own name", "");
    EXPECT_TRUE(WaitFor(Noticed));
    std::filesystem::remove(alias);
}

TEST_F(ShellWatch, AFolderThatGoesAndComesBackIsNoticed)
{
    RegisterAndSettle(folder);
    std::filesystem::remove(folder);
    EXPECT_TRUE(WaitFor(Noticed)) << "it went";
    Settle(folder.parent_path());
    std::filesystem::create_directory(folder);
    EXPECT_TRUE(WaitFor(
        [&]
        {
            Write(folder / "probe", "");
            std::filesystem::remove(folder / "probe");
            return Noticed();
        }))
        << "it is watched again";
}

TEST_F(ShellWatch, NothingComesAfterDeregistration)
{
    RegisterAndSettle(folder);
    EXPECT_TRUE(SHChangeNotifyDeregister(id));
    EXPECT_FALSE(SHChangeNotifyDeregister(id));
    Write(folder / "late", "");
    int quiet = 0;
    EXPECT_FALSE(WaitFor([&] { return Noticed() || ++quiet > 150; }) && quiet <= 150);
}
