// What folders list, and under which names.
#include "tests/layer/shell_scratch.h"

#include "platform/shell/item_id.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>

using namespace shell_test;

namespace
{

std::string Entry(const std::string& lines)
{
    return "[Desktop Entry]\nType=Application\nExec=true\n" + lines;
}

std::set<std::string> FileNames(const std::vector<Item>& items)
{
    std::set<std::string> names;
    for (const Item& item : items)
        names.insert(item.fileName);
    return names;
}

} // namespace

TEST(ShellFolder, EveryNameIsListedAndFoundAgain)
{
    const std::set<std::string> names = {"plain",
                                         "back\\slash",
                                         "co:lon",
                                         "new\nline",
                                         "bad\xFF\xC3utf",
                                         "na\u00EFve \u00FF",
                                         std::string(255, 'n'),
                                         "\u05E9\u05DC\u05D5\u05DD",
                                         "\U0001F600 smile",
                                         "private \uF05C use",
                                         " spaces "};
    for (const bool asFolders : {false, true})
    {
        const auto folder = NewFolder();
        for (const std::string& name : names)
            asFolders ? static_cast<void>(std::filesystem::create_directory(folder / name)) : Write(folder / name, "x");
        const std::vector<Item> items = Items(folder);
        EXPECT_EQ(FileNames(items), names);
        for (const Item& item : items)
        {
            const List parsed = Parse(folder / item.fileName);
            ASSERT_NE(parsed, nullptr) << item.fileName;
            std::string listed;
            std::string found;
            EXPECT_TRUE(platform::AppendListPath(listed, item.absolute.get()));
            EXPECT_TRUE(platform::AppendListPath(found, parsed.get()));
            EXPECT_EQ(found, listed);
            WCHAR path[MAX_PATH];
            const bool fits = (folder / item.fileName).native().size() < 250;
            ASSERT_EQ(SHGetPathFromIDListW(item.absolute.get(), path) != FALSE, fits) << item.fileName;
            EXPECT_TRUE(!fits || platform::PosixFromShellPath(path) == (folder / item.fileName).native());
        }
        for (const char* name :
             {"back\\slash", "co:lon", "na\u00EFve \u00FF", "\u05E9\u05DC\u05D5\u05DD", "\U0001F600 smile"})
            EXPECT_EQ(Find(items, name)->display, name);
    }
}

TEST(ShellFolder, NamesThatAreNoTextNeverLookTheSame)
{
    const auto folder = NewFolder();
    std::filesystem::create_directory(folder / "a\xFE");
    std::filesystem::create_directory(folder / "a\xFF");
    const std::vector<Item> items = Items(folder);
    ASSERT_EQ(items.size(), 2u);
    EXPECT_NE(items[0].display, items[1].display); // a menu would merge the two folders
}

TEST(ShellFolder, KindsAndAttributes)
{
    const auto folder = NewFolder();
    std::filesystem::create_directory(folder / "folder");
    std::filesystem::create_directory(folder / "folder.desktop");
    Write(folder / "archive.zip", "PK");
    Write(folder / "tool.desktop", Entry("Name=Tool\n"));
    std::filesystem::create_symlink("folder", folder / "to folder");
    std::filesystem::create_symlink("archive.zip", folder / "to file.lnk");
    std::filesystem::create_symlink("nowhere", folder / "dangling");
    std::filesystem::create_symlink("loop", folder / "loop");
    std::filesystem::create_symlink("tool.desktop", folder / "alias.desktop");
    mkfifo((folder / "pipe").c_str(), 0600);

    const std::vector<Item> items = Items(folder);
    const auto attributes = [&](const char* name)
    {
        const Item* item = Find(items, name);
        return item != nullptr ? item->attributes : 0xDEAD;
    };
    EXPECT_EQ(attributes("folder"), SFGAO_FOLDER);
    EXPECT_EQ(attributes("folder.desktop"), SFGAO_FOLDER);
    EXPECT_EQ(attributes("archive.zip"), SFGAO_STREAM);
    EXPECT_EQ(attributes("tool.desktop"), SFGAO_LINK | SFGAO_STREAM);
    EXPECT_EQ(attributes("alias.desktop"), SFGAO_LINK | SFGAO_STREAM);
    EXPECT_EQ(attributes("pipe"), 0u);
    for (const char* link : {"to folder", "to file.lnk", "dangling", "loop"})
    {
        EXPECT_EQ(attributes(link), SFGAO_LINK | SFGAO_STREAM) << link;
        EXPECT_NE(Find(items, link)->info.iIcon & 0xFF000000, 0) << link << " has no overlay";
    }
    EXPECT_EQ(Find(items, "tool.desktop")->info.iIcon & 0xFF000000, 0);
    EXPECT_EQ(Find(items, "alias.desktop")->info.iIcon & 0xFF000000, 0);
    EXPECT_EQ(Find(items, "to file.lnk")->display, "to file");
    EXPECT_EQ(Find(items, "folder.desktop")->display, "folder.desktop");
    EXPECT_EQ(Find(items, "alias.desktop")->display, "Tool");

    EXPECT_EQ(FileNames(Items(folder, SHCONTF_FOLDERS)), (std::set<std::string>{"folder", "folder.desktop"}));
    EXPECT_EQ(Items(folder, SHCONTF_NONFOLDERS).size(), items.size() - 2);
}

// ".." after a link was taken off the text, where the kernel goes up from where the link leads; and a slash behind a
// file's name made no difference.
TEST(ShellFolder, LinksAreFollowedAsTheKernelDoes)
{
    const auto folder = NewFolder();
    const auto elsewhere = NewFolder();
    std::filesystem::create_directory(elsewhere / "deep");
    Write(elsewhere / "x.desktop", Entry("Name=Beyond\n"));
    std::filesystem::create_symlink(elsewhere / "deep", folder / "d");
    std::filesystem::create_symlink("d/../x.desktop", folder / "up.desktop");
    std::filesystem::create_symlink("up.desktop", folder / "again.desktop");
    std::filesystem::create_symlink("d/.././/d/../nothing.desktop", folder / "broken.desktop");
    std::filesystem::create_symlink("d/../x.desktop/", folder / "slash.desktop");
    std::filesystem::create_symlink("d/../x.desktop/.", folder / "dot.desktop");
    const std::vector<Item> items = Items(folder);
    EXPECT_EQ(Find(items, "up.desktop")->display, "Beyond");
    EXPECT_EQ(Find(items, "again.desktop")->display, "Beyond");
    for (const char* name : {"broken", "slash", "dot"})
        EXPECT_NE(Find(items, std::string(name) + ".desktop")->info.iIcon & 0xFF000000, 0) << name;
}

TEST(ShellFolder, DesktopEntriesShowTheirNameInTheUsersLanguage)
{
    const auto folder = NewFolder();
    Write(folder / "a.desktop", Entry("Name=Files\nName[de]=Dateien\n"));
    Write(folder / "nameless.desktop", Entry("Icon=x\n"));
    Write(folder / "broken.desktop", "no entry at all\n");
    Write(folder / "empty.desktop", "");
    Write(folder / "badtext.desktop", "[Desktop Entry]\nType=Application\nName=\xFF\xFE\n");
    Write(folder / "long.desktop", Entry("Name=" + std::string(100'000, 'x') + "\n"));
    const std::vector<Item> items = Items(folder);
    EXPECT_EQ(Find(items, "a.desktop")->display, "Dateien");
    for (const char* name : {"nameless", "broken", "empty", "badtext"})
    {
        ASSERT_NE(Find(items, name + std::string(".desktop")), nullptr) << name;
        EXPECT_EQ(Find(items, name + std::string(".desktop"))->display, name);
    }
    EXPECT_EQ(Find(items, "long.desktop")->display, std::string(platform::kMaxDisplayUnits, 'x'));
}

TEST(ShellFolder, HiddenItemsAreListedOnlyOnRequest)
{
    const auto folder = NewFolder();
    const std::set<std::string> hidden = {".dot",        "backup~",      "nodisplay.desktop", "deleted.desktop",
                                          "kde.desktop", "never.desktop"};
    const std::set<std::string> shown = {"file", "here.desktop", "first.desktop"};
    Write(folder / ".dot", "");
    Write(folder / "backup~", "");
    Write(folder / "file", "");
    Write(folder / "nodisplay.desktop", Entry("NoDisplay=true\n"));
    Write(folder / "deleted.desktop", Entry("Hidden=true\n"));
    Write(folder / "kde.desktop", Entry("OnlyShowIn=KDE;\n"));
    Write(folder / "never.desktop", Entry("NotShowIn=GNOME;\n"));
    Write(folder / "here.desktop", Entry("OnlyShowIn=KDE;GNOME;\n"));
    Write(folder / "first.desktop", Entry("OnlyShowIn=Orbit;\nNotShowIn=GNOME;\n")); // the first desktop decides
    EXPECT_EQ(FileNames(Items(folder)), shown);
    std::set<std::string> all = shown;
    all.insert(hidden.begin(), hidden.end());
    EXPECT_EQ(FileNames(Items(folder, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS | SHCONTF_INCLUDEHIDDEN)), all);
}

TEST(ShellFolder, FoldersThatCannotBeReadSaySo)
{
    const auto place = NewFolder();
    Write(place / "file", "");
    std::filesystem::create_directory(place / "gone");
    std::filesystem::create_directory(place / "real");
    std::filesystem::create_symlink("real", place / "alias");
    Write(place / "real" / "inside", "");
    const List gone = Parse(place / "gone");
    const Com<IShellFolder> folder = Bind(gone.get());
    std::filesystem::remove(place / "gone");
    IEnumIDList* enumeration = nullptr;
    EXPECT_EQ(folder->EnumObjects(nullptr, SHCONTF_NONFOLDERS, &enumeration), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(enumeration, nullptr);
    Write(place / "gone", "a file in its place");
    EXPECT_TRUE(FAILED(folder->EnumObjects(nullptr, SHCONTF_NONFOLDERS, &enumeration)));

    EXPECT_EQ(Bind(Parse(place / "file").get()), nullptr);
    EXPECT_EQ(Parse(place / "nothing"), nullptr);
    EXPECT_EQ(Items(place / "alias").size(), 1u) << "a folder reached through a link";
}

TEST(ShellFolder, MalformedListsAreRefused)
{
    const auto folder = NewFolder();
    Write(folder / "file", "");
    const List list = Parse(folder / "file");
    const Com<IShellFolder> parent = Bind(Parse(folder).get());
    const LPITEMIDLIST last = ILFindLastID(list.get());
    const std::size_t size = last->mkid.cb;
    const std::vector<BYTE> good(reinterpret_cast<BYTE*>(last), reinterpret_cast<BYTE*>(last) + size + 2);
    // Each byte of the identifier but its size damaged in turn: refused or answered, never followed out of bounds.
    for (std::size_t i = 2; i < size; ++i)
    {
        std::vector<BYTE> bytes = good;
        bytes[i] ^= 0xFF;
        const auto* item = reinterpret_cast<LPCITEMIDLIST>(bytes.data());
        STRRET name{};
        if (SUCCEEDED(parent->GetDisplayNameOf(item, SHGDN_INFOLDER, &name)))
            CoTaskMemFree(name.pOleStr);
        SHFILEINFOW info{};
        SHGetFileInfoW(reinterpret_cast<LPCWSTR>(item), 0, &info, sizeof info, SHGFI_PIDL | SHGFI_TYPENAME);
        WCHAR path[MAX_PATH];
        SHGetPathFromIDListW(item, path);
    }
    using namespace std::string_view_literals;
    for (const std::string_view name : {"a/b/"sv, "...."sv, "a\0bc"sv})
    {
        std::vector<BYTE> bytes = good;
        constexpr std::string_view kReal = "file";
        std::copy(name.begin(), name.end(), std::search(bytes.begin(), bytes.end(), kReal.begin(), kReal.end()));
        const auto* item = reinterpret_cast<LPCITEMIDLIST>(bytes.data());
        WCHAR path[MAX_PATH];
        EXPECT_EQ(SHGetPathFromIDListW(item, path) != FALSE, name == "....") << name;
        void* menu = nullptr;
        EXPECT_EQ(SUCCEEDED(parent->GetUIObjectOf(nullptr, 1, &item, IID_IContextMenu, nullptr, &menu)),
                  name == "....");
        if (menu != nullptr)
            static_cast<IContextMenu*>(menu)->Release();
    }
    BYTE foreign[] = {6, 0, 1, 2, 3, 4, 0, 0};
    STRRET name;
    EXPECT_TRUE(FAILED(parent->GetDisplayNameOf(reinterpret_cast<LPCITEMIDLIST>(foreign), SHGDN_INFOLDER, &name)));
    SHFILEINFOW info{};
    EXPECT_EQ(SHGetFileInfoW(reinterpret_cast<LPCWSTR>(foreign), 0, &info, sizeof info, SHGFI_PIDL | SHGFI_TYPENAME),
              0u);
}

TEST(ShellPlaces, FollowTheDesktopsRules)
{
    LPWSTR path = nullptr;
    ASSERT_EQ(SHGetKnownFolderPath(FOLDERID_RoamingAppData, 0, nullptr, &path), S_OK);
    EXPECT_EQ(platform::PosixFromShellPath(path), (Home() / "data").native());
    CoTaskMemFree(path);

    const auto location = [](int csidl)
    {
        LPITEMIDLIST list = nullptr;
        SHGetFolderLocation(nullptr, csidl, nullptr, 0, &list);
        return List(list);
    };
    const auto pathOf = [](const List& list)
    {
        WCHAR text[MAX_PATH] = {};
        SHGetPathFromIDListW(list.get(), text);
        return std::filesystem::path(platform::PosixFromShellPath(text));
    };
    struct Case
    {
        std::string line;
        std::filesystem::path folder;
        std::u16string name;
    };
    const Case cases[] = {
        {"# nothing", Home() / "Desktop", u"Desktop"},
        {"# a comment\nXDG_DESKTOP_DIR=\"$HOME/Schreib \\\"tisch\"", Home() / "Schreib \"tisch", u"Schreib \"tisch"},
        {"XDG_DESKTOP_DIR=\"$HOME/\"", Home(), u"Desktop"},
        {"XDG_DESKTOP_DIR=\"$HOME\"", Home(), u"Desktop"},
        {"XDG_DESKTOP_DIR=\"" + (Home() / "system///").native() + "\"", Home() / "system", u"system"},
        {"XDG_DESKTOP_DIR=\"$HOMEWARD\"", Home() / "Desktop", u"Desktop"},
        {"XDG_DESKTOP_DIR=\"not/absolute\"", Home() / "Desktop", u"Desktop"},
        {"XDG_DESKTOP_DIR=$HOME/unquoted", Home() / "Desktop", u"Desktop"},
        {std::string("\0\xFF\"\nXDG_DESKTOP_DIR=\"", 22), Home() / "Desktop", u"Desktop"},
        {"XDG_DESKTOP_DIR=\"/nonexistent/desk\"", {}, {}}, // it may be on a disk that is not there now
    };
    const Com<IShellFolder> root = []
    {
        IShellFolder* folder = nullptr;
        SHGetDesktopFolder(&folder);
        return Com<IShellFolder>(folder);
    }();
    for (const Case& c : cases)
    {
        Write(Home() / "config/user-dirs.dirs", c.line + "\n");
        const List list = location(CSIDL_DESKTOPDIRECTORY);
        ASSERT_EQ(list == nullptr, c.folder.empty()) << c.line;
        if (list == nullptr)
            continue;
        EXPECT_EQ(pathOf(list), c.folder) << c.line;
        EXPECT_EQ(NameOf(*root, list.get(), SHGDN_INFOLDER), c.name) << c.line;
        EXPECT_TRUE(std::filesystem::is_directory(c.folder)) << c.line << ": in the home folder it is made";
    }

    EXPECT_EQ(location(CSIDL_COMMON_STARTMENU), nullptr);
    std::filesystem::create_directories(Home() / "system/applications");
    const List common = location(CSIDL_COMMON_STARTMENU);
    const List own = location(CSIDL_STARTMENU);
    EXPECT_EQ(pathOf(common), Home() / "system/applications");
    EXPECT_EQ(pathOf(own), Home() / "data/applications");

    // One display name for both, as the menu merges folders by it; they are folders in the eyes of the desktop folder.
    IShellFolder* desktop = nullptr;
    SHGetDesktopFolder(&desktop);
    EXPECT_EQ(NameOf(*desktop, own.get(), SHGDN_INFOLDER), u"Start Menu");
    EXPECT_EQ(NameOf(*desktop, common.get(), SHGDN_INFOLDER), u"Start Menu");
    LPCITEMIDLIST lists[] = {own.get()};
    SFGAOF attributes = SFGAO_FOLDER | SFGAO_STREAM | SFGAO_LINK;
    EXPECT_EQ(desktop->GetAttributesOf(1, lists, &attributes), S_OK);
    EXPECT_EQ(attributes, SFGAO_FOLDER);
    desktop->Release();
    std::filesystem::remove(Home() / "config/user-dirs.dirs");
    std::filesystem::remove(Home() / "Schreib \"tisch");
    std::filesystem::remove(Home() / "Desktop");
    std::filesystem::remove(Home() / "system/applications");
}
