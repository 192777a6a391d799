// The applications menu as folders of the shell's name space.
//
// Each test is a process of its own: GLib looks at where menus are once, and has one menu thread.
#include "tests/layer/shell_boxes.h"
#include "tests/layer/shell_scratch.h"

#include "objbase.h"
#include "shellapi.h"
#include "windows.h"

#include "platform/files/applications_menu.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fcntl.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace shell_test;
using Names = std::vector<std::string>;

namespace
{

const std::string kUser(platform::kUserMenu);
const std::string kAll(platform::kCommonMenu);

constexpr char kMenuFile[] = R"(<Menu><Name>Applications</Name><DefaultAppDirs/><DefaultDirectoryDirs/>
<Menu><Name>Net</Name><Directory>net.directory</Directory><Include><Category>Network</Category></Include></Menu>
<Menu><Name>Play</Name><Directory>play.directory</Directory><Include><Category>Game</Category></Include>
  <Menu><Name>Old</Name><Directory>net.directory</Directory><Include><Category>Arcade</Category></Include></Menu>
  <Menu><Name>Online</Name><Directory>net.directory</Directory><Include><Category>Online</Category></Include></Menu>
</Menu>
<Menu><Name>Web</Name><Directory>net.directory</Directory><Include><Category>Web</Category></Include></Menu>
<Menu><Name>Void</Name><Include><Category>Void</Category></Include></Menu>
</Menu>)";

class ShellApplications : public testing::Test
{
protected:
    ShellApplications()
    {
        for (const char* folder : {"config/menus", "data/applications", "system/applications",
                                   "system/desktop-directories", "system-config/menus"})
        {
            fs::remove_all(Home() / folder);
            fs::create_directories(Home() / folder);
        }
        fs::remove_all(Home() / "cache");
        fs::create_directory(Home() / "cache");
        Write(Home() / "system/desktop-directories/net.directory",
              "[Desktop Entry]\nType=Directory\nName=Internet\nName[de]=Netz\nIcon=net-icon\n");
        Write(Home() / "system/desktop-directories/play.directory",
              "[Desktop Entry]\nType=Directory\nName=Games\nName[de]=Spiele\n");
        WriteMenu(kMenuFile);
        Program("system", "mail", "Mail", "Network", "Name[de]=Post\nIcon=mail-icon\n");
        Program("system", "chess", "Chess", "Game");
        Program("data", "quake", "Quake", "Game");
        Settle();
    }

    static void WriteMenu(const std::string& content, const std::string& name = "applications.menu")
    {
        Write(Home() / "config/menus" / name, content);
    }
    static void Program(const std::string& half, const std::string& name, const std::string& shown,
                        const std::string& category, const std::string& more = {})
    {
        const fs::path path = Home() / half / "applications" / (name + ".desktop");
        fs::create_directories(path.parent_path());
        Write(path, "[Desktop Entry]\nType=Application\nExec=true\nName=" + shown + "\nCategories=" + category + ";\n" +
                        more);
    }
    static void Settle()
    {
        for (const auto& file : fs::recursive_directory_iterator(Home()))
            MakeOld(file.path());
        for (const char* folder : {"data", "config", "system", "system-config"})
            MakeOld(Home() / folder);
    }
    /// In a process of its own, whose failures are this one's.
    static void Afresh(const std::function<void()>& work)
    {
        InAnotherProcess(
            [&]
            {
                work();
                if (HasFailure())
                    _exit(1);
            });
    }

    static Names Shown(const std::string& path)
    {
        Names names;
        for (const Item& item : Items(path))
            names.push_back(item.display);
        std::sort(names.begin(), names.end());
        return names;
    }
    static HRESULT Invoke(const std::string& path, const char* verb)
    {
        const Boxes boxes;
        const HRESULT result = shell_test::Invoke(*Bound(path).Menu(), verb);
        EXPECT_EQ(boxes.Count(), result == E_ACCESSDENIED ? 1 : 0) << path << " " << verb;
        return result;
    }
    /// The verbs of an item's menu that can be chosen, and those that are greyed.
    static std::pair<Names, Names> Menu(const std::string& path)
    {
        std::pair<Names, Names> verbs;
        const Com<IContextMenu> menu = Bound(path).Menu();
        const HMENU shown = CreatePopupMenu();
        EXPECT_GE(menu->QueryContextMenu(shown, 0, 1, 1000, CMF_CANRENAME), S_OK);
        for (int i = 0; i < GetMenuItemCount(shown); ++i)
        {
            MENUITEMINFOW info = {};
            info.cbSize = sizeof info;
            info.fMask = MIIM_STATE | MIIM_ID;
            GetMenuItemInfoW(shown, static_cast<UINT>(i), TRUE, &info);
            char verb[64] = "";
            if (info.wID != 0 && menu->GetCommandString(info.wID - 1, GCS_VERBA, nullptr, verb, sizeof verb) == S_OK)
                ((info.fState & MFS_GRAYED) != 0 ? verbs.second : verbs.first).emplace_back(verb);
        }
        DestroyMenu(shown);
        return verbs;
    }
};

TEST_F(ShellApplications, AreTwoTreesOfWhatIsShown)
{
    Program("system", "kde/tool", "Tool", "Network");
    Program("system", "secret", "Secret", "Network", "NoDisplay=true\n");
    Program("system", "foreign", "Foreign", "Network", "OnlyShowIn=KDE;\n");
    Program("system", "unwanted", "Unwanted", "Network", "NotShowIn=Orbit;\n");
    Program("system", "missing", "Missing", "Network", "TryExec=no-such-program\n");
    Program("system", "removed", "Removed", "Network");
    Program("data", "removed", "Removed", "Network", "Hidden=true\n");
    Program("system", "changed", "Everybody's", "Game");
    Program("data", "changed", "Mine", "Game");
    Program("system", "pong", "Pong", "Arcade");
    Program("system", "browser", "Browser", "Web");
    Program("system", "cards", "Cards", "Online");
    Afresh(
        []
        {
            EXPECT_EQ(Shown(kAll), (Names{"Netz", "Netz (Web)", "Spiele"})) << "none is empty, none called the same";
            EXPECT_EQ(Shown(kUser), Shown(kAll)) << "whatever is in them";
            EXPECT_EQ(Shown(kAll + "/Net"), (Names{"Post", "Tool"}));
            EXPECT_EQ(Shown(kAll + "/Play"), (Names{"Chess", "Netz", "Netz (Online)"}));
            EXPECT_EQ(Shown(kAll + "/Play/Old"), (Names{"Pong"}));
            EXPECT_EQ(Shown(kUser + "/Play"), (Names{"Mine", "Netz", "Netz (Online)", "Quake"}));
            EXPECT_TRUE(Shown(kUser + "/Net").empty());
            EXPECT_TRUE(Shown(kAll + "/Void").empty());

            const std::vector<Item> categories = Items(kAll);
            const Item* net = Find(categories, "Net");
            ASSERT_NE(net, nullptr) << "in every language";
            EXPECT_EQ(net->attributes, static_cast<SFGAOF>(SFGAO_FOLDER));
            const std::vector<Item> programs = Items(kAll + "/Net");
            const Item* mail = Find(programs, "mail.desktop");
            ASSERT_NE(mail, nullptr);
            ASSERT_NE(Find(programs, "kde-tool.desktop"), nullptr);
            EXPECT_NE(mail->info.iIcon, Find(programs, "kde-tool.desktop")->info.iIcon);
            WCHAR path[MAX_PATH];
            ASSERT_TRUE(SHGetPathFromIDListW(mail->absolute.get(), path));
            EXPECT_EQ(platform::PosixFromShellPath(path), Home() / "system/applications/mail.desktop");
            EXPECT_TRUE(Items(kAll, SHCONTF_NONFOLDERS).empty());
            EXPECT_TRUE(Items(kAll + "/Net", SHCONTF_FOLDERS).empty());
        });
}

TEST_F(ShellApplications, NamesLeadBackToTheItems)
{
    Afresh(
        []
        {
            for (const std::string& path : {kAll, kAll + "/Net", kUser + "/Play"})
            {
                const Bound bound(path);
                ASSERT_NE(bound.folder, nullptr) << path;
                EXPECT_EQ(platform::PosixFromShellPath(NameOf(*bound.folder, bound.item, SHGDN_FORPARSING)), path);
            }
            EXPECT_NE(Parse(kAll + "/Net/mail.desktop"), nullptr);
            for (const std::string& path : {kAll + "/Nothing", kAll + "/Net/none.desktop", kUser + "/Net/mail.desktop",
                                            kAll + "/Net/mail.desktop/x", std::string("::else")})
                EXPECT_EQ(Parse(path), nullptr) << path;
        });
}

TEST_F(ShellApplications, AreTheUsersOwnAlsoWhereTheHomeFolderIsALink)
{
    const std::string data = std::getenv("XDG_DATA_HOME");
    fs::create_directory_symlink(Home(), Home() / "by-link");
    setenv("XDG_DATA_HOME", (Home() / "by-link/data").c_str(), 1);
    Afresh(
        []
        {
            EXPECT_EQ(Shown(kUser + "/Play"), (Names{"Quake"}));
            EXPECT_EQ(Shown(kAll + "/Play"), (Names{"Chess"}));
            EXPECT_EQ(Menu(kUser + "/Play/quake.desktop").second, (Names{"paste", "link"}));
        });
    setenv("XDG_DATA_HOME", data.c_str(), 1);
    fs::remove(Home() / "by-link");
}

TEST_F(ShellApplications, NothingIsWrittenIntoACategory)
{
    Afresh(
        []
        {
            EXPECT_EQ(Menu(kAll + "/Net"), (std::pair{Names{}, Names{"paste", "rename"}}));
            const auto [can, cannot] = Menu(kAll + "/Net/mail.desktop");
            EXPECT_EQ(cannot, (Names{"cut", "paste", "link", "delete"}));
            EXPECT_EQ(can, (Names{"open", "showinfolder", "copy", "rename", "properties"}));
            EXPECT_EQ(Menu(kUser + "/Play/quake.desktop").second, (Names{"paste", "link"}))
                << "what is the user's own can be taken away";

            for (const char* verb : {"open", "cut", "copy", "paste", "delete", "properties"})
                EXPECT_EQ(Invoke(kAll + "/Net", verb), E_ACCESSDENIED) << verb;
            for (const char* verb : {"cut", "paste", "link", "delete"})
                EXPECT_EQ(Invoke(kAll + "/Net/mail.desktop", verb), E_ACCESSDENIED) << verb;
            EXPECT_EQ(Invoke(kAll + "/Net/mail.desktop", "copy"), S_OK);

            const List list = Parse(kAll + "/Net");
            const Com<IShellFolder> category = Bind(list.get());
            void* object = nullptr;
            ASSERT_EQ(category->CreateViewObject(nullptr, IID_IContextMenu, &object), S_OK);
            const auto background = Taken<IContextMenu>(object);
            EXPECT_EQ(category->CreateViewObject(nullptr, IID_IDropTarget, &object), E_NOINTERFACE);
            const Boxes boxes;
            EXPECT_EQ(shell_test::Invoke(*background, "NewFolder"), E_ACCESSDENIED);
            const std::u16string paths = u"::applications-of-all\\Net" + std::u16string(1, u'\0');
            SHFILEOPSTRUCTW deletion = {};
            deletion.wFunc = FO_DELETE;
            deletion.pFrom = paths.c_str();
            deletion.fFlags = FOF_ALLOWUNDO;
            EXPECT_EQ(SHFileOperationW(&deletion), ERROR_ACCESS_DENIED);
            EXPECT_EQ(Bound(kAll + "/Net").Rename(u"Other"), E_ACCESSDENIED);
            ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, &object), S_OK);
            const auto link = Taken<IShellLinkW>(object);
            link->SetPath(u"\\bin\\sh");
            EXPECT_EQ(As<IPersistFile>(*link, IID_IPersistFile)->Save(u"::applications-of-all\\Net\\sh.lnk", TRUE),
                      E_ACCESSDENIED);
            EXPECT_EQ(boxes.Count(), 4);
            EXPECT_EQ(Shown(kAll + "/Net"), (Names{"Post"}));
        });
}

TEST_F(ShellApplications, RenamingAProgramMakesAnEntryOfTheUsersOwn)
{
    fs::remove_all(Home() / "data/applications");
    Afresh(
        []
        {
            const Boxes boxes;
            const Bound mail(kAll + "/Net/mail.desktop");
            LPITEMIDLIST renamed = nullptr;
            ASSERT_EQ(mail.Rename(u"Briefe", &renamed), S_OK);
            const List owned(renamed);
            EXPECT_EQ(NameOf(*mail.folder, renamed, SHGDN_INFOLDER | SHGDN_FORPARSING), u"mail.desktop")
                << "so that it keeps its place";
            // A reading may overtake the news of the change.
            const auto comesToShow = [](const Names& names)
            { return WaitFor([&] { return Shown(kUser + "/Net") == names; }); };
            EXPECT_TRUE(comesToShow({"Briefe"}));
            EXPECT_TRUE(Shown(kAll + "/Net").empty());
            EXPECT_EQ(ContentOf(Home() / "system/applications/mail.desktop").find("Briefe"), std::string::npos);
            Program("data", "own/deep", "Deep", "Network");
            // Once it is the user's own, it is renamed where it is.
            EXPECT_EQ(Bound(kUser + "/Net/mail.desktop").Rename(u"Karten"), S_OK);
            EXPECT_TRUE(comesToShow({"Deep", "Karten"}));
            // So is one in a folder of its own, whose identifier is not its path.
            EXPECT_EQ(Bound(kUser + "/Net/own-deep.desktop").Rename(u"Deeper"), S_OK);
            EXPECT_FALSE(fs::exists(Home() / "data/applications/own-deep.desktop"));
            EXPECT_TRUE(comesToShow({"Deeper", "Karten"}));
            // And what has gone cannot be renamed any more.
            const Bound chess(kAll + "/Play/chess.desktop");
            fs::remove(Home() / "system/applications/chess.desktop");
            EXPECT_TRUE(FAILED(chess.Rename(u"Schach")));
        });
}

bool ModuleIsLoaded()
{
    return ContentOf("/proc/self/maps").find("orb-launcher-desktop.so") != std::string::npos;
}

TEST_F(ShellApplications, AreKeptForTheNextRunUntilSomethingChanges)
{
    const auto first = [] { EXPECT_EQ(Shown(kAll + "/Net"), (Names{"Post"})); };
    Afresh(first);
    Afresh(
        [&]
        {
            first();
            EXPECT_FALSE(ModuleIsLoaded()) << "nothing has changed";
        });
    const fs::path kept = Home() / "cache/orb-launcher/menu";
    fs::remove(kept);
    Program("system", "news", "News", "Network");
    // A minute ahead, however long the reading takes to begin.
    fs::last_write_time(Home() / "system/applications", fs::file_time_type::clock::now() + std::chrono::minutes(1));
    Afresh([] { EXPECT_EQ(Shown(kAll + "/Net"), (Names{"News", "Post"})) << "a new program"; });
    EXPECT_FALSE(fs::exists(kept)) << "so soon after a change the next one might not show";
    Settle();
    Afresh([] { Shown(kAll); });
    Program("system", "chat/chat", "Chat", "Network");
    Afresh([] { EXPECT_EQ(Shown(kAll + "/Net"), (Names{"Chat", "News", "Post"})) << "in a new folder"; });
    Settle();
    Afresh([] { Shown(kAll); });
    WriteMenu("<Menu><Name>Applications</Name><DefaultAppDirs/><Menu><Name>All</Name><Include><All/></Include></Menu></"
              "Menu>");
    Afresh([] { EXPECT_EQ(Shown(kAll), (Names{"All"})) << "another menu file"; });
    WriteMenu(kMenuFile, "other-applications.menu");
    Settle();
    Afresh([] { Shown(kAll); });
    setenv("XDG_MENU_PREFIX", "other-", 1);
    Afresh([] { EXPECT_EQ(Shown(kAll), (Names{"Netz", "Spiele"})) << "another desktop's menu"; });
    unsetenv("XDG_MENU_PREFIX");
    // Damage anywhere in the file is seen before anything of it is believed.
    Settle();
    Afresh([] { Shown(kAll); });
    ASSERT_TRUE(fs::exists(kept));
    std::ifstream keptFile(kept);
    std::string content{std::istreambuf_iterator<char>(keptFile), {}};
    const std::size_t name = content.rfind(std::string("A\0l\0l\0", 6));
    ASSERT_NE(name, content.npos);
    content[name] = 'B';
    Write(kept, content);
    Afresh([] { EXPECT_EQ(Shown(kAll), (Names{"All"})); });
    const auto size = fs::file_size(kept);
    for (const std::uintmax_t cut : {size - 1, size / 2, std::uintmax_t{10}, std::uintmax_t{0}})
    {
        fs::resize_file(kept, cut);
        Afresh([] { EXPECT_EQ(Shown(kAll), (Names{"All"})); });
    }
}

int g_notices = 0;

LRESULT CALLBACK CountNotices(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    g_notices += message == WM_APP + 2;
    return DefWindowProcW(window, message, wParam, lParam);
}

/// A window that is told of a category's changes, as a level is.
class Level
{
public:
    explicit Level(const std::string& path)
    {
        const List list = Parse(path);
        const SHChangeNotifyEntry entry{list.get(), FALSE};
        m_id = SHChangeNotifyRegister(m_window, 0x8003, 0x2001F, WM_APP + 2, 1, &entry);
        EXPECT_NE(m_id, 0u);
        g_notices = 0;
    }
    ~Level()
    {
        SHChangeNotifyDeregister(m_id);
        DestroyWindow(m_window);
    }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

    static bool IsTold()
    {
        return WaitFor(
            []
            {
                MSG message;
                while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                    DispatchMessageW(&message);
                return std::exchange(g_notices, 0) > 0;
            });
    }

    /// Whoever looks each time that it is told comes to see this. The first time may be too early: an entry that is
    /// written in place is empty for a moment, and a slow machine takes long to read.
    template <typename F>
    static bool IsToldUntil(F isSeen)
    {
        for (int time = 0; time < 6; ++time)
            if (IsTold() && isSeen())
                return true;
        return false;
    }

private:
    HWND m_window = MakeWindow(CountNotices);
    ULONG m_id = 0;
};

TEST_F(ShellApplications, LevelsAreToldOfTheirChanges)
{
    Afresh([] { Shown(kAll); });
    Program("system", "mail", "Letters", "Network"); // in place
    Afresh(
        []
        {
            EXPECT_EQ(Shown(kAll + "/Net"), (Names{"Post"})) << "as it was kept";
            const Level level(kAll + "/Net");
            RunDeferred();
            const auto comesToShow = [](const Names& names)
            { return Level::IsToldUntil([&] { return Shown(kAll + "/Net") == names; }); };
            EXPECT_TRUE(comesToShow({"Letters"})) << "what changed in place while no menu was open";
            Program("system", "news", "News", "Network");
            EXPECT_TRUE(comesToShow({"Letters", "News"}));
            fs::remove(Home() / "system/applications/news.desktop");
            EXPECT_TRUE(comesToShow({"Letters"}));
            Program("system", "mail", "Cards", "Network"); // which for a moment may be seen empty
            EXPECT_TRUE(comesToShow({"Cards"})) << "of an entry that changed in place";
            // One that came back within a second of its going was never told of.
            fs::remove(Home() / "system/applications/mail.desktop");
            EXPECT_TRUE(comesToShow({})) << "and its category with it";
            Program("system", "mail", "Cards", "Network");
            EXPECT_TRUE(comesToShow({"Cards"})) << "it is back";
        });
}

TEST_F(ShellApplications, AMenuFileThatMakesNoMenuLeavesTheProgramsInOneList)
{
    Program("system", "secret", "Secret", "Network", "NoDisplay=true\n");
    for (const char* broken : {"<Menu><Name>Appl", "<Other/>", "", "<Menu></Menu> trailing <"})
    {
        WriteMenu(broken);
        Afresh(
            [&]
            {
                EXPECT_EQ(Shown(kAll), (Names{"Chess", "Post"})) << broken;
                EXPECT_EQ(Shown(kUser), (Names{"Quake"})) << broken;
            });
    }
    WriteMenu("<Menu><Name>Applications</Name><DefaultAppDirs/><MergeFile>applications.menu</MergeFile>"
              "<Menu><Name>All</Name><MergeFile>applications.menu</MergeFile><Include><All/></Include></Menu></Menu>");
    Afresh([] { EXPECT_EQ(Shown(kAll + "/All"), (Names{"Chess", "Post"})) << "one that includes itself"; });
}

TEST_F(ShellApplications, WithoutAMenuFileTheFoldersOfEntriesAreTheStartMenu)
{
    const auto location = [](int csidl)
    {
        LPITEMIDLIST list = nullptr;
        WCHAR path[MAX_PATH] = {};
        EXPECT_EQ(SHGetFolderLocation(nullptr, csidl, nullptr, 0, &list), S_OK);
        EXPECT_TRUE(SHGetPathFromIDListW(list, path));
        ILFree(list);
        return platform::PosixFromShellPath(path);
    };
    EXPECT_EQ(location(CSIDL_STARTMENU), kUser);
    EXPECT_EQ(location(CSIDL_COMMON_STARTMENU), kAll);
    fs::rename(Home() / "config/menus/applications.menu", Home() / "system-config/menus/lxde-applications.menu");
    EXPECT_EQ(location(CSIDL_STARTMENU), kUser) << "another desktop's is better than none";
    fs::remove(Home() / "system-config/menus/lxde-applications.menu");
    EXPECT_EQ(location(CSIDL_STARTMENU), Home() / "data/applications");
    EXPECT_EQ(location(CSIDL_COMMON_STARTMENU), Home() / "system/applications");
}

/// Seconds that the work took.
template <typename F>
double Timed(F work)
{
    const auto begun = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
}

TEST_F(ShellApplications, AMenuThatIsNeverReadToItsEndHoldsNobodyUp)
{
    Afresh([] { Shown(kAll); });
    // Each of these includes the whole folder, itself excepted, at every depth.
    for (int i = 0; i < 12; ++i)
        WriteMenu(
            "<Menu><Name>Applications</Name><MergeDir>.</MergeDir><Menu><Name>A</Name><MergeDir>.</MergeDir></Menu>"
            "</Menu>",
            i == 0 ? "applications.menu" : std::string("more").append(std::to_string(i)).append(".menu"));
    Afresh(
        []
        {
            EXPECT_LT(Timed([] { EXPECT_EQ(Shown(kAll), (Names{"Netz", "Spiele"})) << "as it was last seen"; }), 4);
            EXPECT_LT(Timed([] { EXPECT_EQ(Shown(kAll + "/Net"), (Names{"Post"})); }), 0.5) << "it is asked once";
        });
    fs::remove_all(Home() / "cache/orb-launcher/menu");
    Afresh(
        []
        {
            EXPECT_LT(Timed([] { EXPECT_TRUE(Shown(kAll).empty()); }), 4);
            EXPECT_LT(Timed([] { EXPECT_TRUE(Shown(kUser).empty()); }), 0.5);
        });
}

TEST_F(ShellApplications, OfTenThousandProgramsEachIsThere)
{
    std::string menu = "<Menu><Name>Applications</Name><DefaultAppDirs/><Include>";
    for (int i = 0; i < 10000; ++i)
    {
        const std::string name = std::string("p").append(std::to_string(i));
        Program("system", name, name, "Much");
        menu.append("<Filename>").append(name).append(".desktop</Filename>");
    }
    WriteMenu(menu + "</Include></Menu>");
    Settle();
    Afresh(
        []
        {
            const Level level(kAll);
            const auto allAreShown = [] { return Shown(kAll).size() == 10000; };
            EXPECT_TRUE(allAreShown() || Level::IsToldUntil(allAreShown)) << "later, when it takes longer than waited";
        });
    Afresh(
        []
        {
            EXPECT_EQ(Shown(kAll).size(), 10000u);
            EXPECT_FALSE(ModuleIsLoaded());
        });
}

} // namespace
