// Opening: by the desktop's choice, with a given program, as one of an entry's actions, in a terminal.
#include "platform/shell/verbs.h"

#include "windows.h"

#include "platform/base/process_hold.h"
#include "platform/base/product.h"
#include "platform/base/text.h"
#include "platform/services/desktop_module.h"
#include "platform/services/launch_service.h"
#include "platform/shell/failure_report.h"

#include <functional>
#include <memory>

namespace platform
{

namespace
{

constexpr char16_t kCouldNotStart[] = u"could not be started";
constexpr std::size_t kReasonSize = 1024;

/// A launch under way, which keeps the process.
struct PendingLaunch
{
    ProcessHold hold;
    std::u16string name;
    DWORD thread; ///< the user-interface thread
};

void LaunchFinished(void* context, const char* failure)
{
    const std::unique_ptr<PendingLaunch> launch(static_cast<PendingLaunch*>(context));
    if (failure[0] != '\0')
        ReportFailureLater(launch->thread, FailureText(launch->name, kCouldNotStart, failure), launch->hold);
}

using LaunchCall = std::function<bool(const LaunchService& service, LaunchReport report, char* reason)>;

HRESULT Launch(HWND owner, const VerbItem& item, const LaunchCall& call)
{
    const auto* service = static_cast<const LaunchService*>(DesktopModuleSymbol("orb_launch_service"));
    char reason[kReasonSize] = "The desktop module " ORB_PRODUCT "-desktop.so is missing.";
    if (service != nullptr)
    {
        auto* launch = new PendingLaunch{{}, item.displayName, GetCurrentThreadId()};
        launch->hold.Limit();
        if (call(*service, {LaunchFinished, launch}, reason))
            return S_OK;
    }
    ReportFailure(owner, FailureText(item.displayName, kCouldNotStart, reason));
    return E_FAIL;
}

} // namespace

HRESULT OpenItems(const VerbTarget& target)
{
    HRESULT result = S_OK;
    for (const VerbItem& item : target.items)
    {
        const HRESULT opened = Launch(target.owner, item,
                                      [&](const LaunchService& service, LaunchReport report, char* reason)
                                      { return service.open(item.path.c_str(), report, reason, kReasonSize); });
        result = SUCCEEDED(opened) ? result : opened;
    }
    return result;
}

HRESULT OpenWithProgram(const VerbTarget& target, const std::string& entryPath)
{
    const VerbItem& item = target.items.front();
    return Launch(target.owner, item,
                  [&](const LaunchService& service, LaunchReport report, char* reason)
                  { return service.openWith(item.path.c_str(), entryPath.c_str(), report, reason, kReasonSize); });
}

HRESULT RunEntryAction(const VerbTarget& target, const std::string& action)
{
    const VerbItem& item = target.items.front();
    return Launch(target.owner, item,
                  [&](const LaunchService& service, LaunchReport report, char* reason)
                  { return service.runAction(item.path.c_str(), action.c_str(), report, reason, kReasonSize); });
}

HRESULT OpenInTerminal(const VerbTarget& target)
{
    const VerbItem& item = target.items.front();
    return Launch(target.owner, item,
                  [&](const LaunchService& service, LaunchReport report, char* reason)
                  { return service.openTerminal(item.path.c_str(), report, reason, kReasonSize); });
}

} // namespace platform
