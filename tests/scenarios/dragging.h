// A person drags an item of the menu.
#pragma once

#include "tests/scenarios/desk.h"

using DragStep = std::function<void()>;
inline const DragStep kRelease = [] { platform::headless::ReleaseButton(); };

/// From press to release. The drag runs its own loop: each step is done when the program waits there. A drag that the
/// steps do not end is ended by Escape.
inline void DragItem(Desk& desk, const std::string& item, std::vector<DragStep> steps,
                     platform::screen::Button button = platform::screen::Button::Left, int level = 0)
{
    namespace headless = platform::headless;
    const POINT point = CentreOf(desk.ItemBounds(item, level));
    desk.MoveTo({point.x - 1, point.y});
    desk.MoveTo(point);
    desk.PressMouse(button);
    headless::SetIdleHandler(
        [steps = std::move(steps), next = std::size_t{0}]() mutable
        {
            if (!headless::ShownDragAction())
                return false;
            if (next < steps.size())
                steps[next++]();
            else
                headless::PressKey(VK_ESCAPE);
            return true;
        });
    desk.MoveTo({point.x + 20, point.y});
    headless::SetIdleHandler(nullptr);
    desk.LetGo(VK_ESCAPE);
}

inline POINT LowerHalf(const Desk& desk, const std::string& item, int level = 0)
{
    const RECT rect = desk.ItemBounds(item, level);
    return {rect.left + 20, rect.bottom - 3};
}
