// File operations: the user-interface thread's side of file work.
//
// The module's thread does the work; what it has to say is kept here under a lock, and a message has the user-interface
// thread look: a timer's message, whose procedure is called by whichever loop dispatches it.
#include "platform/shell/file_operation.h"

#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/base/process_hold.h"
#include "platform/base/product.h"
#include "platform/base/text.h"
#include "platform/services/desktop_module.h"
#include "platform/shell/file_work_boxes.h"

#include "windows.h"
#include "shellapi.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

namespace platform
{

namespace
{

void Tell(HWND owner, LPCWSTR text)
{
    MessageBoxW(owner, text, u"" ORB_PRODUCT_TITLE, MB_OK | MB_ICONERROR);
}

/// One operation. It belongs to both threads.
class FileJob
{
public:
    FileJob(FileWork work, HWND owner) : m_work(work), m_owner(owner) {}

    /// Dispatches messages until the work is done. False when it cannot be begun.
    static bool Run(const std::shared_ptr<FileJob>& job, const std::vector<std::string>& sources,
                    const std::string& folder);
    FileWorkEnd End() const { return m_end; }
    const std::string& Name() const { return m_name; }

private:
    using Owner = std::shared_ptr<FileJob>; ///< what the working thread has; freed with its last call

    static FileJob& Of(void* context) { return **static_cast<Owner*>(context); }
    static FileReply Ask(void* context, const FileQuestionFacts& facts);
    static void Finished(void* context, FileWorkEnd end, const char* name);
    static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD);

    /// Has the user-interface thread look, from the other one.
    void Wake() { PostThreadMessageW(m_thread, WM_TIMER, 0, reinterpret_cast<LPARAM>(&Look)); }
    void DispatchUntilFinished();
    bool IsFinished();
    void AnswerQuestion();
    /// Nobody is there to answer any more.
    void Abandon();

    const FileWork m_work;
    const HWND m_owner;
    const DWORD m_thread = GetCurrentThreadId();
    ProcessHold m_hold;
    bool m_asking = false; ///< a box is up; user-interface thread only

    std::mutex m_mutex; ///< of what follows
    std::condition_variable m_changed;
    const FileQuestionFacts* m_question = nullptr; ///< waits for an answer
    std::optional<FileReply> m_reply;
    bool m_cancelled = false;
    bool m_finished = false;
    FileWorkEnd m_end = FileWorkEnd::Failed;
    std::string m_name;
};

/// The operation that is being waited for. There is one at most: messages are dispatched meanwhile, so another may be
/// asked for, and is refused.
constinit FileJob* g_job = nullptr;

bool FileJob::Run(const std::shared_ptr<FileJob>& job, const std::vector<std::string>& sources,
                  const std::string& folder)
{
    const auto* service = static_cast<const FileWorkService*>(DesktopModuleSymbol("orb_file_work_service"));
    if (service == nullptr)
    {
        Tell(job->m_owner, u"The desktop module " ORB_PRODUCT "-desktop.so is missing.");
        return false;
    }
    std::vector<const char*> paths;
    for (const std::string& source : sources)
        paths.push_back(source.c_str());
    auto context = std::make_unique<Owner>(job);
    const FileWorkClient client{context.get(), [](void*, const FileProgress&) {},
                                [](void* owner)
                                {
                                    const std::lock_guard lock(Of(owner).m_mutex);
                                    return Of(owner).m_cancelled;
                                },
                                Ask, Finished};
    if (g_job != nullptr || !service->start({job->m_work, paths.data(), paths.size(), folder.c_str()}, client))
    {
        Tell(job->m_owner, u"Other files are still being worked on. Try again when that is done.");
        return false;
    }
    static_cast<void>(context.release());
    g_job = job.get();
    job->DispatchUntilFinished();
    g_job = nullptr;
    return true;
}

void FileJob::DispatchUntilFinished()
{
    std::optional<int> quit;
    while (!IsFinished())
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
    if (quit)
        PostQuitMessage(*quit);
}

bool FileJob::IsFinished()
{
    const std::lock_guard lock(m_mutex);
    return m_finished;
}

void FileJob::Abandon()
{
    std::unique_lock lock(m_mutex);
    m_cancelled = true;
    m_reply = FileReply{};
    m_changed.notify_all();
    m_changed.wait(lock, [&] { return m_finished; });
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
    if (g_job != nullptr)
        g_job->AnswerQuestion();
}

void FileJob::AnswerQuestion()
{
    std::unique_lock lock(m_mutex);
    if (m_question == nullptr || m_reply || m_asking)
        return;
    const FileQuestionFacts facts = *m_question; // its texts stay while the other thread waits
    lock.unlock();
    m_asking = true;
    const FileReply reply = AskAboutFile(m_owner, m_work, facts);
    m_asking = false;
    lock.lock();
    m_reply = reply;
    m_changed.notify_all();
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
    const HRESULT result = platform::RunFileOperation(request);
    operation->fAnyOperationsAborted = result == E_ABORT;
    return result == S_OK ? 0 : ERROR_CANCELLED;
}
