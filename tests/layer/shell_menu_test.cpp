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
    explicit ShownMenu(const std::filesystem::path& path, UINT flags = CMF_NORMAL)
    {
        const List list = Parse(path);
        void* parent = nullptr;
        LPCITEMIDLIST last = nullptr;
        EXPECT_EQ(SHBindToParent(list.get(), IID_IShellFolder, &parent, &last), S_OK);
        const Com<IShellFolder> folder(static_cast<IShellFolder*>(parent));
        void* object = nullptr;
        EXPECT_EQ(folder->GetUIObjectOf(nullptr, 1, &last, IID_IContextMenu, nullptr, &object), S_OK);
        Take(object, flags);
    }
    ShownMenu(IShellFolder& folder, UINT flags)
    {
        void* object = nullptr;
        EXPECT_EQ(folder.CreateViewObject(nullptr, IID_IContextMenu, &object), S_OK);
        Take(object, flags);
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
    HRESULT Invoke(LPCSTR verb)
    {
        CMINVOKECOMMANDINFO info{};
        info.cbSize = sizeof info;
        info.lpVerb = verb;
        return m_object->InvokeCommand(&info);
    }

private:
    void Take(void* object, UINT flags)
    {
        m_object.reset(static_cast<IContextMenu*>(object));
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
