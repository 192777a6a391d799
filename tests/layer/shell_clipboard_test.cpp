// Files on the clipboard: what is written is read again, and what others write is taken as far as it is whole.
#include "tests/headless/headless.h"
#include "tests/layer/shell_scratch.h"
#include "tests/scenarios/failing.h"

#include "platform/base/clock.h"
#include "platform/base/fault_points.h"
#include "platform/shell/clipboard_files.h"
#include "platform/windowing/clipboard.h"

#include "shlobj.h"

#include <gtest/gtest.h>

namespace
{

using namespace platform;
using screen::Selection;
using Paths = std::vector<std::string>;

struct ClipboardFilesTest : testing::Test
{
    ~ClipboardFilesTest() override { headless::Reset(); }
    std::string Make(const std::string& name)
    {
        shell_test::Write(folder / name, "");
        return (folder / name).native();
    }
    static void Offer(const char* target, const std::string& content)
    {
        headless::OfferByOther(Selection::Clipboard, {{{target, content}}});
    }

    const std::filesystem::path folder = shell_test::NewFolder();
};

TEST_F(ClipboardFilesTest, EveryFileNameSurvives)
{
    std::string every = "x";
    for (int byte = 1; byte < 256; ++byte)
        every += byte != '/' ? std::string(1, static_cast<char>(byte)) : std::string();
    const Paths paths{Make(every.substr(0, 130)), Make(every.substr(130)), Make("%41"), Make("a\nb")};
    ASSERT_EQ(PutFilesOnClipboard({paths, true}), S_OK);
    for (const char* target : {"x-special/gnome-copied-files", "text/uri-list"})
    {
        Offer(target, headless::AskAsOther(Selection::Clipboard, target).value());
        EXPECT_EQ(FilesOnClipboard().value().paths, paths) << target;
        ASSERT_EQ(PutFilesOnClipboard({paths, true}), S_OK);
    }
}

TEST_F(ClipboardFilesTest, TakesWhatIsWholeAndEachFileOnce)
{
    const std::string one = Make("one");
    Offer("text/uri-list", "# comment\r\nfile://" + one + "\r\nhttp://example.org/\r\nfile://" + one +
                               "\r\nfile:///gone\r\nrelative\r\nfile://elsewhere.example" + one +
                               "\r\nfile:///bad%00name\r\nfile://localhost" + folder.native());
    const auto files = FilesOnClipboard();
    ASSERT_TRUE(files);
    EXPECT_EQ(files->paths, (Paths{one, folder.native()}));
    EXPECT_FALSE(files->cut);
    for (const std::string& nothing : {std::string(), std::string("http://example.org/"), std::string(1 << 20, '\xFE'),
                                       std::string("cut\nfile:///gone")})
    {
        Offer("text/uri-list", nothing);
        EXPECT_FALSE(FilesOnClipboard());
    }
    Offer("x-special/gnome-copied-files", "link\nfile://" + one);
    EXPECT_FALSE(FilesOnClipboard()) << "neither to copy nor to move";
}

TEST_F(ClipboardFilesTest, ACutIsToldInEveryDesktopsWay)
{
    const std::string one = Make("one");
    Offer("x-special/gnome-copied-files", "cut\nfile://" + one);
    EXPECT_TRUE(FilesOnClipboard().value().cut);
    headless::OfferByOther(Selection::Clipboard,
                           {{{"text/uri-list", "file://" + one}, {"application/x-kde-cutselection", "1"}}});
    EXPECT_TRUE(FilesOnClipboard().value().cut);
    headless::OfferByOther(Selection::Clipboard,
                           {{{"text/uri-list", "file://" + one}, {"application/x-kde-cutselection", "0"}}});
    EXPECT_FALSE(FilesOnClipboard().value().cut);
}

TEST_F(ClipboardFilesTest, ACutMovesOnceAndALaterCopyStays)
{
    const std::string one = Make("one"), two = Make("two");
    ASSERT_EQ(PutFilesOnClipboard({{one}, true}), S_OK);
    ASSERT_TRUE(FilesOnClipboard());
    CutFilesWereMoved();
    EXPECT_FALSE(FilesOnClipboard());
    Offer("x-special/gnome-copied-files", "cut\nfile://" + one);
    ASSERT_TRUE(FilesOnClipboard());
    CutFilesWereMoved();
    EXPECT_FALSE(headless::OtherOffers(Selection::Clipboard));
    // While the files were being moved, others were copied.
    Offer("x-special/gnome-copied-files", "cut\nfile://" + one);
    ASSERT_TRUE(FilesOnClipboard());
    ASSERT_EQ(PutFilesOnClipboard({{two}, false}), S_OK);
    CutFilesWereMoved();
    EXPECT_EQ(FilesOnClipboard().value().paths, Paths{two});
}

TEST_F(ClipboardFilesTest, WaitsForAnOwnerNoLongerThanItSays)
{
    UseManualClock();
    const std::uint64_t start = NowMs();
    headless::OfferByOther(Selection::Clipboard, {{{"text/uri-list", "file:///"}}, false, false});
    EXPECT_TRUE(ClipboardMayHoldFiles()) << "nobody knows";
    EXPECT_LE(NowMs() - start, 16u);
    EXPECT_FALSE(FilesOnClipboard());
    EXPECT_LE(NowMs() - start, 1016u);
    // A list without content, offered in both ways, is waited for once.
    headless::OfferByOther(Selection::Clipboard,
                           {{{"x-special/gnome-copied-files", ""}, {"text/uri-list", ""}}, true, false});
    const std::uint64_t second = NowMs();
    EXPECT_FALSE(FilesOnClipboard());
    EXPECT_LE(NowMs() - second, 1000u);
    headless::EndOther(Selection::Clipboard);
    EXPECT_FALSE(ClipboardMayHoldFiles());
}

TEST_F(ClipboardFilesTest, RefusalsAreReported)
{
    EXPECT_EQ(PutFilesOnClipboard({}), E_FAIL);
    const Failing refused("PutOnClipboard");
    EXPECT_EQ(PutFilesOnClipboard({{"/tmp"}, false}), E_FAIL);
    EXPECT_FALSE(PutTextOnClipboard(u"text"));
}

TEST(ClipboardTextTest, ClipboardAndMarkedTextAreTwo)
{
    ASSERT_TRUE(PutTextOnClipboard(u"h\u00F6her"));
    ASSERT_TRUE(PutTextOnClipboard(u"\U0001F600", Selection::Primary));
    EXPECT_EQ(ClipboardText(), u"h\u00F6her");
    EXPECT_EQ(ClipboardText(Selection::Primary), u"\U0001F600");
    EXPECT_EQ(headless::AskAsOther(Selection::Clipboard, "STRING"), "h\xF6her");
    EXPECT_FALSE(headless::AskAsOther(Selection::Primary, "STRING")) << "not of that character set";
    headless::OfferByOther(Selection::Clipboard, {{{"STRING", "\xE9"}}});
    EXPECT_EQ(ClipboardText(), u"\u00E9") << "a program of old";
    headless::Reset();
}

/// Counts who keeps the process.
class Reference : public IUnknown
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++holders; }
    ULONG STDMETHODCALLTYPE Release() override { return --holders; }
    ULONG holders = 0;
};

TEST(ClipboardTextTest, TheClipboardKeepsTheProcessUntilAnotherHasItsContent)
{
    Reference reference;
    SHSetInstanceExplorer(&reference);
    PutTextOnClipboard(u"marked", Selection::Primary);
    EXPECT_EQ(reference.holders, 0u) << "what is marked goes with the program";
    PutTextOnClipboard(u"one");
    PutTextOnClipboard(u"two");
    EXPECT_EQ(reference.holders, 1u);
    HandClipboardOver();
    EXPECT_EQ(reference.holders, 1u) << "no manager";
    headless::OfferByOther(Selection::Clipboard, {});
    EXPECT_EQ(reference.holders, 0u);
    PutTextOnClipboard(u"three");
    headless::SetClipboardManager(true);
    HandClipboardOver();
    EXPECT_EQ(reference.holders, 0u);
    EXPECT_EQ(headless::AskAsOther(Selection::Clipboard, "UTF8_STRING"), "three") << "until the process ends";
    headless::Reset();
    SHSetInstanceExplorer(nullptr);
}

} // namespace
