// Making entries for web addresses, by the desktop module.
#include "platform/shell/link_entries.h"

#include "platform/base/fault_points.h"
#include "platform/base/product.h"
#include "platform/base/text.h"
#include "platform/services/desktop_module.h"
#include "platform/services/entry_service.h"
#include "platform/shell/failure_report.h"
#include "platform/shell/pumped_call.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace platform
{

namespace
{

/// "example.org/page" of "https://example.org/page/"; what an address without a title is called.
std::string NameOfAddress(std::string_view url)
{
    std::string_view name = url.substr(std::min(url.find(':') + 1, url.size()));
    name.remove_prefix(std::min(name.find_first_not_of('/'), name.size()));
    while (name.ends_with('/'))
        name.remove_suffix(1);
    return std::string(name.empty() ? url : name);
}

struct Failure
{
    std::string title;
    int error = 0;
};

/// Stops at the first that cannot be made.
std::shared_ptr<Failure> MakeEach(const std::vector<WebAddress>& addresses, const std::string& folder)
{
    const auto* service = static_cast<const EntryService*>(DesktopModuleSymbol("orb_entry_service"));
    for (const auto& [url, title] : addresses)
    {
        const std::string name = title.empty() ? NameOfAddress(url) : title;
        const int error = service != nullptr ? service->makeLink(folder.c_str(), url.c_str(), name.c_str()) : ENOSYS;
        if (error != 0)
            return std::make_shared<Failure>(Failure{name, error});
    }
    return std::make_shared<Failure>();
}

} // namespace

bool MakeLinkEntries(const std::vector<WebAddress>& addresses, const std::string& folder, HWND owner)
{
    constexpr std::chrono::milliseconds kPatience{5000};
    if (FaultPoint("MakeLinkEntries"))
        return false;
    const auto failure =
        CallPumpedWithin<Failure>(kPatience, [addresses, folder] { return MakeEach(addresses, folder); });
    if (failure != nullptr && failure->error == 0)
        return true;
    const std::string title = failure != nullptr ? failure->title : addresses.front().title;
    const int error = failure != nullptr ? failure->error : ETIMEDOUT;
    ReportFailure(owner,
                  FailureText(Utf16FromUtf8(title), u"could not be made", std::strerror(error) + std::string(".")));
    return false;
}

} // namespace platform
