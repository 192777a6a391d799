// Context menus of items and folders: what they offer, what offsets mean, what an item's menu may cost.
#include "tests/layer/shell_scratch.h"

#include "windows.h"

#include "platform/dialogs/menu.h"

#include <gtest/gtest.h>

#include <chrono>

using namespace shell_test;

namespace
{

constexpr UINT kFirst = 11;
constexpr UINT kLast = 0x7FFF;

/// The menu of an item, or of a folder's background, as the launcher asks for it.
class ShownMenu
{
public:
    explicit ShownMenu(const std::filesystem::path& path, UINT flags = CMF_NORMAL) { Take(Bound(path).Menu(), flags); }
    ShownMenu(IShellFolder& folder, UINT flags)
    {
        void* object = nullptr;
        EXPECT_EQ(folder.CreateViewObject(nullptr, IID_IContextMenu, &object), S_OK);
        Take(Taken<IContextMenu>(object), flags);
    }
    ~ShownMenu() { DestroyMenu(m_menu); }
    ShownMenu(const ShownMenu&) = delete;
    ShownMenu& operator=(const ShownMenu&) = delete;

    HMENU Menu() const { return m_menu; }
    HRESULT Used() const { return m_used; }
    IContextMenu& Object() { return *m_object; }

    /// An entry's verb; "-" for a separator, its text in brackets for one without a name.
    std::vector<std::string> Verbs() const { return VerbsOf(m_menu); }
    std::vector<std::string> VerbsOf(HMENU menu) const
    {
        std::vector<std::string> verbs;
        auto* object = platform::FindObject<platform::Menu>(menu);
        for (int i = 0; i < object->Count(); ++i)
            verbs.push_back(VerbOf(object->At(i)));
        return verbs;
    }
    /// The sub-menu of that text, filled as when it opens.
    HMENU Open(std::u16string_view text) const
    {
        auto* object = platform::FindObject<platform::Menu>(m_menu);
        for (platform::MenuItem& item : object->items)
        {
            if (item.text != text || item.subMenu == nullptr)
                continue;
            const auto fill = std::move(platform::FindObject<platform::Menu>(item.subMenu)->fill);
            if (fill)
                fill(item.subMenu);
            return item.subMenu;
        }
        return nullptr;
    }
    /// The entry of that text in a menu, null when there is none.
    static const platform::MenuItem* Entry(HMENU menu, std::u16string_view text)
    {
        for (const platform::MenuItem& item : platform::FindObject<platform::Menu>(menu)->items)
            if (item.text == text)
                return &item;
        return nullptr;
    }
    HRESULT Invoke(UINT id)
    {
        CMINVOKECOMMANDINFOEX info{};
        info.cbSize = sizeof info;
        info.lpVerb = MAKEINTRESOURCEA(id - kFirst);
        return m_object->InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&info));
    }
    HRESULT Invoke(LPCSTR verb) { return shell_test::Invoke(*m_object, verb); }

private:
    void Take(Com<IContextMenu> object, UINT flags)
    {
        m_object = std::move(object);
        m_menu = CreatePopupMenu();
        m_used = m_object->QueryContextMenu(m_menu, 0, kFirst, kLast, flags);
    }
    std::string VerbOf(const platform::MenuItem& item) const
    {
        char verb[256] = "";
        if (item.IsSeparator())
            return "-";
        if (item.subMenu != nullptr ||
            FAILED(m_object->GetCommandString(item.id - kFirst, GCS_VERBA, nullptr, verb, sizeof verb)))
            return std::string("[").append(platform::Utf8FromUtf16(item.text)).append("]");
        return verb;
    }

    Com<IContextMenu> m_object;
    HMENU m_menu = nullptr;
    HRESULT m_used = E_FAIL;
};

using Verbs = std::vector<std::string>;

class ShellMenu : public testing::Test
{
protected:
    static void SetUpTestSuite() { InstallFolderViewer(); }
    void SetUp() override { m_folder = NewFolder(); }

    std::filesystem::path Entry(const std::string& lines)
    {
        const auto path = m_folder / "tool.desktop";
        Write(path, "[Desktop Entry]\nType=Application\nName=Tool\nExec=true\n" + lines);
        return path;
    }

    std::filesystem::path m_folder;
};

} // namespace

TEST_F(ShellMenu, EachKindOfItemOffersWhatCanBeDoneWithIt)
{
    Write(m_folder / "note.txt", "text");
    std::filesystem::create_directory(m_folder / "Sub");
    std::filesystem::create_directory_symlink("Sub", m_folder / "sub.lnk");
    EXPECT_EQ(ShownMenu(m_folder / "note.txt", CMF_CANRENAME).Verbs(),
              (Verbs{"open", "[Open &with]", "showinfolder", "-", "cut", "copy", "paste", "-", "link", "delete",
                     "rename", "-", "properties"}));
    const Verbs folder{
        "open", "[Open &with]", "openterminal", "showinfolder", "-", "cut", "copy", "paste", "-", "link", "delete",
        "-",    "properties"};
    EXPECT_EQ(ShownMenu(m_folder / "Sub").Verbs(), folder);
    EXPECT_EQ(ShownMenu(m_folder / "sub.lnk").Verbs(), folder);
    EXPECT_EQ(ShownMenu(Entry("")).Verbs(),
              (Verbs{"open", "showinfolder", "-", "cut", "copy", "paste", "-", "link", "delete", "-", "properties"}));
    const List list = Parse(m_folder);
    EXPECT_EQ(ShownMenu(*Bind(list.get()), CMF_NORMAL).Verbs(), (Verbs{"NewFolder", "-", "paste", "-", "properties"}));
    EXPECT_EQ(ShownMenu(m_folder / "Sub", CMF_DEFAULTONLY).Verbs(), (Verbs{"open"}));
}

TEST_F(ShellMenu, AnEntrysActionsAreShownInTheUsersLanguageWithTheirIcons)
{
    const auto path = Entry("Actions=new;broken;amp;\n\n[Desktop Action new]\nName=New Window\nName[de]=Neues Fenster\n"
                            "Icon=window-new\nExec=true\n\n[Desktop Action amp]\nName=R&D\nExec=true\n");
    const ShownMenu menu(path);
    EXPECT_EQ(menu.Verbs(), (Verbs{"open", "showinfolder", "-", "[Neues Fenster]", "[R&&D]", "-", "cut", "copy",
                                   "paste", "-", "link", "delete", "-", "properties"}));
    const platform::MenuItem* action = ShownMenu::Entry(menu.Menu(), u"Neues Fenster");
    ASSERT_NE(action, nullptr);
    EXPECT_NE(action->icon, nullptr);
}

TEST_F(ShellMenu, OffsetsMeanTheSameInEveryQueryAndOnlyNamedVerbsHaveNames)
{
    ShownMenu menu(Entry("Actions=a;\n\n[Desktop Action a]\nName=Act\nExec=true\n"), CMF_CANRENAME);
    const HMENU again = CreatePopupMenu();
    constexpr UINT kElsewhere = 500;
    EXPECT_EQ(menu.Object().QueryContextMenu(again, 0, kElsewhere, kLast, CMF_NORMAL), menu.Used());
    for (const std::u16string_view text : {u"&Open", u"Act", u"P&roperties"})
    {
        ASSERT_NE(ShownMenu::Entry(menu.Menu(), text), nullptr);
        ASSERT_NE(ShownMenu::Entry(again, text), nullptr);
        EXPECT_EQ(ShownMenu::Entry(menu.Menu(), text)->id - kFirst, ShownMenu::Entry(again, text)->id - kElsewhere);
        EXPECT_LE(ShownMenu::Entry(again, text)->id - kElsewhere + 1, static_cast<UINT>(menu.Used()));
    }
    DestroyMenu(again);
    char name[16] = "";
    EXPECT_EQ(menu.Object().GetCommandString(0, GCS_VERBA, nullptr, name, 5), S_OK);
    EXPECT_STREQ(name, "open");
    EXPECT_TRUE(FAILED(menu.Object().GetCommandString(0, GCS_VERBA, nullptr, name, 4))) << "no room for the end";
    EXPECT_EQ(menu.Invoke("no such verb"), E_INVALIDARG);
    EXPECT_EQ(menu.Invoke(kFirst + 20'000), E_INVALIDARG);
}

TEST_F(ShellMenu, ARangeThatIsTooSmallTakesWhatFits)
{
    Write(m_folder / "note.txt", "text");
    ShownMenu menu(m_folder / "note.txt");
    const HMENU small = CreatePopupMenu();
    EXPECT_EQ(menu.Object().QueryContextMenu(small, 0, kFirst, kFirst, CMF_NORMAL), 1);
    EXPECT_EQ(menu.VerbsOf(small), (Verbs{"open"}));
    DestroyMenu(small);
}

TEST_F(ShellMenu, ActionsProgramsAndTheTerminalStart)
{
    const auto report = m_folder / "report";
    const auto tell = m_folder / "tell.sh";
    Write(tell,
          "#!/bin/sh\n{ echo \"$PWD\"; for a in \"$@\"; do echo \"$a\"; done; } > '" + report.native() +
              ".part'\nmv '" + report.native() + ".part' '" + report.native() + "'\n",
          0755);
    const auto told = [&]
    {
        WaitFor([&] { return std::filesystem::exists(report); });
        const std::string text = ContentOf(report);
        std::filesystem::remove(report);
        return text.substr(0, text.size() - 1);
    };
    const std::string exec = "Exec=\"" + tell.native() + "\" ";
    ShownMenu entry(Entry("Actions=a;\n\n[Desktop Action a]\nName=Act\n" + exec + "acted %k\n"));
    EXPECT_EQ(entry.Invoke(ShownMenu::Entry(entry.Menu(), u"Act")->id), S_OK);
    EXPECT_TRUE(told().ends_with("acted\n" + (m_folder / "tool.desktop").native()));

    std::filesystem::create_directory(m_folder / "Sub $x");
    ShownMenu folder(m_folder / "Sub $x");
    const HMENU programs = folder.Open(u"Open &with");
    ASSERT_NE(programs, nullptr);
    ASSERT_GT(GetMenuItemCount(programs), 0);
    const platform::MenuItem& first = platform::FindObject<platform::Menu>(programs)->At(0);
    EXPECT_EQ(first.text, u"Viewer");
    EXPECT_NE(first.icon, nullptr);
    EXPECT_EQ(folder.Invoke(first.id), S_OK);
    EXPECT_TRUE(told().ends_with((m_folder / "Sub $x").native()));

    Write(Home() / "bin/xdg-terminal-exec", "#!/bin/sh\nexec '" + tell.native() + "'\n", 0755);
    EXPECT_EQ(folder.Invoke("openterminal"), S_OK);
    EXPECT_EQ(told(), (m_folder / "Sub $x").native());
    std::filesystem::remove(Home() / "bin/xdg-terminal-exec");
}

TEST_F(ShellMenu, VerbsOnFilesWork)
{
    Write(m_folder / "note.txt", "text");
    std::filesystem::create_directory(m_folder / "Sub");
    EXPECT_EQ(ShownMenu(m_folder / "note.txt").Invoke("link"), S_OK);
    std::size_t links = 0;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder))
        links += entry.is_symlink() && std::filesystem::exists(entry.path()) ? 1 : 0;
    EXPECT_EQ(links, 1u);
    const List list = Parse(m_folder);
    EXPECT_EQ(ShownMenu(*Bind(list.get()), CMF_NORMAL).Invoke("NewFolder"), S_OK);
    EXPECT_EQ(ShownMenu(*Bind(list.get()), CMF_NORMAL).Invoke("newfolder"), S_OK) << "letter case does not count";
    EXPECT_TRUE(std::filesystem::is_directory(m_folder / "New folder"));
    EXPECT_TRUE(std::filesystem::is_directory(m_folder / "New folder (2)"));
    EXPECT_EQ(ShownMenu(m_folder / "note.txt").Invoke("COPY"), S_OK);
    ShownMenu into(m_folder / "Sub");
    EXPECT_EQ(ShownMenu::Entry(into.Menu(), u"&Paste")->state & MFS_GRAYED, 0u);
    EXPECT_EQ(into.Invoke("paste"), S_OK);
    EXPECT_TRUE(std::filesystem::exists(m_folder / "Sub/note.txt"));
    EXPECT_EQ(ShownMenu(m_folder / "note.txt").Invoke("cut"), S_OK);
    EXPECT_EQ(ShownMenu(m_folder / "New folder").Invoke("paste"), S_OK);
    EXPECT_FALSE(std::filesystem::exists(m_folder / "note.txt"));
    EXPECT_TRUE(std::filesystem::exists(m_folder / "New folder/note.txt"));
    EXPECT_NE(ShownMenu::Entry(ShownMenu(m_folder / "Sub").Menu(), u"&Paste")->state & MFS_GRAYED, 0u)
        << "what was cut is moved once";
    EXPECT_EQ(ShownMenu(m_folder / "Sub").Invoke("delete"), S_OK);
    EXPECT_FALSE(std::filesystem::exists(m_folder / "Sub"));
}
