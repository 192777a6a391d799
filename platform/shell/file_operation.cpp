// File operations: the user-interface thread's side of file work.
//
// The module's thread does the work; what it has to say is kept here under a lock, and a message has the user-interface
// thread look: a timer's message, whose procedure is called by whichever loop dispatches it.
#include "platform/shell/file_operation.h"

#include "platform/base/clock.h"
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/base/process_hold.h"
#include "platform/base/product.h"
#include "platform/base/sudden_end.h"
#include "platform/base/text.h"
#include "platform/files/applications_menu.h"
#include "platform/services/desktop_module.h"
#include "platform/shell/failure_report.h"
#include "platform/shell/file_work_boxes.h"
#include "platform/shell/namespace.h"

#include "windows.h"
#include "shellapi.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

namespace platform
{

namespace
{

/// How long the user sees nothing of work that may be done soon, in milliseconds.
constexpr UINT kQuietTime = 1000;
/// How long work that has been cancelled may take to come to its end, in milliseconds.
constexpr std::uint64_t kPatience = 5000;

void Tell(HWND owner, LPCWSTR text)
{
    MessageBoxW(owner, text, u"" ORB_PRODUCT_TITLE, MB_OK | MB_ICONERROR);
}

/// One operation. It belongs to both threads.
class FileJob
{
public:
    FileJob(FileWork work, HWND owner) : m_work(work), m_owner(owner), m_box(work, [this] { Cancel(); }) {}

    /// Dispatches messages until the work is done. False when it cannot be begun.
    static bool Run(const std::shared_ptr<FileJob>& job, const std::vector<std::string>& sources,
                    const std::string& folder);
    FileWorkEnd End();
    std::string Name();

private:
    using Owner = std::shared_ptr<FileJob>; ///< what the working thread has; freed with its last call

    static FileJob& Of(void* context) { return **static_cast<Owner*>(context); }
    static void Progress(void* context, const FileProgress& progress);
    static bool IsCancelled(void* context);
    static FileReply Ask(void* context, const FileQuestionFacts& facts);
    static void Finished(void* context, FileWorkEnd end, const char* name);
    static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD);
    static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD);

    /// Has the user-interface thread look, from the other one.
    void Wake() { PostThreadMessageW(m_thread, WM_TIMER, 0, reinterpret_cast<LPARAM>(&Look)); }
    void DispatchUntilFinished();
    bool IsOver();
    void AnswerQuestion();
    void ShowProgress();
    void Cancel();
    /// Nobody is there to answer any more: takes the work back.
    void Abandon();

    const FileWork m_work;
    const HWND m_owner;
    const DWORD m_thread = GetCurrentThreadId();
    ProcessHold m_hold;

    // The user-interface thread's own.
    FileProgressBox m_box;
    UINT_PTR m_timer = 0;
    bool m_isAsking = false;   ///< a question is up
    bool m_cannotShow = false; ///< there is no box to be had
    std::optional<std::uint64_t> m_cancelledAt;

    std::mutex m_mutex; ///< of what follows
    std::condition_variable m_changed;
    const FileQuestionFacts* m_question = nullptr; ///< waits for an answer
    std::optional<FileReply> m_reply;
    FileProgress m_progress{};
    std::string m_progressName;
    bool m_cancelled = false;
    bool m_abandoned = false;
    bool m_finished = false;
    FileWorkEnd m_end = FileWorkEnd::Cancelled;
    std::string m_name;
};

/// The operation that is being waited for. There is one at most: messages are dispatched meanwhile, so another may be
/// asked for, and is refused.
constinit FileJob* g_job = nullptr;

bool FileJob::Run(const std::shared_ptr<FileJob>& job, const std::vector<std::string>& sources,
                  const std::string& folder)
{
    const auto* service = static_cast<const FileWorkService*>(DesktopModuleSymbol("orb_files_service"));
    if (service == nullptr)
    {
        Tell(job->m_owner, u"The desktop module " ORB_PRODUCT "-desktop.so is missing.");
        return false;
    }
    std::vector<const char*> paths;
    for (const std::string& source : sources)
        paths.push_back(source.c_str());
    auto context = std::make_unique<Owner>(job);
    const FileWorkClient client{context.get(), Progress, IsCancelled, Ask, Finished};
    if (g_job != nullptr || !service->start({job->m_work, paths.data(), paths.size(), folder.c_str()}, client))
    {
        Tell(job->m_owner, u"Other files are still being worked on. Try again when that is done.");
        return false;
    }
    static_cast<void>(context.release());
    g_job = job.get();
    g_beforeSuddenEnd = [] { g_job->Abandon(); };
    job->DispatchUntilFinished();
    g_beforeSuddenEnd = nullptr;
    g_job = nullptr;
    return true;
}

void FileJob::DispatchUntilFinished()
{
    std::optional<int> quit;
    m_timer = SetTimer(nullptr, 0, kQuietTime, Tick);
    while (!IsOver())
    {
        MSG message;
        const BOOL received = GetMessageW(&message, nullptr, 0, 0);
        if (received < 0)
            Abandon();
        else if (received == 0)
            quit = static_cast<int>(message.wParam); // the outer loop's, when the work is done
        else
        {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    KillTimer(nullptr, m_timer);
    m_hold.Limit(); // work that has not finished by now may never do
    if (quit)
        PostQuitMessage(*quit);
}

bool FileJob::IsOver()
{
    const std::lock_guard lock(m_mutex);
    // A dead server is left to the working thread, which keeps the process for a while.
    return m_finished || m_abandoned || (m_cancelledAt && NowMs() - *m_cancelledAt > kPatience);
}

FileWorkEnd FileJob::End()
{
    const std::lock_guard lock(m_mutex);
    return m_end;
}

std::string FileJob::Name()
{
    const std::lock_guard lock(m_mutex);
    return m_name;
}

void FileJob::Cancel()
{
    m_cancelledAt = NowMs();
    const std::lock_guard lock(m_mutex);
    m_cancelled = true;
}

void FileJob::Abandon()
{
    std::unique_lock lock(m_mutex);
    m_cancelled = true;
    m_reply = FileReply{};
    m_changed.notify_all();
    m_changed.wait_for(lock, std::chrono::milliseconds(kPatience), [&] { return m_finished; });
    m_abandoned = true;
}

void FileJob::Progress(void* context, const FileProgress& progress)
{
    FileJob& job = Of(context);
    const std::lock_guard lock(job.m_mutex);
    job.m_progress = progress;
    job.m_progressName = progress.name;
}

bool FileJob::IsCancelled(void* context)
{
    FileJob& job = Of(context);
    const std::lock_guard lock(job.m_mutex);
    return job.m_cancelled;
}

FileReply FileJob::Ask(void* context, const FileQuestionFacts& facts)
{
    FileJob& job = Of(context);
    std::unique_lock lock(job.m_mutex);
    if (job.m_cancelled)
        return {};
    job.m_question = &facts;
    job.m_reply.reset();
    job.Wake();
    job.m_changed.wait(lock, [&] { return job.m_reply.has_value(); });
    job.m_question = nullptr;
    return *job.m_reply;
}

void FileJob::Finished(void* context, FileWorkEnd end, const char* name)
{
    const std::unique_ptr<Owner> owner(static_cast<Owner*>(context));
    FileJob& job = **owner;
    const std::lock_guard lock(job.m_mutex);
    job.m_finished = true;
    job.m_end = end;
    job.m_name = name;
    job.m_changed.notify_all();
    job.Wake();
}

void CALLBACK FileJob::Look(HWND, UINT, UINT_PTR, DWORD)
{
    if (g_job == nullptr)
        return;
    g_job->AnswerQuestion();
    if (g_job->IsOver())
        g_job->m_box.End();
}

void FileJob::AnswerQuestion()
{
    std::unique_lock lock(m_mutex);
    if (m_question == nullptr || m_reply || m_isAsking)
        return;
    const FileQuestionFacts facts = *m_question; // its texts stay while the other thread waits
    lock.unlock();
    m_isAsking = true;
    const FileReply reply = AskAboutFile(m_box.Window() != nullptr ? m_box.Window() : m_owner, m_work, facts);
    m_isAsking = false;
    lock.lock();
    m_reply = reply;
    m_changed.notify_all();
    if (m_box.Window() == nullptr)
        m_timer = SetTimer(nullptr, m_timer, kQuietTime, Tick); // the answer has most of the work done, perhaps
}

void CALLBACK FileJob::Tick(HWND, UINT, UINT_PTR, DWORD)
{
    if (g_job == nullptr)
        return;
    Look(nullptr, WM_TIMER, 0, 0); // also for what could not be posted
    if (!g_job->IsOver())
        g_job->ShowProgress();
}

void FileJob::ShowProgress()
{
    constexpr UINT kRefresh = 100; ///< milliseconds
    std::unique_lock lock(m_mutex);
    const std::string name = m_progressName;
    FileProgress progress = m_progress;
    lock.unlock();
    progress.name = name.c_str();
    if (m_box.Window() != nullptr)
        m_box.Show(progress);
    else if (!m_isAsking && !m_cannotShow)
    {
        m_timer = SetTimer(nullptr, m_timer, kRefresh, Tick);
        m_cannotShow = !m_box.Run(m_owner, progress);
    }
}

} // namespace

HRESULT RunFileOperation(const FileOperationRequest& request)
{
    constexpr FileWork kWorks[] = {FileWork::Copy, FileWork::Move, FileWork::Link, FileWork::Trash};
    const auto job = std::make_shared<FileJob>(kWorks[static_cast<int>(request.operation)], request.owner);
    if (FaultPoint("RunFileOperation") || !FileJob::Run(job, request.sources, request.folder))
        return E_FAIL;
    switch (job->End())
    {
    case FileWorkEnd::Done:
        return S_OK;
    case FileWorkEnd::Cancelled:
        return E_ABORT;
    default:
        return E_FAIL;
    }
}

std::string MakeNewFolder(const std::string& folder, HWND owner)
{
    const auto job = std::make_shared<FileJob>(FileWork::NewFolder, owner);
    return !FaultPoint("MakeNewFolder") && FileJob::Run(job, {}, folder) ? job->Name() : "";
}

} // namespace platform

int SHFileOperationW(SHFILEOPSTRUCTW* operation)
{
    constexpr int kInvalidFiles = 0x7C; ///< DE_INVALIDFILES
    if (platform::FaultPoint("SHFileOperationW"))
        return platform::Fail<int>(ERROR_NOT_ENOUGH_MEMORY, ERROR_NOT_ENOUGH_MEMORY);
    if (operation == nullptr || operation->pFrom == nullptr || *operation->pFrom == 0 ||
        operation->wFunc != FO_DELETE || (operation->fFlags & FOF_ALLOWUNDO) == 0)
        return kInvalidFiles;
    platform::FileOperationRequest request;
    request.operation = platform::FileOperation::Trash;
    request.owner = operation->hwnd;
    for (LPCWSTR path = operation->pFrom; *path != 0; path += std::u16string_view(path).size() + 1)
        request.sources.push_back(platform::PosixFromShellPath(path));
    const std::string& first = request.sources.front();
    if (!platform::CanBeWrittenInto(first))
    {
        // A category is in both halves of the menu, and deleted from both: to say so once is enough.
        if (first.starts_with(platform::kCommonMenu))
            platform::RefuseInMenu(operation->hwnd, platform::MenuFolderName(first), platform::kWhyCategoriesStay);
        return ERROR_ACCESS_DENIED;
    }
    const HRESULT result = platform::RunFileOperation(request);
    operation->fAnyOperationsAborted = result == E_ABORT;
    return result == S_OK ? 0 : ERROR_CANCELLED;
}
