// Asking the desktop module about an item, without hanging on the item's place.
#include "platform/shell/item_programs.h"

#include "platform/base/text.h"
#include "platform/files/listed_file.h"
#include "platform/files/place_call.h"
#include "platform/services/desktop_module.h"
#include "platform/services/entry_service.h"
#include "platform/services/peer_service.h"

namespace platform
{

namespace
{

using Choices = std::vector<ItemChoice>;
using Question = void (*)(const char* path, ChoiceReceiver receive, void* context);

/// A menu shows as soon as it can: what is not known by then is not in it.
constexpr std::chrono::milliseconds kPatience{50};

const EntryService* Entries()
{
    return static_cast<const EntryService*>(DesktopModuleSymbol("orb_entry_service"));
}

/// What was answered so far.
struct Progress
{
    std::mutex mutex;
    Choices choices;
    std::string_view lastIcon; ///< behind the alternatives of each
};

void Receive(void* context, const ChoiceFacts& facts)
{
    auto& progress = *static_cast<Progress*>(context);
    std::string icon = facts.icons;
    if (!progress.lastIcon.empty())
        icon.append(icon.empty() ? "" : "\n").append(progress.lastIcon);
    const std::lock_guard lock(progress.mutex);
    progress.choices.push_back({facts.id, Utf16FromUtf8(facts.text), std::move(icon)});
}

/// On trusted ground at once, elsewhere within patience.
Choices AskPlaceOf(Question question, const std::string& path)
{
    const auto ask = [question, path]
    {
        const auto progress = std::make_shared<Progress>();
        question(path.c_str(), Receive, progress.get());
        return progress;
    };
    const std::shared_ptr<Progress> answer = AskPlace<Progress>(path, ask, {}, kPatience);
    return answer != nullptr ? std::move(answer->choices) : Choices();
}

/// As many as come in time: thousands take longer to look up than a menu may to open.
Choices AskForPrograms(Question question, const std::string& path)
{
    constexpr std::chrono::milliseconds kPatienceForPrograms{300}; // the first time GIO reads much
    const auto progress = std::make_shared<Progress>();
    progress->lastIcon = "application-x-executable\n!program";
    CallWithin<Progress>(kPatienceForPrograms,
                         [question, path, progress]
                         {
                             question(path.c_str(), Receive, progress.get());
                             return progress;
                         });
    const std::lock_guard lock(progress->mutex);
    return progress->choices;
}

bool HasProgramChooser()
{
    const auto* peers = static_cast<const PeerService*>(DesktopModuleSymbol("orb_peer_service"));
    const auto has = peers != nullptr ? CallWithin<bool>(kPatience, [peers]
                                                         { return std::make_shared<bool>(peers->hasProgramChooser()); })
                                      : nullptr;
    return has != nullptr && *has;
}

} // namespace

std::vector<ItemChoice> ActionsOf(const std::string& path)
{
    const EntryService* service = Entries();
    return service != nullptr ? AskPlaceOf(service->actions, path) : Choices();
}

ItemPrograms ProgramsFor(const std::string& path)
{
    const EntryService* service = Entries();
    return {service != nullptr ? AskForPrograms(service->programs, path) : Choices(), HasProgramChooser()};
}

} // namespace platform
