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

constexpr UINT kNotice = WM_APP + 2;
constexpr UINT kOtherNotice = WM_APP + 3;
constexpr LONG kMenuEvents =
    SHCNE_RENAMEITEM | SHCNE_CREATE | SHCNE_DELETE | SHCNE_MKDIR | SHCNE_RMDIR | SHCNE_RENAMEFOLDER;

int g_notices = 0;
int g_otherNotices = 0;

LRESULT CALLBACK CountNotices(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    g_notices += message == kNotice;
    g_otherNotices += message == kOtherNotice;
    return DefWindowProcW(window, message, wParam, lParam);
}

/// A window registered for one folder's changes, as a menu level is.
///
/// It also watches another folder, which tells the time: whatever happened to the first folder before the other one was
/// changed has been seen when the other one's notice comes, since one thread sees to both in order.
class ShellWatch : public testing::Test
{
protected:
    void SetUp() override
    {
        m_window = MakeWindow(CountNotices);
        ASSERT_NE(m_window, nullptr);
        m_folder = NewFolder();
        m_other = NewFolder();
        g_notices = 0;
        g_otherNotices = 0;
    }

    void TearDown() override
    {
        SHChangeNotifyDeregister(m_id);
        SHChangeNotifyDeregister(m_otherId);
        DestroyWindow(m_window);
    }

    ULONG Registered(const std::filesystem::path& path, UINT message)
    {
        const List list = Parse(path);
        const SHChangeNotifyEntry entry{list.get(), FALSE};
        return SHChangeNotifyRegister(m_window, SHCNRF_InterruptLevel | SHCNRF_ShellLevel | SHCNRF_NewDelivery,
                                      kMenuEvents, message, 1, &entry);
    }

    void Register(const std::filesystem::path& path)
    {
        m_id = Registered(path, kNotice);
        ASSERT_NE(m_id, 0u);
    }

    /// Registers and waits until the watch works. Nothing is noticed meanwhile.
    void RegisterAndSettle(const std::filesystem::path& path)
    {
        MakeOld(path);
        Items(path);
        Register(path);
        MakeOld(m_other);
        Items(m_other);
        m_otherId = Registered(m_other, kOtherNotice);
        // Its watch starts after the first folder's and finds this change.
        Write(m_other / "first", "");
        RunDeferred();
        ASSERT_TRUE(WaitFor([] { return OtherNoticed(); }));
        ASSERT_FALSE(Noticed());
    }

    /// Waits until all that has happened so far is known, and put-off tellings of it have been made.
    void CatchUp()
    {
        // The first notice says that the events are known. The second is told no sooner than what the first folder's
        // watch has put off meanwhile.
        for (int i = 0; i < 2; ++i)
        {
            Items(m_other);
            Write(m_other / std::to_string(++m_others), "");
            EXPECT_TRUE(WaitFor([] { return OtherNoticed(); }));
        }
    }

    /// Serves notices until all that has happened so far has been told.
    void Settle(const std::filesystem::path& path)
    {
        do
        {
            Items(path);
            CatchUp();
        } while (Noticed());
    }

    static void Dispatch()
    {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }

    /// Dispatches what was posted; whether a notice was among it since the last call.
    static bool Noticed()
    {
        Dispatch();
        return std::exchange(g_notices, 0) != 0;
    }
    static bool OtherNoticed()
    {
        Dispatch();
        return std::exchange(g_otherNotices, 0) != 0;
    }

    HWND m_window = nullptr;
    ULONG m_id = 0;
    ULONG m_otherId = 0;
    std::filesystem::path m_folder;
    std::filesystem::path m_other;
    int m_others = 0;
};

} // namespace

TEST_F(ShellWatch, ComingGoingAndRenamingAreNoticed)
{
    RegisterAndSettle(m_folder);
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"a file comes", [&] { Write(m_folder / "file", ""); }},
        {"it is renamed", [&] { std::filesystem::rename(m_folder / "file", m_folder / "other"); }},
        {"it goes", [&] { std::filesystem::remove(m_folder / "other"); }},
        {"a folder comes", [&] { std::filesystem::create_directory(m_folder / "sub"); }},
        {"an entry comes", [&] { Write(m_folder / "a.desktop", "[Desktop Entry]\nName=One\n"); }},
        {"its name changes", [&] { Write(m_folder / "a.desktop", "[Desktop Entry]\nName=Two\n"); }},
        {"a link comes", [&] { std::filesystem::create_symlink("/", m_folder / "link"); }},
        {"a folder goes", [&] { std::filesystem::remove(m_folder / "sub"); }},
    };
    for (const auto& [what, change] : changes)
    {
        change();
        EXPECT_TRUE(WaitFor(Noticed)) << what;
        Settle(m_folder);
    }
}

TEST_F(ShellWatch, WhatDoesNotShowIsNotNoticed)
{
    Write(m_folder / "file", "");
    std::filesystem::create_directory(m_folder / "sub");
    RegisterAndSettle(m_folder);
    Write(m_folder / "file", "other content");
    Write(m_folder / ".hidden", "");
    Write(m_folder / "backup~", "");
    Write(m_folder / "sub/inside", "");
    CatchUp();
    EXPECT_FALSE(Noticed());
    Write(m_folder / "shown", "");
    CatchUp();
    EXPECT_TRUE(Noticed()) << "catching up tells what there is to tell";
}

TEST_F(ShellWatch, OneNoticeAtATimeWaitsToBeServed)
{
    RegisterAndSettle(m_folder);
    const auto start = std::chrono::steady_clock::now();
    Write(m_folder / "first", "");
    ASSERT_TRUE(WaitFor(Noticed));
    Write(m_folder / "second", "");
    CatchUp();
    const bool again = Noticed();
    // On a machine so busy that this took a second, the change is rightly told again.
    EXPECT_TRUE(!again || std::chrono::steady_clock::now() - start >= std::chrono::seconds(1))
        << "the first was not served yet";
    Items(m_folder);
    EXPECT_TRUE(again || WaitFor(Noticed)) << "the second was put off, not lost";
}

TEST_F(ShellWatch, AFolderReachedThroughALinkIsWatched)
{
    const auto alias = m_folder.parent_path() / "alias";
    std::filesystem::create_directory_symlink(m_folder, alias);
    RegisterAndSettle(alias);
    Write(m_folder / "by its own name", "");
    EXPECT_TRUE(WaitFor(Noticed));
    std::filesystem::remove(alias);
}

TEST_F(ShellWatch, AFolderThatGoesAndComesBackIsNoticed)
{
    RegisterAndSettle(m_folder);
    std::filesystem::remove(m_folder);
    EXPECT_TRUE(WaitFor(Noticed)) << "it went";
    Settle(m_folder);
    std::filesystem::create_directory(m_folder);
    EXPECT_TRUE(WaitFor(
        [&]
        {
            Write(m_folder / "probe", "");
            std::filesystem::remove(m_folder / "probe");
            return Noticed();
        }))
        << "it is watched again";
}

TEST_F(ShellWatch, NothingComesAfterDeregistration)
{
    RegisterAndSettle(m_folder);
    EXPECT_TRUE(SHChangeNotifyDeregister(m_id));
    EXPECT_FALSE(SHChangeNotifyDeregister(m_id));
    Write(m_folder / "late", "");
    CatchUp();
    EXPECT_FALSE(Noticed());
}
