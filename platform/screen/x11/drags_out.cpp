// What this program drags.
#include "platform/screen/x11/drags.h"

namespace platform::screen
{

bool BeginDrag(std::shared_ptr<const SelectionSource>, DragActions, const DragImage&)
{
    return false;
}

DragPlace MoveDrag(POINT, DragActions)
{
    return {};
}

DragPlace CurrentDragPlace()
{
    return {};
}

void ShowDragAction(DragActions) {}

bool DropDrag()
{
    return false;
}

void EndDrag() {}

} // namespace platform::screen
