// Copying, moving, linking and trashing files: where they are then, under which names, and what is asked.
#include "tests/layer/file_work_desk.h"

using namespace shell_test;

TEST(FileWork, NewFoldersTakeTheFirstFreeName)
{
    const auto folder = NewFolder();
    Worker worker;
    for (const char* name : {"New folder", "New folder (2)", "New folder (3)"})
    {
        EXPECT_EQ(worker.Do(FileWork::NewFolder, {}, folder), FileWorkEnd::Done);
        EXPECT_EQ(worker.name, name);
        EXPECT_TRUE(std::filesystem::is_directory(folder / name));
    }
}

TEST(FileWork, CopiesMovesAndLinks)
{
    const auto from = NewFolder();
    const auto to = NewFolder();
    std::filesystem::create_directory(from / "folder");
    Write(from / "folder/inner", "inner");
    Write(from / "file", "content");
    Write(from / "moved", "moves");
    symlink("nowhere", (from / "folder/link").c_str());
    Worker worker;
    EXPECT_EQ(worker.Do(FileWork::Copy, {from / "folder", from / "file"}, to), FileWorkEnd::Done);
    EXPECT_EQ(worker.Do(FileWork::Move, {from / "moved"}, to), FileWorkEnd::Done);
    EXPECT_EQ(worker.Do(FileWork::Link, {from / "folder", from / "file"}, to), FileWorkEnd::Done);
    EXPECT_EQ(Tree(to), (Files{{"folder", "/"},
                               {"folder/inner", "inner"},
                               {"folder/link", "-> nowhere"},
                               {"file", "content"},
                               {"moved", "moves"},
                               {"folder (link)", "-> " + (from / "folder").native()},
                               {"file (link)", "-> " + (from / "file").native()}}));
    EXPECT_EQ(Tree(from),
              (Files{{"folder", "/"}, {"folder/inner", "inner"}, {"folder/link", "-> nowhere"}, {"file", "content"}}));
    EXPECT_TRUE(worker.asked.empty());
}

TEST(FileWork, TrashKeepsFilesToBeRestored)
{
    const auto folder = NewFolder();
    Write(folder / "file", "content");
    Worker worker;
    EXPECT_EQ(worker.Do(FileWork::Trash, {folder / "file"}), FileWorkEnd::Done);
    EXPECT_FALSE(std::filesystem::exists(folder / "file"));
    EXPECT_EQ(ReadFile(Home() / "data/Trash/files/file"), "content");
    EXPECT_NE(ReadFile(Home() / "data/Trash/info/file.trashinfo").find("Path=" + (folder / "file").native()),
              std::string::npos);
}
