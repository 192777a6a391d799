// Drag and drop on X11.
#include "platform/screen/drags.h"

namespace platform::screen
{

const DragOffer& OfferedDrag()
{
    static const DragOffer& none = *new DragOffer;
    return none;
}

void AnswerDrag(DragActions) {}

void FinishDrop(DragActions) {}

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
