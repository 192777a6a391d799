// The verb "open".
#include "platform/shell/verbs.h"

#include "windows.h"

#include "platform/services/desktop_module.h"
#include "platform/base/product.h"
#include "platform/base/text.h"
#include "platform/services/launch_service.h"
#include "platform/shell/process_reference.h"

namespace platform
{

namespace
{

/// Empty on success, else the reason for the failure.
std::string OpenPath(const std::string& path)
{
    const auto* service = static_cast<const LaunchService*>(DesktopModuleSymbol("orb_launch_service"));
    if (service == nullptr)
        return "The desktop module " ORB_PRODUCT "-desktop.so is missing.";
    const auto finished = [](void* context) { delete static_cast<ProcessHold*>(context); };
    char reason[1024] = "";
    const bool opened = service->open(path.c_str(), {finished, new ProcessHold}, reason, sizeof reason);
    return opened ? "" : reason;
}

void ReportFailure(HWND owner, const std::u16string& name, const std::string& reason)
{
    std::u16string text = u"\u201C";
    text += name;
    text += u"\u201D could not be started: ";
    text += Utf16FromUtf8(reason);
    MessageBoxW(owner, text.c_str(), u"" ORB_PRODUCT_TITLE, MB_OK | MB_ICONERROR);
}

} // namespace

HRESULT OpenItems(const VerbTarget& target)
{
    HRESULT result = S_OK;
    for (const VerbItem& item : target.items)
    {
        const std::string reason = OpenPath(item.path);
        if (!reason.empty())
        {
            ReportFailure(target.owner, item.displayName, reason);
            result = E_FAIL;
        }
    }
    return result;
}

} // namespace platform
