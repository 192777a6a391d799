// Verbs that other programs of the desktop carry out: showing an item's place and properties, choosing a program.
#include "platform/shell/verbs.h"

#include "windows.h"

#include "platform/base/text.h"
#include "platform/services/desktop_module.h"
#include "platform/services/entry_service.h"
#include "platform/services/launch_service.h"
#include "platform/services/peer_service.h"
#include "platform/shell/failure_report.h"
#include "platform/shell/native_parent.h"

#include <climits>

namespace platform
{

namespace
{

const PeerService* Peers()
{
    return static_cast<const PeerService*>(DesktopModuleSymbol("orb_peer_service"));
}

std::string TargetOf(const VerbItem& item)
{
    const auto* entries = static_cast<const EntryService*>(DesktopModuleSymbol("orb_entry_service"));
    const bool leadsElsewhere = item.kind == ItemKind::Link || item.kind == ItemKind::DesktopEntry;
    char target[PATH_MAX];
    return leadsElsewhere && entries != nullptr && entries->target(item.path.c_str(), target, sizeof target)
               ? target
               : item.path;
}

std::u16string OpenFolder(const std::string& path, const std::u16string& name)
{
    const auto* launch = static_cast<const LaunchService*>(DesktopModuleSymbol("orb_launch_service"));
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    const auto ignore = [](void*, const char*) {};
    char reason[1024] = "";
    if (launch == nullptr || launch->open(folder.c_str(), {ignore, nullptr}, reason, sizeof reason))
        return {};
    return FailureText(name, u"cannot be shown in its folder", reason);
}

} // namespace

HRESULT ShowInFolder(const VerbTarget& target)
{
    const VerbItem item = target.items.front();
    return RunInBackground(target.owner,
                           [item]
                           {
                               const std::string path = TargetOf(item);
                               const PeerService* peers = Peers();
                               const bool shown = peers != nullptr && peers->showInFolder(path.c_str());
                               return shown ? std::u16string() : OpenFolder(path, item.displayName);
                           });
}

HRESULT ShowProperties(const VerbTarget& target)
{
    const VerbItem item = target.items.front();
    return RunInBackground(target.owner,
                           [item]
                           {
                               const PeerService* peers = Peers();
                               const bool shown = peers != nullptr && peers->showProperties(item.path.c_str());
                               return shown ? std::u16string()
                                            : FailureText(item.displayName, u"has properties that cannot be shown",
                                                          "No file manager answers.");
                           });
}

HRESULT OpenWithOther(const VerbTarget& target)
{
    const VerbItem item = target.items.front();
    return RunInBackground(target.owner,
                           [item, parent = NativeParent(target.owner)]
                           {
                               const PeerService* peers = Peers();
                               const bool shown = peers != nullptr && peers->chooseProgram(item.path.c_str(), parent);
                               return shown ? std::u16string()
                                            : FailureText(item.displayName, u"could not be opened with another program",
                                                          "The desktop's list of programs does not answer.");
                           });
}

} // namespace platform
