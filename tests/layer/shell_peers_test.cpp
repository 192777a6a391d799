// Shortcuts and what other programs of the desktop show for us: pickers, the file manager. And when there is none.
#include "tests/layer/session_bus.h"
#include "tests/layer/shell_boxes.h"
#include "tests/layer/shell_scratch.h"

#include <gtest/gtest.h>

#include <set>

using namespace shell_test;

namespace
{

std::u16string ShellPath(const std::filesystem::path& path)
{
    return platform::ShellPathFromPosix(path.native());
}

class ShellPeers : public testing::Test
{
protected:
    void SetUp() override
    {
        m_folder = NewFolder();
        SessionBus::Of();                            // started by the machine's path
        setenv("PATH", (Home() / "bin").c_str(), 1); // no picker of the machine's own
    }
    void TearDown() override
    {
        setenv("PATH", m_path.c_str(), 1);
        if (m_desktop > 0)
        {
            kill(m_desktop, SIGKILL);
            waitpid(m_desktop, nullptr, 0);
        }
        for (const char* program : {"zenity", "kdialog"})
            std::filesystem::remove(Home() / "bin" / program);
    }

    /// Starts a desktop on the bus that behaves so; from then on it is the session's.
    void Desktop(const std::string& behaviour)
    {
        ASSERT_TRUE(SessionBus::Of().Ready());
        setenv("DBUS_SESSION_BUS_ADDRESS", SessionBus::Of().Address().c_str(), 1);
        Write(m_folder / "behaviour", behaviour);
        std::string words[] = {ORB_BUS_DESKTOP, (m_folder / "report").native(), (m_folder / "behaviour").native()};
        char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
        ASSERT_EQ(posix_spawn(&m_desktop, arguments[0], nullptr, nullptr, arguments, environ), 0);
        const std::string owned = "PATH='" + m_path +
                                  "'; dbus-send --session --print-reply --dest=org.freedesktop.portal.Desktop "
                                  "/ org.freedesktop.DBus.Peer.Ping >/dev/null 2>&1";
        ASSERT_TRUE(WaitFor([&] { return std::system(owned.c_str()) == 0; }));
    }
    std::string Report() const
    {
        if (!WaitFor([this] { return std::filesystem::exists(m_folder / "report"); }))
            return "(not asked)";
        return ContentOf(m_folder / "report");
    }

    /// Picks a file as the launcher does: its path, else why there is none.
    std::string Pick(FILEOPENDIALOGOPTIONS options = 0, std::function<void()> step = {})
    {
        void* object = nullptr;
        EXPECT_EQ(CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_IFileDialog, &object),
                  S_OK);
        const auto dialog = Taken<IFileDialog>(object);
        EXPECT_EQ(dialog->SetOptions(options), S_OK);
        dialog->SetTitle(u"Insert Shortcut");
        dialog->SetOkButtonLabel(u"&Select");
        EXPECT_EQ(SHCreateItemFromParsingName(u"shell:Desktop", nullptr, IID_IShellItem, &object), S_OK);
        const auto folder = Taken<IShellItem>(object);
        EXPECT_EQ(dialog->SetDefaultFolder(folder.get()), S_OK);
        const Boxes boxes(std::move(step));
        const HRESULT shown = dialog->Show(nullptr);
        m_boxes = boxes.Count();
        IShellItem* item = nullptr;
        if (shown == HRESULT_FROM_WIN32(ERROR_CANCELLED))
            return "cancelled";
        if (FAILED(shown))
            return "failed";
        EXPECT_EQ(dialog->GetResult(&item), S_OK);
        const Com<IShellItem> owner(item);
        LPWSTR path = nullptr;
        EXPECT_EQ(item->GetDisplayName(SIGDN_FILESYSPATH, &path), S_OK);
        const std::string picked = platform::PosixFromShellPath(path);
        CoTaskMemFree(path);
        return picked;
    }

    void Link(const std::filesystem::path& target, const std::string& name, HRESULT expected = S_OK)
    {
        void* object = nullptr;
        ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, &object), S_OK);
        const auto link = Taken<IShellLinkW>(object);
        ASSERT_EQ(link->SetPath(ShellPath(target).c_str()), S_OK);
        const Boxes boxes;
        EXPECT_EQ(As<IPersistFile>(*link, IID_IPersistFile)->Save(ShellPath(m_folder / name).c_str(), TRUE), expected);
        m_boxes = boxes.Count();
    }

    BOOL Execute(const std::filesystem::path& path, LPCWSTR verb)
    {
        const List list = Parse(path);
        SHELLEXECUTEINFOW info = {};
        info.cbSize = sizeof info;
        info.fMask = SEE_MASK_INVOKEIDLIST;
        info.lpVerb = verb;
        info.lpIDList = list.get();
        const Boxes boxes;
        const BOOL done = ShellExecuteExW(&info);
        m_boxes = boxes.Count();
        return done;
    }

    const std::string m_path = getenv("PATH");
    std::filesystem::path m_folder;
    pid_t m_desktop = -1;
    int m_boxes = 0;
};

} // namespace

TEST_F(ShellPeers, ShortcutsAreLinksUnderAFreeName)
{
    Write(m_folder / "Notes.txt", "text");
    const std::string longName(250, 'n');
    Write(m_folder / longName, "");
    Write(m_folder / "tool.desktop", "[Desktop Entry]\nType=Application\nName=Tool\nExec=true\n");
    Link(m_folder / "Notes.txt", "Notes.txt.lnk");
    Link(m_folder / "tool.desktop", "Notes.txt.lnk");
    Link(m_folder / "tool.desktop", "tool.desktop.lnk");
    Link(m_folder, "Sub.lnk");
    Link(m_folder / longName, longName + ".txt.lnk");
    EXPECT_EQ(std::filesystem::read_symlink(m_folder / "Notes.txt.lnk"), m_folder / "Notes.txt");
    EXPECT_EQ(std::filesystem::read_symlink(m_folder / "Notes (2).txt.lnk"), m_folder / "tool.desktop");
    EXPECT_EQ(std::filesystem::read_symlink(m_folder / (std::string(247, 'n') + ".txt.lnk")), m_folder / longName);
    const std::vector<Item> items = Items(m_folder);
    ASSERT_NE(Find(items, "tool.desktop.lnk"), nullptr);
    EXPECT_EQ(Find(items, "tool.desktop.lnk")->display, "Tool");
    ASSERT_NE(Find(items, "Sub.lnk"), nullptr);
    EXPECT_EQ(Find(items, "Sub.lnk")->attributes & (SFGAO_FOLDER | SFGAO_LINK), SFGAO_LINK);
    Link("/", ".lnk", HRESULT_FROM_WIN32(ERROR_INVALID_NAME));
    EXPECT_EQ(m_boxes, 1);
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(m_folder / ".lnk")));
}

TEST_F(ShellPeers, WithoutAnyoneToAskThereIsOneBox)
{
    Write(m_folder / "note", "");
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    EXPECT_EQ(Pick(), "failed");
    EXPECT_EQ(m_boxes, 1);
    EXPECT_FALSE(Execute(m_folder / "note", u"properties"));
    EXPECT_EQ(m_boxes, 1);
}

TEST_F(ShellPeers, AProgramPicksWhereThereIsNoPortal)
{
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    const auto zenity = Home() / "bin/zenity";
    const std::string note = "printf '%s\\n' \"$@\" > '" + (m_folder / "words").native() + "'\n";
    Write(zenity, "#!/bin/sh\n" + note + "printf '/a\\nb\\\\c\\377\\n\\n'\n", 0755);
    EXPECT_EQ(Pick(FOS_PICKFOLDERS), "/a\nb\\c\377\n") << "names of any bytes";
    const std::string text = ContentOf(m_folder / "words");
    EXPECT_NE(text.find("--directory\n--title=Insert Shortcut\n--filename=/"), text.npos) << text;
    Write(zenity, "#!/bin/sh\nexit 1\n", 0755);
    EXPECT_EQ(Pick(), "cancelled");
    EXPECT_EQ(m_boxes, 0);
    Write(zenity, "#!/bin/sh\nkill -9 $$\n", 0755);
    EXPECT_EQ(Pick(), "failed");
    EXPECT_EQ(m_boxes, 1);
    std::filesystem::remove(zenity);
    Write(Home() / "bin/kdialog", "#!/bin/sh\necho /picked\n", 0755);
    EXPECT_EQ(Pick(), "/picked");
}

TEST_F(ShellPeers, ThePortalPicks)
{
    Desktop("answer file:///tmp/a%20b%FF");
    EXPECT_EQ(Pick(FOS_PICKFOLDERS), "/tmp/a b\377");
    const std::string report = Report();
    EXPECT_NE(report.find("'Insert Shortcut'"), report.npos) << report;
    EXPECT_NE(report.find("'directory': <true>"), report.npos) << report;
    EXPECT_NE(report.find("'accept_label': <'_Select'>"), report.npos) << report;
    Write(m_folder / "behaviour", "cancel");
    EXPECT_EQ(Pick(), "cancelled");
    EXPECT_EQ(m_boxes, 0);
    Write(m_folder / "behaviour", "answer sftp://host/file");
    EXPECT_EQ(Pick(), "failed") << "only files";
    EXPECT_EQ(m_boxes, 1);
    Write(m_folder / "behaviour", "die");
    EXPECT_EQ(Pick(), "failed");
    EXPECT_EQ(m_boxes, 1);
}

TEST_F(ShellPeers, APickerThatNeverShowsIsGivenUpByEscape)
{
    Desktop("silent");
    const HWND owner = MakeWindow(DefWindowProcW, WS_POPUP | WS_VISIBLE);
    SetForegroundWindow(owner);
    EnableWindow(owner, FALSE); // as the menu is meanwhile
    bool pressed = false;
    const auto escape = [&]
    {
        if (pressed || !std::filesystem::exists(m_folder / "report"))
            return;
        pressed = true;
        platform::headless::PressKey(VK_ESCAPE);
        platform::headless::ReleaseKey(VK_ESCAPE);
    };
    EXPECT_EQ(Pick(0, escape), "cancelled");
    DestroyWindow(owner);
}

TEST_F(ShellPeers, TheFileManagerShowsPropertiesAndPlaces)
{
    Desktop("answer");
    Write(m_folder / "note", "");
    std::filesystem::create_symlink("note", m_folder / "link.lnk");
    EXPECT_TRUE(Execute(m_folder / "link.lnk", u"properties"));
    EXPECT_EQ(Report(), "ShowItemProperties (['file://" + (m_folder / "link.lnk").native() + "'], '')\n");
    std::filesystem::remove(m_folder / "report");
    EXPECT_TRUE(Execute(m_folder / "link.lnk", u"showinfolder"));
    EXPECT_EQ(Report(), "ShowItems (['file://" + (m_folder / "note").native() + "'], '')\n") << "where the target lies";
    EXPECT_EQ(m_boxes, 0);
    EXPECT_TRUE(Execute(m_folder / "note", u"openas"));
    EXPECT_FALSE(Execute(m_folder / "note", u"no such verb"));
}
