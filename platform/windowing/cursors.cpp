// The pointer: where it is, and its shape.
#include "platform/base/fault_points.h"
#include "platform/windowing/message_queue.h"
#include "platform/windowing/window.h"

namespace platform
{
namespace
{

struct Cursor final : HandleObject
{
    static constexpr HandleKind kHandleKind = HandleKind::Cursor;
    explicit Cursor(screen::PointerShape look) : HandleObject(kHandleKind), shape(look) { permanent = true; }
    screen::PointerShape shape;
};

HCURSOR Make(screen::PointerShape shape)
{
    return reinterpret_cast<HCURSOR>(InsertHandle(std::make_unique<Cursor>(shape)));
}

constinit HCURSOR g_cursor = nullptr;

} // namespace

screen::PointerShape CursorShape()
{
    const auto* cursor = FindObject<Cursor>(g_cursor);
    return cursor != nullptr ? cursor->shape : screen::PointerShape::Arrow;
}

} // namespace platform

using namespace platform;

HCURSOR LoadCursorW(HINSTANCE, LPCWSTR name)
{
    // Two shapes are all that is asked for.
    static const HCURSOR arrow = Make(screen::PointerShape::Arrow);
    static const HCURSOR text = Make(screen::PointerShape::Text);
    if (name != IDC_ARROW && name != IDC_IBEAM)
        return Fail<HCURSOR>(ERROR_RESOURCE_NAME_NOT_FOUND, nullptr);
    return name == IDC_ARROW ? arrow : text;
}

HCURSOR SetCursor(HCURSOR cursor)
{
    return std::exchange(g_cursor, cursor);
}

BOOL GetCursorPos(LPPOINT point)
{
    const auto position = FaultPoint("GetCursorPos") ? std::nullopt : screen::PointerPosition();
    if (!position || point == nullptr)
        return Fail(ERROR_ACCESS_DENIED, FALSE);
    *point = *position;
    return TRUE;
}

BOOL SetCursorPos(int x, int y)
{
    screen::WarpPointer({x, y});
    return TRUE;
}
