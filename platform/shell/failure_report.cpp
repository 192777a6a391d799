// Boxes for what failed, and work that may fail late.
#include "platform/shell/failure_report.h"

#include "windows.h"

#include "platform/base/process_hold.h"
#include "platform/base/product.h"
#include "platform/base/text.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

namespace platform
{

namespace
{

/// What the thread that does the work and the user-interface thread share.
struct BackgroundWork
{
    BackgroundWork() { hold.Limit(); }

    ProcessHold hold;
    DWORD thread = GetCurrentThreadId(); ///< the user-interface thread
    std::mutex mutex;
    std::condition_variable done;
    bool isDone = false;
    bool isAwaited = true;
    std::u16string failure;
};

struct LateFailure
{
    ProcessHold hold;
    std::u16string text;
};

void CALLBACK TellLateFailure(HWND, UINT, UINT_PTR context, DWORD)
{
    const std::unique_ptr<LateFailure> failure(reinterpret_cast<LateFailure*>(context));
    ReportFailure(nullptr, failure->text); // the menu may have gone
}

void DoWork(BackgroundWork& shared, const std::function<std::u16string()>& work)
{
    std::u16string failure = work();
    const std::lock_guard lock(shared.mutex);
    if (!shared.isAwaited && !failure.empty())
        ReportFailureLater(shared.thread, std::move(failure), shared.hold);
    else
        shared.failure = std::move(failure);
    shared.isDone = true;
    shared.done.notify_one();
}

/// Waits a moment; the failure there was by then.
std::u16string FailureSoFar(BackgroundWork& shared)
{
    constexpr std::chrono::milliseconds kPatience{150};
    std::unique_lock lock(shared.mutex);
    shared.done.wait_for(lock, kPatience, [&] { return shared.isDone; });
    shared.isAwaited = false;
    return shared.failure;
}

} // namespace

void ReportFailure(HWND owner, const std::u16string& text)
{
    MessageBoxW(IsWindow(owner) ? owner : nullptr, text.c_str(), u"" ORB_PRODUCT_TITLE, MB_OK | MB_ICONERROR);
}

void ReportFailureLater(DWORD thread, std::u16string text, const ProcessHold& hold)
{
    std::unique_ptr<LateFailure> failure(new LateFailure{hold, std::move(text)});
    // Boxes are shown by the user-interface thread: a timer's message has its procedure called by whoever dispatches
    // it.
    if (PostThreadMessageW(thread, WM_TIMER, reinterpret_cast<WPARAM>(failure.get()),
                           reinterpret_cast<LPARAM>(&TellLateFailure)))
        static_cast<void>(failure.release());
}

std::u16string FailureText(const std::u16string& name, std::u16string_view what, const std::string& reason)
{
    std::u16string text = u"\u201C";
    text += name;
    text += u"\u201D ";
    text += what;
    text += u": ";
    return text + Utf16FromUtf8(reason);
}

HRESULT RefuseInMenu(HWND owner, const std::u16string& name, const std::string& reason)
{
    ReportFailure(owner, FailureText(name, u"is part of the applications menu", reason));
    return E_ACCESSDENIED;
}

HRESULT RunInBackground(HWND owner, std::function<std::u16string()> work)
{
    const auto shared = std::make_shared<BackgroundWork>();
    try
    {
        std::thread([shared, work] { DoWork(*shared, work); }).detach();
    }
    catch (const std::system_error&)
    {
        DoWork(*shared, work);
    }
    const std::u16string failure = FailureSoFar(*shared);
    if (failure.empty())
        return S_OK;
    ReportFailure(owner, failure);
    return E_FAIL;
}

} // namespace platform
