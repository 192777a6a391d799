// Files on the clipboard.
//
// x-special/gnome-copied-files  a line "copy" or "cut", then an address a line; GNOME, Xfce, LXDE, MATE, Cinnamon
// text/uri-list                 RFC 2483; everybody
// application/x-kde-cutselection  "1" beside a list of addresses that are to be moved; KDE
#include "platform/shell/clipboard_files.h"

#include "platform/base/clock.h"
#include "platform/base/fault_points.h"
#include "platform/files/bounded_call.h"
#include "platform/services/address_service.h"
#include "platform/services/desktop_module.h"
#include "platform/windowing/clipboard.h"

#include "windows.h"

#include <algorithm>
#include <string_view>
#include <sys/stat.h>
#include <unordered_set>

namespace platform
{
namespace
{

using std::chrono::milliseconds;
using Targets = std::vector<std::string>;

constexpr std::string_view kCopiedFiles = "x-special/gnome-copied-files";
constexpr std::string_view kUriList = "text/uri-list";
constexpr std::string_view kKdeCut = "application/x-kde-cutselection";
constexpr std::uint64_t kFrame = 16; // milliseconds
constexpr milliseconds kPatience{1000};

const AddressService* Addresses()
{
    return static_cast<const AddressService*>(DesktopModuleSymbol("orb_address_service"));
}

bool Offers(const Targets& targets, std::string_view target)
{
    return std::ranges::find(targets, target) != targets.end();
}

/// The addresses of files, the text before each and the text after it.
std::string AddressLines(const AddressService& service, const std::vector<std::string>& paths, std::string_view before,
                         std::string_view after)
{
    struct Lines
    {
        std::string text;
        std::string_view before, after;
    } lines{{}, before, after};
    const auto add = [](void* context, const char* address)
    {
        auto& to = *static_cast<Lines*>(context);
        to.text.append(to.before).append(address).append(to.after);
    };
    for (const std::string& path : paths)
        service.addressOf(path.c_str(), &lines, add);
    return lines.text;
}

std::string PathLines(const std::vector<std::string>& paths)
{
    std::string text;
    for (const std::string& path : paths)
    {
        text += text.empty() ? "" : "\n";
        text += path;
    }
    return text;
}

std::vector<std::string> PathsIn(const std::string& list)
{
    std::vector<std::string> paths;
    const AddressService* service = Addresses();
    if (service == nullptr)
        return paths;
    const auto add = [](void* context, const char* path)
    { static_cast<std::vector<std::string>*>(context)->emplace_back(path); };
    service->pathsIn(list.c_str(), &paths, add);
    return paths;
}

/// Nothing when the content is not of this form.
std::optional<ClipboardFiles> ParseCopiedFiles(const std::string& content)
{
    const std::size_t lineEnd = std::min(content.find('\n'), content.size());
    const std::string_view verb = std::string_view(content).substr(0, lineEnd);
    if (verb != "cut" && verb != "copy")
        return std::nullopt;
    return ClipboardFiles{PathsIn(content.substr(lineEnd)), verb == "cut"};
}

/// An owner that does not give what it offers is not asked a second time.
std::optional<ClipboardFiles> ReadFiles(const Targets& targets, std::uint64_t until)
{
    if (Offers(targets, kCopiedFiles))
    {
        const auto content = ReadClipboard(kCopiedFiles, until);
        if (!content)
            return std::nullopt;
        if (auto files = ParseCopiedFiles(*content))
            return files;
    }
    const auto list = Offers(targets, kUriList) ? ReadClipboard(kUriList, until) : std::nullopt;
    if (!list)
        return std::nullopt;
    const auto cut = Offers(targets, kKdeCut) ? ReadClipboard(kKdeCut, until) : std::nullopt;
    return ClipboardFiles{PathsIn(*list), cut && cut->starts_with('1')};
}

void KeepEachOnce(std::vector<std::string>& paths)
{
    std::unordered_set<std::string> seen;
    std::erase_if(paths, [&](const std::string& path) { return !seen.insert(path).second; });
}

/// A link is there although it may lead nowhere.
std::vector<std::string> ThoseThatExist(std::vector<std::string> paths)
{
    const auto look = [paths]
    {
        auto found = std::make_shared<std::vector<std::string>>();
        struct stat status;
        for (const std::string& path : paths)
            if (lstat(path.c_str(), &status) == 0)
                found->push_back(path);
        return found;
    };
    const auto found = CallWithin<std::vector<std::string>>(kPatience, look);
    return found != nullptr ? *found : paths;
}

} // namespace

HRESULT PutFilesOnClipboard(const ClipboardFiles& files)
{
    const AddressService* service = Addresses();
    if (FaultPoint("PutFilesOnClipboard") || service == nullptr || files.paths.empty())
        return E_FAIL;
    const std::string paths = PathLines(files.paths);
    std::vector<ClipboardForm> forms;
    forms.push_back(
        {std::string(kCopiedFiles), (files.cut ? "cut" : "copy") + AddressLines(*service, files.paths, "\n", "")});
    forms.push_back({std::string(kUriList), AddressLines(*service, files.paths, "", "\r\n")});
    forms.push_back({std::string(kKdeCut), files.cut ? "1" : "0"});
    for (const char* text : {"UTF8_STRING", "text/plain;charset=utf-8"})
        forms.push_back({text, paths});
    return PutOnClipboard(std::move(forms)) ? S_OK : E_FAIL;
}

std::optional<ClipboardFiles> FilesOnClipboard()
{
    const std::uint64_t until = NowMs() + static_cast<std::uint64_t>(kPatience.count());
    const auto targets = ClipboardTargets(until);
    if (!targets)
        return std::nullopt;
    auto files = ReadFiles(*targets, until);
    if (!files)
        return std::nullopt;
    KeepEachOnce(files->paths);
    files->paths = ThoseThatExist(std::move(files->paths));
    return files->paths.empty() ? std::nullopt : std::move(files);
}

bool ClipboardMayHoldFiles()
{
    const auto targets = ClipboardTargets(NowMs() + kFrame);
    return !targets || Offers(*targets, kCopiedFiles) || Offers(*targets, kUriList);
}

void CutFilesWereMoved()
{
    EmptyReadClipboard();
}

} // namespace platform
