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
    Cursor() : HandleObject(kHandleKind) { permanent = true; }
};

constinit HCURSOR g_cursor = nullptr;

} // namespace
} // namespace platform

using namespace platform;

HCURSOR LoadCursorW(HINSTANCE, LPCWSTR name)
{
    // The arrow is the display's own default, which windows inherit; the layer has no other shapes yet.
    static const HCURSOR arrow = reinterpret_cast<HCURSOR>(InsertHandle(std::make_unique<Cursor>()));
    return name == IDC_ARROW ? arrow : Fail<HCURSOR>(ERROR_RESOURCE_NAME_NOT_FOUND, nullptr);
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
