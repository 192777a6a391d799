// What the controls share: their object behind the window handle, and talking to the owner.
#pragma once

#include "windows.h"
#include "windowsx.h"

#include <span>
#include <string>

namespace platform
{

/// Base of a control's object. It lives from WM_NCCREATE to WM_NCDESTROY; when its window is destroyed while one of
/// its messages is being handled, it lives until that handler returns, with `Window()` null.
class ControlObject
{
public:
    explicit ControlObject(HWND window) : m_window(window) {}
    virtual ~ControlObject() = default;
    ControlObject(const ControlObject&) = delete;
    ControlObject& operator=(const ControlObject&) = delete;

    HWND Window() const { return m_window; }
    bool Alive() const { return m_window != nullptr; }

    /// Routes a message to the window's object, making and freeing a T with the window.
    template <typename T>
    static LRESULT Route(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

protected:
    virtual LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) = 0;

    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam)
    {
        return Alive() ? DefWindowProcW(m_window, message, wParam, lParam) : 0;
    }

    /// Asks the parent what to draw with (WM_CTLCOLOR…): sets the text's colour, returns the background.
    HBRUSH AskForColors(UINT message, HDC dc)
    {
        return reinterpret_cast<HBRUSH>(SendMessageW(GetParent(m_window), message, reinterpret_cast<WPARAM>(dc),
                                                     reinterpret_cast<LPARAM>(m_window)));
    }

    /// Sends WM_NOTIFY with a structure that begins with an NMHDR.
    template <typename Notification>
    LRESULT Notify(HWND owner, UINT code, Notification& notification)
    {
        auto& header = reinterpret_cast<NMHDR&>(notification);
        header.hwndFrom = m_window;
        header.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(m_window));
        header.code = code;
        return SendMessageW(owner, WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&notification));
    }

private:
    static LRESULT Run(ControlObject* object, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_window;
    int m_running = 0;
};

inline LRESULT ControlObject::Run(ControlObject* object, UINT message, WPARAM wParam, LPARAM lParam)
{
    ++object->m_running;
    const LRESULT result = object->Handle(message, wParam, lParam);
    if (message == WM_NCDESTROY)
    {
        SetWindowLongPtrW(object->m_window, 0, 0);
        object->m_window = nullptr;
    }
    if (--object->m_running == 0 && !object->Alive())
        delete object;
    return result;
}

template <typename T>
LRESULT ControlObject::Route(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* object = reinterpret_cast<ControlObject*>(GetWindowLongPtrW(window, 0));
    if (object == nullptr && message == WM_NCCREATE)
    {
        object = new T(window);
        SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(object));
    }
    return object != nullptr ? Run(object, message, wParam, lParam) : DefWindowProcW(window, message, wParam, lParam);
}

/// Has the parent of a transparent window draw its background into the window's context.
inline void EraseWithParent(HWND window, HDC dc)
{
    HWND parent = GetParent(window);
    POINT origin = {0, 0};
    MapWindowPoints(window, parent, &origin, 1);
    POINT previous = {0, 0};
    OffsetViewportOrgEx(dc, -origin.x, -origin.y, &previous);
    SendMessageW(parent, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0);
    SetViewportOrgEx(dc, previous.x, previous.y, nullptr);
}

/// A frame one pixel wide.
inline void FrameColors(HDC dc, const RECT& rect, int topLeft, int bottomRight)
{
    const RECT top = {rect.left, rect.top, rect.right, rect.top + 1};
    const RECT left = {rect.left, rect.top, rect.left + 1, rect.bottom};
    const RECT bottom = {rect.left, rect.bottom - 1, rect.right, rect.bottom};
    const RECT right = {rect.right - 1, rect.top, rect.right, rect.bottom};
    FillRect(dc, &top, GetSysColorBrush(topLeft));
    FillRect(dc, &left, GetSysColorBrush(topLeft));
    FillRect(dc, &bottom, GetSysColorBrush(bottomRight));
    FillRect(dc, &right, GetSysColorBrush(bottomRight));
}

/// Without an outline, in a system colour.
inline void FillPolygon(HDC dc, std::span<const POINT> points, int color)
{
    const HGDIOBJ brush = SelectObject(dc, GetSysColorBrush(color));
    const HGDIOBJ pen = SelectObject(dc, GetStockObject(NULL_PEN));
    Polygon(dc, points.data(), static_cast<int>(points.size()));
    SelectObject(dc, pen);
    SelectObject(dc, brush);
}

inline std::u16string TextOf(HWND window)
{
    std::u16string text(static_cast<std::size_t>(GetWindowTextLengthW(window)), u'\0');
    GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
    return text;
}

inline POINT PointFrom(LPARAM lParam)
{
    return {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
}

} // namespace platform
