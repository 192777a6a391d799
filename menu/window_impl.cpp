// Routing of window messages to their object.
#include "menu/window_impl.h"

LRESULT CALLBACK WindowImpl::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE)
    {
        auto* const self = static_cast<WindowImpl*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        self->m_hWnd = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* const self = reinterpret_cast<WindowImpl*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);

    LRESULT result = 0;
    if (!self->ProcessWindowMessage(message, wParam, lParam, result))
        result = DefWindowProcW(window, message, wParam, lParam);
    if (message == WM_NCDESTROY)
    {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        self->m_hWnd = nullptr;
        self->OnFinalMessage();
    }
    return result;
}
