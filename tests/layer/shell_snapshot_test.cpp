// What is kept of a folder across runs, and when it no longer counts.
#include "tests/layer/shell_scratch.h"
#include "tests/scenarios/privileges.h"

#include "platform/base/hash_bytes.h"
#include "platform/files/folder_reading.h"
#include "platform/files/folder_snapshot.h"
#include "platform/shell/item_id.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fcntl.h>
#include <functional>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

using namespace shell_test;

namespace
{

class ShellSnapshot : public testing::Test
{
protected:
    void SetUp() override
    {
        m_folder = NewFolder();
        WriteEntry("First");
        Write(m_folder / "readme.txt", "text");
        std::filesystem::create_symlink("readme.txt", m_folder / "link");
        Items(m_folder);
        RunDeferred();
        m_snapshot = platform::SnapshotPath(m_folder.native());
        ASSERT_TRUE(std::filesystem::exists(m_snapshot));
    }

    /// Writes in place, with names of one length, so that neither inode nor size give the change away.
    void WriteEntry(const std::string& name)
    {
        Write(m_folder / "entry.desktop", "[Desktop Entry]\nType=Application\nExec=true\nName=" + name + "\n");
    }

    std::string EntryName() const { return Find(Items(m_folder), "entry.desktop")->display; }
    /// Whether reading the folder now takes every description from the snapshot.
    bool SnapshotServes() const
    {
        const auto listing = platform::ReadFolder(m_folder.native());
        const std::string_view content = listing->snapshot.Content();
        // Whether the listing is worth saving also depends on how long ago the folder itself was changed.
        return std::all_of(listing->files.begin(), listing->files.end(),
                           [&](const platform::ListedFile& file)
                           {
                               return !std::less<>()(file.icon.data(), content.data()) &&
                                      std::less<>()(file.icon.data(), content.data() + content.size());
                           });
    }

    std::string Content() const { return ContentOf(m_snapshot); }

    void Replace(const std::string& content) const
    {
        std::filesystem::remove(m_snapshot); // truncating a file makes some file systems write the old one out
        Write(m_snapshot, content);
    }

    std::filesystem::path m_folder;
    std::filesystem::path m_snapshot;
};

} // namespace

TEST_F(ShellSnapshot, ServesAnUnchangedFolderWhole)
{
    EXPECT_TRUE(SnapshotServes());
    EXPECT_EQ(EntryName(), "First");
    const std::vector<Item> items = Items(m_folder);
    EXPECT_EQ(Find(items, "readme.txt")->attributes, SFGAO_STREAM);
    EXPECT_EQ(Find(items, "link")->attributes, SFGAO_LINK | SFGAO_STREAM);
    std::filesystem::remove(m_folder / "link");
    EXPECT_TRUE(SnapshotServes()) << "a file less needs no new description";
}

TEST_F(ShellSnapshot, SeesEveryChange)
{
    WriteEntry("Other");
    EXPECT_EQ(EntryName(), "Other");
    RunDeferred();
    EXPECT_TRUE(SnapshotServes());

    chmod((m_folder / "readme.txt").c_str(), 0755); // now a program, and the link leads to one
    EXPECT_FALSE(SnapshotServes());
    Items(m_folder);
    RunDeferred();

    std::filesystem::remove(m_folder / "readme.txt"); // the link dangles
    EXPECT_FALSE(SnapshotServes());
    Items(m_folder);
    RunDeferred();

    Write(m_folder / "new.txt", "");
    EXPECT_FALSE(SnapshotServes());
}

TEST_F(ShellSnapshot, ForgetsThatAFileWasHidden)
{
    Write(m_folder / "entry.desktop", "[Desktop Entry]\nType=Application\nExec=true\nName=First\nNoDisplay=true\n");
    EXPECT_EQ(Find(Items(m_folder), "entry.desktop"), nullptr);
    RunDeferred();
    WriteEntry("Shown");
    EXPECT_EQ(EntryName(), "Shown");
}

TEST_F(ShellSnapshot, DamageIsNoticedWhereverItIs)
{
    const std::string good = Content();
    for (std::size_t at = 0; at < good.size(); ++at)
    {
        std::string bad = good;
        bad[at] = static_cast<char>(bad[at] ^ 0x41);
        Replace(bad);
        ASSERT_EQ(EntryName(), "First") << "byte " << at;
        ASSERT_FALSE(SnapshotServes()) << "byte " << at;
    }
    for (const std::size_t size : {std::size_t{0}, std::size_t{7}, good.size() / 2, good.size() - 1})
    {
        Replace(good.substr(0, size));
        EXPECT_EQ(EntryName(), "First") << size << " bytes";
    }
    std::filesystem::remove(m_snapshot);
    EXPECT_EQ(EntryName(), "First");
    RunDeferred();
    EXPECT_TRUE(SnapshotServes()) << "rebuilt";
}

TEST_F(ShellSnapshot, IsGoodForItsFolderAlone)
{
    const auto other = NewFolder();
    std::filesystem::rename(m_folder / "entry.desktop", other / "entry.desktop");
    std::filesystem::copy_file(m_snapshot, platform::SnapshotPath(other.native()));
    EXPECT_TRUE(platform::ReadFolder(other.native())->worthSaving);
}

/// Does something with the folder as an earlier run would, which only another process can.
void InAnEarlierRun(const std::filesystem::path& folder, const std::function<void()>& work)
{
    // A folder changed just now could change again without a trace, so its list would not be trusted.
    MakeOld(folder);
    InAnotherProcess(work);
}

void ReadInAnEarlierRun(const std::filesystem::path& folder)
{
    InAnEarlierRun(
        folder,
        [&]
        {
            Items(folder);
            RunDeferred();
        });
}

void Ignore(const std::string&) {}

void WriteNamed(const std::filesystem::path& folder, const std::string& name)
{
    Write(folder / "entry.desktop", "[Desktop Entry]\nType=Application\nExec=true\nName=" + name + "\n");
}

TEST(ShellSnapshots, TheFirstReadingTrustsTheListAndLooksAgainLater)
{
    const auto folder = NewFolder();
    WriteNamed(folder, "First");
    std::filesystem::create_directory(folder / "sub");
    ReadInAnEarlierRun(folder);
    WriteNamed(folder, "Other"); // in place: nothing comes, goes or changes its name
    const auto first = platform::ReadFolder(folder.native());
    ASSERT_TRUE(first->fromSnapshot);
    ASSERT_EQ(first->snapshotReader.Size(), 2u);
    EXPECT_FALSE(platform::StillHolds(*first, Ignore));
    const auto second = platform::ReadFolder(folder.native());
    EXPECT_FALSE(second->fromSnapshot);
    EXPECT_FALSE(second->worthSaving) << "the look has renewed the snapshot";
    EXPECT_EQ(Find(Items(folder), "entry.desktop")->display, "Other");
}

TEST(ShellSnapshots, TheLookLeavesAListThatHoldsAlone)
{
    const auto folder = NewFolder();
    for (int i = 0; i < 50; ++i) // the folder gives them in an order of its own, the snapshot in that of their names
    {
        Write(folder / ("entry" + std::to_string(i * 7 % 50) + ".desktop"),
              "[Desktop Entry]\nType=Application\nExec=true\nName=Name " + std::to_string(i) + "\n");
    }
    ReadInAnEarlierRun(folder);
    const auto inode = [&] { return StatusOf(platform::SnapshotPath(folder.native())).st_ino; };
    const ino_t before = inode();
    const auto listing = platform::ReadFolder(folder.native());
    ASSERT_TRUE(listing->fromSnapshot);
    std::vector<std::u16string> names;
    for (platform::ListingCursor cursor(*listing); cursor.Current() != nullptr; cursor.Advance())
        names.emplace_back(cursor.Current()->display);
    EXPECT_EQ(names.size(), 50u);
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_TRUE(platform::StillHolds(*listing, Ignore));
    EXPECT_EQ(inode(), before);
}

// An identifier's size was cut to 16 bits, and whoever followed its list read past the heap.
TEST(ShellSnapshots, ANameThatNoFileHasIsDamage)
{
    for (const std::string& name : {std::string(0xFFFF, 'n'), std::string(platform::kMaxNameBytes + 1, 'n'),
                                    std::string("a/b"), std::string("..")})
    {
        const auto folder = NewFolder();
        WriteNamed(folder, "First");
        InAnEarlierRun(folder,
                       [&]
                       {
                           const auto listing = platform::ReadFolder(folder.native());
                           listing->files.push_back(listing->files.front());
                           listing->files.back().name = name;
                           platform::SaveSnapshot(*listing);
                       });
        const std::vector<Item> items = Items(folder);
        ASSERT_EQ(items.size(), 1u) << name.size();
        EXPECT_EQ(items.front().display, "First");
    }
}

TEST(ShellSnapshots, NoIdentifierIsLargerThanItsSizeSays)
{
    for (const std::size_t size : {platform::kMaxNameBytes, std::size_t{0xFFFF}, std::size_t{0x10000}})
    {
        const std::string name(size, 'n');
        const std::u16string display(platform::kMaxDisplayUnits, u'\u20AC');
        const platform::ItemId item{platform::ItemKind::File, 0, 0, name};
        std::vector<BYTE> bytes;
        const List list(platform::MakeItemList(item, display));
        const bool fits = size == platform::kMaxNameBytes;
        EXPECT_EQ(platform::AppendItemId(bytes, item, display), fits) << size;
        EXPECT_EQ(list != nullptr, fits) << size;
        EXPECT_EQ(bytes.empty(), !fits);
        EXPECT_TRUE(!fits || platform::ReadItemId(list.get())->name == name);
    }
}

TEST(ShellSnapshots, AListThatBreaksOffIsNotTakenForWhole)
{
    const auto folder = NewFolder();
    WriteNamed(folder, "First");
    Write(folder / "readme.txt", "");
    ReadInAnEarlierRun(folder);
    // Sound by its checksum, but its writer had lost count: it announces one file too many.
    const std::filesystem::path snapshot = platform::SnapshotPath(folder.native());
    std::string content = ContentOf(snapshot);
    constexpr std::size_t kChecksumAt = 8, kCheckedFrom = 16, kEntriesAt = 44;
    ++content[kEntriesAt];
    const std::uint64_t checksum = platform::HashBytes(std::string_view(content).substr(kCheckedFrom));
    std::memcpy(content.data() + kChecksumAt, &checksum, sizeof checksum);
    Write(snapshot, content);

    EXPECT_EQ(Items(folder).size(), 2u) << "read in earnest";
    RunDeferred();
    EXPECT_TRUE(
        platform::SnapshotReader(platform::FileContent(snapshot.native()).Content(), folder.native()).ListsWhole())
        << "it has been renewed";
}

TEST(ShellSnapshots, AFolderThatChangedIsReadAtOnce)
{
    const auto folder = NewFolder();
    WriteNamed(folder, "First");
    ReadInAnEarlierRun(folder);
    Write(folder / "newcomer", "");
    const auto listing = platform::ReadFolder(folder.native());
    EXPECT_FALSE(listing->fromSnapshot);
    EXPECT_EQ(listing->files.size(), 2u);
}

/// What a menu shows of the folder, in the order of the names.
std::set<std::pair<std::string, std::string>> Shown(const std::filesystem::path& folder)
{
    std::set<std::pair<std::string, std::string>> shown;
    for (const Item& item : Items(folder))
        shown.emplace(item.fileName, item.display);
    return shown;
}

// A folder that could not be read for a moment was shown empty, and its order was lost with the next saving.
TEST(ShellSnapshots, AFolderThatCannotBeReadIsListedAsItWasLastSeen)
{
    const auto parent = NewFolder();
    const auto folder = parent / "shown";
    std::filesystem::create_directories(folder / "sub");
    WriteNamed(folder, "First");
    Write(folder / "readme.txt", "");
    const auto seen = Shown(folder);
    ASSERT_EQ(seen.size(), 3u);
    RunDeferred();
    const auto snapshot = platform::SnapshotPath(folder.native());
    const std::string kept = ContentOf(snapshot);
    for (const mode_t mode : {0000, 0400, 0100}) // nothing; the names alone; the files but not their names
    {
        chmod(folder.c_str(), mode);
        const BoundByPermissions bound;
        EXPECT_EQ(Shown(folder), seen) << mode;
        EXPECT_NE(Parse(folder / "readme.txt"), nullptr) << mode;
        RunDeferred();
        EXPECT_EQ(Shown(folder), seen) << mode;
        RunDeferred();
        EXPECT_TRUE(mode == 0400 || ContentOf(snapshot) == kept) << mode;
    }
    chmod(folder.c_str(), 0700);
    chmod(parent.c_str(), 0000);
    {
        const BoundByPermissions bound;
        EXPECT_EQ(Shown(folder), seen) << "a folder on the way";
    }
    chmod(parent.c_str(), 0700);
    Write(folder / "new", "");
    EXPECT_EQ(Shown(folder).size(), 4u) << "as soon as it can be read";
    RunDeferred();
    const List list = Parse(folder);
    std::filesystem::remove_all(folder);
    IEnumIDList* items = nullptr;
    EXPECT_TRUE(FAILED(Bind(list.get())->EnumObjects(nullptr, SHCONTF_NONFOLDERS, &items))) << "it is really gone";
}

TEST(ShellSnapshots, AFolderThatWasNeverSeenAndCannotBeReadSaysSo)
{
    const auto folder = NewFolder();
    WriteNamed(folder, "First");
    const List list = Parse(folder);
    chmod(folder.c_str(), 0000);
    {
        const BoundByPermissions bound;
        IEnumIDList* items = nullptr;
        EXPECT_EQ(Bind(list.get())->EnumObjects(nullptr, SHCONTF_NONFOLDERS, &items), E_ACCESSDENIED);
    }
    chmod(folder.c_str(), 0700);
}

TEST(ShellSnapshots, EveryFolderThatWasShownHasOne)
{
    const auto folder = NewFolder(); // so young that it may change once more without a trace
    std::filesystem::create_directory(folder / "sub");
    Items(folder);
    RunDeferred();
    ASSERT_NE(platform::FolderAsLastSeen(folder.native()), nullptr);
    EXPECT_EQ(platform::FolderAsLastSeen(folder.native())->Size(), 1u);
}

// The last snapshot lists its files elsewhere: saving it once more would have made an empty one.
TEST(ShellSnapshots, ALookThatIsRefusedLeavesTheSnapshotAlone)
{
    const auto folder = NewFolder();
    Write(folder / "shown", "");
    const auto shown = platform::ReadFolder(folder.native());
    Write(folder / "new", "");
    Items(folder);
    RunDeferred();
    const std::string kept = ContentOf(platform::SnapshotPath(folder.native()));
    chmod(folder.c_str(), 0000);
    {
        const BoundByPermissions bound;
        EXPECT_TRUE(platform::StillHolds(*shown, Ignore));
    }
    chmod(folder.c_str(), 0700);
    EXPECT_EQ(ContentOf(platform::SnapshotPath(folder.native())), kept);
}

TEST(ShellSnapshots, AreSavedEvenWhenTheProgramEndsAtOnce)
{
    const auto folder = NewFolder();
    Write(folder / "file", "");
    InAnotherProcess(
        [&]
        {
            Items(folder);
            std::exit(0);
        });
    EXPECT_NE(platform::FolderAsLastSeen(folder.native()), nullptr);
}

TEST(ShellSnapshots, DoNotPileUp)
{
    const std::filesystem::path cache = std::filesystem::path(platform::SnapshotPath("any")).parent_path();
    for (int i = 0; i < 450; ++i)
    {
        const auto old = cache / ("folder-old" + std::to_string(i));
        Write(old, "");
        // File times are coarse: the newest would be as old as these.
        std::filesystem::last_write_time(old, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    }
    Write(cache / "something else", "");
    const auto files = [&]
    { return std::distance(std::filesystem::directory_iterator(cache), std::filesystem::directory_iterator()); };
    const auto before = files();
    const auto folder = NewFolder();
    Write(folder / "file.txt", "");
    Items(folder);
    RunDeferred();
    EXPECT_LT(files(), before * 6 / 10) << "the older half has gone";
    EXPECT_TRUE(std::filesystem::exists(platform::SnapshotPath(folder.native()))) << "the newest stay";
    EXPECT_TRUE(std::filesystem::exists(cache / "something else"));
}

TEST(ShellSpeed, LargeFoldersAreListedWhole)
{
    const auto folder = NewFolder();
    for (int i = 0; i < 1500; ++i) // enough for the status calls to be shared between threads
    {
        Write(folder / ("entry" + std::to_string(i) + ".desktop"),
              "[Desktop Entry]\nType=Application\nName=Name " + std::to_string(i) + "\n");
    }
    for (int run = 0; run < 2; ++run)
    {
        const std::vector<Item> items = Items(folder);
        ASSERT_EQ(items.size(), 1500u);
        for (const Item& item : items)
            ASSERT_EQ("entry" + item.display.substr(5) + ".desktop", item.fileName);
        RunDeferred();
    }
}
