// Files on the clipboard.
#include "platform/shell/clipboard_files.h"

#include "platform/base/clock.h"
#include "platform/base/fault_points.h"
#include "platform/files/bounded_call.h"
#include "platform/windowing/clipboard.h"

#include "windows.h"

#include <algorithm>
#include <sys/stat.h>

namespace platform
{
namespace
{

using std::chrono::milliseconds;
using Targets = std::vector<std::string>;

constexpr std::uint64_t kFrame = 16; // milliseconds
constexpr milliseconds kPatience{1000};

bool Offers(const Targets& targets, std::string_view target)
{
    return std::ranges::find(targets, target) != targets.end();
}

/// An owner that does not give what it offers is not asked a second time.
std::optional<CopiedFiles> ReadFiles(const Targets& targets, std::uint64_t until)
{
    if (Offers(targets, kCopiedFiles))
    {
        const auto content = ReadClipboard(kCopiedFiles, until);
        if (!content)
            return std::nullopt;
        if (auto files = ReadCopiedFiles(*content))
            return files;
    }
    const auto list = Offers(targets, kUriList) ? ReadClipboard(kUriList, until) : std::nullopt;
    if (!list)
        return std::nullopt;
    const auto cut = Offers(targets, kKdeCut) ? ReadClipboard(kKdeCut, until) : std::nullopt;
    return CopiedFiles{PathsInUriList(*list), cut && cut->starts_with('1')};
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

HRESULT PutFilesOnClipboard(const CopiedFiles& files)
{
    std::vector<ClipboardForm> forms = FormsOfFiles(files);
    if (FaultPoint("PutFilesOnClipboard") || forms.empty())
        return E_FAIL;
    forms.push_back({std::string(kKdeCut), files.cut ? "1" : "0"});
    return PutOnClipboard(std::move(forms)) ? S_OK : E_FAIL;
}

std::optional<CopiedFiles> FilesOnClipboard()
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
