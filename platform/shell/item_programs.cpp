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

Choices Answers(Question question, const std::string& path, std::string_view lastIcon)
{
    struct Asked
    {
        Choices choices;
        std::string_view lastIcon;
    } asked{{}, lastIcon};
    const auto receive = [](void* context, const ChoiceFacts& facts)
    {
        auto& into = *static_cast<Asked*>(context);
        std::string icon = facts.icons;
        if (!into.lastIcon.empty())
            icon.append(icon.empty() ? "" : "\n").append(into.lastIcon);
        into.choices.push_back({facts.id, Utf16FromUtf8(facts.text), std::move(icon)});
    };
    question(path.c_str(), receive, &asked);
    return std::move(asked.choices);
}

Choices AskWithinPatience(Question question, const std::string& path, std::string_view lastIcon)
{
    const std::shared_ptr<Choices> answer = AskPlace<Choices>(
        path, [=] { return std::make_shared<Choices>(Answers(question, path, lastIcon)); }, {}, kPatience);
    return answer != nullptr ? std::move(*answer) : Choices();
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
    return service != nullptr ? AskWithinPatience(service->actions, path, {}) : Choices();
}

ItemPrograms ProgramsFor(const std::string& path)
{
    const EntryService* service = Entries();
    return {service != nullptr ? AskWithinPatience(service->programs, path, "application-x-executable\n!program")
                               : Choices(),
            HasProgramChooser()};
}

} // namespace platform
