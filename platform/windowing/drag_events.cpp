// The handler of drags.
#include "platform/windowing/drag_events.h"

namespace platform
{
namespace
{

constinit const DragHandler* g_handler = nullptr;

} // namespace

void SetDragHandler(const DragHandler& handler)
{
    g_handler = &handler;
}

const DragHandler* TheDragHandler()
{
    return g_handler;
}

} // namespace platform
