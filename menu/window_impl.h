// A window whose messages go to an object.
#pragma once

#include <windows.h>

/// Binds a window to the object that CreateWindowExW's last argument names. The object outlives its window: it hears of
/// the window's end through OnFinalMessage.
class WindowImpl
{
public:
    WindowImpl() = default;
    WindowImpl(const WindowImpl&) = delete;
    WindowImpl& operator=(const WindowImpl&) = delete;

    /// The message map: true when the message has been handled, with the value for its sender in `result`.
    virtual bool ProcessWindowMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) = 0;
    virtual ~WindowImpl() = default;
    /// The window procedure that routes into the map, and messages that it does not handle to DefWindowProcW.
    virtual WNDPROC GetWindowProc() { return &WindowImpl::WindowProc; }
    /// Called after the window has received its last message; may destroy the object.
    virtual void OnFinalMessage() {}

    HWND m_hWnd = nullptr;

private:
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
};
