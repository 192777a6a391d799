// The verb "open".
#include "platform/shell/verbs.h"

#include "windows.h"

#include "platform/services/desktop_module.h"
#include "platform/base/product.h"
#include "platform/base/text.h"
#include "platform/services/launch_service.h"
#include "platform/base/process_hold.h"

#include <memory>

namespace platform
{

namespace
{

void ReportFailure(HWND owner, const std::u16string& name, const std::string& reason)
{
    std::u16string text = u"\u201C";
    text += name;
    text += u"\u201D could not be started: ";
    text += Utf16FromUtf8(reason);
    MessageBoxW(owner, text.c_str(), u"" ORB_PRODUCT_TITLE, MB_OK | MB_ICONERROR);
}

/// A launch under way. It keeps the process, and its failure until the user has been told.
struct PendingLaunch
{
    ProcessHold hold;
    std::u16string name;
    DWORD thread; ///< the user-interface thread
    std::string failure;
};

void CALLBACK TellLateFailure(HWND, UINT, UINT_PTR context, DWORD)
{
    const std::unique_ptr<PendingLaunch> launch(reinterpret_cast<PendingLaunch*>(context));
    ReportFailure(nullptr, launch->name, launch->failure); // the menu may have gone
}

void LaunchFinished(void* context, const char* failure)
{
    std::unique_ptr<PendingLaunch> launch(static_cast<PendingLaunch*>(context));
    launch->failure = failure;
    if (launch->failure.empty())
        return;
    // Boxes are shown by the user-interface thread: a timer's message has its procedure called by whoever dispatches
    // it.
    if (PostThreadMessageW(launch->thread, WM_TIMER, reinterpret_cast<WPARAM>(launch.get()),
                           reinterpret_cast<LPARAM>(&TellLateFailure)))
        static_cast<void>(launch.release());
}

/// Empty on success, else the reason for the failure.
std::string OpenPath(const VerbItem& item)
{
    const auto* service = static_cast<const LaunchService*>(DesktopModuleSymbol("orb_launch_service"));
    if (service == nullptr)
        return "The desktop module " ORB_PRODUCT "-desktop.so is missing.";
    auto* launch = new PendingLaunch{{}, item.displayName, GetCurrentThreadId(), {}};
    char reason[1024] = "";
    const bool opened = service->open(item.path.c_str(), {LaunchFinished, launch}, reason, sizeof reason);
    return opened ? "" : reason;
}

} // namespace

HRESULT OpenItems(const VerbTarget& target)
{
    HRESULT result = S_OK;
    for (const VerbItem& item : target.items)
    {
        const std::string reason = OpenPath(item);
        if (!reason.empty())
        {
            ReportFailure(target.owner, item.displayName, reason);
            result = E_FAIL;
        }
    }
    return result;
}

} // namespace platform
