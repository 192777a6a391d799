// Copying, moving, linking and trashing files: where they are then, under which names, and what is asked.
#include "platform/desktop/file_names.h"
#include "tests/layer/file_work_desk.h"
#include "tests/scenarios/privileges.h"

#include <sys/mount.h>
#include <sys/xattr.h>

using namespace shell_test;

namespace
{

namespace fs = std::filesystem;

constexpr auto kDone = FileWorkEnd::Done;
constexpr auto kFailed = FileWorkEnd::Failed;
constexpr auto kCancelled = FileWorkEnd::Cancelled;

bool Offers(const Worker::Asked& asked, FileAnswer answer)
{
    return (asked.answers & static_cast<unsigned>(answer)) != 0;
}

void WriteTree(const fs::path& folder, const Files& files)
{
    for (const auto& [name, content] : files)
        if (content == "/")
            fs::create_directories(folder / name);
        else
            Write(folder / name, content);
}

/// A mount that goes away with the object.
struct Mount
{
    Mount(const char* source, fs::path where, const char* type, unsigned long flags, const char* options = nullptr)
        : path(std::move(where)), mounted(mount(source, path.c_str(), type, flags, options) == 0)
    {
    }
    ~Mount()
    {
        if (mounted)
            umount2(path.c_str(), MNT_DETACH);
    }
    Mount(const Mount&) = delete;
    Mount& operator=(const Mount&) = delete;

    fs::path path;
    bool mounted;
};

} // namespace

TEST(FileNames, EndingsAreKeptAndCopiesCounted)
{
    using platform::NumberedCopyName;
    using platform::SplitFileName;
    const struct
    {
        const char* name;
        int n;
        const char* copy;
    } cases[] = {
        {"Notes.txt", 1, "Notes (copy).txt"},
        {"Notes.txt", 2, "Notes (copy 2).txt"},
        {"Notes (copy).txt", 1, "Notes (copy 2).txt"},
        {"Notes (copy 9).txt", 2, "Notes (copy 11).txt"},
        {"Notes (copy x).txt", 1, "Notes (copy x) (copy).txt"},
        {"Notes (copy 99999999999).txt", 1, "Notes (copy 99999999999) (copy).txt"},
        {"backup.tar.gz", 1, "backup (copy).tar.gz"},
        {".tar.gz", 1, ".tar (copy).gz"},
        {"Files.desktop", 1, "Files (copy).desktop"},
        {"Notes.txt.lnk", 1, "Notes.txt (copy).lnk"},
        {".profile", 1, ".profile (copy)"},
        {"Version 1.2", 1, "Version 1.2 (copy)"},
        {"Mr. Smith", 1, "Mr. Smith (copy)"},
        {"ends.", 1, "ends. (copy)"},
        {" (copy)", 1, " (copy) (copy)"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(NumberedCopyName(SplitFileName(one.name), "copy", one.n), one.copy);
    // 255 bytes at most, and no half characters.
    std::string longName;
    while (longName.size() < 250)
        longName += "ä";
    const std::string copy = NumberedCopyName(SplitFileName(longName + ".txt"), "copy", 1);
    EXPECT_LE(copy.size(), 255U);
    EXPECT_TRUE(copy.ends_with("ä (copy).txt")) << copy;
}

TEST(FileWork, NewFoldersTakeTheFirstFreeName)
{
    const auto folder = NewFolder();
    Worker worker;
    for (const char* name : {"New folder", "New folder (2)", "New folder (3)"})
    {
        EXPECT_EQ(worker.Do(FileWork::NewFolder, {}, folder), kDone);
        EXPECT_EQ(worker.name, name);
        EXPECT_TRUE(fs::is_directory(folder / name));
    }
    EXPECT_EQ(worker.Do(FileWork::NewFolder, {}, folder / "missing"), kFailed);
    EXPECT_EQ(worker.name, "");
    ASSERT_EQ(worker.asked.size(), 1U);
    EXPECT_EQ(worker.asked[0].reason, "It is not there any more.");
}

TEST(FileWork, CopiesMovesAndLinks)
{
    const auto from = NewFolder();
    const auto to = NewFolder();
    WriteTree(from, {{"folder", "/"}, {"folder/inner", "inner"}, {"file", "content"}, {"moved", "moves"}});
    symlink("nowhere", (from / "folder/link").c_str());
    Worker worker;
    EXPECT_EQ(worker.Do(FileWork::Copy, {from / "folder/", from / "file"}, to), kDone);
    EXPECT_EQ(worker.last.files, 3U);
    EXPECT_EQ(worker.last.allFiles, 3U);
    EXPECT_EQ(worker.last.bytes, 12U);
    EXPECT_EQ(worker.last.allBytes, 12U);
    EXPECT_EQ(worker.Do(FileWork::Move, {from / "moved"}, to), kDone);
    EXPECT_EQ(worker.Do(FileWork::Link, {from / "folder", from / "file"}, to), kDone);
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

TEST(FileWork, InItsOwnFolderACopyHasANameOfItsOwnAndAMoveDoesNothing)
{
    const auto folder = NewFolder();
    WriteTree(folder, {{"Notes.txt", "1"}, {"v1.x", "/"}, {"v1.x/inner", "2"}});
    const auto alias = NewFolder() / "alias";
    symlink(folder.c_str(), alias.c_str());
    Worker worker;
    EXPECT_EQ(worker.Do(FileWork::Move, {folder / "Notes.txt", folder / "v1.x"}, alias), kDone);
    EXPECT_EQ(worker.Do(FileWork::Copy, {folder / "Notes.txt", folder / "v1.x"}, alias), kDone);
    EXPECT_EQ(worker.Do(FileWork::Copy, {folder / "Notes (copy).txt"}, folder), kDone);
    EXPECT_EQ(Tree(folder), (Files{{"Notes.txt", "1"},
                                   {"Notes (copy).txt", "1"},
                                   {"Notes (copy 2).txt", "1"},
                                   {"v1.x", "/"},
                                   {"v1.x/inner", "2"},
                                   {"v1.x (copy)", "/"},
                                   {"v1.x (copy)/inner", "2"}}));
    EXPECT_TRUE(worker.asked.empty());
}

TEST(FileWork, AsksWhatIsToBeDoneAboutATakenName)
{
    const Files before{{"a", "old"}, {"b", "old"}};
    const struct
    {
        FileWork work;
        platform::FileReply reply;
        FileWorkEnd end;
        std::size_t questions;
        Files after;
        std::size_t left; ///< of the two sources
    } cases[] = {
        {FileWork::Copy, {FileAnswer::Replace, false}, kDone, 2, {{"a", "new"}, {"b", "new"}}, 2},
        {FileWork::Copy, {FileAnswer::Replace, true}, kDone, 1, {{"a", "new"}, {"b", "new"}}, 2},
        {FileWork::Move, {FileAnswer::Replace, true}, kDone, 1, {{"a", "new"}, {"b", "new"}}, 0},
        {FileWork::Move, {FileAnswer::Skip, true}, kDone, 1, before, 2},
        {FileWork::Copy, {FileAnswer::Cancel, false}, kCancelled, 1, before, 2},
        {FileWork::Move,
         {FileAnswer::KeepBoth, true},
         kDone,
         1,
         {{"a", "old"}, {"b", "old"}, {"a (2)", "new"}, {"b (2)", "new"}},
         0},
    };
    for (const auto& one : cases)
    {
        const auto from = NewFolder();
        const auto to = NewFolder();
        WriteTree(from, {{"a", "new"}, {"b", "new"}});
        WriteTree(to, before);
        Worker worker;
        worker.answers[FileQuestion::NameTaken] = one.reply;
        EXPECT_EQ(worker.Do(one.work, {from / "a", from / "b"}, to), one.end);
        EXPECT_EQ(worker.asked.size(), one.questions);
        EXPECT_EQ(worker.asked[0].path, (to / "a").native());
        EXPECT_TRUE(worker.asked[0].more);
        EXPECT_EQ(Tree(to), one.after);
        EXPECT_EQ(Tree(from).size(), one.left);
    }
}

TEST(FileWork, FoldersAreMergedOnRequest)
{
    for (const FileWork work : {FileWork::Copy, FileWork::Move})
    {
        const auto from = NewFolder();
        const auto to = NewFolder();
        WriteTree(from, {{"f", "/"}, {"f/a", "new"}, {"f/b", "new"}, {"f/c", "new"}, {"f/d", "/"}, {"f/d/e", "new"}});
        WriteTree(to, {{"f", "/"}, {"f/a", "old"}, {"f/b", "/"}, {"f/d", "/"}, {"f/d/x", "old"}});
        Worker worker;
        worker.answers[FileQuestion::FolderTaken] = {FileAnswer::Replace, false};
        worker.answers[FileQuestion::NameTaken] = {FileAnswer::Skip, false};
        worker.answers[FileQuestion::KindsDiffer] = {FileAnswer::KeepBoth, false};
        EXPECT_EQ(worker.Do(work, {from / "f"}, to), kDone);
        EXPECT_EQ(Tree(to), (Files{{"f", "/"},
                                   {"f/a", "old"},
                                   {"f/b", "/"},
                                   {"f/b (2)", "new"},
                                   {"f/c", "new"},
                                   {"f/d", "/"},
                                   {"f/d/e", "new"},
                                   {"f/d/x", "old"}}));
        EXPECT_EQ(worker.Questions(), (std::vector{FileQuestion::FolderTaken, FileQuestion::NameTaken,
                                                   FileQuestion::KindsDiffer, FileQuestion::FolderTaken}));
        EXPECT_FALSE(Offers(worker.asked[2], FileAnswer::Replace)) << "a file and a folder are never merged";
        EXPECT_TRUE(work == FileWork::Copy || Tree(from) == (Files{{"f", "/"}, {"f/a", "new"}})) << "skipped: stays";
    }
}

TEST(FileWork, AFolderNeverGoesIntoItself)
{
    const auto base = NewFolder();
    WriteTree(base, {{"f", "/"}, {"f/g", "/"}, {"f/file", "1"}});
    symlink((base / "f/g").c_str(), (base / "link").c_str());
    fs::create_directories(base / "bound");
    fs::create_directories(base / "inner");
    const Mount bound((base / "f").c_str(), base / "bound", nullptr, MS_BIND);
    const Mount inner((base / "f/g").c_str(), base / "inner", nullptr, MS_BIND);
    std::vector<fs::path> folders = {base / "f", base / "f/g", base / "link"};
    if (bound.mounted && inner.mounted)
        folders.insert(folders.end(), {base / "bound", base / "bound/g", base / "inner"});
    for (const auto& folder : folders)
        for (const FileWork work : {FileWork::Copy, FileWork::Move})
        {
            Worker worker;
            EXPECT_EQ(worker.Do(work, {base / "f"}, folder), kFailed) << folder;
            ASSERT_EQ(worker.asked.size(), 1U);
            EXPECT_EQ(worker.asked[0].reason, "A folder cannot be put into itself.");
            EXPECT_EQ(worker.asked[0].answers, static_cast<unsigned>(FileAnswer::Cancel)) << "no choice";
        }
    for (const auto& folder : {base / "f", base / "f/g", base / "link"})
        EXPECT_EQ(Worker().Do(FileWork::Link, {base / "f"}, folder), kFailed) << folder;
    EXPECT_EQ(Tree(base / "f"), (Files{{"g", "/"}, {"file", "1"}}));
}

TEST(FileWork, CopiesKeepWhatFilesHaveBesidesTheirContent)
{
    const ElsewhereFolder elsewhere;
    const auto from = NewFolder();
    for (const fs::path& to : {NewFolder(), elsewhere.Path()})
    {
        Write(from / "file", "content", 0640);
        fs::create_directory(from / "folder");
        Write(from / "folder/inner", "1");
        chmod((from / "folder").c_str(), 0550);
        const bool hasAttributes = setxattr((from / "file").c_str(), "user.orb", "a\0b", 3, 0) == 0;
        const timespec times[] = {{1000000000, 123456789}, {1111111111, 987654321}};
        utimensat(AT_FDCWD, (from / "file").c_str(), times, 0);
        utimensat(AT_FDCWD, (from / "folder").c_str(), times, 0);
        Worker worker;
        ASSERT_EQ(worker.Do(FileWork::Copy, {from / "file", from / "folder"}, to), kDone);
        for (const auto& [name, mode] : {std::pair{"file", 0640}, {"folder", 0550}})
        {
            const struct stat status = StatusOf(to / name);
            EXPECT_EQ(status.st_mode & 07777, static_cast<mode_t>(mode)) << name;
            EXPECT_EQ(status.st_mtim.tv_sec, times[1].tv_sec) << name;
            EXPECT_EQ(status.st_mtim.tv_nsec, times[1].tv_nsec) << name;
        }
        char value[8];
        EXPECT_EQ(getxattr((to / "file").c_str(), "user.orb", value, sizeof value), hasAttributes ? 3 : -1) << to;
    }
}

TEST(FileWork, HolesStayHoles)
{
    constexpr off_t kSize = 16 << 20;
    const ElsewhereFolder elsewhere;
    const auto from = NewFolder();
    const int file = open((from / "sparse").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0644);
    ASSERT_EQ(pwrite(file, "middle", 6, kSize / 2), 6);
    ASSERT_EQ(ftruncate(file, kSize), 0);
    close(file);
    for (const fs::path& to : {NewFolder(), elsewhere.Path()})
    {
        Worker worker;
        ASSERT_EQ(worker.Do(FileWork::Copy, {from / "sparse"}, to), kDone);
        const struct stat status = StatusOf(to / "sparse");
        EXPECT_EQ(status.st_size, kSize);
        EXPECT_LT(status.st_blocks, 1024);
        EXPECT_TRUE(ContentOf(to / "sparse") == ContentOf(from / "sparse"));
        EXPECT_EQ(worker.last.bytes, static_cast<std::uint64_t>(kSize));
    }
}

TEST(FileWork, ACopyDoesNotRunAsAnotherOwner)
{
    const auto from = NewFolder();
    const auto to = NewFolder();
    Write(from / "program", "x");
    if (chown((from / "program").c_str(), 12345, 12345) != 0)
        GTEST_SKIP() << "only root may make a file another's";
    chmod((from / "program").c_str(), 06755);
    Worker worker;
    ASSERT_EQ(worker.Do(FileWork::Copy, {from / "program"}, to), kDone);
    const struct stat status = StatusOf(to / "program");
    EXPECT_EQ(status.st_mode & 07777, 0755U);
    EXPECT_EQ(status.st_uid, geteuid());
}

TEST(FileWork, PipesAreNotRead)
{
    const auto from = NewFolder();
    const auto to = NewFolder();
    fs::create_directory(from / "f");
    mkfifo((from / "f/pipe").c_str(), 0644);
    Write(from / "f/zfile", "1");
    Worker worker;
    worker.answers[FileQuestion::Failed] = {FileAnswer::Skip, false};
    EXPECT_EQ(worker.Do(FileWork::Copy, {from / "f"}, to), kFailed);
    ASSERT_EQ(worker.asked.size(), 1U);
    EXPECT_EQ(worker.asked[0].path, (from / "f/pipe").native());
    EXPECT_FALSE(Offers(worker.asked[0], FileAnswer::TryAgain));
    EXPECT_EQ(Tree(to), (Files{{"f", "/"}, {"f/zfile", "1"}}));
    EXPECT_EQ(worker.Do(FileWork::Move, {from / "f/pipe"}, to), kDone) << "renaming reads nothing";
}

TEST(FileWork, NamesOfOneFileAreToldFromFiles)
{
    const auto from = NewFolder();
    const auto to = NewFolder();
    Write(from / "name", "1");
    link((from / "name").c_str(), (to / "name").c_str());
    Worker worker;
    worker.answers[FileQuestion::NameTaken] = {FileAnswer::Replace, false};
    EXPECT_EQ(worker.Do(FileWork::Move, {from / "name"}, to), kDone);
    EXPECT_EQ(Tree(from), Files{});
    EXPECT_EQ(Tree(to), (Files{{"name", "1"}}));
}

TEST(FileWork, AFileThatChangesWhileItIsCopiedIsNoCopy)
{
    const auto from = NewFolder();
    const auto to = NewFolder();
    Write(from / "log", "one");
    Worker worker;
    int additions = 0;
    worker.cancelWhen = [&](const platform::FileProgress& progress)
    {
        if (progress.bytes == 3 && additions++ == 0)
            std::ofstream(from / "log", std::ios::app) << "two";
        return false;
    };
    worker.answers[FileQuestion::Failed] = {FileAnswer::TryAgain, false};
    worker.whenAsked = [&](const auto&) { EXPECT_EQ(Tree(to), Files{}); };
    EXPECT_EQ(worker.Do(FileWork::Copy, {from / "log"}, to), kDone);
    ASSERT_EQ(worker.asked.size(), 1U);
    EXPECT_EQ(worker.asked[0].reason, "It is being changed while it is copied.");
    EXPECT_EQ(Tree(to), (Files{{"log", "onetwo"}}));
}

TEST(FileWork, ANameThatIsTakenMeanwhileIsNotOverwritten)
{
    const auto from = NewFolder();
    const auto to = NewFolder();
    Write(from / "file", "ours");
    Worker worker;
    worker.cancelWhen = [&](const platform::FileProgress& progress)
    {
        if (progress.bytes > 0 && !fs::exists(to / "file"))
            Write(to / "file", "theirs");
        return false;
    };
    worker.answers[FileQuestion::NameTaken] = {FileAnswer::KeepBoth, false};
    EXPECT_EQ(worker.Do(FileWork::Copy, {from / "file"}, to), kDone);
    EXPECT_EQ(Tree(to), (Files{{"file", "theirs"}, {"file (2)", "ours"}}));
}

TEST(FileWork, CancelTakesBackTheSourceAtHand)
{
    const ElsewhereFolder elsewhere;
    ASSERT_TRUE(elsewhere.IsElsewhere());
    const Files source{{"done", "1"}, {"f", "/"}, {"f/a", "2"}, {"f/b", "3"}, {"f/sub", "/"}, {"f/sub/c", "4"}};
    for (const FileWork work : {FileWork::Copy, FileWork::Move})
        for (const char* last : {"a", "b", "c"})
        {
            const auto from = NewFolder();
            const fs::path to = elsewhere.Path() / std::to_string(static_cast<int>(work)) / last;
            fs::create_directories(to / "f/empty");
            Write(to / "f/own", "own");
            WriteTree(from, source);
            Worker worker;
            worker.answers[FileQuestion::FolderTaken] = {FileAnswer::Replace, false};
            worker.cancelWhen = [&](const platform::FileProgress& progress)
            { return std::string(progress.name) == last && fs::exists(to / "done"); };
            EXPECT_EQ(worker.Do(work, {from / "done", from / "f"}, to), kCancelled);
            EXPECT_EQ(Tree(to), (Files{{"done", "1"}, {"f", "/"}, {"f/empty", "/"}, {"f/own", "own"}})) << last;
            Files left = source;
            if (work == FileWork::Move)
                left.erase("done");
            EXPECT_EQ(Tree(from), left);
        }
}

TEST(FileWork, MovesToAnotherFileSystem)
{
    const ElsewhereFolder elsewhere;
    ASSERT_TRUE(elsewhere.IsElsewhere());
    const auto from = NewFolder();
    const Files tree{{"f", "/"}, {"f/a", "1"}, {"f/empty", "/"}, {"f/sub", "/"}, {"f/sub/c", "2"}};
    WriteTree(from, tree);
    symlink("a", (from / "f/link").c_str());
    mkfifo((from / "f/sub/pipe").c_str(), 0644);
    Worker worker;
    worker.answers[FileQuestion::Failed] = {FileAnswer::Skip, false};
    // Written to after its copy was made: the copy is old, so the file stays.
    worker.whenAsked = [&](const auto&) { Write(from / "f/a", "newer"); };
    EXPECT_EQ(worker.Do(FileWork::Move, {from / "f"}, elsewhere.Path()), kFailed);
    EXPECT_EQ(Tree(from), (Files{{"f", "/"}, {"f/a", "newer"}, {"f/sub", "/"}, {"f/sub/pipe", "special"}}));
    Files expected = tree;
    expected["f/link"] = "-> a";
    EXPECT_EQ(Tree(elsewhere.Path()), expected);
}

TEST(FileWork, WhatMayNotBeReadOrWrittenIsTold)
{
    const BoundByPermissions bound;
    const ElsewhereFolder elsewhere;
    const auto from = NewFolder();
    const auto to = NewFolder();
    WriteTree(from, {{"secret", "1"}, {"shared", "2"}, {"closed", "/"}});
    chmod((from / "secret").c_str(), 0);
    chmod((from / "closed").c_str(), 0);
    Worker worker;
    worker.answers[FileQuestion::Failed] = {FileAnswer::Skip, false};
    EXPECT_EQ(worker.Do(FileWork::Copy, {from / "closed", from / "secret", from / "shared"}, to), kFailed);
    EXPECT_EQ(worker.asked.size(), 2U);
    EXPECT_EQ(worker.asked[0].reason, "You may not do that there.");
    EXPECT_EQ(Tree(to), (Files{{"shared", "2"}}));
    // A source that could not be deleted is not even copied.
    chmod(from.c_str(), 0555);
    EXPECT_EQ(worker.Do(FileWork::Move, {from / "shared", from / "secret"}, elsewhere.Path()), kFailed);
    EXPECT_EQ(Tree(elsewhere.Path()), Files{});
    chmod(from.c_str(), 0755);
    chmod((from / "closed").c_str(), 0755);
    chmod(to.c_str(), 0555);
    worker.answers[FileQuestion::Failed] = {FileAnswer::Cancel, false};
    for (const FileWork work : {FileWork::NewFolder, FileWork::Copy, FileWork::Move, FileWork::Link})
    {
        EXPECT_EQ(worker.Do(work, {from / "shared"}, to), kCancelled);
        EXPECT_EQ(worker.asked.size(), 1U);
    }
    EXPECT_EQ(worker.Do(FileWork::Trash, {to / "shared"}), kCancelled);
    chmod(to.c_str(), 0755);
    EXPECT_EQ(Tree(to), (Files{{"shared", "2"}}));
}

TEST(FileWork, AFullDiskIsToldAndNothingIsLeft)
{
    const Mount disk("tmpfs", NewFolder(), "tmpfs", 0, "size=1m");
    if (!disk.mounted)
        GTEST_SKIP() << "mounting a small file system is not allowed here";
    const auto from = NewFolder();
    fs::create_directory(from / "f");
    Write(from / "f/a", "small");
    Write(from / "f/b", std::string(900 << 10, 'x'));
    Write(disk.path / "ballast", std::string(400 << 10, 'x'));
    Worker worker;
    for (const FileWork work : {FileWork::Copy, FileWork::Move})
    {
        EXPECT_EQ(worker.Do(work, {from / "f"}, disk.path), kCancelled);
        ASSERT_EQ(worker.asked.size(), 1U);
        EXPECT_EQ(worker.asked[0].path, (from / "f/b").native());
        EXPECT_EQ(worker.asked[0].reason, "There is no room left.");
        EXPECT_EQ(Tree(disk.path).size(), 1U) << "only the ballast";
        EXPECT_EQ(Tree(from).size(), 3U);
    }
    worker.answers[FileQuestion::Failed] = {FileAnswer::TryAgain, false};
    worker.whenAsked = [&](const auto&) { fs::remove(disk.path / "ballast"); };
    EXPECT_EQ(worker.Do(FileWork::Move, {from / "f"}, disk.path), kDone);
    EXPECT_EQ(worker.last.bytes, worker.last.allBytes) << "what was copied twice counts once";
    EXPECT_EQ(Tree(disk.path).size(), 3U);
    EXPECT_EQ(Tree(from), Files{});
}

TEST(FileWork, FilesThatHaveGoneAreToldAndTheOthersDone)
{
    const auto from = NewFolder();
    const auto to = NewFolder();
    Write(from / "there", "1");
    for (const FileWork work : {FileWork::Copy, FileWork::Link, FileWork::Trash, FileWork::Move})
    {
        Write(from / "there", "1");
        Worker worker;
        worker.answers[FileQuestion::Failed] = {FileAnswer::Skip, false};
        worker.answers[FileQuestion::NameTaken] = {FileAnswer::Replace, false};
        EXPECT_EQ(worker.Do(work, {from / "gone", from / "there", from / "gone"}, to), kFailed);
        const Worker::Asked expected{
            FileQuestion::Failed, (from / "gone").native(), "It is not there any more.",
            static_cast<unsigned>(FileAnswer::Skip) | static_cast<unsigned>(FileAnswer::Cancel), true};
        ASSERT_GE(worker.asked.size(), 2U);
        EXPECT_EQ(worker.asked.front(), expected);
        EXPECT_EQ(worker.asked.back().answers, static_cast<unsigned>(FileAnswer::Cancel)) << "nothing follows";
        EXPECT_EQ(fs::exists(from / "there"), work == FileWork::Copy || work == FileWork::Link);
    }
}

TEST(FileWork, TrashKeepsFilesToBeRestored)
{
    const auto folder = NewFolder();
    const std::string name = "of " + folder.filename().native(); // unlike what is there from other rounds
    WriteTree(folder, {{name, "content"}, {"d" + name, "/"}, {"d" + name + "/inner", "1"}});
    symlink("nowhere", (folder / ("l" + name)).c_str());
    Worker worker;
    EXPECT_EQ(worker.Do(FileWork::Trash, {folder / name, folder / ("l" + name), folder / ("d" + name)}), kDone);
    EXPECT_EQ(Tree(folder), Files{});
    const fs::path trash = Home() / "data/Trash";
    EXPECT_EQ(ContentOf(trash / "files" / name), "content");
    EXPECT_EQ(Tree(trash / "files" / ("d" + name)), (Files{{"inner", "1"}}));
    EXPECT_TRUE(fs::is_symlink(trash / "files" / ("l" + name)));
    const std::string path = "Path=" + (folder / "of%20").native() + folder.filename().native();
    EXPECT_NE(ContentOf(trash / "info" / (name + ".trashinfo")).find(path), std::string::npos);
}

TEST(FileWork, OtherFileSystemsHaveATrashOfTheirOwn)
{
    const fs::path base = NewFolder();
    const std::string image = base / "image";
    const fs::path disk = base / "disk";
    fs::create_directory(disk);
    const std::string make = "truncate -s 4M " + image + " && mkfs.ext4 -q " + image +
                             " 2>/dev/null && mount -o loop " + image + " " + disk.native() + " 2>/dev/null";
    if (std::system(make.c_str()) != 0)
        GTEST_SKIP() << "mounting a file system in a file is not allowed here";
    Write(disk / "file", "content");
    Worker worker;
    EXPECT_EQ(worker.Do(FileWork::Trash, {disk / "file"}), kDone);
    EXPECT_TRUE(worker.asked.empty());
    const fs::path trash = disk / (".Trash-" + std::to_string(getuid()));
    EXPECT_EQ(ContentOf(trash / "files/file"), "content");
    EXPECT_NE(ContentOf(trash / "info/file.trashinfo").find("Path=file"), std::string::npos);
    EXPECT_EQ(std::system(("umount " + disk.native()).c_str()), 0);
}

TEST(FileWork, WhereThereIsNoTrashNothingIsDeletedWithoutAsking)
{
    const ElsewhereFolder elsewhere;
    ASSERT_TRUE(elsewhere.IsElsewhere());
    const auto outside = NewFolder();
    Write(outside / "kept", "1");
    const Files tree{{"a", "1"}, {"f", "/"}, {"f/b", "2"}, {"f/mount", "/"}};
    WriteTree(elsewhere.Path(), tree);
    const Mount inner(outside.c_str(), elsewhere.Path() / "f/mount", nullptr, MS_BIND);
    const std::vector sources = {elsewhere.Path() / "a", elsewhere.Path() / "f"};
    Worker worker;
    EXPECT_EQ(worker.Do(FileWork::Trash, sources), kCancelled);
    EXPECT_EQ(worker.Questions(), std::vector{FileQuestion::NoTrash});
    worker.answers[FileQuestion::NoTrash] = {FileAnswer::Skip, true};
    Worker skipping;
    skipping.answers = worker.answers;
    EXPECT_EQ(skipping.Do(FileWork::Trash, sources), kDone);
    EXPECT_EQ(skipping.asked.size(), 1U);
    EXPECT_TRUE(fs::exists(elsewhere.Path() / "f/b"));
    Worker deleting;
    deleting.answers[FileQuestion::NoTrash] = {FileAnswer::Delete, true};
    const bool mounted = inner.mounted;
    EXPECT_EQ(deleting.Do(FileWork::Trash, sources), mounted ? kFailed : kDone);
    EXPECT_FALSE(fs::exists(elsewhere.Path() / "a"));
    EXPECT_FALSE(fs::exists(elsewhere.Path() / "f/b"));
    EXPECT_EQ(Tree(outside), (Files{{"kept", "1"}})) << "another file system is not entered";
}

TEST(FileWork, OneAtATime)
{
    const auto from = NewFolder();
    const auto to = NewFolder();
    Write(from / "file", "1");
    Write(to / "file", "2");
    Worker worker;
    worker.whenAsked = [&](const auto&)
    {
        const auto* service =
            static_cast<const platform::FileWorkService*>(platform::DesktopModuleSymbol("orb_files_service"));
        EXPECT_FALSE(service->start({FileWork::NewFolder, nullptr, 0, to.c_str()}, {}));
    };
    EXPECT_EQ(worker.Do(FileWork::Copy, {from / "file"}, to), kCancelled);
    EXPECT_EQ(worker.asked.size(), 1U);
    Worker again;
    EXPECT_EQ(again.Do(FileWork::NewFolder, {}, to), kDone);
}
