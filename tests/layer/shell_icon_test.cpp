// Finding, rendering and keeping icons.
#include "tests/layer/shell_scratch.h"

#include "platform/base/file_stamp.h"
#include "platform/drawing/icon.h"
#include "platform/icons/icon_pack.h"
#include "platform/icons/icon_theme.h"
#include "platform/icons/shell_icon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <fcntl.h>
#include <mutex>
#include <thread>
#include <unistd.h>

using namespace shell_test;
using platform::IconImage;
using platform::IconTheme;

namespace
{

std::string Square(const std::string& colour)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'><rect width='8' height='8' fill='" + colour +
           "'/></svg>";
}

constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kBlue = 0xFF0000FF;

/// The pixel in the middle of a shell icon made anew.
std::uint32_t Middle(const std::string& identity, int size)
{
    const auto icon = platform::ShellIcon(identity, size, false);
    const IconImage& image = icon->Image();
    EXPECT_EQ(image.width, size);
    EXPECT_EQ(image.height, size);
    return image.pixels[static_cast<std::size_t>(size / 2 * size + size / 2)];
}

bool IsDrawn(const IconImage& image)
{
    return std::any_of(
        image.pixels.begin(), image.pixels.end(), [](std::uint32_t pixel) { return pixel >> 24 == 255; });
}

void Touch(const std::filesystem::path& folder, const std::string& name)
{
    std::filesystem::create_directories(folder);
    Write(folder / name, "");
}

} // namespace

TEST(IconTheme, PicksTheFolderThatSuitsTheSizeAndTheNearestTheme)
{
    const auto base = NewFolder();
    const auto user = NewFolder();
    const auto loose = NewFolder();
    std::filesystem::create_directories(base / "orb");
    Write(base / "orb/index.theme",
          "[Icon Theme]\nName=Orb\nInherits=parent,missing\nDirectories=16/apps,32/apps,64/apps,big/apps\n"
          "ScaledDirectories=16@2/apps\n"
          "[16/apps]\nSize=16\nType=Fixed\n[32/apps]\nSize=32\nType=Threshold\nThreshold=4\n"
          "[64/apps]\nSize=64\nType=Fixed\n[big/apps]\nSize=96\nMinSize=80\nMaxSize=256\nType=Scalable\n"
          "[16@2/apps]\nSize=16\nScale=2\nType=Fixed\n");
    std::filesystem::create_directories(base / "parent");
    Write(base / "parent/index.theme",
          "[Icon Theme]\nInherits=orb,hicolor\nDirectories=48/apps\n[48/apps]\nSize=48\nType=Fixed\n"); // a circle
    std::filesystem::create_directories(base / "hicolor");
    Write(base / "hicolor/index.theme", "[Icon Theme]\nDirectories=48/apps\n[48/apps]\nSize=48\n");
    for (const char* folder : {"orb/16/apps", "orb/32/apps", "orb/64/apps"})
        Touch(base / folder, "app.png");
    Touch(base / "orb/big/apps", "app.svg");
    Touch(base / "orb/16@2/apps", "scaled.png");
    Touch(base / "orb/64/apps", "large.xpm");
    Touch(base / "orb/16/apps", "both.png");
    Touch(base / "orb/64/apps", "both.png");
    Touch(user / "orb/32/apps", "own.png");
    Touch(base / "parent/48/apps", "inherited.png");
    Touch(base / "hicolor/48/apps", "fallback.png");
    Touch(base / "hicolor/48/apps", "app.png");
    Touch(loose, "loose.png");

    const IconTheme theme("orb", {user.native(), base.native()}, {loose.native()});
    const auto find = [&](const char* icon, int size)
    {
        const std::string path = theme.Find(icon, size);
        const auto root = path.starts_with(user.native()) ? user : base;
        return path.empty() ? path : std::filesystem::path(path).lexically_relative(root).native();
    };
    EXPECT_EQ(find("app", 16), "orb/16/apps/app.png");
    EXPECT_EQ(find("app", 32), "orb/32/apps/app.png");
    EXPECT_EQ(find("app", 35), "orb/32/apps/app.png") << "within the threshold";
    EXPECT_EQ(find("app", 100), "orb/big/apps/app.svg") << "within the scalable range";
    EXPECT_EQ(find("app", 60), "orb/64/apps/app.png") << "nearest";
    EXPECT_EQ(find("scaled", 32), "orb/16@2/apps/scaled.png");
    EXPECT_EQ(find("large", 16), "orb/64/apps/large.xpm") << "any size rather than another theme's";
    EXPECT_EQ(find("both", 32), "orb/64/apps/both.png") << "made smaller rather than blown up";
    EXPECT_EQ(find("own", 32), "orb/32/apps/own.png");
    EXPECT_EQ(find("inherited", 16), "parent/48/apps/inherited.png");
    EXPECT_EQ(find("fallback", 16), "hicolor/48/apps/fallback.png");
    EXPECT_EQ(theme.Find("loose", 16), (loose / "loose.png").native());
    EXPECT_EQ(find("absent", 16), "");
    EXPECT_EQ(find("../orb/16/apps/app", 16), "");
}

TEST(ShellIcons, BrokenAndMissingPicturesGiveWayToTheNextBest)
{
    const auto folder = NewFolder();
    Write(folder / "bad.png", "\x89PNG\r\n\x1a\nnot really");
    Write(folder / "bad.svg", "<svg><unclosed");
    Write(folder / "good.svg", Square("red"));
    const std::string good = (folder / "good.svg").native();
    for (const char* bad : {"bad.png", "bad.svg", "absent.png"})
        EXPECT_EQ(Middle((folder / bad).native() + "\n" + good, 24), kRed) << bad;
    for (const char* builtin : {"!folder", "!document", "!program"})
    {
        for (const int size : {1, 16, 32, 48, 100})
        {
            const auto icon = platform::ShellIcon("absent-name\n" + std::string(builtin), size, false);
            EXPECT_TRUE(size < 8 || IsDrawn(icon->Image())) << builtin << " at " << size;
        }
    }
}

/// Frees whoever waits on a named pipe for longer than any reading takes.
class PipeOpener
{
public:
    explicit PipeOpener(std::filesystem::path pipe) : m_thread([this, pipe] { Wait(pipe); }) {}
    ~PipeOpener()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_done = true;
        }
        m_changed.notify_one();
        m_thread.join();
        EXPECT_FALSE(m_wasOpened) << "somebody hung on it";
    }
    PipeOpener(const PipeOpener&) = delete;
    PipeOpener& operator=(const PipeOpener&) = delete;

private:
    void Wait(const std::filesystem::path& pipe)
    {
        std::unique_lock lock(m_mutex);
        while (!m_changed.wait_for(lock, std::chrono::seconds(2), [this] { return m_done; }))
        {
            const int opened = open(pipe.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC); // fails unless there is a reader
            m_wasOpened |= opened >= 0;
            close(opened);
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_done = false;
    bool m_wasOpened = false;
    std::thread m_thread;
};

// A desktop entry whose icon was a named pipe hung the program for ever: no menu, no Escape.
TEST(ShellIcons, WhatIsNoRegularFileIsLeftAlone)
{
    const auto folder = NewFolder();
    for (const char* name : {"pipe.png", "pipe.svg"})
    {
        const auto pipe = folder / name;
        ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        std::filesystem::create_symlink(pipe, folder / ("to " + pipe.filename().native()));
        Write(folder / (pipe.filename().native() + ".desktop"),
              "[Desktop Entry]\nType=Application\nExec=true\nIcon=" + pipe.native() + "\n");
        const PipeOpener opener(pipe);
        const std::vector<Item> items = Items(folder);
        SHFILEINFOW info{};
        const auto* list =
            reinterpret_cast<LPCWSTR>(Find(items, pipe.filename().native() + ".desktop")->absolute.get());
        EXPECT_NE(SHGetFileInfoW(list, 0, &info, sizeof info, SHGFI_PIDL | SHGFI_ICON | SHGFI_SYSICONINDEX), 0u);
        EXPECT_TRUE(IsDrawn(platform::IconSourceOf(info.hIcon)->Image())) << "as a program without an icon";
        EXPECT_TRUE(DestroyIcon(info.hIcon));
        const auto link = platform::ShellIcon((folder / ("to " + pipe.filename().native())).native(), 24, false);
        EXPECT_TRUE(IsDrawn(link->Image()));
    }
    for (const char* device : {"/dev/zero", "/dev/tty"})
        EXPECT_TRUE(IsDrawn(platform::ShellIcon(device, 24, false)->Image())) << device;
    // An SVG that draws on a pipe beside it.
    const PipeOpener opener(folder / "pipe.png");
    Write(folder / "draws.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'>"
                                "<image href='pipe.png' width='8' height='8'/>"
                                "<rect width='8' height='8' fill='red'/></svg>");
    EXPECT_EQ(Middle((folder / "draws.svg").native(), 24), kRed);
}

TEST(ShellIcons, APictureIsMadeAgainWhenItsFileChanges)
{
    const auto folder = NewFolder();
    const std::string path = (folder / "icon.svg").native();
    Write(path, Square("red"));
    EXPECT_EQ(Middle(path, 20), kRed);
    RunDeferred();
    EXPECT_EQ(Middle(path, 20), kRed);
    Write(path, Square("blue"));
    EXPECT_EQ(Middle(path, 20), kBlue);
    std::filesystem::remove(path);
    const std::uint32_t missing = Middle(path, 20);
    EXPECT_NE(missing, kBlue);
    Write(path, Square("blue"));
    EXPECT_EQ(Middle(path, 20), kBlue) << "a file that was missing has appeared";
}

TEST(ShellIcons, LinksCarryAMarkAndSharePicturesWithNothingElse)
{
    const auto plain = platform::ShellIcon("!document", 32, false);
    const auto marked = platform::ShellIcon("!document", 32, true);
    EXPECT_NE(plain->Image().pixels, marked->Image().pixels);
    EXPECT_EQ(plain->Image().pixels.front(), marked->Image().pixels.front()) << "the mark is at the bottom";
}

TEST(ShellIcons, TheSameIconHasOneIndexAndAHandleOnRequest)
{
    const auto folder = NewFolder();
    for (const char* name : {"a", "b", "c"})
    {
        Write(folder / (name + std::string(".desktop")),
              std::string("[Desktop Entry]\nType=Application\nExec=true\nIcon=") +
                  (name[0] == 'c' ? "see" : "aye.png") + "\n");
    }
    const std::vector<Item> items = Items(folder);
    const int a = Find(items, "a.desktop")->info.iIcon;
    EXPECT_EQ(a, Find(items, "b.desktop")->info.iIcon);
    EXPECT_NE(a, Find(items, "c.desktop")->info.iIcon);

    for (const UINT size : {SHGFI_LARGEICON, SHGFI_SMALLICON})
    {
        SHFILEINFOW info{};
        const auto* list = reinterpret_cast<LPCWSTR>(items.front().absolute.get());
        EXPECT_NE(SHGetFileInfoW(list, 0, &info, sizeof info, SHGFI_PIDL | SHGFI_ICON | SHGFI_SYSICONINDEX | size), 0u);
        const auto source = platform::IconSourceOf(info.hIcon);
        ASSERT_NE(source, nullptr);
        EXPECT_EQ(source->Image().width, GetSystemMetrics(size == SHGFI_SMALLICON ? SM_CXSMICON : SM_CXICON));
        EXPECT_TRUE(DestroyIcon(info.hIcon));
    }
}

TEST(IconPack, IsSavedEvenWhenTheProgramEndsAtOnce)
{
    const std::string path = (NewFolder() / "icon.svg").native();
    Write(path, Square("red"));
    InAnotherProcess(
        [&]
        {
            Middle(path, 13);
            std::exit(0);
        });
    EXPECT_TRUE(platform::IconPack("Adwaita", 13).Find("\n" + path));
}

TEST(IconPack, KeepsPicturesForTheThemeAsItWasFound)
{
    constexpr int kSize = 11;
    const auto themes = NewFolder();
    const auto file = themes / "file";
    Write(file, "1");
    const std::vector<platform::DirectoryStamp> found{{themes.native(), platform::ModificationTime(themes.native())},
                                                      {(themes / "absent").native(), 0}};
    const IconImage image{kSize, kSize, std::vector<std::uint32_t>(kSize * kSize, kRed)};
    platform::IconPack made("theme", kSize);
    made.Add("key", {*platform::WitnessOf(file.native())}, image);
    made.Add("other", {}, image);
    made.Save(found);

    EXPECT_EQ(platform::IconPack("theme", kSize).Find("key")->pixels, image.pixels);
    EXPECT_FALSE(platform::IconPack("another theme", kSize).Find("key"));
    EXPECT_FALSE(platform::IconPack("theme", kSize).Find("absent"));

    const std::filesystem::path pack = Home() / "cache/orb-launcher/icons-11";
    const std::string good = ContentOf(pack);
    const auto replace = [&](const std::string& content)
    {
        std::filesystem::remove(pack); // truncating a file makes some file systems write the old one out
        Write(pack, content);
    };
    for (std::size_t at = 0; at < good.size(); ++at)
    {
        std::string bad = good;
        bad[at] = static_cast<char>(bad[at] ^ 0x10);
        replace(bad);
        const auto kept = platform::IconPack("theme", kSize).Find("key");
        ASSERT_TRUE(!kept || kept->pixels == image.pixels) << "byte " << at;
        replace(good.substr(0, at));
        const auto cut = platform::IconPack("theme", kSize).Find("key");
        ASSERT_TRUE(!cut || cut->pixels == image.pixels) << at << " bytes";
    }
    replace(good);
    platform::IconPack open("theme", kSize);
    std::filesystem::resize_file(pack, 1); // a mapped file that shrinks would end the program
    EXPECT_FALSE(open.Find("key"));
    replace(good);
    const auto written = std::filesystem::last_write_time(file);
    Write(file, "22");
    std::filesystem::last_write_time(file, written);
    EXPECT_FALSE(platform::IconPack("theme", kSize).Find("key")) << "its file has changed, by its size";
    Write(file, "2");
    std::filesystem::last_write_time(file, written + std::chrono::seconds(1));
    EXPECT_FALSE(platform::IconPack("theme", kSize).Find("key")) << "by its time";
    EXPECT_TRUE(platform::IconPack("theme", kSize).Find("other"));
    std::filesystem::create_directory(themes / "absent");
    EXPECT_FALSE(platform::IconPack("theme", kSize).Find("other")) << "a theme folder has appeared";
}
