// What is shown of a mount that never answers, and of what leads there.
#include "tests/layer/shell_scratch.h"
#include "tests/layer/stalled_mount.h"

#include "windows.h"

#include "platform/drawing/icon.h"
#include "platform/icons/icon_file.h"
#include "platform/icons/shell_icon.h"

#include <gtest/gtest.h>

#include <chrono>

using namespace shell_test;

namespace
{

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr UINT kNotice = WM_APP + 2;

class ShellStalled : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!m_mount.Mounted())
            GTEST_SKIP() << "only root may mount here, or there is no /dev/fuse";
    }

    /// What `work` takes.
    template <typename F>
    static milliseconds TimeOf(F work)
    {
        const auto start = Clock::now();
        work();
        return std::chrono::duration_cast<milliseconds>(Clock::now() - start);
    }

    std::filesystem::path m_folder = NewFolder();
    StalledMount m_mount{m_folder / "stalled"};
};

} // namespace

TEST_F(ShellStalled, AFolderThatHoldsItIsListedAtOnce)
{
    Write(m_folder / "file", "");
    std::vector<Item> items;
    EXPECT_LT(TimeOf([&] { items = Items(m_folder); }), milliseconds(200));
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(Find(items, "stalled")->attributes, SFGAO_FOLDER);
}

TEST_F(ShellStalled, LinksIntoItAreListedAllTheSame)
{
    std::filesystem::create_symlink("stalled/inside", m_folder / "into");
    std::filesystem::create_symlink("stalled", m_folder / "onto");
    std::filesystem::create_symlink(m_folder / "stalled/app.desktop", m_folder / "app.desktop");
    std::filesystem::create_directory(m_folder / "folder");
    std::filesystem::create_symlink("folder", m_folder / "onto folder");
    std::vector<Item> items;
    EXPECT_LT(TimeOf([&] { items = Items(m_folder); }), milliseconds(1000));
    for (const char* link : {"into", "onto", "app.desktop"})
    {
        ASSERT_NE(Find(items, link), nullptr) << link;
        EXPECT_EQ(Find(items, link)->attributes, SFGAO_LINK | SFGAO_STREAM) << link;
    }
    EXPECT_EQ(Find(items, "onto")->info.iIcon, Find(items, "onto folder")->info.iIcon)
        << "it is known to be a folder, whatever is mounted there";
}

// A desktop entry whose icon lay on a dead mount hung the program for ever.
TEST_F(ShellStalled, IconsOnItCostASecondOnce)
{
    const auto imageOf = [&](const char* name)
    {
        Write(m_folder / (name + std::string(".desktop")), "[Desktop Entry]\nType=Application\nExec=true\nIcon=" +
                                                               (m_folder / "stalled" / name).native() + ".png\n");
        const std::vector<Item> items = Items(m_folder);
        SHFILEINFOW info{};
        const auto* list = reinterpret_cast<LPCWSTR>(Find(items, name + std::string(".desktop"))->absolute.get());
        SHGetFileInfoW(list, 0, &info, sizeof info, SHGFI_PIDL | SHGFI_ICON | SHGFI_SYSICONINDEX);
        const auto source = platform::IconSourceOf(info.hIcon);
        EXPECT_FALSE(source->Image().pixels.empty());
        EXPECT_TRUE(DestroyIcon(info.hIcon));
    };
    EXPECT_LT(TimeOf([&] { imageOf("first"); }), milliseconds(3000));
    EXPECT_LT(TimeOf([&] { imageOf("second"); }), milliseconds(500)) << "it still owes an answer";
    RunDeferred();
    m_mount.TakeDown();
    EXPECT_TRUE(WaitFor([&] { return platform::WitnessOf((m_folder / "stalled/first.png").native()).has_value(); }))
        << "its late answer has been taken, and it is asked again";
}

TEST_F(ShellStalled, AnIconThatIsKnownIsShownAsItWasLastSeen)
{
    const auto place = m_folder / "pictures";
    std::filesystem::create_directory(place);
    const std::string path = (place / "red.svg").native();
    Write(path,
          "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'><rect width='8' height='8' fill='red'/></svg>");
    const std::vector<std::uint32_t> seen = platform::ShellIcon(path, 24, false)->Image().pixels;
    ASSERT_EQ(seen[24 * 12 + 12], 0xFFFF0000);
    const StalledMount over(place);
    ASSERT_TRUE(over.Mounted());
    std::vector<std::uint32_t> shown;
    EXPECT_LT(TimeOf([&] { shown = platform::ShellIcon(path, 24, false)->Image().pixels; }), milliseconds(3000));
    EXPECT_EQ(shown, seen);
}

// A network folder that did not answer for a moment was shown empty, and its order was lost with the next saving.
TEST_F(ShellStalled, AFolderThatIsKnownIsListedAsItWasLastSeen)
{
    const auto place = m_folder / "server";
    std::filesystem::create_directories(place / "share/sub");
    Write(place / "share/readme.txt", "");
    ASSERT_EQ(Items(place / "share").size(), 2u);
    RunDeferred();
    StalledMount over(place);
    ASSERT_TRUE(over.Mounted());
    std::vector<Item> items;
    EXPECT_LT(TimeOf([&] { items = Items(place / "share"); }), milliseconds(3000));
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(Find(items, "sub")->attributes, SFGAO_FOLDER);
    EXPECT_LT(TimeOf([&] { items = Items(place / "share"); }), milliseconds(500)) << "it still owes an answer";
    EXPECT_EQ(items.size(), 2u);
    EXPECT_LT(TimeOf(RunDeferred), milliseconds(500));
    over.TakeDown();
    EXPECT_TRUE(WaitFor([&] { return Items(place / "share").size() == 2; }));
}

TEST_F(ShellStalled, OpeningItIsGivenUpAndMadeGoodWhenItAnswers)
{
    const HWND window = MakeWindow();
    List list;
    EXPECT_LT(TimeOf([&] { list = Parse(m_folder / "stalled"); }), milliseconds(200));
    ASSERT_NE(list, nullptr);
    const Com<IShellFolder> bound = Bind(list.get());
    IEnumIDList* items = nullptr;
    EXPECT_LT(TimeOf([&] { EXPECT_TRUE(FAILED(bound->EnumObjects(nullptr, SHCONTF_NONFOLDERS, &items))); }),
              milliseconds(3000));
    EXPECT_LT(TimeOf([&] { EXPECT_TRUE(FAILED(bound->EnumObjects(nullptr, SHCONTF_NONFOLDERS, &items))); }),
              milliseconds(200))
        << "the first reader still hangs, so there is no use in waiting again";

    const SHChangeNotifyEntry entry{list.get(), FALSE};
    const ULONG id = SHChangeNotifyRegister(window, SHCNRF_ShellLevel, SHCNE_CREATE, kNotice, 1, &entry);
    EXPECT_NE(id, 0u);
    EXPECT_LT(TimeOf(RunDeferred), milliseconds(1000));
    m_mount.TakeDown();
    MSG message;
    EXPECT_TRUE(WaitFor([&] { return PeekMessageW(&message, window, kNotice, kNotice, PM_REMOVE) != FALSE; }))
        << "the reader came back";
    EXPECT_TRUE(SHChangeNotifyDeregister(id));
    DestroyWindow(window);
}

TEST_F(ShellStalled, MenusOfWhatLiesThereOpenAtOnce)
{
    std::filesystem::create_symlink("stalled/tool.desktop", m_folder / "tool.desktop");
    for (const char* name : {"stalled", "tool.desktop"})
    {
        const Bound bound(m_folder / name);
        ASSERT_NE(bound.folder, nullptr);
        const HMENU menu = CreatePopupMenu();
        EXPECT_LT(TimeOf([&] { bound.Menu()->QueryContextMenu(menu, 0, 11, 0x7FFF, CMF_NORMAL); }), milliseconds(100))
            << name;
        EXPECT_GT(GetMenuItemCount(menu), 5);
        DestroyMenu(menu);
    }
}
