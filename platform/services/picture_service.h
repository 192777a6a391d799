// Reading picture files: PNG, XPM and the like by gdk-pixbuf, SVG by librsvg.
#pragma once

#include <cstdint>

namespace platform
{

struct PictureService
{
    /// Renders the picture, scaled to fit and centred, into `size` × `size` premultiplied B G R A pixels, which must be
    /// zero before. False, with the pixels untouched, for a file that is no readable picture.
    bool (*render)(const char* path, int size, std::uint32_t* pixels);
};

} // namespace platform

extern "C" const platform::PictureService orb_picture_service;
