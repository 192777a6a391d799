// Selections without a display: this program's and other programs' in one place.
#include "tests/headless/headless_state.h"

#include "platform/base/clock.h"

#include <algorithm>

namespace platform::headless
{
namespace
{

using screen::Selection;
using screen::SelectionSource;

struct HeldSelection
{
    std::shared_ptr<const SelectionSource> own;
    std::optional<OtherOffer> other;
    bool replaced = false; ///< since it was last read
};

struct Held
{
    HeldSelection selections[3];
    bool manager = false;
};

Held& TheHeld()
{
    static Held& held = *new Held;
    return held;
}

HeldSelection& Of(Selection selection)
{
    return TheHeld().selections[static_cast<std::size_t>(selection)];
}

void Replace(Selection selection, HeldSelection by)
{
    HeldSelection before = std::exchange(Of(selection), std::move(by)); // ends here, and may release what waits for it
    if (before.own != nullptr)
        screen::Wake();
}

/// A program that does not answer costs its patience.
void WaitInVain(std::uint64_t until)
{
    if (ClockIsManual())
        AdvanceManualClock(until - std::min(until, NowMs()));
}

} // namespace

void OfferByOther(Selection selection, OtherOffer offer)
{
    Replace(selection, {nullptr, std::move(offer), true});
}

void EndOther(Selection selection)
{
    Of(selection).other.reset();
}

bool OtherOffers(Selection selection)
{
    return Of(selection).other.has_value();
}

std::optional<std::string> AskAsOther(Selection selection, std::string_view target)
{
    const auto own = Of(selection).own;
    return own != nullptr ? own->Content(target) : std::nullopt;
}

void SetClipboardManager(bool runs)
{
    TheHeld().manager = runs;
}

void ForgetSelections()
{
    TheHeld().manager = false;
    for (const Selection selection : {Selection::Clipboard, Selection::Primary, Selection::Drag})
        Replace(selection, {});
}

} // namespace platform::headless

namespace platform::screen
{

using headless::Of;

bool OfferSelection(Selection selection, std::shared_ptr<const SelectionSource> source)
{
    headless::Replace(selection, {std::move(source), std::nullopt, true});
    return true;
}

void WithdrawSelection(Selection selection)
{
    if (Of(selection).own != nullptr)
        headless::Replace(selection, {});
}

void ClearSelection(Selection selection)
{
    if (!Of(selection).replaced)
        headless::Replace(selection, {});
}

std::shared_ptr<const SelectionSource> OfferedSelection(Selection selection)
{
    return Of(selection).own;
}

std::optional<std::vector<std::string>> SelectionTargets(Selection selection, std::uint64_t until)
{
    const headless::HeldSelection& held = Of(selection);
    if (held.own != nullptr)
        return held.own->Targets();
    std::vector<std::string> targets;
    if (!held.other)
        return targets;
    if (!held.other->namesTargets)
    {
        headless::WaitInVain(until);
        return std::nullopt;
    }
    for (const auto& [target, content] : held.other->forms)
        targets.push_back(target);
    return targets;
}

std::optional<std::string> ReadSelection(Selection selection, std::string_view target, std::uint64_t until,
                                         std::size_t limit)
{
    headless::HeldSelection& held = Of(selection);
    held.replaced = false;
    if (held.own != nullptr)
        return held.own->Content(target);
    if (!held.other)
        return std::nullopt;
    if (!held.other->givesContent)
    {
        headless::WaitInVain(until);
        return std::nullopt;
    }
    for (const auto& [name, content] : held.other->forms)
        if (name == target && content.size() <= limit)
            return content;
    return std::nullopt;
}

bool SaveClipboard(std::chrono::milliseconds)
{
    return Of(Selection::Clipboard).own != nullptr && headless::TheHeld().manager;
}

} // namespace platform::screen
