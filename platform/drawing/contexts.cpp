// The device-context calls: creation, selection, state.
#include "platform/drawing/device_context.h"

#include "platform/drawing/surface_dc.h"

#include <utility>

using platform::DeviceContext;
using platform::Fail;
using platform::FindContext;

namespace
{

/// Exchanges one member of the context's state; `failure` for a handle that is no context.
template <typename T>
T ExchangeState(HDC dc, T platform::ContextState::*member, T value, T failure)
{
    DeviceContext* context = FindContext(dc);
    return context != nullptr ? std::exchange(context->state.*member, value) : Fail(ERROR_INVALID_HANDLE, failure);
}

} // namespace

HDC CreateCompatibleDC(HDC reference)
{
    if (reference != nullptr && FindContext(reference) == nullptr)
        return Fail(ERROR_INVALID_HANDLE, static_cast<HDC>(nullptr));
    return platform::OpenHandle<HDC>("CreateCompatibleDC", std::make_unique<DeviceContext>());
}

HDC CreateDCW(LPCWSTR, LPCWSTR, LPCWSTR, const DEVMODEW*)
{
    return platform::OpenHandle<HDC>("CreateDCW", std::make_unique<DeviceContext>());
}

BOOL DeleteDC(HDC dc)
{
    // A window's context is not the caller's to delete: that is what ReleaseDC and EndPaint are for.
    const DeviceContext* context = FindContext(dc);
    if (context == nullptr || context->OnSurface())
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    return platform::TakeHandle(reinterpret_cast<std::uintptr_t>(dc)) != nullptr;
}

HDC platform::CreateSurfaceDC(const Surface& surface, POINT origin, const Region& clip)
{
    return OpenHandle<HDC>("CreateSurfaceDC", std::make_unique<DeviceContext>(surface, origin, clip));
}

void platform::DeleteSurfaceDC(HDC dc)
{
    if (const DeviceContext* context = FindContext(dc); context != nullptr && context->OnSurface())
        TakeHandle(reinterpret_cast<std::uintptr_t>(dc));
}

int SaveDC(HDC dc)
{
    DeviceContext* context = FindContext(dc);
    return context != nullptr ? context->Save() : Fail(ERROR_INVALID_HANDLE, 0);
}

BOOL RestoreDC(HDC dc, int saved)
{
    DeviceContext* context = FindContext(dc);
    return context != nullptr ? context->Restore(saved) : Fail(ERROR_INVALID_HANDLE, FALSE);
}

HGDIOBJ SelectObject(HDC dc, HGDIOBJ object)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || object == nullptr)
        return Fail(ERROR_INVALID_HANDLE, HGDIOBJ{nullptr});
    return context->Select(object);
}

BOOL SetViewportOrgEx(HDC dc, int x, int y, LPPOINT previous)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr)
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    const POINT old = std::exchange(context->state.viewport, POINT{x, y});
    if (previous != nullptr)
        *previous = old;
    return TRUE;
}

BOOL OffsetViewportOrgEx(HDC dc, int x, int y, LPPOINT previous)
{
    POINT origin{};
    return GetViewportOrgEx(dc, &origin) && SetViewportOrgEx(dc, origin.x + x, origin.y + y, previous);
}

BOOL GetViewportOrgEx(HDC dc, LPPOINT point)
{
    const DeviceContext* context = FindContext(dc);
    if (context == nullptr || point == nullptr)
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    *point = context->state.viewport;
    return TRUE;
}

int SetStretchBltMode(HDC dc, int mode)
{
    return ExchangeState(dc, &platform::ContextState::stretchMode, mode, 0);
}

int SetBkMode(HDC dc, int mode)
{
    return ExchangeState(dc, &platform::ContextState::backMode, mode, 0);
}

COLORREF SetTextColor(HDC dc, COLORREF color)
{
    return ExchangeState<COLORREF>(dc, &platform::ContextState::textColor, color, CLR_INVALID);
}

// Drawing reaches the pixels at once; there is nothing to flush.
BOOL GdiFlush()
{
    return TRUE;
}
