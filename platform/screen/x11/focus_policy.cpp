// The decisions of focus_policy.h.
#include "platform/screen/x11/focus_policy.h"

namespace platform::x11
{
namespace
{

// Within this time of the start, a window manager may still be settling things.
constexpr std::uint64_t kSettlingMs = 250;
// Focus that follows the mouse comes this soon after a movement.
constexpr std::uint64_t kFollowingMs = 300;
// What the user did with a press or a key shows in the focus within this time.
constexpr std::uint64_t kIntentMs = 1000;
// A fight for the focus is given up after this many rounds, each within this time of the one before.
constexpr std::uint64_t kQuickMs = 100;
constexpr int kMostQuickRetakes = 5;

bool Within(std::optional<std::uint64_t> time, std::uint64_t span, std::uint64_t now)
{
    return time && now - *time <= span;
}

} // namespace

bool IsQuickRetake(const FocusLoss& loss)
{
    return Within(loss.retaken, kQuickMs, loss.now);
}

FocusAnswer AnswerFocusLoss(const FocusLoss& loss)
{
    const bool meant = Within(loss.press, kIntentMs, loss.now) || Within(loss.keyGrab, kIntentMs, loss.now);
    const bool hopeless = IsQuickRetake(loss) && loss.quickRetakes >= kMostQuickRetakes;
    if (meant || hopeless || loss.focusIsLaunchers)
        return FocusAnswer::AnotherProgram;
    const bool settling = loss.now - loss.taken <= kSettlingMs;
    const bool follows = loss.pointerOverNewFocus && Within(loss.pointerMove, kFollowingMs, loss.now);
    // A window manager falls back to the root window when what had the focus is gone; that is nobody's turn.
    return settling || follows || loss.focusIsNobodys ? FocusAnswer::TakeBack : FocusAnswer::AnotherProgram;
}

} // namespace platform::x11
