// The scratch home of the shell's tests.
#include "tests/layer/shell_scratch.h"

#include "platform/ole/com_object.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace shell_test
{

namespace
{

/// Set up before the first test: much of what the shell reads from the environment it reads once.
class ScratchHome : public testing::Environment
{
public:
    void SetUp() override
    {
        // When the tests are repeated the home is made anew in the same place: GIO keeps to what it has met.
        if (home.empty())
        {
            std::string name = (std::filesystem::temp_directory_path() / "orb-shell-XXXXXX").native();
            home = mkdtemp(name.data());
        }
        const std::pair<const char*, std::filesystem::path> folders[] = {{"HOME", home},
                                                                         {"XDG_DATA_HOME", home / "data"},
                                                                         {"XDG_CONFIG_HOME", home / "config"},
                                                                         {"XDG_CACHE_HOME", home / "cache"},
                                                                         {"XDG_DATA_DIRS", home / "system"},
                                                                         {"XDG_CONFIG_DIRS", home / "system-config"}};
        for (const auto& [variable, folder] : folders)
        {
            std::filesystem::create_directories(folder);
            setenv(variable, folder.c_str(), 1);
        }
        for (const char* variable :
             {"LC_ALL", "LANG", "LANGUAGE", "LC_MESSAGES", "DBUS_SESSION_BUS_ADDRESS", "DISPLAY"})
            unsetenv(variable);
        setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
        std::filesystem::create_directory(home / "bin");
        setenv("PATH", ((home / "bin").native() + ":" + getenv("PATH")).c_str(), 1);
        setenv("LANG", "de_DE.UTF-8", 1);
        setenv("XDG_CURRENT_DESKTOP", "Orbit:GNOME", 1);
    }

    void TearDown() override
    {
        RunDeferred();
        EXPECT_EQ(platform::LiveShellObjects(), 0) << "shell objects are still referenced";
        std::filesystem::remove_all(home);
    }

    std::filesystem::path home;
};

auto* const g_home = static_cast<ScratchHome*>(testing::AddGlobalTestEnvironment(new ScratchHome));

} // namespace

const std::filesystem::path& Home()
{
    return g_home->home;
}

HWND MakeWindow(WNDPROC procedure, DWORD style)
{
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.lpszClassName = u"ShellTest";
    RegisterClassExW(&windowClass);
    const HWND window =
        CreateWindowExW(0, u"ShellTest", u"", style, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    return window;
}

void MakeOld(const std::filesystem::path& path)
{
    const timespec past[] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    utimensat(AT_FDCWD, path.c_str(), past, 0);
}

std::filesystem::path NewFolder()
{
    static int count = 0;
    const std::filesystem::path folder = Home() / ("folder" + std::to_string(++count));
    std::filesystem::create_directory(folder);
    return folder;
}

void InstallFolderViewer()
{
    std::filesystem::create_directories(Home() / "data/applications");
    Write(Home() / "data/applications/viewer.desktop", "[Desktop Entry]\nType=Application\nName=Viewer\nExec=view %f\n"
                                                       "MimeType=inode/directory;\n");
    Write(Home() / "data/applications/browser.desktop", "[Desktop Entry]\nType=Application\nName=Browser\n"
                                                        "Exec=browse %u\nIcon=my-browser.png\n"
                                                        "MimeType=x-scheme-handler/https;\n");
    Write(Home() / "config/mimeapps.list", "[Default Applications]\ninode/directory=viewer.desktop\n"
                                           "x-scheme-handler/https=browser.desktop\n");
    Write(Home() / "bin/browse",
          "#!/bin/sh\nprintf %s \"$*\" > \"$HOME/browsing\"; mv \"$HOME/browsing\" \"$HOME/browsed\"\n", 0755);
    Write(Home() / "bin/view", "#!/bin/sh\nexec \"${1%/*}/tell.sh\" \"$@\"\n", 0755);
}

void InAnotherProcess(const std::function<void()>& work)
{
    const pid_t process = fork();
    if (process == 0)
    {
        work();
        _exit(0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    ASSERT_EQ(status, 0);
}

std::vector<Item> Items(const std::filesystem::path& path, SHCONTF flags)
{
    std::vector<Item> items;
    const List list = Parse(path);
    const Com<IShellFolder> folder = list != nullptr ? Bind(list.get()) : nullptr;
    IEnumIDList* enumeration = nullptr;
    if (folder == nullptr || folder->EnumObjects(nullptr, flags, &enumeration) != S_OK)
        return items;
    LPITEMIDLIST child;
    while (enumeration->Next(1, &child, nullptr) == S_OK)
    {
        Item item{};
        item.absolute.reset(ILCombine(list.get(), child));
        item.fileName = platform::FileNameFromShellName(NameOf(*folder, child, SHGDN_INFOLDER | SHGDN_FORPARSING));
        item.display = platform::Utf8FromUtf16(NameOf(*folder, child, SHGDN_INFOLDER));
        item.attributes = SFGAO_FOLDER | SFGAO_STREAM | SFGAO_LINK;
        LPCITEMIDLIST children[] = {child};
        folder->GetAttributesOf(1, children, &item.attributes);
        SHGetFileInfoW(reinterpret_cast<LPCWSTR>(item.absolute.get()), 0, &item.info, sizeof item.info,
                       SHGFI_PIDL | SHGFI_ADDOVERLAYS | SHGFI_TYPENAME | SHGFI_SYSICONINDEX);
        items.push_back(std::move(item));
        ILFree(child);
    }
    enumeration->Release();
    return items;
}

const Item* Find(const std::vector<Item>& items, const std::string& fileName)
{
    for (const Item& item : items)
        if (item.fileName == fileName)
            return &item;
    return nullptr;
}

} // namespace shell_test
