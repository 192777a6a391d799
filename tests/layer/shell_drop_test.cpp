// What is dropped onto a folder: how it is read, which effect is chosen, what is there afterwards.
#include "platform/base/fault_points.h"
#include "platform/shell/drop_rules.h"
#include "platform/shell/dropped_content.h"
#include "platform/shell/file_formats.h"
#include "platform/shell/system_images.h"
#include "platform/services/launch_service.h"
#include "tests/layer/dragged_data.h"
#include "tests/layer/file_work_desk.h"
#include "tests/layer/stalled_mount.h"
#include "tests/layer/windowing_desk.h"
#include "tests/scenarios/privileges.h"

#include <chrono>
#include <gtest/gtest.h>

using namespace platform;
using namespace shell_test;
namespace fs = std::filesystem;

namespace
{

using Paths = std::vector<std::string>;

constexpr DWORD kCopy = DROPEFFECT_COPY;
constexpr DWORD kMove = DROPEFFECT_MOVE;
constexpr DWORD kLink = DROPEFFECT_LINK;
constexpr DWORD kAll = kCopy | kMove | kLink;
constexpr DWORD kBothKeys = MK_CONTROL | MK_SHIFT;

DroppedContent Read(DraggedData::Forms forms)
{
    const Com<DraggedData> data(new DraggedData(std::move(forms)));
    return ReadDropped(*data);
}

std::string Utf16(std::u16string_view text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

} // namespace

// --- reading

TEST(DroppedContentTest, ReadsListsAsFarAsTheyAreWhole)
{
    char host[256] = {};
    gethostname(host, sizeof host - 1);
    const std::string list = "# file:///comment\r\n  file:///a%20b/\xC3\xA4\r\nfile:///a%20b/%C3%A4\n\n"
                             "file://localhost/one/./two/../three/\r\nfile://" +
                             std::string(host) +
                             "/own\r\nfile://elsewhere.example/x\r\nrelative\r\n/plain/path\r\n"
                             "file:relative\r\nfile:///bad%zz\r\nfile:///nul%00\r\n\xFF\xFE\r\nhttp://a.example/\r\n"
                             "javascript:alert(1)\r\ndata:text/plain,x\r\nHTTPS://b.example\r\nhttp://a.example/\r\n"
                             "http:\r\nmailto:me@a.example\r\nhttp://a b/";
    const DroppedContent content = Read({{"text/uri-list", list}});
    EXPECT_EQ(content.paths, (Paths{"/a b/\xC3\xA4", "/one/three", "/own"}));
    EXPECT_EQ(
        content.addresses,
        (std::vector<WebAddress>{{"http://a.example/", ""}, {"HTTPS://b.example", ""}, {"mailto:me@a.example", ""}}));
}

TEST(DroppedContentTest, AHundredThousandLines)
{
    std::string list;
    for (int i = 0; i < 100'000; ++i)
        list += "file:///tmp/" + std::to_string(i) + "\r\n";
    EXPECT_EQ(Read({{"text/uri-list", list}}).paths.size(), 100'000u);
    EXPECT_TRUE(Read({{"text/uri-list", std::string(4'000'000, '\n')}}).IsEmpty());
    EXPECT_TRUE(Read({{"text/uri-list", std::string(4'000'000, '\xC3')}}).IsEmpty());
}

TEST(DroppedContentTest, TakesTheBestOfWhatIsOffered)
{
    EXPECT_EQ(Read({{"x-special/gnome-copied-files", "copy\nfile:///one\nfile:///two"}}).paths,
              (Paths{"/one", "/two"}));
    EXPECT_EQ(Read({{"text/uri-list", ""}, {"x-special/gnome-copied-files", "cut\nfile:///one"}}).paths, Paths{"/one"});
    EXPECT_TRUE(Read({{"text/plain", "file:///one"}, {"UTF8_STRING", "http://a.example"}}).IsEmpty());
    EXPECT_TRUE(Read({{"Shell IDList Array", std::string("\xFF\xFF\xFF\xFF\x10\0\0\0", 8)}}).IsEmpty());
    EXPECT_TRUE(Read({{"Shell IDList Array", std::string("\1\0\0\0\x0C\0\0\0\x0C\0\0\0\x40\0\0\0", 16)}}).IsEmpty());
    const Com<DraggedData> silent(new DraggedData(DraggedData::Forms{{"text/uri-list", "file:///one"}}));
    silent->gives = false;
    EXPECT_TRUE(ReadDropped(*silent).IsEmpty());
}

TEST(DroppedContentTest, BrowsersTellTheTitleOfAnAddress)
{
    const std::vector<WebAddress> page{{"http://a.example/", "A page \xE2\x82\xAC"}};
    const std::string titled = Utf16(u"http://a.example/\nA page \u20AC");
    EXPECT_EQ(Read({{"text/uri-list", "http://a.example/\r\n"}, {"text/x-moz-url", titled}}).addresses, page);
    EXPECT_EQ(Read({{"text/x-moz-url", titled}}).addresses, page);
    EXPECT_EQ(Read({{"text/x-moz-url", Utf16(u"\uFEFF") + titled + std::string(3, '\0')}}).addresses, page);
    EXPECT_EQ(Read({{"text/x-moz-url", "http://a.example/\nA page \xE2\x82\xAC"}}).addresses, page) << "not UTF-16";
    EXPECT_EQ(Read({{"_NETSCAPE_URL", "http://a.example/\nA page \xE2\x82\xAC"}}).addresses, page);
    EXPECT_EQ(
        Read({{"_NETSCAPE_URL", "http://a.example/\nhttp://a.example/\nhttp://b.example/\n"
                                "http://c.example/\r\nC\n\nnoise"}})
            .addresses,
        (std::vector<WebAddress>{{"http://a.example/", ""}, {"http://b.example/", ""}, {"http://c.example/", "C"}}));
    EXPECT_TRUE(Read({{"text/x-moz-url", Utf16(u"\xD800\xDC00\xDFFF")}, {"_NETSCAPE_URL", "\xFF"}}).IsEmpty());
    EXPECT_EQ(Read({{"text/x-moz-url", Utf16(u"file:///a%20page.html\nA page")}}).paths, Paths{"/a page.html"});
    EXPECT_EQ(Read({{"text/x-moz-url", Utf16(u"http://a.example/\nfile:///one")}}).paths, Paths{}) << "a title";
}

// --- the choice of the effect

TEST(DropRulesTest, KeysAndPlaceChooseAmongWhatIsAllowed)
{
    const DropFacts here{true, false, true, true, false}, elsewhere{true, false, true, false, false};
    const struct
    {
        DropFacts facts;
        DWORD allowed, keys, effect;
    } cases[] = {
        {here, kAll, 0, kMove},
        {elsewhere, kAll, 0, kCopy},
        {here, kAll, MK_LBUTTON, kMove},
        {here, kCopy | kLink, 0, kCopy},
        {here, kLink, 0, kLink},
        {elsewhere, kLink, MK_LBUTTON, kLink},
        {elsewhere, kMove, 0, kMove},
        {here, kAll, MK_CONTROL, kCopy},
        {elsewhere, kAll, MK_SHIFT, kMove},
        {here, kAll, kBothKeys, kLink},
        {here, kAll, MK_RBUTTON | kBothKeys, kLink},
        {here, kAll, MK_RBUTTON | MK_CONTROL, kCopy},
        {here, kCopy, MK_SHIFT, 0},
        {here, kMove, MK_CONTROL, 0},
        {here, 0, 0, 0},
        {{true, false, false, true, false}, kAll, 0, 0}, // a folder that cannot be written
        {{true, false, true, true, true}, kAll, 0, 0},   // a folder into itself
        {{true, false, true, true, true}, kAll, kBothKeys, 0},
        {{true, false, true, true, false, kLink}, kAll, 0, kLink}, // a program of the applications menu
        {{true, false, true, true, false, kLink}, kAll, MK_CONTROL, kCopy},
        {{true, false, true, true, false, kLink}, kAll, MK_SHIFT, 0},
        {{true, false, true, true, false, kCopy | kLink}, kAll, 0, kCopy},
        {{}, kAll, 0, 0},                // nothing that a folder could take
        {{false, true}, kAll, 0, kLink}, // an address of the web
        {{false, true}, kCopy | kMove, 0, kCopy},
        {{false, true}, kMove, 0, 0},
        {{false, true}, kAll, MK_SHIFT, 0},
    };
    for (const auto& one : cases)
        EXPECT_EQ(ChosenEffect(one.facts, PossibleEffects(one.facts, one.allowed), one.keys), one.effect)
            << "case " << &one - cases;
}

// --- dropping

namespace
{

struct FolderDrop : Desk
{
    FolderDrop()
    {
        InstallFolderViewer();
        m_owner = ShownPopup(0, 0, 200, 200);
        m_from = NewFolder();
        m_to = NewFolder();
        Write(m_from / "Notes.txt", "content");
        fs::create_directory(m_from / "Folder");
    }
    ~FolderDrop() override
    {
        headless::SetIdleHandler(nullptr);
        EXPECT_EQ(m_answered, m_asked);
    }

    /// A menu or a box is going to ask, and gets these keys.
    void Answer(std::vector<BYTE> keys)
    {
        ++m_asked;
        headless::SetIdleHandler(
            [this, keys, done = false]() mutable
            {
                poll(nullptr, 0, 1);
                if (done || headless::Windows().size() < 2)
                    return true;
                done = true;
                ++m_answered;
                for (const BYTE key : keys)
                    Tap(key);
                return true;
            });
    }

    static std::string ListOf(const std::vector<fs::path>& paths)
    {
        Paths names;
        for (const fs::path& path : paths)
            names.push_back(path.native());
        for (const ClipboardForm& form : FormsOfFiles({names, false}))
            if (form.target == kUriList)
                return form.content;
        return {};
    }

    /// Drops as the launcher does: enters, moves, drops. The effect that the target reports.
    DWORD Drop(DraggedData::Forms forms, DWORD keys, DWORD allowed, const fs::path& folder)
    {
        const Com<DraggedData> data(new DraggedData(std::move(forms)));
        const Com<IShellFolder> bound = Bind(Parse(folder).get());
        void* object = nullptr;
        EXPECT_EQ(bound->CreateViewObject(m_owner, IID_IDropTarget, &object), S_OK);
        const auto target = Taken<IDropTarget>(object);
        DWORD effect = allowed;
        EXPECT_EQ(target->DragEnter(data.get(), keys, {100, 100}, &effect), S_OK);
        m_shown = allowed;
        EXPECT_EQ(target->DragOver(keys, {100, 100}, &m_shown), S_OK);
        effect = (keys & MK_RBUTTON) != 0 ? allowed : m_shown;
        EXPECT_EQ(target->Drop(data.get(), keys, {100, 100}, &effect), S_OK);
        return effect;
    }
    DWORD DropFiles(const std::vector<fs::path>& paths, DWORD keys, DWORD allowed = kAll)
    {
        return Drop({{"text/uri-list", ListOf(paths)}}, keys, allowed, m_to);
    }

    fs::path m_from, m_to;
    HWND m_owner;
    int m_asked = 0, m_answered = 0;
    DWORD m_shown = 0; ///< what the target said before the drop
};

} // namespace

TEST_F(FolderDrop, FromAnotherFileSystemAPlainDropCopies)
{
    const ElsewhereFolder elsewhere;
    if (!elsewhere.IsElsewhere())
        GTEST_SKIP() << "there is no other file system";
    Write(elsewhere.Path() / "far", "content");
    EXPECT_EQ(DropFiles({m_from / "Notes.txt", elsewhere.Path() / "far"}, 0), kCopy);
    EXPECT_EQ(Tree(m_to), (Files{{"Notes.txt", "content"}, {"far", "content"}}));
}

TEST_F(FolderDrop, AnItemOntoItsOwnFolder)
{
    m_to = m_from;
    const Files before = Tree(m_from);
    DropFiles({m_from / "Notes.txt"}, 0);
    EXPECT_EQ(Tree(m_from), before) << "it is where it was to go";
    EXPECT_EQ(DropFiles({m_from / "Notes.txt"}, MK_CONTROL), kCopy);
    EXPECT_EQ(Tree(m_from)["Notes (copy).txt"], "content");
    EXPECT_EQ(DropFiles({m_from / "Notes.txt"}, kBothKeys), kLink);
    EXPECT_EQ(Tree(m_from)["Notes (link).txt"], "-> " + (m_from / "Notes.txt").native());
}

TEST_F(FolderDrop, AFolderNeverGoesIntoItself)
{
    fs::create_directory(m_from / "Folder" / "inner");
    fs::create_directory_symlink(m_from / "Folder" / "inner", m_to / "way in");
    const Files before = Tree(m_from);
    for (const fs::path& folder : {m_from / "Folder", m_from / "Folder" / "inner", m_to / "way in"})
        for (const DWORD keys : {DWORD{0}, DWORD{MK_CONTROL}, kBothKeys, DWORD{MK_RBUTTON}})
        {
            EXPECT_EQ(Drop({{"text/uri-list", ListOf({m_from / "Folder"})}}, keys, kAll, folder), 0u);
            EXPECT_EQ(m_shown, 0u);
        }
    EXPECT_EQ(Tree(m_from), before);
}

TEST_F(FolderDrop, WhatAFolderCannotTakeChangesNothing)
{
    const std::string notes = ListOf({m_from / "Notes.txt"});
    for (const DWORD keys : {DWORD{MK_LBUTTON}, DWORD{MK_RBUTTON}})
    {
        EXPECT_EQ(Drop({{"text/plain", "words"}}, keys, kAll, m_to), 0u);
        EXPECT_EQ(Drop({{"text/uri-list", "#\r\n\r\n"}}, keys, kAll, m_to), 0u);
        EXPECT_EQ(Drop({{"text/uri-list", "file://elsewhere.example/x"}}, keys, kAll, m_to), 0u);
        EXPECT_EQ(Drop({}, keys, kAll, m_to), 0u);
        EXPECT_EQ(Drop({{"text/uri-list", notes}}, keys, 0, m_to), 0u);
        chmod(m_to.c_str(), 0555);
        {
            const BoundByPermissions bound;
            EXPECT_EQ(Drop({{"text/uri-list", notes}}, keys, kAll, m_to), 0u);
        }
        chmod(m_to.c_str(), 0755);
    }
    EXPECT_EQ(Tree(m_to), Files{});
    EXPECT_EQ(Tree(m_from).size(), 2u);
}

TEST_F(FolderDrop, AFileThatHasGoneIsTold)
{
    Answer({VK_ESCAPE});
    EXPECT_EQ(DropFiles({m_from / "gone", m_from / "Notes.txt"}, MK_CONTROL), 0u);
    EXPECT_EQ(Tree(m_to), Files{});
}

TEST_F(FolderDrop, OntoAMountThatNeverAnswersOrFromItIsTheUsersToEnd)
{
    StalledMount mount(m_from / "stalled");
    if (!mount.Mounted())
        GTEST_SKIP() << "only root may mount here, or there is no /dev/fuse";
    int alive = 0;
    std::uint64_t pace = 100; // milliseconds in which a real one passes
    headless::SetIdleHandler(
        [&]
        {
            poll(nullptr, 0, 1);
            AdvanceManualClock(pace);
            if (headless::Windows().size() < 2) // before the box that tells of the work
                return ++alive > 0;
            Tap(VK_ESCAPE);
            return true;
        });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(DropFiles({m_from / "stalled/file"}, MK_CONTROL), 0u);
    EXPECT_GT(alive, 5) << "messages are taken meanwhile";
    EXPECT_EQ(Drop({{"text/uri-list", ListOf({m_from / "Notes.txt"})}}, 0, kAll, m_from / "stalled"), 0u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(Tree(m_to), Files{});
    mount.TakeDown();
    pace = 0; // or a slow machine would see the box, and cancel
    EXPECT_TRUE(WaitFor([&] { return DropFiles({m_from / "Notes.txt"}, 0) == kMove; })) << "its file is still there";
}

TEST_F(FolderDrop, TheRightButtonAsks)
{
    const fs::path notes = m_from / "Notes.txt", copy = m_to / "Notes.txt";
    EnableWindow(m_owner, FALSE); // as the launcher's levels are meanwhile
    Answer({VK_ESCAPE});
    EXPECT_EQ(DropFiles({notes}, MK_RBUTTON | kBothKeys), 0u);
    EXPECT_EQ(Tree(m_to), Files{});
    Answer({'C'});
    EXPECT_EQ(DropFiles({notes}, MK_RBUTTON | kBothKeys), kCopy);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(copy)));
    fs::remove(copy);
    Answer({'S'});
    EXPECT_EQ(DropFiles({notes}, MK_RBUTTON | MK_CONTROL), kLink);
    EXPECT_TRUE(fs::is_symlink(copy));
    fs::remove(copy);
    Answer({'M', VK_ESCAPE}); // only what is allowed is offered: the letter does nothing
    EXPECT_EQ(DropFiles({notes}, MK_RBUTTON, kCopy | kLink), 0u);
    EXPECT_TRUE(fs::exists(notes));
}

// --- addresses of the web

namespace
{

std::string Page(const std::string& url, const std::string& title)
{
    return url + "\n" + title;
}

} // namespace

TEST_F(FolderDrop, AnAddressBecomesAnEntryOfItsTitle)
{
    const std::string page = Page("https://a.example/%20x?a=b;c#d", "News; weather \xE2\x82\xAC = 5\\6");
    EXPECT_EQ(Drop({{"_NETSCAPE_URL", page}}, 0, kLink | kCopy, m_to), kLink);
    EXPECT_EQ(Drop({{"_NETSCAPE_URL", page}}, 0, kCopy, m_to), kCopy) << "a source that knows no links";
    const std::vector<Item> items = Items(m_to);
    ASSERT_EQ(items.size(), 2u);
    for (const char* name :
         {"News; weather \xE2\x82\xAC = 5-6.desktop", "News; weather \xE2\x82\xAC = 5-6 (2).desktop"})
    {
        const Item* item = Find(items, name);
        ASSERT_NE(item, nullptr) << name;
        EXPECT_EQ(item->display, "News; weather \xE2\x82\xAC = 5\\6");
        const std::string content = ContentOf(m_to / name);
        EXPECT_NE(content.find("\nType=Link\n"), content.npos);
        EXPECT_NE(content.find("\nURL=https://a.example/%20x?a=b;c#d\n"), content.npos);
    }
}

TEST_F(FolderDrop, AnEntryOfAnAddressShowsItsProgramAndStartsIt)
{
    const std::string url = "https://a.example/%20x?a=b;c&d='$(touch%20x)'#e";
    EXPECT_EQ(Drop({{"text/uri-list", url}}, 0, kAll, m_to), kLink);
    const std::vector<Item> items = Items(m_to);
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items.front().display, url.substr(8));
    EXPECT_TRUE(SystemImageIdentity(static_cast<std::uint32_t>(items.front().info.iIcon)).starts_with("my-browser\n"));
    const auto* service = static_cast<const LaunchService*>(DesktopModuleSymbol("orb_launch_service"));
    static std::atomic<int> ended;
    ended = 0;
    char reason[1024] = "";
    const auto finished = [](void*, const char*) { ++ended; };
    EXPECT_TRUE(service->open((m_to / items.front().fileName).c_str(), {finished, nullptr}, reason, sizeof reason))
        << reason;
    EXPECT_TRUE(WaitFor([&] { return ended == 1 && fs::exists(Home() / "browsed"); }));
    EXPECT_EQ(ContentOf(Home() / "browsed"), url);
}

TEST_F(FolderDrop, NoTitleLeadsOutOfTheFolderOrHidesTheEntry)
{
    const std::string endless(100'000, 'x');
    const struct
    {
        std::string title, file;
    } cases[] = {
        {"../../etc/passwd", "-..-etc-passwd.desktop"},
        {"...", "Link.desktop"},
        {".hidden", "hidden.desktop"},
        {"two\tblanks \x01 here", "two blanks here.desktop"},
        {"Type=Application", "Type=Application.desktop"},
        {"bad \xFF byte", "bad \xEF\xBF\xBD byte.desktop"},
        {endless, endless.substr(0, 120) + ".desktop"},
        {"", "a.example-page.desktop"},
    };
    for (const auto& [title, file] : cases)
    {
        EXPECT_EQ(Drop({{"_NETSCAPE_URL", Page("http://a.example/page/", title)}}, 0, kAll, m_to), kLink);
        EXPECT_TRUE(fs::exists(m_to / file)) << file;
        fs::remove(m_to / file);
        EXPECT_EQ(Tree(m_to), Files{}) << "nothing but the entry";
    }
}

TEST_F(FolderDrop, CallsThatFailChangeNothing)
{
    static std::string_view failing;
    for (const char* call : {"IDropTarget::Drop", "RunFileOperation", "CreatePopupMenu", "TrackPopupMenuEx"})
    {
        failing = call;
        SetFaultHook([](const char* name) { return failing == name; });
        const Com<DraggedData> data(new DraggedData({{"text/uri-list", ListOf({m_from / "Notes.txt"})}}));
        void* object = nullptr;
        Bind(Parse(m_to).get())->CreateViewObject(m_owner, IID_IDropTarget, &object);
        const auto target = Taken<IDropTarget>(object);
        const DWORD button = failing.starts_with("RunFile") ? MK_LBUTTON : MK_RBUTTON;
        DWORD effect = kAll;
        target->DragEnter(data.get(), button, {}, &effect);
        effect = kAll;
        target->Drop(data.get(), button, {}, &effect);
        EXPECT_EQ(effect, 0u) << call;
        EXPECT_EQ(Tree(m_to), Files{});
        EXPECT_TRUE(fs::exists(m_from / "Notes.txt"));
        SetFaultHook(nullptr);
    }
}
