// Renaming: desktop entries by the name that they show, everything else by its file name.
#include "tests/layer/shell_boxes.h"
#include "tests/layer/shell_scratch.h"

#include "platform/services/desktop_module.h"
#include "platform/services/entry_service.h"

#include <gtest/gtest.h>

#include <csignal>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

using namespace shell_test;

namespace
{

class ShellRename : public testing::Test
{
protected:
    void SetUp() override { m_folder = NewFolder(); }

    HRESULT Rename(const std::string& name, const std::u16string& text,
                   SHGDNF flags = SHGDN_INFOLDER | SHGDN_FOREDITING)
    {
        const Bound bound(m_folder / name);
        m_editing = NameOf(*bound.folder, bound.item, SHGDN_FOREDITING);
        LPITEMIDLIST renamed = nullptr;
        const Boxes boxes;
        const HRESULT result = bound.Rename(text.c_str(), &renamed, flags);
        const List owner(renamed);
        m_newName = renamed != nullptr ? NameOf(*bound.folder, renamed, SHGDN_INFOLDER | SHGDN_FORPARSING) : u"";
        m_boxes = boxes.Count();
        EXPECT_EQ(renamed != nullptr, SUCCEEDED(result));
        return result;
    }
    std::set<std::string> Names() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder))
            names.insert(entry.path().filename().native());
        return names;
    }
    std::string Content(const std::string& name) const { return ContentOf(m_folder / name); }
    std::string Shown(const std::string& name) const
    {
        const std::vector<Item> items = Items(m_folder);
        const Item* item = Find(items, name);
        return item != nullptr ? item->display : "(not listed)";
    }

    std::filesystem::path m_folder;
    std::u16string m_editing;
    std::u16string m_newName;
    int m_boxes = 0;
};

using NameSet = std::set<std::string>;

} // namespace

TEST_F(ShellRename, FilesChangeTheirNameAndKeepAHiddenEnding)
{
    Write(m_folder / "note.txt", "text");
    std::filesystem::create_symlink("note.txt", m_folder / "a.lnk");
    std::filesystem::create_directory(m_folder / "Sub.lnk");
    EXPECT_EQ(Rename("note.txt", u"  Größe.txt "), S_OK) << "blanks around do not count";
    EXPECT_EQ(m_editing, u"note.txt");
    EXPECT_EQ(m_newName, u"Größe.txt");
    EXPECT_EQ(Rename("a.lnk", u"b"), S_OK);
    EXPECT_EQ(m_editing, u"a");
    EXPECT_EQ(m_newName, u"b.lnk");
    EXPECT_EQ(Rename("Sub.lnk", u"sub.LNK"), S_OK) << "a folder's name is all shown";
    EXPECT_EQ(Rename("b.lnk", u"c", SHGDN_INFOLDER | SHGDN_FORPARSING), S_OK) << "the whole name";
    EXPECT_EQ(Rename("c", u"c"), S_OK) << "no change";
    EXPECT_EQ(Names(), (NameSet{"Größe.txt", "c", "sub.LNK"}));
}

TEST_F(ShellRename, WhatCannotBeIsSaidOnceAndChangesNothing)
{
    Write(m_folder / "one", "1");
    Write(m_folder / "two", "2");
    const std::u16string unpaired(1, char16_t{0xD800});
    for (const std::u16string& text :
         {std::u16string(u"two"), std::u16string(256, u'x'), std::u16string(200, u'ä'), std::u16string(u".."),
          std::u16string(u"a/b"), std::u16string(u" "), std::u16string(u""), std::u16string(u"a\nb"), unpaired})
    {
        EXPECT_TRUE(FAILED(Rename("one", text))) << text.size();
        EXPECT_EQ(m_boxes, 1) << text.size();
    }
    EXPECT_EQ(Names(), (NameSet{"one", "two"}));
    EXPECT_EQ(Content("one") + Content("two"), "12");
    EXPECT_EQ(Rename("one", u"One"), S_OK) << "letter case alone";
    link((m_folder / "One").c_str(), (m_folder / "ONE").c_str());
    EXPECT_TRUE(FAILED(Rename("One", u"ONE"))) << "another name of the same file is another name";
    EXPECT_EQ(Names(), (NameSet{"One", "ONE", "two"}));
}

TEST_F(ShellRename, AnEntryShowsAnotherNameAndIsOtherwiseTheSame)
{
    const std::string rest = "\n# a remark\nExec=tool %U\nName[fr]=Outil\n\n[Desktop Action x]\nName=X\nExec=tool x\n";
    Write(m_folder / "tool.desktop",
          "# first\n\n[Desktop Entry]\nType=Application\nName=Tool\nName[de]=Werkzeug" + rest, 0755);
    EXPECT_EQ(Rename("tool.desktop", u"Säge & Co: 1/2"), S_OK);
    EXPECT_EQ(m_editing, u"Werkzeug");
    EXPECT_EQ(m_newName, u"tool.desktop") << "its place in the order goes by the file's name";
    EXPECT_EQ(Content("tool.desktop"),
              "# first\n\n[Desktop Entry]\nType=Application\nName=Tool\nName[de]=Säge & Co: 1/2" + rest);
    EXPECT_EQ(Shown("tool.desktop"), "Säge & Co: 1/2");
    EXPECT_EQ(StatusOf(m_folder / "tool.desktop").st_mode & 0777, 0755u);
    EXPECT_EQ(Names(), (NameSet{"tool.desktop"})) << "nothing is left behind";

    Write(m_folder / "plain.desktop", "[Desktop Entry]\nType=Application\nName=Plain\nExec=plain\n");
    EXPECT_EQ(Rename("plain.desktop", u"Schlicht"), S_OK);
    EXPECT_EQ(Content("plain.desktop"),
              "[Desktop Entry]\nType=Application\nName=Plain\nExec=plain\nName[de]=Schlicht\n");
}

TEST_F(ShellRename, ALinkToAnEntryBecomesACopyOfTheUsersOwn)
{
    const auto there = NewFolder() / "tool.desktop";
    const std::string content = "[Desktop Entry]\nType=Application\nName=Tool\nExec=tool\n";
    Write(there, content, 0444);
    std::filesystem::create_symlink(there, m_folder / "tool.desktop");
    EXPECT_EQ(Rename("tool.desktop", u"Mine"), S_OK);
    EXPECT_FALSE(std::filesystem::is_symlink(m_folder / "tool.desktop"));
    EXPECT_EQ(Shown("tool.desktop"), "Mine");
    EXPECT_EQ(access((m_folder / "tool.desktop").c_str(), W_OK), 0);
    EXPECT_EQ(ContentOf(there), content);
}

TEST_F(ShellRename, AShortcutToAnEntryTakesTheNameOfItsFile)
{
    const auto there = NewFolder() / "tool.desktop";
    Write(there, "[Desktop Entry]\nType=Application\nName=Tool\nExec=tool\nNoDisplay=true\n");
    std::filesystem::create_symlink(there, m_folder / "tool.desktop.lnk");
    EXPECT_EQ(Shown("tool.desktop.lnk"), "Tool");
    EXPECT_EQ(Rename("tool.desktop.lnk", u"Mine"), S_OK);
    EXPECT_EQ(m_editing, u"Tool");
    EXPECT_EQ(Names(), (NameSet{"Mine.lnk"}));
    EXPECT_EQ(Shown("Mine.lnk"), "Mine");
}

TEST_F(ShellRename, WhatOnlyLooksLikeAnEntryIsRenamedAsAFile)
{
    Write(m_folder / "broken.desktop", "no entry at all");
    EXPECT_EQ(Rename("broken.desktop", u"still"), S_OK);
    EXPECT_EQ(Names(), (NameSet{"still.desktop"}));
}

// A rewrite that is cut short must leave the old entry or the new one.
TEST_F(ShellRename, AnEntryIsWholeWheneverTheProcessDies)
{
    const auto* service =
        static_cast<const platform::EntryService*>(platform::DesktopModuleSymbol("orb_entry_service"));
    ASSERT_NE(service, nullptr);
    const auto path = m_folder / "tool.desktop";
    const std::string padding(20'000, 'x');
    const std::string start = "[Desktop Entry]\nType=Application\nExec=tool\nComment=" + padding + "\nName=";
    Write(path, start + "0\n");
    std::set<std::string> seen;
    for (int round = 0; round < 50; ++round)
    {
        int begun[2];
        ASSERT_EQ(pipe(begun), 0);
        const pid_t process = fork();
        ASSERT_GE(process, 0);
        if (process == 0)
        {
            setenv("LANG", "C", 1);
            int error = 0;
            for (int i = 0;; ++i)
            {
                service->rename(path.c_str(), path.c_str(), std::to_string(i).c_str(), &error);
                if (i == round % 3 && write(begun[1], "*", 1) != 1)
                    _exit(1);
            }
        }
        close(begun[1]);
        char byte;
        EXPECT_EQ(read(begun[0], &byte, 1), 1);
        close(begun[0]);
        poll(nullptr, 0, round % 7);
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
        const std::string content = Content("tool.desktop");
        ASSERT_TRUE(content.starts_with(start) && content.ends_with("\n")) << content.size();
        seen.insert(content.substr(start.size()));
    }
    EXPECT_GT(seen.size(), 1u) << "nothing was ever written";
    EXPECT_EQ(Items(m_folder).size(), 1u) << "what a cut rewrite leaves is not shown";
}
