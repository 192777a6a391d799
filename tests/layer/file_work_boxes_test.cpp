// What a person sees of file work, and what their answers do.
#include "platform/base/fault_points.h"
#include "platform/shell/file_operation.h"
#include "platform/shell/file_work_texts.h"
#include "tests/layer/file_work_desk.h"
#include "tests/layer/windowing_desk.h"
#include "tests/scenarios/failing.h"

#include "commctrl.h"
#include "shellapi.h"

#include <csignal>

using namespace shell_test;
using platform::FileOperation;

namespace
{

namespace fs = std::filesystem;

/// Keeps a file from being opened, as a file system that does not answer does.
class Reserved
{
public:
    explicit Reserved(const fs::path& path) : m_file(open(path.c_str(), O_RDWR | O_CLOEXEC))
    {
        std::signal(SIGIO, SIG_IGN); // somebody wants to open it
        EXPECT_EQ(fcntl(m_file, F_SETLEASE, F_WRLCK), 0) << "no lease to be had";
    }
    ~Reserved() { Release(); }
    Reserved(const Reserved&) = delete;
    Reserved& operator=(const Reserved&) = delete;
    void Release()
    {
        if (m_file >= 0)
            close(std::exchange(m_file, -1));
    }

private:
    int m_file;
};

/// All that a box says.
std::string SaidBy(HWND box)
{
    std::u16string said = Desk::TextOf(box);
    for (const int id : {0xFFFF, 22, 24})
        if (HWND text = GetDlgItem(box, id))
            said += u" | " + Desk::TextOf(text);
    return platform::Utf8FromUtf16(said);
}

bool Says(std::string_view text)
{
    const HWND box = GetActiveWindow();
    return box != nullptr && SaidBy(box).find(text) != std::string::npos;
}

struct FileBoxes : Desk
{
    /// Done each time the program has nothing to do: true when the step is over.
    using Step = std::function<bool()>;

    /// Until a box says this: then the keys are pressed.
    static Step When(const char* said, std::vector<BYTE> keys)
    {
        return [=]
        {
            if (!Says(said))
                return false;
            for (const BYTE key : keys)
                Tap(key);
            return true;
        };
    }
    static Step Wait(std::uint64_t milliseconds, bool boxBefore)
    {
        return [=]
        {
            EXPECT_EQ(GetActiveWindow() != nullptr, boxBefore);
            platform::AdvanceManualClock(milliseconds);
            return true;
        };
    }

    /// Until the box tells of a file, which the work may not have got to when the box comes.
    static Step WorkIsAt(const char* file)
    {
        return [=]
        {
            platform::AdvanceManualClock(100);
            return Says(file);
        };
    }

    /// Gives the working thread a moment while the clock stands: an idle screen would move it to the next timer.
    static bool LetWork()
    {
        poll(nullptr, 0, 1);
        return true;
    }

    template <typename F>
    auto Run(std::vector<Step> steps, F operation)
    {
        std::size_t next = 0;
        platform::headless::SetIdleHandler(
            [&]
            {
                next += next < steps.size() && steps[next]();
                return LetWork();
            });
        const auto result = operation();
        platform::headless::SetIdleHandler(nullptr);
        EXPECT_EQ(next, steps.size()) << "the operation was over early";
        EXPECT_EQ(platform::headless::Windows().size(), 0U) << "a box is left";
        return result;
    }

    HRESULT Run(FileOperation operation, std::vector<fs::path> sources, const fs::path& folder, std::vector<Step> steps,
                HWND owner = nullptr)
    {
        platform::FileOperationRequest request;
        request.operation = operation;
        request.sources.assign(sources.begin(), sources.end());
        request.folder = folder;
        request.owner = owner;
        return Run(std::move(steps), [&] { return platform::RunFileOperation(request); });
    }

    fs::path from = NewFolder();
    fs::path to = NewFolder();
};

} // namespace

TEST(FileWorkTexts, SizesAndNamesCanBeRead)
{
    EXPECT_EQ(platform::SizeText(1), "1 byte");
    EXPECT_EQ(platform::SizeText(999), "999 bytes");
    EXPECT_EQ(platform::SizeText(1500), "1.5 kB");
    EXPECT_EQ(platform::SizeText(999'960), "1.0 MB");
    EXPECT_EQ(platform::SizeText(~0ULL), "18.4 EB");
    EXPECT_EQ(platform::ShownFileName("/a/b"), u"b");
    EXPECT_EQ(platform::ShownFileName("/"), u"/");
    EXPECT_EQ(platform::ShownFileName("/a\nb\x7F"), u"a\xFFFD"
                                                    u"b\xFFFD");
    const std::u16string shown = platform::ShownFileName("/" + std::string(100, 'x') + ".txt");
    EXPECT_EQ(shown.size(), 45U);
    EXPECT_TRUE(shown.ends_with(u"xx.txt"));
    std::string faces = "/a";
    for (int i = 0; i < 50; ++i)
        faces += "\xF0\x9F\x98\x80";
    const std::u16string elided = platform::ShownFileName(faces);
    EXPECT_EQ(elided.size(), 1U + 20 + 1 + 22);
    EXPECT_EQ(platform::Utf8FromUtf16(elided).find("\xEF\xBF\xBD"), std::string::npos) << "a half of a pair";
}

TEST_F(FileBoxes, QuickWorkShowsNothing)
{
    Write(from / "file", "1");
    EXPECT_EQ(Run(FileOperation::Copy, {from / "file"}, to, {}), S_OK);
    EXPECT_EQ(Run({}, [&] { return platform::MakeNewFolder(to, nullptr); }), "New folder");
    EXPECT_EQ(Tree(to), (Files{{"file", "1"}, {"New folder", "/"}}));
}

TEST_F(FileBoxes, ProgressIsToldAfterASecond)
{
    Write(from / "first", std::string(1000, 'x'));
    Write(from / "slow", std::string(3000, 'x'));
    Reserved slow(from / "slow");
    // The box may come before the work has got to the slow file.
    const auto lookAtBox = [&]
    {
        platform::AdvanceManualClock(100);
        if (!Says("slow"))
            return false;
        EXPECT_EQ(SaidBy(GetActiveWindow()), "Copy | slow | 1 of 2 files, 1.0 kB of 4.0 kB");
        EXPECT_EQ(SendDlgItemMessageW(GetActiveWindow(), 23, PBM_GETPOS, 0, 0), 250);
        slow.Release();
        return true;
    };
    const auto early = Wait(999, false);
    const auto late = Wait(1, false);
    EXPECT_EQ(Run(FileOperation::Copy, {from / "first", from / "slow"}, to, {early, late, lookAtBox}), S_OK);
    EXPECT_EQ(Tree(to).size(), 2U);
}

TEST_F(FileBoxes, CancelTakesBack)
{
    Write(from / "slow", "1");
    Reserved slow(from / "slow");
    const auto release = [&]
    {
        EXPECT_TRUE(Says("Cancelling"));
        slow.Release();
        return true;
    };
    EXPECT_EQ(Run(FileOperation::Copy, {from / "slow"}, to,
                  {Wait(1000, false), WorkIsAt("slow"), When("of 1 file", {VK_ESCAPE}), release}),
              E_ABORT);
    EXPECT_EQ(Tree(to), Files{});
}

TEST_F(FileBoxes, WorkThatDoesNotComeToItsEndIsLeftBehind)
{
    Write(from / "slow", "1");
    Reserved slow(from / "slow");
    EXPECT_EQ(Run(FileOperation::Copy, {from / "slow"}, to,
                  {Wait(1000, false), WorkIsAt("slow"), When("of 1 file", {VK_ESCAPE}), Wait(5100, true)}),
              E_ABORT);
    // It still goes on, so there can be no other.
    EXPECT_EQ(Run(FileOperation::Copy, {from / "slow"}, to, {When("Orb Launcher", {VK_RETURN})}), E_FAIL);
    slow.Release();
    Worker worker;
    EXPECT_TRUE(WaitFor([&] { return worker.DoUnlessBusy(FileWork::NewFolder, {}, to); }));
    EXPECT_EQ(Tree(to), (Files{{"New folder", "/"}}));
}

TEST_F(FileBoxes, AnswersAboutTakenNames)
{
    const Files old{{"a", "old"}, {"b", "old"}};
    const struct
    {
        std::vector<BYTE> keys;
        std::size_t times;
        HRESULT result;
        Files after;
    } cases[] = {
        {{'A', 'R'}, 1, S_OK, {{"a", "new"}, {"b", "new"}}},
        {{'R'}, 2, S_OK, {{"a", "new"}, {"b", "new"}}},
        {{VK_ESCAPE}, 1, E_ABORT, old},
        {{VK_RETURN}, 1, E_ABORT, old},
        {{'K'}, 2, S_OK, {{"a", "old"}, {"b", "old"}, {"a (2)", "new"}, {"b (2)", "new"}}},
    };
    for (const auto& one : cases)
    {
        const fs::path target = NewFolder();
        for (const char* name : {"a", "b"})
        {
            Write(from / name, "new");
            Write(target / name, "old");
        }
        std::vector<Step> steps;
        const char* names[] = {"\xE2\x80\x9C"
                               "a\xE2\x80\x9D is already in",
                               "\xE2\x80\x9C"
                               "b\xE2\x80\x9D is already in"};
        for (std::size_t i = 0; i < one.times; ++i)
            steps.push_back(When(names[i], one.keys));
        if (one.keys[0] == VK_RETURN) // skips; the last question has no "Skip"
            steps.push_back(When(names[1], {VK_ESCAPE}));
        EXPECT_EQ(Run(FileOperation::Copy, {from / "a", from / "b"}, target, steps), one.result);
        EXPECT_EQ(Tree(target), one.after);
    }
}

TEST_F(FileBoxes, FailuresAreToldWithTheFile)
{
    EXPECT_EQ(Run(FileOperation::Move, {from / "gone"}, to,
                  {When("\xE2\x80\x9Cgone\xE2\x80\x9D could not be moved.\n\nIt is not there any more.", {VK_RETURN})}),
              E_FAIL);
}

TEST_F(FileBoxes, AskingWhereThereIsNoTrashIsSafe)
{
    const ElsewhereFolder elsewhere;
    Write(elsewhere.Path() / "file", "1");
    Write(from / "file", "1");
    std::u16string paths = platform::ShellPathFromPosix((from / "file").native());
    paths += u'\0';
    paths += platform::ShellPathFromPosix((elsewhere.Path() / "file").native());
    paths += u'\0';
    SHFILEOPSTRUCTW operation{};
    operation.wFunc = FO_DELETE;
    operation.pFrom = paths.c_str();
    operation.fFlags = FOF_ALLOWUNDO | FOF_NORECURSION | FOF_NO_CONNECTED_ELEMENTS;
    EXPECT_NE(Run({When("none where it lies", {VK_RETURN})}, [&] { return SHFileOperationW(&operation); }), 0);
    EXPECT_TRUE(operation.fAnyOperationsAborted);
    EXPECT_FALSE(fs::exists(from / "file")) << "that one has a trash";
    EXPECT_TRUE(fs::exists(elsewhere.Path() / "file"));
    const std::u16string second = platform::ShellPathFromPosix((elsewhere.Path() / "file").native()) + u'\0';
    operation.pFrom = second.c_str();
    EXPECT_EQ(Run({When("none where it lies", {'D'})}, [&] { return SHFileOperationW(&operation); }), 0);
    EXPECT_FALSE(fs::exists(elsewhere.Path() / "file"));
}

TEST_F(FileBoxes, NobodyThereToAnswerMeansCancel)
{
    Write(from / "file", "new");
    Write(to / "file", "old");
    const HWND owner = ShownPopup(10, 10, 100, 100);
    const auto destroy = [&] { return Says("already in") && DestroyWindow(owner); };
    const auto operate = [&](HWND window, std::vector<Step> steps)
    {
        platform::FileOperationRequest request{FileOperation::Copy, {from / "file"}, to, window};
        return Run(std::move(steps), [&] { return platform::RunFileOperation(request); });
    };
    EXPECT_EQ(operate(owner, {destroy}), E_ABORT);
    EXPECT_EQ(operate(owner, {When("already in", {VK_ESCAPE})}), E_ABORT) << "an owner that has gone";
    const auto quit = []
    {
        if (!Says("already in"))
            return false;
        PostQuitMessage(7);
        return true;
    };
    EXPECT_EQ(operate(nullptr, {quit}), E_ABORT);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0))
        DispatchMessageW(&message);
    EXPECT_EQ(message.wParam, 7U) << "the quit is the outer loop's";
    const Failing refused("DialogBoxIndirectParamW");
    EXPECT_EQ(operate(nullptr, {}), E_ABORT);
    EXPECT_EQ(Tree(to), (Files{{"file", "old"}}));
}
