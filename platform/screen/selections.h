// Selections: what programs on one display hand each other, named by what it is offered as ("text/uri-list",
// "UTF8_STRING").
//
// The screen answers other programs' requests by itself while it looks for events. All functions belong to the
// user-interface thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::screen
{

enum class Selection : std::uint8_t
{
    Clipboard,
    Primary, ///< what is marked; pasted by the middle button
    Drag,    ///< what is dragged, by whichever program; offered with BeginDrag (drags.h)
};

/// What this program offers. Kept for as long as the selection is this program's.
class SelectionSource
{
public:
    virtual ~SelectionSource() = default;
    /// What the content can be had as, the best first. The screen adds the display's own kinds (TARGETS and the like).
    virtual std::vector<std::string> Targets() const = 0;
    /// The content as one of them; nothing when it cannot be had.
    virtual std::optional<std::string> Content(std::string_view target) const = 0;
};

/// Takes the selection, as of the last input event. The source is let go when another program takes the selection, or
/// with the next offer. False when the display refuses, or there is none.
bool OfferSelection(Selection selection, std::shared_ptr<const SelectionSource> source);
/// Gives the selection up if it still is this program's.
void WithdrawSelection(Selection selection);
/// What this program offers; null when the selection is not its own.
std::shared_ptr<const SelectionSource> OfferedSelection(Selection selection);

/// Empties the selection, whoever's it is, unless it has changed hands since this program last read it.
void ClearSelection(Selection selection);

/// What the selection can be had as; empty when there is nothing to be had, nothing when its owner has not answered
/// `until` then, milliseconds of the clock. Events that arrive meanwhile are kept.
std::optional<std::vector<std::string>> SelectionTargets(Selection selection, std::uint64_t until);
/// Reads the selection's content; nothing when there is none of that kind, when it has not come whole `until` then, or
/// when it is larger than `limit` bytes.
std::optional<std::string> ReadSelection(Selection selection, std::string_view target, std::uint64_t until,
                                         std::size_t limit);

/// Hands the clipboard's content over to the desktop's clipboard manager. True when one has taken it, which makes this
/// program's source superfluous. `patience`: for each step of the manager's.
bool SaveClipboard(std::chrono::milliseconds patience);

} // namespace platform::screen
