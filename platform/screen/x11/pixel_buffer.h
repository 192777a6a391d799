// A window's pixels, shared with the X server where it can be.
#pragma once

#include "platform/screen/x11/connection.h"

#include <xcb/shm.h>

namespace platform::x11
{

class PixelBuffer
{
public:
    PixelBuffer(int width, int height);
    ~PixelBuffer();
    PixelBuffer(const PixelBuffer&) = delete;
    PixelBuffer& operator=(const PixelBuffer&) = delete;

    const Surface& Pixels() const { return m_surface; }
    /// Sends a rectangle, inside the surface, to the same place in a window.
    void Send(xcb_window_t window, xcb_gcontext_t gc, const RECT& rect);

private:
    bool Share(std::size_t size);
    void SendPlain(xcb_window_t window, xcb_gcontext_t gc, const RECT& rect);

    Surface m_surface;
    std::size_t m_size = 0;
    xcb_shm_seg_t m_segment = 0;
};

/// True when the error says that the server cannot attach our memory; from now on nothing is shared.
bool NoteSharingError(const xcb_generic_error_t& error);

} // namespace platform::x11
