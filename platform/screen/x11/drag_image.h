// The picture under the pointer while this program drags: a window of its own that the pointer does not see.
#pragma once

#include "platform/screen/drags.h"

#include <xcb/xproto.h>

namespace platform::x11
{

class DragPicture
{
public:
    /// Nothing is shown for a picture without pixels, or on a display that could not let the pointer through.
    DragPicture(screen::DragImage image, POINT pointer);
    ~DragPicture();
    DragPicture(const DragPicture&) = delete;
    DragPicture& operator=(const DragPicture&) = delete;

    void Follow(POINT pointer);

private:
    POINT m_hotSpot{};
    xcb_window_t m_window = 0;
    xcb_colormap_t m_colormap = 0;
};

} // namespace platform::x11
