// Whether losing the X focus means that the user has turned to another program.
//
// The menu's windows are no business of the window manager's, so it takes the focus itself. Two things take it away
// again without the user having meant it: a window manager that corrects what it did not expect, right after the start;
// and focus that follows the mouse, when the pointer leaves the menu and crosses another window. From both the menu
// takes it back. Everything else is another program's turn: a press outside, a key that the window manager has grabbed
// (Alt+Tab), a window that comes up, another menu of this program.
//
// No keyboard grab: a grab of ours would block a screen locker, and while another client has one, our request would be
// refused; once it ends, keys come to the window that has the focus, which is ours already.
//
// Pure decisions over times, so that they can be tested without a display.
#pragma once

#include <cstdint>
#include <optional>

namespace platform::x11
{

/// Times in milliseconds of one clock; nothing when it has not happened since the focus was taken.
struct FocusLoss
{
    std::uint64_t now = 0;
    std::uint64_t taken = 0;                  ///< when the focus was taken
    std::optional<std::uint64_t> retaken;     ///< when it was last taken back
    int quickRetakes = 0;                     ///< how often in quick succession
    std::optional<std::uint64_t> press;       ///< the last press outside this program's windows
    std::optional<std::uint64_t> keyGrab;     ///< when another client last held the keyboard grabbed
    std::optional<std::uint64_t> pointerMove; ///< the pointer's last movement outside this program's windows
    bool pointerOverNewFocus = false;         ///< the window that has the focus now is the one under the pointer
    bool focusIsNobodys = false;              ///< the focus is on no window, or on the root window
    bool focusIsLaunchers = false;            ///< another process of this program has it
};

enum class FocusAnswer : std::uint8_t
{
    TakeBack,
    AnotherProgram,
};

FocusAnswer AnswerFocusLoss(const FocusLoss& loss);

/// Whether the focus was taken back so recently that somebody is fighting for it.
bool IsQuickRetake(const FocusLoss& loss);

} // namespace platform::x11
